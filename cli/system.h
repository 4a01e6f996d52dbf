#pragma once

#include <string>
#include <string_view>
#include <vector>

// What the program needs of the system it runs on. There is one file for each.

namespace korvane::cli::system {

enum class Stream { Answer, Notes };

// Whether a person reads it.
bool isTerminal(Stream stream);
// All of it, as a console or a pipe wants it; false when it was not taken.
bool write(Stream stream, std::string_view utf8);

// A line of standard input without its end; false at the end of it, and after Ctrl-C.
bool readLine(std::string& utf8);
// All of it.
std::string readAll();

// The program's arguments without its name, UTF-8.
std::vector<std::string> arguments(int count, char** values);

// From now on Ctrl-C is only noticed; a second one ends the program.
void catchInterrupts();
bool interrupted();

// Whether a host, dotted, answers an echo. Where the system does not let us ask, it counts as one
// that does.
bool answersEcho(const std::string& host);

}  // namespace korvane::cli::system
