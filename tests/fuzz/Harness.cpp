#include "Harness.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Targets = std::map<std::string, fuzz::Run>;

Targets& targets()
{
    static Targets all;
    return all;
}

void beQuiet(QtMsgType, const QMessageLogContext&, const QString&) {}

void start()
{
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
    qInstallMessageHandler(beQuiet);
}

/// The settings library trusts size and time of a file: each writing gets its own.
void writeNew(const char* path, const QByteArray& bytes)
{
    static timespec time{1'000'000'000, 0};
    const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    ++time.tv_sec;
    const timespec times[] = {time, time};
    const bool written = file >= 0 && ::write(file, bytes.constData(), size_t(bytes.size())) == bytes.size() &&
                         ::futimens(file, times) == 0;
    ::close(file);
    fuzz::require(written, "the harness can write its file");
}

} // namespace

namespace fuzz {

Target::Target(const char* name, Run run)
{
    targets()[name] = run;
}

void require(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::abort();
}

QString home()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        qputenv("VALVECELL_HOME", folder.path().toUtf8());
        QDir(folder.path()).mkpath(QStringLiteral("user"));
        return folder.path();
    }();
    return path;
}

QString homeFile(const char* below, const QByteArray& bytes)
{
    const QString path = home() + QString::fromUtf8(below);
    writeNew(path.toUtf8().constData(), bytes);
    return path;
}

bool isChosen(const QByteArray& bytes)
{
    return qHash(bytes) % 16 == 0;
}

void alsoRan(int times)
{
    static unsigned long long sum = 0;
    if (sum == 0)
        std::atexit([] { std::fprintf(stderr, "stat::number_of_executed_units: %llu\n", sum); });
    sum += static_cast<unsigned>(times) + 1;
}

} // namespace fuzz

#ifdef VALVECELL_LIBFUZZER

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t count)
{
    static const fuzz::Run run = (start(), targets().begin()->second);
    run(QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), int(count)));
    return 0;
}

#else

/// Replays every file below the folder of each target: replay FOLDER
int main(int argc, char** argv)
{
    start();
    const QString corpus = QString::fromLocal8Bit(argc > 1 ? argv[1] : ".");
    for (const auto& [name, run] : targets()) {
        const QDir folder(corpus + QLatin1Char('/') + QString::fromStdString(name));
        const QStringList files = folder.entryList(QDir::Files, QDir::Name);
        std::printf("%s: %d inputs\n", name.c_str(), files.size());
        fuzz::require(!files.isEmpty(), "each target has inputs");
        for (const QString& path : files) {
            QFile file(folder.filePath(path));
            fuzz::require(file.open(QIODevice::ReadOnly), "inputs can be read");
            std::printf("  %s\n", qUtf8Printable(path));
            std::fflush(stdout);
            run(file.readAll());
        }
    }
    return 0;
}

#endif
