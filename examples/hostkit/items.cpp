#include "items.h"

#include <vlhostkit/types.h>

#include <cstdio>

#include "text.h"

namespace {

constexpr std::size_t kLongestLine = 65536;

// Takes a line that ends in LF, CR LF or with the input, and keeps no more of it than the limit and a byte. False at
// the end of the input.
bool readLine(std::string* line) {
  line->clear();
  bool any = false;
  for (int byte = std::getc(stdin); byte != EOF; byte = std::getc(stdin)) {
    any = true;
    if (byte == '\n') {
      if (line->ends_with('\r')) {
        line->pop_back();
      }
      break;
    }
    if (line->size() <= kLongestLine) {
      line->push_back(static_cast<char>(byte));
    }
  }
  return any;
}

void forEachLine(Output& output, const std::function<void(const Item&)>& handle) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string line;
  for (std::size_t number = 1; readLine(&line); ++number) {
    if (number == 1 && line.starts_with(kByteOrderMark)) {
      line.erase(0, kByteOrderMark.size());
    }
    const Item item{"line", number, toUtf8(toWide(line))};
    if (line.size() > kLongestLine) {
      output.failure(item.place(), "the line is too long", ERROR_INVALID_PARAMETER,
                     Json::object({{item.origin, item.number}}));
    } else if (line.find('\0') != std::string::npos) {
      output.failure(item.place(), "the line has a NUL character", ERROR_INVALID_PARAMETER, item.object());
    } else {
      handle(item);
    }
  }
  if (std::ferror(stdin) != 0) {
    output.failure("hostkit", "standard input can't be read", ERROR_GEN_FAILURE, Json::object());
  }
}

}  // namespace

std::string Item::place() const {
  return std::string(origin) + " " + std::to_string(number) + ": " + inQuotes(text);
}

Json Item::object() const {
  return {{origin, number}, {"text", text}};
}

void forEachItem(const std::vector<std::string>& arguments, Output& output,
                 const std::function<void(const Item&)>& handle) {
  std::size_t number = 0;
  for (const std::string& argument : arguments) {
    ++number;
    if (argument == "-") {
      forEachLine(output, handle);
    } else {
      handle({"argument", number, argument});
    }
  }
}
