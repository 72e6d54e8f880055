#pragma once

#include "Ledger.h"
#include "common/Scheduler.h"
#include "modules/IModules.h"

#include <valvecell/ICameraCapture.h>
#include <valvecell/IEngine.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialSession.h>
#include <valvecell/ISerialStatus.h>

#include <list>

namespace Simulation {

/// What happens later in the devices; all of it is gone with them.
class Later
{
public:
    explicit Later(Scheduler& scheduler)
        : m_scheduler(scheduler)
    {
    }
    void at(qint64 ms, std::function<void()> what);

private:
    Scheduler& m_scheduler;
    std::list<std::unique_ptr<Scheduler::Timer>> m_timers;
};

/// Two cameras whose pictures bear their numbers, and go wrong as the parts' fates have it.
class Cameras : public ICoreCtrl, public ICameraCapture
{
public:
    Cameras(Ledger& ledger, Later& later, bool numbered);

    QStringList cameraKeys() override { return {QStringLiteral("cam1"), QStringLiteral("cam2")}; }
    void setRequestCallback(RequestCallback) override {}
    void setImageCallback(ImageCallback callback) override { m_image = std::move(callback); }
    void setNotificationCallback(NotificationCallback callback) override { m_notify = std::move(callback); }
    void setCaptureCallback(Callback callback) override { m_captured = std::move(callback); }
    void start() override {}
    void stop() override {}
    void trigger(const QStringList& keys) override;
    void capture(const QString& key, quint64 number) override;
    void* extension(const char* id) override;

    /// A picture that nobody asked for.
    void stray(const QString& key);

    static QImage pictureOf(int number);
    static int numberOf(const QImage& picture);

private:
    void play(Part& part, quint64 number);
    void deliver(const QString& key, quint64 number, int picture);
    void refuse(const QString& key, quint64 number, const QString& why);

    Ledger& m_ledger;
    Later& m_later;
    const bool m_numbered;
    bool m_isAskedByNumber = false;
    ImageCallback m_image;
    NotificationCallback m_notify;
    Callback m_captured;
};

/// Judges pictures by their numbers.
class Engine : public IEngine, public ITaskList
{
public:
    Engine(Ledger& ledger, Later& later)
        : m_ledger(ledger)
        , m_later(later)
    {
    }

    void initialise() override {}
    ITaskList* taskList() override { return this; }
    QStringList list() override { return {QStringLiteral("工位1"), QStringLiteral("工位2")}; }
    void runTask(const QVariantMap& input, const QString& solution, const QString& model,
                 ResultCallback callback) override;

private:
    void play(const Part& part, const QString& solution, const QString& model, const ResultCallback& callback);

    Ledger& m_ledger;
    Later& m_later;
};

/// A line whose sessions the ledger knows.
class Port : public ISerialPort, public ISerialSession, public ISerialStatus
{
public:
    explicit Port(Ledger& ledger)
        : m_ledger(ledger)
    {
    }

    void setReceiveCallback(QObject*, ReceiveCallback callback) override { m_receive = std::move(callback); }
    bool open(const QString&, const QString&) override { return true; }
    void close() override { m_receive = nullptr; }
    void send(const SComFrame* frame) override { send(*frame, m_ledger.line); }
    void send(const SComFrame& frame, quint64 session) override;
    quint64 session() const override { return m_ledger.line; }
    SerialStatus status() const override;
    void* extension(const char* id) override;

    void receive(const SComFrame& frame) const { m_receive(frame); }

private:
    Ledger& m_ledger;
    ReceiveCallback m_receive;
};

/// The modules of one start of the cell.
class Modules : public IModules
{
public:
    Modules(Ledger& ledger, Scheduler& scheduler, bool numbered)
        : m_ledger(ledger)
        , m_later(scheduler)
        , m_cameras(ledger, m_later, numbered)
        , m_engine(ledger, m_later)
    {
    }

    QString start(const CameraCallbacks& callbacks) override;
    void stop() override { m_cameras.stop(); }
    ISerialPort* createSerialPort() override { return m_port = new Port(m_ledger); }
    IUserCtrl* createUserCtrl() override { return nullptr; }
    ICoreCtrl* coreCtrl() const override { return &m_cameras; }
    IEngine* engine() const override { return &m_engine; }
    IDesigner* designer() const override { return nullptr; }
    QVector<ModuleInfo> report() const override { return {}; }

    Port& port() { return *m_port; }
    Cameras& cameras() { return m_cameras; }

private:
    Ledger& m_ledger;
    Later m_later;
    mutable Cameras m_cameras;
    mutable Engine m_engine;
    Port* m_port = nullptr; ///< the cell's
};

} // namespace Simulation
