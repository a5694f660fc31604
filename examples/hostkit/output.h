/// The program's two streams and its verdict. Results go to standard output and failures to standard error; with JSON
/// both go to standard output, one object a line.
#ifndef HOSTKIT_OUTPUT_H
#define HOSTKIT_OUTPUT_H

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

using Json = nlohmann::ordered_json;

/// Standard output takes nothing more. `what` is empty if its reader has left, which is nothing to complain about.
class OutputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Output {
 public:
  bool json = false;

  /// Prints a result in the form that was asked for.
  void result(std::string_view readable, const Json& object);

  /// Prints what went wrong: readable as "PLACE: WORDS (CODE)", as JSON `object` with "error" and "code" added.
  void failure(std::string_view place, std::string_view words, long long code, Json object);

  /// Prints a line on standard output, or on standard error behind all that was printed before. A standard error that
  /// takes nothing is passed over, unless its reader has left.
  void print(std::string_view line);
  void note(std::string_view line);

  /// Whether a failure was printed.
  bool failed() const { return failed_; }

  /// Makes sure that standard output has taken everything. Throws OutputError, as every print does.
  void flush();

 private:
  void check(bool succeeded);
  void printObject(const Json& object);

  bool failed_ = false;
  int errorCode_ = 0;  // what standard output failed with
};

#endif
