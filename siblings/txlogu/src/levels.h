/// The levels by name, as lines show them and TXLOG names them.
#ifndef TXLOGU_LEVELS_H
#define TXLOGU_LEVELS_H

#include <string_view>

#include <txlogu/txlogu.h>

namespace txlogu {

struct LevelName {
  int level;
  std::string_view name;
};

inline constexpr LevelName kLevelNames[] = {
    {TXLOG_NOTE, "note"}, {TXLOG_ERROR, "error"}, {TXLOG_TRACE, "trace"}, {TXLOG_ENTRY, "entry"}, {TXLOG_EXIT, "exit"}};

}  // namespace txlogu

#endif
