#include <memory>
#include <string>

#include "accountcalls.h"
#include "arguments.h"
#include "command.h"
#include "results.h"
#include "text.h"

namespace {

constexpr const char* kConvertNotes =
    R"(ID is user@suffix, which may ask the network and the caches, DOMAIN\user, or a user
name alone, whose domain is then that of --domain.)";

constexpr const char* kSidNotes =
    R"(The local security authority is asked first, and its answer is stored in the cache if
the key is there; without an answer the stored one counts.)";

// A name and its domain, as the arguments give them.
struct Request {
  std::string name;
  std::string domain;

  std::string place() const { return inQuotes(domain.empty() ? name : domain + '\\' + name); }
  Json object(const char* member) const {
    Json object{{member, name}};
    if (!domain.empty()) {
      object["domain"] = domain;
    }
    return object;
  }
};

void convert(Context& context, const Request& request) {
  const AccountAnswer answer = convertUserId(request.name, request.domain);
  Json object{{"id", request.name}};
  if (answer.result != ERROR_SUCCESS) {
    context.output.failure(inQuotes(request.name), resultInWords(answer.result), answer.result, std::move(object));
    return;
  }
  object["user"] = answer.user;
  object["domain"] = answer.domain;
  context.output.result(shown(request.name) + " -> " + shown(answer.name()), object);
}

void showAccount(Context& context, const char* which, const AccountAnswer& answer) {
  if (answer.result != ERROR_SUCCESS) {
    context.output.failure(std::string(which) + " user", resultInWords(answer.result), answer.result,
                           Json::object({{"which", which}}));
    return;
  }
  context.output.result(answer.name().empty() ? "nobody is logged on" : shown(answer.name()),
                        {{"which", which}, {"user", answer.user}, {"domain", answer.domain}});
}

// For the commands that answer a name and a domain with one text.
void showText(Context& context, const Request& request, const char* member, const TextAnswer& answer) {
  Json object = request.object("name");
  if (answer.result != ERROR_SUCCESS) {
    context.output.failure(request.place(), resultInWords(answer.result), answer.result, std::move(object));
    return;
  }
  object[member] = answer.text;
  context.output.result(
      shown(request.domain.empty() ? request.name : request.domain + '\\' + request.name) + " -> " + shown(answer.text),
      object);
}

using Run = void (*)(Context&, const Request&);

CLI::App* addNamed(CLI::App* group, Context& context, const char* command, const char* description,
                   const char* argument, Run run) {
  CLI::App* const app = group->add_subcommand(command, description);
  const auto request = std::make_shared<Request>();
  asWritten(app->add_option(argument, request->name, "The user"))->required();
  asWritten(app->add_option("--domain", request->domain, "The domain"))->type_name("DOMAIN");
  app->callback([&context, request, run] { context.command = [&context, request, run] { run(context, *request); }; });
  return app;
}

void addPlain(CLI::App* group, Context& context, const char* which, const char* description, AccountAnswer (*ask)()) {
  group->add_subcommand(which, description)->callback([&context, which, ask] {
    context.command = [&context, which, ask] { showAccount(context, which, ask()); };
  });
}

}  // namespace

void registerUser(CLI::App& app, Context& context) {
  CLI::App* const user = app.add_subcommand("user", "User names, their domains and SIDs");
  user->require_subcommand(1);
  addNamed(user, context, "convert", "Turn a user id into a user and a domain", "ID", convert)->footer(kConvertNotes);
  addPlain(user, context, "current", "The user of the session that the program runs in", sessionUser);
  addPlain(user, context, "process", "The account that the program runs as", processUser);
  addNamed(user, context, "sid", "An account's SID, from the authority or the cache", "NAME",
           [](Context& to, const Request& request) {
             showText(to, request, "sid", lookUpSid(request.name, request.domain));
           })
      ->footer(kSidNotes);
  addNamed(user, context, "initial-name", "The name that an account had before it was renamed", "NAME",
           [](Context& to, const Request& request) {
             showText(to, request, "initialName", initialName(request.name, request.domain));
           });
}
