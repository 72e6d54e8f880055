#include "RunningCell.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

namespace {

const QString kBin = QStringLiteral(VALVECELL_BIN_DIR "/");

QJsonObject readObject(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

bool writeAll(const QString& path, const QByteArray& content, QIODevice::OpenMode mode)
{
    QFile file(path);
    return file.open(mode) && file.write(content) == content.size();
}

} // namespace

bool RunningCell::prepare()
{
    m_home = m_dir.path() + QStringLiteral("/家");
    m_program.setProcessChannelMode(QProcess::ForwardedChannels);
    return QDir().mkpath(m_home) && QProcess::execute(kBin + "wheelgen", {"--demo", m_home}) == 0 &&
           QFile::copy(m_home + "/user/globalConfig.json", m_dir.path() + "/globalConfig.json") &&
           QFile::copy(m_home + "/user/systemConfig.ini", m_dir.path() + "/systemConfig.ini");
}

QJsonObject RunningCell::stationConfig() const
{
    return readObject(m_dir.path() + "/globalConfig.json");
}

QJsonObject RunningCell::wheel(int station, int n) const
{
    const QJsonObject truth = readObject(QStringLiteral("%1/images/%2/truth.json").arg(m_home).arg(station));
    const QJsonArray wheels = truth.value("images").toArray();
    return wheels.at(n % wheels.size()).toObject();
}

bool RunningCell::start(const QJsonObject& stationChanges, const QByteArray& settings)
{
    QJsonObject config = stationConfig();
    for (auto it = stationChanges.begin(); it != stationChanges.end(); ++it)
        config.insert(it.key(), it.value());
    QFile::remove(m_home + "/user/systemConfig.ini");
    QFile::copy(m_dir.path() + "/systemConfig.ini", m_home + "/user/systemConfig.ini");
    if (!writeAll(m_home + "/user/globalConfig.json", QJsonDocument(config).toJson(), QIODevice::WriteOnly) ||
        !writeAll(m_home + "/user/systemConfig.ini", '\n' + settings, QIODevice::Append))
        return false;
    m_plc = std::make_unique<PlcEnd>(m_home + "/plc");
    if (!m_plc->plug())
        return false;
    m_program.start(kBin + "valvecell", {"--home", m_home});
    return QTest::qWaitFor([this] { return m_plc->heartbeats() > 0; }, deadlineMs);
}

bool RunningCell::settle()
{
    const int beats = m_plc->heartbeats();
    return QTest::qWaitFor([&] { return m_plc->heartbeats() > beats + 1; }, deadlineMs);
}

bool RunningCell::stop()
{
    if (m_program.state() == QProcess::NotRunning)
        return true;
    m_program.terminate();
    const bool ended = m_program.waitForFinished(deadlineMs);
    return ended && m_program.exitStatus() == QProcess::NormalExit && m_program.exitCode() == 0;
}

void RunningCell::kill()
{
    m_program.kill();
    m_program.waitForFinished(deadlineMs);
}
