#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "arguments.h"
#include "command.h"
#include "registrykey.h"
#include "registryvalue.h"
#include "results.h"
#include "text.h"

namespace {

constexpr const char* kNotes = R"(KEY is HKLM, HKCU, HKCR, HKU or HKCC, or one of their long names, and the path behind
a backslash: HKLM\SOFTWARE\Vendor. Texts that begin with "-" go behind "--".)";

constexpr const char* kReadNotes = R"(
Text is shown up to its terminator, and what is irregular about it is told. There is no
function that reads REG_EXPAND_SZ: that is a failure, which tells what is stored.)";

constexpr const char* kWriteNotes = R"(
VALUE is a text, any number of them for multi, a decimal or 0x hex number for dword, or
pairs of hex digits for binary. Missing keys are made. Nothing writes a qword.)";

constexpr const char* kDeleteNotes = R"(
A key with subkeys wants --recursive. On platforms without RegDeleteKeyEx, and with
--children-only, a key is looked up in the program's own view, whatever --view says;
with it, no --view means the 32-bit one.)";

// What the options of one call say. NAME is empty for the unnamed value.
struct Request {
  std::string key;
  std::string name;
  std::string view;
  std::string type;
  std::vector<std::string> texts;
  bool recursive = false;
  bool childrenOnly = false;
  bool deleteValue = false;

  std::optional<DWORD> typeNumber() const { return type.empty() ? std::nullopt : std::optional(typeFromWord(type)); }
  DWORD section() const { return view == "64" ? 0x100 : view == "32" ? 0x200 : 0; }

  Json object() const {
    Json object{{"key", key}};
    if (!view.empty()) {
      object["view"] = view;
    }
    return object;
  }
  Json valueObject() const {
    Json object = this->object();
    object["name"] = name;
    return object;
  }
  std::string valuePlace() const { return inQuotes(key) + ", " + (name.empty() ? "unnamed value" : inQuotes(name)); }
};

std::string shownName(const std::string& name) {
  return name.empty() ? "(unnamed)" : shown(name);
}

void failed(Output& output, const std::string& place, int result, Json object) {
  output.failure(place, registryResultInWords(result), result, std::move(object));
}

void read(Output& output, const Request& request, const RegistryKey& key) {
  const RegistryValue value = readValue(key, request.name, request.typeNumber());
  Json object = request.valueObject();
  if (value.type) {
    object["type"] = nameOfType(*value.type);
  }
  if (value.result == kRegistryDone) {
    const ShownValue shownData = shownValue(*value.type, value.data);
    object.update(shownData.object);
    output.result(shownName(request.name) + ": " + nameOfType(*value.type) + " " + shownData.readable, object);
    return;
  }
  std::string words = registryResultInWords(value.result);
  if (value.type) {
    words += "; it is stored as " + nameOfType(*value.type);
  }
  if (value.result == kRegistryOtherType && value.type == REG_EXPAND_SZ && !value.data.empty()) {
    const ShownValue stored = shownValue(*value.type, value.data);
    words += " " + stored.readable;
    object.update(stored.object);
  }
  output.failure(request.valuePlace(), words, value.result, std::move(object));
}

void write(Output& output, const Request& request, const RegistryKey& key) {
  const DWORD type = typeFromWord(request.type);
  const Encoded value = encoded(type, request.texts);
  Json object = request.valueObject();
  object["type"] = nameOfType(type);
  if (!value.problem.empty()) {
    output.failure(request.valuePlace(), value.problem, ERROR_INVALID_PARAMETER, std::move(object));
    return;
  }
  const int result = writeValue(key, request.name, type, value.data);
  if (result != kRegistryDone) {
    failed(output, request.valuePlace(), result, std::move(object));
    return;
  }
  const ShownValue written = shownValue(type, value.data);
  object.update(written.object);
  output.result(shownName(request.name) + ": " + nameOfType(type) + " " + written.readable + " written", object);
}

// The library tells a key with nothing to list and one that can't be opened alike.
void failedToList(Output& output, const Request& request, int result) {
  const std::string words =
      result == kRegistryRefused ? "the key is missing, can't be opened, or has none" : registryResultInWords(result);
  output.failure(inQuotes(request.key), words, result, request.object());
}

void listValues(Output& output, const Request& request, const RegistryKey& key) {
  const ValueList list = valuesOf(key, request.typeNumber());
  if (list.result != kRegistryDone) {
    failedToList(output, request, list.result);
    return;
  }
  for (const RegValueEntry& entry : list.entries) {
    const std::string name = toUtf8(entry.szName);
    Json object = request.object();
    object["name"] = name;
    object["type"] = nameOfType(entry.dwType);
    output.result(shownName(name) + ": " + nameOfType(entry.dwType), object);
  }
}

void listKeys(Output& output, const Request& request, const RegistryKey& key) {
  const SubkeyList list = subkeysOf(key);
  if (list.result != kRegistryDone) {
    failedToList(output, request, list.result);
    return;
  }
  for (const std::wstring& wideName : list.names) {
    const std::string name = toUtf8(wideName);
    Json object = request.object();
    object["subkey"] = name;
    output.result(name.empty() ? "(can't be read)" : shown(name), object);
  }
}

