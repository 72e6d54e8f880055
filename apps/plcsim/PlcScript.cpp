#include "PlcScript.h"

#include "PlcFrames.h"

#include <QHash>
#include <QStringList>

#include <climits>

namespace {

/// Bytes in one command.
constexpr int maxGarbage = 1'000'000;

bool numberFrom(const QString& text, int least, int most, int* number)
{
    bool good = false;
    *number = text.toInt(&good);
    return good && *number >= least && *number <= most;
}

/// A word may be written with or without sign: 65535 and -1 are the same on the line.
bool wordsFrom(const QStringList& texts, SComFrame* frame)
{
    for (int i = 0; i < texts.size(); ++i) {
        int word = 0;
        if (i >= 8 || !numberFrom(texts[i], -32768, 65535, &word))
            return false;
        frame->data[i] = static_cast<qint16>(word);
    }
    return true;
}

using Arguments = const QStringList&;

bool models(Arguments arguments, ScriptCommand* command)
{
    command->frame.command = PlcFrames::modelIndex;
    return wordsFrom(arguments, &command->frame);
}

/// A person counts stations; the frame carries 5 and 6.
bool trigger(Arguments arguments, ScriptCommand* command)
{
    int station = 0;
    const bool good = numberFrom(arguments[0], 1, 2, &station);
    command->frame = PlcFrames::triggerOf(station);
    return good;
}

bool shutdown(Arguments, ScriptCommand* command)
{
    command->frame.command = PlcFrames::shutdown;
    return true;
}

bool anyFrame(Arguments arguments, ScriptCommand* command)
{
    return PlcFrames::commandFrom(arguments[0], &command->frame.command) &&
           wordsFrom(arguments.mid(1), &command->frame);
}

bool expectation(Arguments arguments, ScriptCommand* command)
{
    return PlcFrames::commandFrom(arguments[0], &command->frame.command) &&
           numberFrom(arguments[1], 0, INT_MAX, &command->number);
}

bool bytes(Arguments arguments, ScriptCommand* command)
{
    const QByteArray hex = arguments.join(QString()).toLatin1();
    command->bytes = QByteArray::fromHex(hex);
    return command->bytes.toHex() == hex.toLower();
}

bool milliseconds(Arguments arguments, ScriptCommand* command)
{
    return numberFrom(arguments[0], 0, INT_MAX, &command->number);
}

bool garbage(Arguments arguments, ScriptCommand* command)
{
    return numberFrom(arguments[0], 1, maxGarbage, &command->number);
}

bool rounds(Arguments arguments, ScriptCommand* command)
{
    return arguments.isEmpty() || numberFrom(arguments[0], 1, INT_MAX, &command->number);
}

struct Form
{
    ScriptCommand::Kind kind;
    int least, most; ///< arguments
    bool (*read)(Arguments, ScriptCommand*);
    const char* usage;
};

const QHash<QString, Form>& forms()
{
    static const QHash<QString, Form> table{
        {"C", {ScriptCommand::Send, 2, 2, models, "C INDEX1 INDEX2"}},
        {"P", {ScriptCommand::Send, 1, 1, trigger, "P 1 or P 2"}},
        {"shutdown", {ScriptCommand::Send, 0, 0, shutdown, "shutdown"}},
        {"send", {ScriptCommand::Send, 1, 9, anyFrame, "send COMMAND [up to eight words]"}},
        {"raw", {ScriptCommand::Raw, 1, INT_MAX, bytes, "raw HEX"}},
        {"garbage", {ScriptCommand::Garbage, 1, 1, garbage, "garbage BYTES"}},
        {"wait", {ScriptCommand::Wait, 2, 2, expectation, "wait COMMAND MILLISECONDS"}},
        {"none", {ScriptCommand::None, 2, 2, expectation, "none COMMAND MILLISECONDS"}},
        {"pull", {ScriptCommand::Pull, 1, 1, milliseconds, "pull MILLISECONDS"}},
        {"sleep", {ScriptCommand::Sleep, 1, 1, milliseconds, "sleep MILLISECONDS"}},
        {"repeat", {ScriptCommand::Repeat, 0, 1, rounds, "repeat [ROUNDS]"}},
    };
    return table;
}

} // namespace

bool PlcScript::parseLine(const QString& text, int line, QVector<ScriptCommand>* commands, QString* error)
{
    const QString clean = text.section(QLatin1Char('#'), 0, 0).simplified();
    if (clean.isEmpty())
        return true;
    QStringList arguments = clean.split(QLatin1Char(' '));
    const QString name = arguments.takeFirst();
    const auto form = forms().constFind(name);
    if (form == forms().cend()) {
        *error = QStringLiteral("line %1: unknown command \"%2\"").arg(line).arg(name);
        return false;
    }
    ScriptCommand command;
    command.kind = form->kind;
    command.line = line;
    const bool counted = arguments.size() >= form->least && arguments.size() <= form->most;
    if (!counted || !form->read(arguments, &command)) {
        *error = QStringLiteral("line %1: \"%2\" should be: %3").arg(line).arg(clean, QLatin1String(form->usage));
        return false;
    }
    if (command.kind == ScriptCommand::Repeat && commands->isEmpty()) {
        *error = QStringLiteral("line %1: nothing to repeat").arg(line);
        return false;
    }
    commands->append(command);
    return true;
}

bool PlcScript::parse(const QString& script, QVector<ScriptCommand>* commands, QString* error)
{
    const QStringList lines = script.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i)
        if (!parseLine(lines[i], i + 1, commands, error))
            return false;
    return true;
}
