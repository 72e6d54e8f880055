#include "CellProcess.h"

#include <QFile>

#include <csignal>
#include <sys/resource.h>

namespace {

qint64 kibibytes(const QByteArray& status, const QByteArray& key)
{
    const int from = status.indexOf('\n' + key + ':');
    return from < 0 ? 0 : status.mid(from + key.size() + 2).simplified().split(' ').first().toLongLong();
}

} // namespace

ProcessMemory ProcessMemory::of(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(pid));
    const QByteArray status = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return {kibibytes(status, "VmRSS"), kibibytes(status, "VmHWM")};
}

CellProcess::CellProcess(const QString& program, QString home)
    : m_home(std::move(home))
{
    setProgram(program);
    setArguments({QStringLiteral("--home"), m_home});
    setStandardErrorFile(m_home + QStringLiteral("/run.log"), QIODevice::Append);
    setStandardOutputFile(QProcess::nullDevice());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("valvecell.loop.debug=true"));
    environment.insert(QStringLiteral("QT_LOGGING_TO_CONSOLE"), QStringLiteral("1"));
    setProcessEnvironment(environment);
}

CellProcess::~CellProcess()
{
    disconnect();
    kill();
    waitForFinished();
}

void CellProcess::begin()
{
    m_since.start();
    start();
}

/// A write beyond the limit is to fail as on a full disk, not to end the process.
void CellProcess::setupChildProcess()
{
    std::signal(SIGXFSZ, SIG_IGN);
}

bool CellProcess::limitFiles(qint64 bytes)
{
#ifdef Q_OS_LINUX
    rlimit limit{};
    const auto pid = static_cast<pid_t>(processId());
    if (!isRunning() || prlimit(pid, RLIMIT_FSIZE, nullptr, &limit) != 0)
        return false;
    limit.rlim_cur = bytes < 0 ? limit.rlim_max : static_cast<rlim_t>(bytes);
    return prlimit(pid, RLIMIT_FSIZE, &limit, nullptr) == 0;
#else
    return bytes < 0;
#endif
}
