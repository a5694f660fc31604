#include "machinefile.h"

#include <vlplatform/machine.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <set>
#include <stdexcept>

#include "number.h"
#include "output.h"
#include "text.h"

namespace {

using vlplatform::Account;
using vlplatform::machine;

/// A value of the file, with the way to it: "domains[0].users[1].rid".
class Node {
 public:
  Node(const Json& value, std::string path) : value_(value), path_(std::move(path)) {}

  [[noreturn]] void fail(const std::string& words) const {
    throw std::runtime_error(path_.empty() ? words : path_ + ": " + words);
  }

  bool isNull() const { return value_.is_null(); }
  bool flag() const { return value_.is_boolean() ? value_.get<bool>() : wrongType<bool>("true or false"); }
  DWORD number() const {
    const bool fits = value_.is_number_unsigned() && value_.get<std::uint64_t>() <= 0xFFFFFFFF;
    return fits ? value_.get<DWORD>() : wrongType<DWORD>("a whole number from 0 to 4294967295");
  }
  std::string text() const {
    if (!value_.is_string()) {
      wrongType<void>("a text");
    }
    std::string text = value_.get<std::string>();
    if (text.find('\0') != std::string::npos) {
      fail("the text has a NUL character");
    }
    return text;
  }
  std::wstring name() const {
    const std::string text = this->text();
    if (text.empty()) {
      fail("the text is empty");
    }
    return toWide(text);
  }

  template <class Handle>
  void forEachElement(Handle handle) const {
    if (!value_.is_array()) {
      wrongType<void>("a list");
    }
    for (std::size_t index = 0; index < value_.size(); ++index) {
      handle(Node(value_[index], path_ + "[" + std::to_string(index) + "]"));
    }
  }
  template <class Handle>
  void forEachMember(Handle handle) const {
    requireObject();
    for (const auto& [name, value] : value_.items()) {
      handle(name, Node(value, member(name)));
    }
  }
  void allow(std::initializer_list<std::string_view> names) const {
    forEachMember([&](const std::string& name, const Node&) {
      if (std::find(names.begin(), names.end(), name) == names.end()) {
        fail("there is no member " + inQuotes(name));
      }
    });
  }
  template <class Handle>
  bool with(const char* name, Handle handle) const {
    const auto found = value_.find(name);
    if (found != value_.end()) {
      handle(Node(*found, member(name)));
    }
    return found != value_.end();
  }
  Node required(const char* name) const {
    const auto found = value_.find(name);
    if (found == value_.end()) {
      fail("the member " + inQuotes(name) + " is missing");
    }
    return {*found, member(name)};
  }

 private:
  template <class Result>
  [[noreturn]] Result wrongType(const std::string& expected) const {
    fail("wants " + expected + ", not " + inQuotes(value_.dump(-1, ' ', false, Json::error_handler_t::replace)));
  }
  void requireObject() const {
    if (!value_.is_object()) {
      wrongType<void>("an object");
    }
  }
  std::string member(const std::string& name) const { return path_.empty() ? name : path_ + "." + name; }

  const Json& value_;
  std::string path_;
};

struct QualifiedName {
  std::wstring domain;
  std::wstring name;
};

QualifiedName qualified(const Node& node) {
  const std::wstring text = node.name();
  const std::size_t separator = text.find(L'\\');
  if (separator == std::wstring::npos || separator == 0 || separator + 1 == text.size()) {
    node.fail("wants DOMAIN\\user");
  }
  return {text.substr(0, separator), text.substr(separator + 1)};
}

void describeUser(const Node& user, const std::wstring& domain) {
  user.allow({"name", "rid", "sid", "upn"});
  const std::wstring name = user.required("name").name();
  const bool withSid = user.with("sid", [&](const Node& sid) {
    if (!machine().accounts().add(Account{domain, name, sid.name()})) {
      sid.fail("is no SID");
    }
  });
  const bool withRid =
      user.with("rid", [&](const Node& rid) { machine().accounts().addUser(domain, name, rid.number()); });
  if (withSid == withRid) {
    user.fail("wants either 'rid' or 'sid'");
  }
  user.with("upn", [&](const Node& upn) { machine().network().addPrincipal(upn.name(), domain + L'\\' + name); });
}

void describeDomain(const Node& node) {
  node.allow({"name", "sid", "reachable", "users"});
  const std::wstring name = node.required("name").name();
  const Node sid = node.required("sid");
  if (!machine().accounts().addDomain(name, sid.name())) {
    sid.fail("is no SID");
  }
  node.with("users",
            [&](const Node& users) { users.forEachElement([&](const Node& user) { describeUser(user, name); }); });
}

void describeDrives(const Node& drives) {
  struct Kind {
    std::string_view word;
    UINT type;
  };
  constexpr std::array<Kind, 5> kKinds{{{"fixed", DRIVE_FIXED},
                                        {"removable", DRIVE_REMOVABLE},
                                        {"remote", DRIVE_REMOTE},
                                        {"cdrom", DRIVE_CDROM},
                                        {"ramdisk", DRIVE_RAMDISK}}};
  machine().drives().clear();
  drives.forEachMember([&](const std::string& letter, const Node& drive) {
    const std::string word = drive.text();
    const auto* const kind =
        std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& known) { return known.word == word; });
    if (letter.size() != 1 || letter[0] < 'A' || letter[0] > 'Z') {
      drive.fail("a drive is a letter from A to Z");
    }
    if (kind == kKinds.end()) {
      drive.fail("wants fixed, removable, remote, cdrom or ramdisk, not " + inQuotes(word));
    }
    machine().drives().set(static_cast<wchar_t>(letter[0]), kind->type);
  });
}

