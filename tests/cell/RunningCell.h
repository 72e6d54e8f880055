#pragma once

#include "support/PlcEnd.h"

#include <QtTest>

/// A demo home, the real program in it, and the PLC's end of its line. Each answers false, with a warning, when it did
/// not succeed within the deadline.
class RunningCell
{
public:
    static constexpr int deadlineMs = 60000; ///< far beyond any real time, so that a loaded machine fails no test

    /// Makes the demo home.
    bool prepare()
    {
        m_home = m_dir.path() + QStringLiteral("/家");
        m_program.setProcessChannelMode(QProcess::ForwardedChannels);
        return QDir().mkpath(m_home) && QProcess::execute(bin() + "wheelgen", {"--demo", m_home}) == 0 &&
               QFile::copy(m_home + "/user/globalConfig.json", m_dir.path() + "/globalConfig.json") &&
               QFile::copy(m_home + "/user/systemConfig.ini", m_dir.path() + "/systemConfig.ini");
    }

    /// Starts the program with some keys of its station set-up changed, and some lines added to its settings, and
    /// waits for its heartbeat.
    bool start(const QJsonObject& stationChanges = {}, const QByteArray& settings = {})
    {
        return launch(stationChanges, settings, true) && beats();
    }
    /// Starts the program before there is a line, with nobody at its window; waits for its databases.
    bool startUnplugged()
    {
        QDir(m_home + "/DBFiles").removeRecursively();
        return launch({}, {}, false) &&
               QTest::qWaitFor([this] { return QFile::exists(m_home + "/DBFiles/Pellix.db"); }, deadlineMs);
    }
    bool plugAndBeat() { return m_plc->plug() && beats(); }

    /// Asks the program to end, as a service manager does; true when it did so cleanly.
    bool stop()
    {
        if (m_program.state() == QProcess::NotRunning)
            return true;
        m_program.terminate();
        const bool ended = m_program.waitForFinished(deadlineMs);
        return ended && m_program.exitStatus() == QProcess::NormalExit && m_program.exitCode() == 0;
    }
    /// Waits until the program has beaten twice more: by then it has handled what was sent before.
    bool settle()
    {
        const int beats = m_plc->heartbeats;
        return QTest::qWaitFor([&] { return m_plc->heartbeats > beats + 1; }, deadlineMs);
    }

    PlcEnd& plc() { return *m_plc; }
    const QString& home() const { return m_home; }

    /// The station set-up as the demo home had it at first.
    QJsonObject stationConfig() const { return readObject(m_dir.path() + "/globalConfig.json"); }
    /// The wheel that a station's camera delivers at its n-th trigger.
    QJsonObject wheel(int station, int n = 0) const
    {
        const QJsonObject truth = readObject(QStringLiteral("%1/images/%2/truth.json").arg(m_home).arg(station));
        const QJsonArray wheels = truth.value("images").toArray();
        return wheels.at(n % wheels.size()).toObject();
    }
    int index(int station, int n = 0) const { return wheel(station, n).value("index").toInt(); }

private:
    bool beats()
    {
        return QTest::qWaitFor([this] { return m_plc->heartbeats > 0; }, deadlineMs);
    }
    bool launch(const QJsonObject& stationChanges, const QByteArray& settings, bool plugged)
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
        QFile::remove(m_plc->link);
        if (plugged && !m_plc->plug())
            return false;
        m_program.start(bin() + "valvecell", {"--home", m_home});
        return true;
    }
    static QString bin() { return QStringLiteral(VALVECELL_BIN_DIR "/"); }
    static QJsonObject readObject(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
    }
    static bool writeAll(const QString& path, const QByteArray& content, QIODevice::OpenMode mode)
    {
        QFile file(path);
        return file.open(mode) && file.write(content) == content.size();
    }

    QTemporaryDir m_dir;
    QString m_home;
    std::unique_ptr<PlcEnd> m_plc;
    QProcess m_program;
};

/// An angle or a coordinate as two words of a frame carry it.
inline double joined(const SComFrame& frame, int word)
{
    return frame.data[word] + frame.data[word + 1] / 1000.0;
}
