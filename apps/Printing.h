#pragma once

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstring>

/// What a program prints without doing anything, and so without needing a screen.
namespace Printing {

/// Whether the command line asks for help or version; before there is an application.
inline bool isAsked(int argc, char** argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char* argument) {
        const std::initializer_list<const char*> printing{"-h", "-?", "--help", "--help-all", "-v", "--version"};
        return std::any_of(printing.begin(), printing.end(),
                           [argument](const char* option) { return std::strcmp(argument, option) == 0; });
    });
}

/// Prints name and version if that is asked for, for programs that read their arguments themselves; returns whether.
inline bool version(const char* program)
{
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (!arguments.contains(QStringLiteral("--version")) && !arguments.contains(QStringLiteral("-v")))
        return false;
    std::printf("%s " VALVECELL_VERSION "\n", program);
    return true;
}

} // namespace Printing
