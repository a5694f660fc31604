/// What the sections of the tour print with, and the list of them.
#ifndef HOSTKIT_TOUR_H
#define HOSTKIT_TOUR_H

#include <string>
#include <string_view>

#include <memoryscan/memoryscan.h>

#include "command.h"

/// A section's page: titles, and facts below them. With JSON each fact is an object that names its title.
class TourPage {
 public:
  explicit TourPage(Context& context) : context_(context) {}

  void title(std::string_view text);
  /// A fact that the section learned, and one that it could not learn, with the result that it got.
  void fact(std::string_view label, std::string_view value);
  void missing(std::string_view label, unsigned long code);
  /// The same with the result of a registry function.
  void refused(std::string_view label, int result);

  Context& context() { return context_; }

 private:
  Context& context_;
  std::string title_;
};

void tourTime(TourPage& page);
void tourRegistry(TourPage& page);
void tourAccounts(TourPage& page);
void tourToast(TourPage& page);
void tourInstaller(TourPage& page);
void tourSecret(TourPage& page);
void tourDialog(TourPage& page);

/// What a look through all memory of this program finds of a secret now, in words.
std::string copiesFound(const memoryscan::Secret& secret);

#endif
