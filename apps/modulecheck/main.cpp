// Loads a module as the program does and holds it to its contract, for those who write one.

#include "Checks.h"
#include "Printing.h"

#include <valvecell/HomeFiles.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

enum ExitCode { Good = 0, Faulty = 1, WrongUse = 2 };

constexpr int deadlineMs = 60000;

const char description[] =
    R"(Loads a module as the program does, calls it in every way that its header allows, and reports what breaks the
contract: throwing, waiting where it has to return at once, null, callbacks on the wrong thread, too often or too late,
pictures that change after their delivery, what the process keeps of a deleted instance, crashing, hanging. So it does
with the optional interfaces that the module offers. Each part runs in a process of its own. Give it a copy of the home:
a faulty module may store what it has to refuse.

JSON of --json: file, good, faults and notes (each an array of {"check", "text"}).

Exit code: 0 no fault; 1 faults; 2 wrong use.)";

struct Findings
{
    QJsonArray faults;
    QJsonArray notes;

    void addFault(const QString& check, const QString& text) { add(faults, check, text); }
    /// Each check loads the module anew, and would say the same of it again.
    void addNote(const QString& check, const QString& text)
    {
        if (std::none_of(notes.begin(), notes.end(), [&](const QJsonValue& note) { return note["text"] == text; }))
            add(notes, check, text);
    }

private:
    static void add(QJsonArray& list, const QString& check, const QString& text)
    {
        const QJsonObject entry{{"check", check}, {"text", text}};
        if (!list.contains(entry))
            list.append(entry);
    }
};

/// Runs one check in a process of its own, and reads what it says, line by line.
int runChild(const QString& file, const QString& check, Findings* findings)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--run"), check, file});
    const bool ended = child.waitForFinished(deadlineMs);
    if (!ended) {
        child.kill();
        child.waitForFinished();
    }
    QString step = QStringLiteral("loading");
    const QStringList lines = QString::fromUtf8(child.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QString text = line.section(QLatin1Char(' '), 1);
        if (line.startsWith(QLatin1String("step ")))
            step = text;
        else if (line.startsWith(QLatin1String("fault ")))
            findings->addFault(check, text);
        else if (line.startsWith(QLatin1String("note ")))
            findings->addNote(check, text);
    }
    if (!ended)
        findings->addFault(check, QStringLiteral("hangs in %1").arg(step));
    else if (child.exitStatus() != QProcess::NormalExit)
        findings->addFault(check, QStringLiteral("crashes in %1").arg(step));
    return ended && child.exitStatus() == QProcess::NormalExit ? child.exitCode() : 0;
}

/// In the child: the kind of the module as exit code for the first, the others by name.
int runCheck(const QString& name, const QString& file)
{
    Subject subject(file);
    const QVector<Check> checks = Checks::of(subject.kind());
    for (const Check& check : checks) {
        if (name == QLatin1String(check.name))
            check.run(subject);
    }
    std::fflush(stdout);
    std::_Exit(int(subject.kind())); // what the module left running ends with the process
}

void print(const QString& file, const Findings& findings)
{
    for (const auto& [word, list] : {std::pair("FAULT", findings.faults), std::pair("note", findings.notes)}) {
        for (const QJsonValue& entry : list)
            std::printf("%-6s %s: %s\n", word, qUtf8Printable(entry["check"].toString()),
                        qUtf8Printable(entry["text"].toString()));
    }
    std::printf("%s: %s\n", qUtf8Printable(file),
                findings.faults.isEmpty() ? "good"
                                          : qUtf8Printable(QStringLiteral("%1 faults").arg(findings.faults.size())));
}

int checkModule(const QString& file, bool json)
{
    Findings findings;
    const auto kind = Subject::Kind(runChild(file, QStringLiteral("loading"), &findings));
    const QVector<Check> checks = Checks::of(kind);
    for (const Check& check : checks)
        runChild(file, QString::fromLatin1(check.name), &findings);
    const bool good = findings.faults.isEmpty();
    if (json)
        std::printf(
            "%s\n",
            QJsonDocument({{"file", file}, {"good", good}, {"faults", findings.faults}, {"notes", findings.notes}})
                .toJson(QJsonDocument::Compact)
                .constData());
    else
        print(file, findings);
    return good ? Good : Faulty;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("modulecheck"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VALVECELL_VERSION));
    qputenv("QT_QPA_PLATFORM", "offscreen"); // nothing is to be seen
    const QApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(description));
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption run(QStringLiteral("run"), QString(), QStringLiteral("CHECK"));
    run.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions(
        {{QStringLiteral("home"), QStringLiteral("A home with the module's configuration; else an empty one."),
          QStringLiteral("DIR")},
         {QStringLiteral("json"), QStringLiteral("Prints one JSON object instead.")},
         run});
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The module's library."));
    parser.process(app);
    const QTemporaryDir empty;
    if (parser.isSet(QStringLiteral("home")))
        qputenv("VALVECELL_HOME", parser.value(QStringLiteral("home")).toLocal8Bit());
    else if (!parser.isSet(run))
        qputenv("VALVECELL_HOME", empty.path().toLocal8Bit());
    HomeFiles::fixHome();
    const QString file = QFileInfo(parser.positionalArguments().value(0)).absoluteFilePath();
    if (parser.positionalArguments().size() != 1 || !QFileInfo(file).isFile()) {
        std::fprintf(stderr, "modulecheck: %s\n",
                     parser.positionalArguments().size() == 1 ? qUtf8Printable(file + ": no such file")
                                                              : "one file is needed (see --help)");
        return WrongUse;
    }
    if (parser.isSet(run))
        return runCheck(parser.value(run), file);
    return checkModule(file, parser.isSet(QStringLiteral("json")));
}
