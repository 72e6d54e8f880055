// The real program in production, with what goes wrong in a plant: see --help.

#include "Console.h"
#include "SoakSession.h"

#include <valvecell/HomeFiles.h>

#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <QTime>

#include <csignal>

namespace {

enum ExitCode { Good = 0, NotGood = 1, CannotBegin = 2 };

volatile std::sig_atomic_t endRequested = 0;

int cannotBegin(const QString& error)
{
    std::fprintf(stderr, "soak: %s\n", qUtf8Printable(error));
    return CannotBegin;
}

/// A demo home in which every trigger counts and every picture is kept.
bool prepareHome(const SoakOptions& options, const QString& home, QString* error)
{
    QProcess maker;
    maker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    maker.start(options.programs + QStringLiteral("/wheelgen"),
                QStringList{QStringLiteral("--demo"), home} +
                    (options.networkCameras ? QStringList{QStringLiteral("--network-cameras")} : QStringList()));
    if (!maker.waitForFinished(-1) || maker.exitCode() != 0) {
        *error = QStringLiteral("%1: no home could be made there").arg(home);
        return false;
    }
    const QString config = home + QStringLiteral("/user/globalConfig.json");
    QJsonObject object = HomeFiles::readJson(config).object;
    object[QStringLiteral("trigerFilter")] = 0;
    QSettings settings(home + QStringLiteral("/user/systemConfig.ini"), QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    for (const char* key : {"SrcImgSave_st1", "RltImgSave_st1", "RltImgSave_st2"})
        settings.setValue(QStringLiteral("Image/") + QLatin1String(key), options.pictures);
    settings.sync();
    QFile::remove(home + QStringLiteral("/run.log"));
    return HomeFiles::writeJson(config, object, error);
}

int run(SoakSession& session, const SoakOptions& options)
{
    QString error;
    QObject::connect(&session, &SoakSession::finished, &QCoreApplication::quit);
    QObject::connect(&session, &SoakSession::happened, [](const QString& text) {
        Console::say(QTime::currentTime().toString(QStringLiteral("hh:mm:ss ")) + text);
    });
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { endRequested = 1; });
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &session, [&session] {
        if (endRequested)
            session.stop();
    });
    poll.start(200);
    if (!session.start(&error))
        return cannotBegin(error);
    QCoreApplication::exec();
    const QStringList text = session.report().text();
    for (const QString& line : text)
        Console::say(line);
    if (!options.json.isEmpty() &&
        !HomeFiles::writeFile(options.json, QJsonDocument(session.report().json()).toJson(), &error))
        return cannotBegin(error);
    return session.report().isGood() ? Good : NotGood;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.contains(QStringLiteral("--help"))) {
        Console::say(SoakOptions::help());
        return Good;
    }
    SoakOptions options;
    QString error;
    if (!options.parse(arguments, &error))
        return cannotBegin(error);
    const QTemporaryDir temporary;
    const QString home = options.home.isEmpty() ? temporary.filePath(QStringLiteral("home")) : options.home;
    if (!QDir().mkpath(home))
        return cannotBegin(home + QStringLiteral(": cannot be made"));
    if (QDir(home).exists(QStringLiteral("DBFiles")))
        return cannotBegin(home + QStringLiteral(": holds records already, which would be taken for this soak's"));
    const QString absolute = QDir(home).absolutePath();
    if (!prepareHome(options, absolute, &error))
        return cannotBegin(error);
    SoakSession session(options, absolute);
    return run(session, options);
}
