#pragma once

#include <valvecell/SComFrame.h>

#include <QByteArray>
#include <QString>
#include <QVector>

/// One command of a script.
struct ScriptCommand
{
    enum Kind { Send, Raw, Garbage, Wait, None, Pull, Sleep, Repeat };

    Kind kind = Sleep;
    int line = 0;    ///< in the script, counts from 1
    SComFrame frame; ///< to be sent; only the command byte for Wait and None
    QByteArray bytes;
    int number = 0; ///< milliseconds, bytes or rounds; rounds 0 for endless
};

/// Reads the commands that a person or a script gives the simulated PLC.
namespace PlcScript {

/// Appends the command that `text` holds; an empty line or one that begins with '#' holds none. False with the reason
/// when it is not understood.
bool parseLine(const QString& text, int line, QVector<ScriptCommand>* commands, QString* error);

/// Reads a whole script; the error names the line.
bool parse(const QString& script, QVector<ScriptCommand>* commands, QString* error);

} // namespace PlcScript
