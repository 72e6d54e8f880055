#pragma once

#include <QStringList>

/// The commands of the issuing tool: keygen, identity, issue, verify, and help.
enum ExitCode {
    Good = 0,
    Failed = 1, ///< a file cannot be read or written, or a key is none
    BadArguments = 2,
    Refused = 3 ///< verify: the licence does not count
};

struct Outcome
{
    ExitCode code = Good;
    QString text; ///< for the standard output when `code` is Good or Refused, else for the standard error
};

/// Runs one command; the program's name is not among the arguments.
Outcome runCommand(const QStringList& arguments);