void deleteValue(Output& output, const Request& request, const RegistryKey& key) {
  const int result = vlRegDeleteValue(key.root, key.path.c_str(), toWide(request.name).c_str(), key.section);
  if (result != kRegistryDone) {
    failed(output, request.valuePlace(), result, request.valueObject());
    return;
  }
  output.result(shownName(request.name) + ": deleted", request.valueObject());
}

void deleteKey(Output& output, const Request& request, const RegistryKey& key) {
  if (key.isRoot()) {
    output.failure(inQuotes(request.key), "a root is not deleted here", ERROR_INVALID_PARAMETER, request.object());
    return;
  }
  const LPCWSTR path = key.path.c_str();
  const int result = request.childrenOnly ? vlRegDeleteSubKey(key.root, path, key.section, false)
                                          : vlRegDeleteKey(key.root, path, request.recursive, key.section);
  if (result != kRegistryDone) {
    failed(output, inQuotes(request.key), result, request.object());
    return;
  }
  // Of subkeys that could not be deleted the result says nothing.
  int left = 0;
  if (request.childrenOnly && vlRegListKeys(key.root, path, nullptr, &left) == kRegistryDone) {
    output.failure(inQuotes(request.key), "not all subkeys could be deleted", result, request.object());
    return;
  }
  output.result(shown(request.key) + (request.childrenOnly ? ": all subkeys deleted" : ": deleted"), request.object());
}

using Run = void (*)(Output& output, const Request& request, const RegistryKey& key);

struct Command {
  CLI::App* app;
  std::shared_ptr<Request> request;
};

Command addCommand(CLI::App* group, Context& context, const char* name, const char* description, Run run) {
  CLI::App* const app = group->add_subcommand(name, description);
  const auto request = std::make_shared<Request>();
  asWritten(app->add_option("KEY", request->key, "The key"))->required();
  app->add_option("--view", request->view, "The view of the registry; without it the program's own")
      ->check(CLI::IsMember({"64", "32"}))
      ->type_name("BITS");
  app->callback([&context, request, run] {
    context.command = [&context, request, run] {
      const std::optional<RegistryKey> key = registryKeyFromText(request->key, request->section());
      if (key) {
        run(context.output, *request, *key);
      } else {
        context.output.failure(inQuotes(request->key), "no registry key: it begins with HKLM, HKCU, HKCR, HKU or HKCC",
                               ERROR_INVALID_PARAMETER, request->object());
      }
    };
  });
  return {app, request};
}

CLI::Option* addType(const Command& command, const char* option, const std::vector<std::string>& words,
                     const char* description) {
  return command.app->add_option(option, command.request->type, description)
      ->check(CLI::IsMember(words))
      ->type_name("TYPE");
}

}  // namespace

void registerRegistry(CLI::App& app, Context& context) {
  CLI::App* const group = app.add_subcommand("reg", "Registry keys and values");
  group->require_subcommand(1);
  group->footer(kNotes);

  const Command reading = addCommand(group, context, "read", "Print a value", read);
  asWritten(reading.app->add_option("NAME", reading.request->name, "The value's name; without it the unnamed value"));
  addType(reading, "--type", readableTypes(), "Read a value of this type; without it of the type that it has");
  reading.app->footer(std::string(kNotes) + kReadNotes);

  const Command writing = addCommand(group, context, "write", "Store a value", write);
  asWritten(writing.app->add_option("NAME", writing.request->name, "The value's name; \"\" for the unnamed value"))
      ->required();
  asWritten(writing.app->add_option("VALUE", writing.request->texts, "What to store"));
  addType(writing, "--type", readableTypes(), "The value's type")->required();
  writing.app->footer(std::string(kNotes) + kWriteNotes);

  const Command listing = addCommand(group, context, "list", "Print the names and types of a key's values", listValues);
  addType(listing, "--type-filter", knownTypes(), "Only values of this type");

  addCommand(group, context, "keys", "Print the names of a key's subkeys", listKeys);

  const Command deleting =
      addCommand(group, context, "delete", "Delete a key or a value",
                 [](Output& output, const Request& request, const RegistryKey& key) {
                   request.deleteValue ? deleteValue(output, request, key) : deleteKey(output, request, key);
                 });
  CLI::Option* const value =
      asWritten(deleting.app->add_option("--value", deleting.request->name, "Delete this value; \"\" is the unnamed"));
  value->type_name("NAME")->each([request = deleting.request](const std::string&) { request->deleteValue = true; });
  CLI::Option* const recursive =
      deleting.app->add_flag("--recursive", deleting.request->recursive, "With all that lies below the key");
  recursive->excludes(value);
  deleting.app->add_flag("--children-only", deleting.request->childrenOnly, "What lies below, and not the key itself")
      ->excludes(value)
      ->excludes(recursive);
  deleting.app->footer(std::string(kNotes) + kDeleteNotes);
}
