#include "Console.h"

#include <cstdio>

void Console::say(const QString& line)
{
    std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

void Console::complain(const QString& line)
{
    std::fprintf(stderr, "plcsim: %s\n", qUtf8Printable(line));
}
