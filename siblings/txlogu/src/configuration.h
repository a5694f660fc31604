/// What TXLOG asks for, and the delivery of lines to where it says.
#ifndef TXLOGU_CONFIGURATION_H
#define TXLOGU_CONFIGURATION_H

#include <cstddef>

#include "line.h"
#include "system.h"

namespace txlogu {

class Configuration {
 public:
  /// Reads TXLOG, once. Complaints go to standard error through `line`.
  void read(Line& line) noexcept;
  bool isRead() const noexcept { return read_; }

  /// The levels that some destination takes; none before read.
  unsigned levels() const noexcept { return levels_; }
  /// Whether records of this tag are asked for.
  bool takesTag(const wchar_t* tag) const noexcept;

  /// Brings the line to all destinations. `line` is used for complaints afterwards.
  void deliver(Line& line) noexcept;
  /// Gives the file back; a later deliver opens it again.
  void closeFile() noexcept { file_.close(); }

 private:
  static constexpr std::size_t kMostTags = 16;
  static constexpr std::size_t kMostCharacters = 4095;

  void readItem(system::View item, Line& line) noexcept;
  void readLevel(system::View name, Line& line) noexcept;
  void readTag(system::View name, Line& line) noexcept;

  bool read_ = false;
  bool levelsAsked_ = false;
  unsigned levels_ = 0;
  bool toStandardError_ = false;
  bool toDebugger_ = false;
  bool fileFailed_ = false;
  system::File file_;
  system::View tags_[kMostTags];
  bool tagsAsked_ = false;
  std::size_t tagCount_ = 0;
  // Paths and tags point in here.
  system::Char text_[kMostCharacters + 1]{};
};

}  // namespace txlogu

#endif
