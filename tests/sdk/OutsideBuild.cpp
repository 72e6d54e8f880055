#include "OutsideBuild.h"

#include <QDir>
#include <QProcess>

namespace {

constexpr int kDeadline = 300'000;

QString runCMake(const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(CMAKE_COMMAND), arguments);
    const bool ended = process.waitForFinished(kDeadline);
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return {};
    const QString said = ended ? QString::fromLocal8Bit(process.readAll()) : process.errorString();
    return QStringLiteral("cmake %1\n%2").arg(arguments.join(' '), said);
}

} // namespace

QString OutsideBuild::installSdk() const
{
    return runCMake({"--install", BUILD_DIR, "--component", "sdk", "--prefix", prefix()});
}

QString OutsideBuild::copyExample(const QString& name) const
{
    const QDir from(QStringLiteral(SOURCE_DIR "/examples/") + name);
    QDir().mkpath(source());
    const QStringList files = from.entryList(QDir::Files);
    for (const QString& file : files)
        if (!QFile::copy(from.filePath(file), source() + '/' + file))
            return from.filePath(file) + QStringLiteral(" cannot be copied");
    return files.isEmpty() ? from.path() + QStringLiteral(" holds nothing") : QString();
}

QString OutsideBuild::configure() const
{
    QString where = prefix();
    if (*CMAKE_PREFIX_PATH)
        where += QStringLiteral(";" CMAKE_PREFIX_PATH);
    return runCMake({"-S", source(), "-B", build(), "-G", CMAKE_GENERATOR, "-DCMAKE_MAKE_PROGRAM=" CMAKE_MAKE_PROGRAM,
                     "-DCMAKE_CXX_COMPILER=" CMAKE_CXX_COMPILER, "-DCMAKE_CXX_FLAGS=" EXAMPLE_FLAGS,
                     "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON", "-DCMAKE_PREFIX_PATH=" + where});
}

QString OutsideBuild::buildAndInstall() const
{
    const QString failed = runCMake({"--build", build(), "--parallel", "2"});
    return failed.isEmpty() ? runCMake({"--install", build(), "--prefix", prefix()}) : failed;
}
