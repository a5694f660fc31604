#include <memory>
#include <string>

#include "accountcalls.h"
#include "arguments.h"
#include "command.h"
#include "results.h"
#include "text.h"

namespace {

void showDrives(Context& context) {
  const DriveList list = fixedDrives();
  for (const std::string& drive : list.drives) {
    context.output.result(drive + " fixed", {{"drive", drive}, {"type", "fixed"}});
  }
  // The walk ends with this number; without a drive before it, it is an answer like others that fail.
  if (list.result != ERROR_INVALID_DRIVE || list.drives.empty()) {
    context.output.failure("fixed drives", resultInWords(list.result), list.result, Json::object());
  }
  const TextAnswer system = systemDrive();
  if (system.result != ERROR_SUCCESS) {
    context.output.failure("system drive", resultInWords(system.result), system.result, Json::object());
    return;
  }
  context.output.result(shown(system.text) + " holds the system", {{"systemDrive", system.text}});
}

void showSid(Context& context, const std::string& text) {
  const bool isSid = text.starts_with("S-1-") || text.starts_with("s-1-");
  const TextAnswer answer = text.empty() ? sidOfProcess() : isSid ? sidRewritten(text) : sidOfName(text);
  const char* const member = text.empty() ? "which" : isSid ? "text" : "name";
  Json object{{member, text.empty() ? "process" : text}};
  if (answer.result != ERROR_SUCCESS) {
    context.output.failure(text.empty() ? "this program's SID" : inQuotes(text), resultInWords(answer.result),
                           answer.result, std::move(object));
    return;
  }
  object["sid"] = answer.text;
  context.output.result((text.empty() ? std::string() : shown(text) + " -> ") + answer.text, object);
}

}  // namespace

void registerSysFacts(CLI::App& app, Context& context) {
  app.add_subcommand("drives", "List the fixed drives, and the drive that holds the system")->callback([&context] {
    context.command = [&context] { showDrives(context); };
  });

  CLI::App* const sid = app.add_subcommand("sid", "Print SIDs as text");
  const auto text = std::make_shared<std::string>();
  asWritten(sid->add_option("WHAT", *text,
                            "A SID's text (S-1-...) to read and write again, or the name of an account; "
                            "without it the SID of this program's account"));
  sid->callback([&context, text] { context.command = [&context, text] { showSid(context, *text); }; });
}