void describeEnvironment(const Node& environment) {
  environment.forEachMember([](const std::string& name, const Node& variable) {
    if (name.empty()) {
      variable.fail("a variable has a name");
    }
    if (variable.isNull()) {
      machine().environment().remove(toWide(name));
    } else {
      machine().environment().set(toWide(name), toWide(variable.text()));
    }
  });
}

// A misspelt name would go unnoticed: what can't be found is missing anyway.
void describeMissing(const Node& missing) {
  missing.forEachElement([](const Node& node) {
    const std::string text = node.text();
    const std::size_t separator = text.find('!');
    const std::wstring module = toWide(text.substr(0, separator));
    const HMODULE handle = LoadLibraryW(module.c_str());
    if (handle == nullptr) {
      node.fail("this platform has no module of that name");
    }
    if (separator == std::string::npos) {
      machine().modules().remove(module);
    } else {
      const std::string entryPoint = text.substr(separator + 1);
      if (GetProcAddress(handle, entryPoint.c_str()) == nullptr) {
        node.fail("the module has no entry point of that name");
      }
      machine().modules().removeEntryPoint(module, entryPoint);
    }
    FreeLibrary(handle);
  });
}

void describePolicy(const Node& policy) {
  const std::optional<NTSTATUS> status = numberFromText<NTSTATUS>(policy.text());
  if (!status) {
    policy.fail("wants the number of a status, as \"0xC0000022\"");
  }
  machine().accounts().setPolicyStatus(*status);
}

void describeNetwork(const Node& network) {
  const std::string word = network.text();
  if (word != "alive" && word != "down") {
    network.fail("wants alive or down, not " + inQuotes(word));
  }
  machine().network().setAlive(word == "alive");
}

DescribedDomains describe(const Node& root) {
  root.allow({"computer", "domains", "network", "process", "session", "drives", "environment", "missing", "policy"});
  root.with("computer", [](const Node& computer) { machine().accounts().setComputerName(computer.name()); });
  DescribedDomains names;
  std::vector<std::wstring> unreachable;
  root.with("domains", [&](const Node& domains) {
    domains.forEachElement([&](const Node& domain) {
      describeDomain(domain);
      const std::wstring name = domain.required("name").name();
      if (!machine().accounts().isThisComputer(name)) {
        names.push_back(name);
      }
      domain.with("reachable", [&](const Node& reachable) {
        if (!reachable.flag()) {
          unreachable.push_back(name);
        }
      });
    });
  });
  root.with("process", [](const Node& process) {
    if (!machine().accounts().setProcessUser(process.name())) {
      process.fail("there is no such account");
    }
  });
  // Only now: who runs the program was known when it began.
  for (const std::wstring& domain : unreachable) {
    machine().accounts().setReachable(domain, false);
  }
  root.with("session", [](const Node& session) {
    const QualifiedName user = session.isNull() ? QualifiedName() : qualified(session);
    machine().sessions().setUser(user.domain, user.name);
  });
  root.with("network", describeNetwork);
  root.with("drives", describeDrives);
  root.with("environment", describeEnvironment);
  root.with("missing", describeMissing);
  root.with("policy", describePolicy);
  return names;
}

std::string contentOf(const std::string& file) {
  constexpr std::size_t kMostBytes = 1 << 20;
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  std::string bytes;
  for (char piece[4096]; stream && bytes.size() <= kMostBytes;) {
    stream.read(piece, sizeof piece);
    bytes.append(piece, static_cast<std::size_t>(stream.gcount()));
  }
  if (!stream.is_open() || stream.bad()) {
    throw std::runtime_error(std::string("can't be read: ") + std::strerror(errno != 0 ? errno : EIO));
  }
  if (bytes.size() > kMostBytes) {
    throw std::runtime_error("has more than a mebibyte");
  }
  return bytes;
}

// The parser would take the last of two members of one name, and any depth, which not all that works on it bears.
Json parsed(const std::string& text) {
  constexpr int kMostDepth = 16;
  std::vector<std::set<std::string>> names;
  return Json::parse(text, [&names](int depth, Json::parse_event_t event, const Json& value) {
    if (depth > kMostDepth) {
      throw std::runtime_error("is nested too deeply");
    }
    if (event == Json::parse_event_t::object_start) {
      names.emplace_back();
    } else if (event == Json::parse_event_t::object_end) {
      names.pop_back();
    } else if (event == Json::parse_event_t::key && !names.back().insert(value.get<std::string>()).second) {
      throw std::runtime_error("an object has two members " + inQuotes(value.get<std::string>()));
    }
    return true;
  });
}

}  // namespace

DescribedDomains describeMachine(const std::string& file) {
  try {
    const Json content = parsed(contentOf(file));
    return describe({content, {}});
  } catch (const Json::exception& error) {
    // Behind the parser's own "[json.exception.parse_error.101] ".
    const std::string_view words = error.what();
    const std::size_t begin = words.find("] ");
    throw std::runtime_error(
        shown(file + ": " + std::string(words.substr(begin == std::string_view::npos ? 0 : begin + 2))));
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(shown(file + ": ") + shown(error.what()));
  }
}
