#pragma once

#include <valvecell/Extension.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialSession.h>

#include <QFile>
#include <QLibrary>
#include <QTimer>
#include <QtTest>

#include <array>
#include <cmath>
#include <deque>
#include <memory>

/// What the program answers to one trigger.
struct ScriptedAnswer
{
    double angle = 0;
    double x = 0;
    double y = 0;
    bool silent = false;
    bool withoutNotice = false;
};

/// Stands in for the program: opens the line with the real serial module, sends heartbeats, and answers triggers as it
/// was told; an index of 98 is refused. Writes timing lines as the program does.
class FakeProgram : public QObject
{
public:
    explicit FakeProgram(const QString& port)
        : m_library(QStringLiteral(VALVECELL_BIN_DIR "/SerialPortTool"))
    {
        const auto create = reinterpret_cast<SerialPortCreateFunction>(m_library.resolve("SerialPortCreate"));
        QVERIFY2(create, qPrintable(m_library.errorString()));
        m_port.reset(create());
        m_sessions = extensionOf<ISerialSession>(m_port.get());
        m_port->setReceiveCallback(this, [this](const SComFrame& frame) {
            QMetaObject::invokeMethod(this, [this, frame, session = m_sessions->session()] {
                m_session = session;
                onFrame(frame);
            });
        });
        m_port->open(port, QStringLiteral("115200"));
        connect(&heartbeat, &QTimer::timeout, this, [this] {
            m_session = 0;
            send('C', {0, 0, 0, 0, 0, 0, 200, 80});
            if (m_held && m_sessions->session() != m_heldSince && m_sessions->session() != 0)
                std::exchange(m_held, nullptr)();
        });
        heartbeat.start(50);
    }

    std::deque<ScriptedAnswer> answers[2]; ///< of station 1 and 2; the last one goes on
    QStringList seen;                      ///< "C 1 3", "P 5" and so on
    QString roadFile;
    QTimer heartbeat;
    bool forgetful = false; ///< answers on the next connection

private:
    void send(char command, std::array<double, 8> words)
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        std::copy(words.begin(), words.end(), frame.data);
        m_sessions->send(frame, m_session ? m_session : m_sessions->session());
    }

    void onFrame(const SComFrame& frame)
    {
        seen << QStringLiteral("%1 %2").arg(QLatin1Char(static_cast<char>(frame.command))).arg(frame.data[0]);
        if (frame.command == 'C') {
            seen.last() += QStringLiteral(" %1").arg(frame.data[1]);
            m_index = {frame.data[0], frame.data[1]};
        } else if (frame.command == 'P') {
            answer(frame.data[0] - 4);
        }
    }

    static ScriptedAnswer nextAnswer(std::deque<ScriptedAnswer>& queue)
    {
        if (queue.empty())
            return {};
        const ScriptedAnswer answer = queue.front();
        if (queue.size() > 1)
            queue.pop_front();
        return answer;
    }

    void answer(int station)
    {
        const bool refused = m_index[station - 1] == 98;
        const ScriptedAnswer answer = refused ? ScriptedAnswer{999} : nextAnswer(answers[station - 1]);
        if (answer.silent)
            return;
        m_heldSince = m_session;
        if (forgetful)
            m_held = [this, station, answer, refused] { send(station, answer, refused); };
        else
            send(station, answer, refused);
    }

    void send(int station, const ScriptedAnswer& answer, bool refused)
    {
        const auto thousandths = [](double value) { return std::round((value - std::trunc(value)) * 1000); };
        send(station == 1 ? 'F' : 'G', {0, 0, answer.angle, thousandths(answer.angle), answer.x, thousandths(answer.x),
                                        answer.y, thousandths(answer.y)});
        if (answer.angle >= 360 && !answer.withoutNotice)
            send('H', {station + 5.0, 50});
        if (!roadFile.isEmpty() && !refused)
            writeTiming(station);
    }

    void writeTiming(int station)
    {
        ++m_timings;
        QFile file(roadFile);
        QVERIFY(file.open(QIODevice::Append));
        file.write(QStringLiteral("valvecell.road: station=%1 engine_ms=0.%2 capture_ms=0.000 total_ms=0.100 "
                                  "rss_kib=%3\nnoise\n")
                       .arg(station)
                       .arg(m_timings, 3, 10, QLatin1Char('0'))
                       .arg(1000 + m_timings)
                       .toUtf8());
    }

    QLibrary m_library;
    std::unique_ptr<ISerialPort> m_port;
    ISerialSession* m_sessions = nullptr;
    std::function<void()> m_held; ///< an answer
    quint64 m_heldSince = 0;
    quint64 m_session = 0; ///< that is answered; 0 for the present one
    std::array<int, 2> m_index{};
    int m_timings = 0;
};
