#pragma once

#include "PlcEnd.h"

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

/// A demo home, the real program in it, and the PLC's end of its line. Each answers false, with a warning, when it did
/// not succeed within the deadline.
class RunningCell
{
public:
    static constexpr int deadlineMs = 60000; ///< far beyond any real time, so that a loaded machine fails no test

    /// Makes the demo home.
    bool prepare();

    /// Starts the program with some keys of its station set-up changed, and some lines added to its settings, and
    /// waits for its heartbeat.
    bool start(const QJsonObject& stationChanges = {}, const QByteArray& settings = {});

    /// Asks the program to end, as a service manager does; true when it did so cleanly.
    bool stop();
    void kill();

    /// Waits until the program has beaten twice more: by then it has handled what was sent before.
    bool settle();

    PlcEnd& plc() { return *m_plc; }
    const QString& home() const { return m_home; }

    /// The station set-up as the demo home had it at first.
    QJsonObject stationConfig() const;
    /// The wheel that a station's camera delivers at its n-th trigger.
    QJsonObject wheel(int station, int n = 0) const;
    int index(int station, int n = 0) const { return wheel(station, n).value("index").toInt(); }

private:
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
