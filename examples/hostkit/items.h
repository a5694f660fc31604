/// The texts that a command works on: its arguments, and the lines of standard input where an argument is "-".
#ifndef HOSTKIT_ITEMS_H
#define HOSTKIT_ITEMS_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "output.h"

struct Item {
  const char* origin;  ///< "argument" or "line"
  std::size_t number;  ///< counted from 1
  std::string text;    ///< UTF-8, without the line's end, and with no NUL in it

  /// "line 2: 'nonsense'", and the same as an object to add results to.
  std::string place() const;
  Json object() const;
};

/// Calls `handle` for each item. Lines that no text can be are reported as failures and passed over: those with a NUL
/// and those longer than 65536 bytes.
void forEachItem(const std::vector<std::string>& arguments, Output& output,
                 const std::function<void(const Item&)>& handle);

#endif
