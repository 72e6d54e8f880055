#pragma once

#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialPorts.h>
#include <valvecell/ISerialReopen.h>
#include <valvecell/ISerialSession.h>
#include <valvecell/ISerialStatus.h>
#include <valvecell/ISerialUrgent.h>

#include <QThread>

#include <memory>
#include <mutex>

class LineState;
class LineWorker;
struct LineSettings;

/// The module's object: hands everything over to the line's thread, which lives from open() to close().
class SerialPortTool : public ISerialPort,
                       public ISerialStatus,
                       public ISerialReopen,
                       public ISerialSession,
                       public ISerialPorts,
                       public ISerialUrgent
{
public:
    SerialPortTool();
    ~SerialPortTool() override;

    void setReceiveCallback(QObject* owner, ReceiveCallback callback) override;
    bool open(const QString& portName, const QString& baudRate) override;
    void close() override;
    bool reopen(const QString& portName, const QString& baudRate) override;
    void send(const SComFrame* frame) override;
    void send(const SComFrame& frame, quint64 session) override;
    quint64 session() const override;
    std::function<QVector<FoundPort>()> finder() const override;
    QString problemOf(const QString& name) const override;
    void sendUrgent(const SComFrame& frame, quint64 session) override { send(frame, session); }
    void* extension(const char* id) override;

    SerialStatus status() const override;

private:
    /// What a line of that name and baud rate is to do; without a name when there can be none.
    LineSettings settingsFor(const QString& portName, const QString& baudRate) const;
    void startThread(const LineSettings& settings);

    const std::shared_ptr<LineState> m_state;
    ReceiveCallback m_receive;
    QThread m_thread;
    mutable std::mutex m_mutex;     // protects m_worker where it changes, and where any thread reads it
    LineWorker* m_worker = nullptr; ///< lives in m_thread and is deleted as it ends; null while closed
};
