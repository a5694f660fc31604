#include "arguments.h"

#include "text.h"

std::vector<std::string> argumentsForParser(const std::vector<std::string>& arguments) {
  std::vector<std::string> reversed;
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    std::string text = toUtf8(toWide(*argument));
    if (text.starts_with('[') && text.ends_with(']')) {
      text += '\0';
    }
    reversed.push_back(std::move(text));
  }
  return reversed;
}

CLI::Option* asWritten(CLI::Option* option) {
  option->transform([](std::string text) {
    if (text.ends_with('\0')) {
      text.pop_back();
    }
    return text;
  });
  return option->type_name("");
}
