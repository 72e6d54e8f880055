#pragma once

#include <QString>

#include <cstdio>

/// Lines for the person or program that started this one; each is out when the call returns.
namespace Console {

/// To the standard output.
inline void say(const QString& line)
{
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

/// To the standard error, with the program's name.
inline void complain(const QString& line)
{
    std::fprintf(stderr, "plcsim: %s\n", qUtf8Printable(line));
}

} // namespace Console
