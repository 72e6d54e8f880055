// Backs up, checks, restores and clones homes, for scripts and where there is no screen.

#include "Printing.h"
#include "home/HomeLock.h"
#include "home/Restore.h"

#include <valvecell/HomeFiles.h>

#include <QCommandLineParser>
#include <QJsonArray>
#include <QLocale>
#include <QTemporaryDir>
#include <QTranslator>

#include <cstdio>
#include <optional>

namespace {

enum ExitCode { Done = 0, Failed = 1, WrongUse = 2, InUse = 3 };

const char description[] =
    R"(Backs up, restores and clones the home of a cell. Commands:
  make FILE     copies the parts of the home into one file, also while its cell runs
  check FILE    reads a whole backup and compares each file with its checksum
  restore FILE  brings the parts of a backup into the home; what they replace is kept in "restore.old-..." below it
  clone DIR     sets up another home like this one: settings, models and calibrations, no records
Parts: settings, models, calibration, results, pictures; without --parts all. The licence is in no backup: it is bound
to its machine, and another needs its own.

JSON of --json: command, file, home, parts, files (their number), bytes, made, machine, program, kept (the folder with
what was replaced, or null); after a failure error and code.

Exit code: 0 done; 1 it failed, and nothing was changed; 2 wrong use; 3 a cell runs in that home.)";

struct Answer
{
    ExitCode code = Done;
    QString text;
    QJsonObject json;
};

Answer failed(const QString& text, ExitCode code = Failed)
{
    return {code, text, {{"error", text}, {"code", int(code)}}};
}

Answer done(const Backup::Outcome& outcome, const QString& text)
{
    const BackupManifest& manifest = outcome.manifest;
    return {Done,
            text,
            {{"parts", QJsonArray::fromStringList(HomeParts::names(manifest.parts))},
             {"files", manifest.files.size()},
             {"bytes", double(manifest.bytes())},
             {"made", manifest.made.toString(Qt::ISODate)},
             {"machine", manifest.machine},
             {"program", manifest.program}}};
}

QString figures(const Backup::Outcome& outcome)
{
    return QStringLiteral("%1: %2 files, %3 KiB")
        .arg(HomeParts::names(outcome.manifest.parts).join(QStringLiteral(", ")))
        .arg(outcome.manifest.files.size())
        .arg((outcome.manifest.bytes() + 1023) / 1024);
}

Answer make(const QString& home, HomeParts::Set parts, const QString& file)
{
    if (!QFileInfo(home).isDir())
        return failed(QStringLiteral("%1: no such directory").arg(home));
    const Backup::Outcome outcome = Backup::make(home, parts, file);
    return outcome.isGood() ? done(outcome, figures(outcome)) : failed(outcome.error);
}

Answer check(const QString& file)
{
    const Backup::Outcome outcome = Backup::check(file);
    return outcome.isGood() ? done(outcome, figures(outcome)) : failed(outcome.error);
}

Answer restore(const QString& home, HomeParts::Set parts, const QString& file)
{
    const Backup::Outcome known = Backup::look(file);
    if (!known.isGood())
        return failed(known.error);
    QDir().mkpath(home);
    HomeLock lock(home);
    if (!lock.take())
        return failed(QStringLiteral("%1: a cell runs in this home (process %2)").arg(home).arg(lock.owner().process),
                      InUse);
    const Backup::Outcome staged = Restore::stage(home, parts, file);
    if (!staged.isGood())
        return failed(staged.error);
    const Restore::Outcome outcome = Restore::finish(home);
    if (!outcome.error.isEmpty())
        return failed(outcome.error);
    const QString kept = outcome.kept.isEmpty() ? QString() : QStringLiteral("\nreplaced: ") + outcome.kept;
    Answer answer = done(staged, figures(staged) + kept +
                                     QStringLiteral("\nlicence: not part of a backup; another machine needs its own"));
    answer.json["kept"] = outcome.kept.isEmpty() ? QJsonValue() : QJsonValue(outcome.kept);
    return answer;
}

Answer clone(const QString& home, const QString& target)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("clone"));
    const auto setUp = HomeParts::Settings | HomeParts::Models | HomeParts::Calibration;
    const Answer made = make(home, setUp, file);
    if (made.code != Done)
        return made;
    Answer answer = restore(QFileInfo(target).absoluteFilePath(), setUp, file);
    if (answer.code == Done)
        answer.text +=
            QStringLiteral("\nbefore it starts: cameras, serial port and calibrations are still those of %1").arg(home);
    return answer;
}

/// Texts of the rooms below are Chinese unless the program's English is there and the user's language is another.
void translate(QTranslator& english)
{
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/language/English");
    if (QLocale::system().language() != QLocale::Chinese && english.load(QStringLiteral("home_en"), folder))
        QCoreApplication::installTranslator(&english);
}

Answer run(const QCommandLineParser& parser)
{
    const QStringList words = parser.positionalArguments();
    std::optional<HomeParts::Set> parts = HomeParts::Set(QFlag(HomeParts::everything));
    if (parser.isSet(QStringLiteral("parts")))
        parts = HomeParts::parse(parser.value(QStringLiteral("parts")).split(QLatin1Char(',')));
    if (!parts || !*parts)
        return failed(
            QStringLiteral("--parts: names from settings, models, calibration, results, pictures, with commas"),
            WrongUse);
    if (words.size() != 2)
        return failed(QStringLiteral("a command and a file are needed (see --help)"), WrongUse);
    const QString home = HomeFiles::home();
    if (words[0] == QLatin1String("make"))
        return make(home, *parts, words[1]);
    if (words[0] == QLatin1String("check"))
        return check(words[1]);
    if (words[0] == QLatin1String("restore"))
        return restore(home, *parts, words[1]);
    if (words[0] == QLatin1String("clone"))
        return clone(home, words[1]);
    return failed(QStringLiteral("there is no command \"%1\"").arg(words[0]), WrongUse);
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("valvecell-backup"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VALVECELL_VERSION));
    QCommandLineParser parser;
    parser.setApplicationDescription(QString::fromLatin1(description));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({{QStringLiteral("home"), QStringLiteral("The home."), QStringLiteral("DIR")},
                       {QStringLiteral("parts"), QStringLiteral("Only these parts."), QStringLiteral("A,B")},
                       {QStringLiteral("json"), QStringLiteral("Prints one JSON object instead.")}});
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("make, check, restore or clone"));
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("the backup, or the other home"));
    parser.process(app);
    if (parser.isSet(QStringLiteral("home")))
        qputenv("VALVECELL_HOME", parser.value(QStringLiteral("home")).toLocal8Bit());
    QTranslator english;
    translate(english);
    Answer answer = run(parser);
    if (parser.isSet(QStringLiteral("json"))) {
        answer.json["command"] = parser.positionalArguments().value(0);
        answer.json["file"] = parser.positionalArguments().value(1);
        answer.json["home"] = HomeFiles::home();
        std::printf("%s\n", QJsonDocument(answer.json).toJson(QJsonDocument::Compact).constData());
    } else {
        std::fprintf(answer.code == Done ? stdout : stderr, "%s%s\n",
                     answer.code == Done ? "" : "valvecell-backup: ", qUtf8Printable(answer.text));
    }
    return answer.code;
}
