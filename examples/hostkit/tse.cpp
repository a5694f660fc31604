#include <vlhostkit/installer.h>

#include <string>

#include "command.h"
#include "tour.h"

namespace {

struct Answer {
  int number;
  const char* words;
};

Answer ask() {
  const int number = IsTerminalServicesEnabled();
  return {number, number == 1 ? "yes" : number == 0 ? "no" : "undetermined"};
}

void show(Context& context) {
  const Answer answer = ask();
  context.output.result("Terminal Services: " + std::string(answer.words) + " (" + std::to_string(answer.number) + ")",
                        {{"terminalServices", answer.words}, {"answer", answer.number}});
}

}  // namespace

void registerTse(CLI::App& app, Context& context) {
  CLI::App* const tse = app.add_subcommand("tse", "Say whether the machine offers Terminal Services");
  tse->footer("An installer learns the same from the action DetectTSE: 1 yes, 0 no, -1 undetermined.");
  tse->callback([&context] { context.command = [&context] { show(context); }; });
}

void tourInstaller(TourPage& page) {
  const Answer answer = ask();
  page.title("Installer: what its actions would find");
  page.fact("Terminal Services", std::string(answer.words) + " (" + std::to_string(answer.number) + ")");
}
