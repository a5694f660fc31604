#include "tour.h"

#include <algorithm>

#include "results.h"

namespace {

// One section a family, in the order of the page.
constexpr void (*kSections[])(TourPage&) = {tourTime,      tourRegistry, tourAccounts, tourToast,
                                            tourInstaller, tourSecret,   tourDialog};

constexpr std::size_t kLabelWidth = 34;

std::string padded(std::string_view label) {
  // Counted in code points, which is near enough to columns for what the labels are.
  const auto columns = static_cast<std::size_t>(
      std::count_if(label.begin(), label.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
  return "  " + std::string(label) + std::string(columns < kLabelWidth ? kLabelWidth - columns : 1, ' ');
}

}  // namespace

void TourPage::title(std::string_view text) {
  if (!context_.output.json) {
    if (!title_.empty()) {
      context_.output.print("");
    }
    context_.output.print(text);
  }
  title_ = text;
}

void TourPage::fact(std::string_view label, std::string_view value) {
  context_.output.result(padded(label) + std::string(value), {{"title", title_}, {"fact", label}, {"value", value}});
}

void TourPage::missing(std::string_view label, unsigned long code) {
  context_.output.failure(label, resultInWords(static_cast<DWORD>(code)), static_cast<long long>(code),
                          {{"title", title_}, {"fact", label}});
}

void TourPage::refused(std::string_view label, int result) {
  context_.output.failure(label, registryResultInWords(result), result, {{"title", title_}, {"fact", label}});
}

void registerTour(CLI::App& app, Context& context) {
  CLI::App* const tour = app.add_subcommand("tour", "Show what the library does, on this machine's own data");
  tour->callback([&context] {
    context.command = [&context] {
      TourPage page(context);
      for (const auto section : kSections) {
        section(page);
      }
    };
  });
}
