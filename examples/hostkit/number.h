/// Numbers as they are written on the command line.
#ifndef HOSTKIT_NUMBER_H
#define HOSTKIT_NUMBER_H

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>
#include <type_traits>

/// A decimal number, or "0x" and hex digits, which are taken as the bits of `Number`.
template <class Number>
std::optional<Number> numberFromText(std::string_view text) {
  const auto parsed = [](std::string_view digits, int base, auto value) -> std::optional<Number> {
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
    return error == std::errc() && stop == end ? std::optional(static_cast<Number>(value)) : std::nullopt;
  };
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  return hex ? parsed(text.substr(2), 16, std::make_unsigned_t<Number>{}) : parsed(text, 10, Number{});
}

#endif
