/// The program's arguments on their way through the parser.
#ifndef HOSTKIT_ARGUMENTS_H
#define HOSTKIT_ARGUMENTS_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

/// The arguments in well-formed UTF-8 and in the order in which the parser takes them, which is the reverse. The parser
/// would read "[a,b]" as a list; such an argument is marked with a NUL at its end, which no argument has of its own.
std::vector<std::string> argumentsForParser(const std::vector<std::string>& arguments);

/// Makes `option` take its texts as they were written: without the mark, and without a type in the help.
CLI::Option* asWritten(CLI::Option* option);

#endif
