#include "modules/GuardedModules.h"

#include <valvecell/Extension.h>
#include <valvecell/ICameraSettings.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IEngine.h>
#include <valvecell/IImageWatch.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialReopen.h>
#include <valvecell/ISerialSession.h>

namespace guarding { // named: a class of the header derives from what is in it

/// What all guards have: the module's object, and its optional interfaces, of which a guard may stand for some.
template <typename Interface>
class Guard : public Interface
{
protected:
    /// `extensionName`: of that call, for the watch.
    Guard(Interface* module, CallWatch& watch, const char* extensionName)
        : m_module(module)
        , m_watch(watch)
        , m_extensionName(extensionName)
    {
    }

    /// The module's own interface.
    void* own(const char* id)
    {
        return m_watch.run(m_extensionName, [&] { return m_module->extension(id); });
    }
    template <typename Optional>
    Optional* own()
    {
        return static_cast<Optional*>(own(Optional::id));
    }
    template <typename Optional>
    static bool isAsked(const char* id)
    {
        return qstrcmp(id, Optional::id) == 0;
    }

    Interface* const m_module;
    CallWatch& m_watch;
    const char* const m_extensionName;
};

} // namespace guarding

class GuardedModules::CoreCtrl : public guarding::Guard<ICoreCtrl>, public ICameraCapture, public ICameraSettings
{
public:
    CoreCtrl(ICoreCtrl* module, CallWatch& watch)
        : Guard(module, watch, "ksCoreCtrl: extension()")
        , m_captures(own<ICameraCapture>())
        , m_settings(own<ICameraSettings>())
    {
    }

    QStringList cameraKeys() override
    {
        return m_watch.run("ksCoreCtrl: cameraKeys()", [&] { return m_module->cameraKeys(); });
    }
    void setRequestCallback(RequestCallback callback) override
    {
        m_watch.run("ksCoreCtrl: setRequestCallback()", [&] { m_module->setRequestCallback(std::move(callback)); });
    }
    void setImageCallback(ImageCallback callback) override
    {
        m_watch.run("ksCoreCtrl: setImageCallback()", [&] { m_module->setImageCallback(std::move(callback)); });
    }
    void setNotificationCallback(NotificationCallback callback) override
    {
        m_watch.run("ksCoreCtrl: setNotificationCallback()",
                    [&] { m_module->setNotificationCallback(std::move(callback)); });
    }
    void start() override
    {
        m_watch.run(
            "ksCoreCtrl: start()", [&] { m_module->start(); }, CallWatch::Takes);
    }
    void stop() override
    {
        m_watch.run(
            "ksCoreCtrl: stop()", [&] { m_module->stop(); }, CallWatch::Takes);
    }
    void trigger(const QStringList& keys) override
    {
        m_watch.run("ksCoreCtrl: trigger()", [&] { m_module->trigger(keys); });
    }
    void* extension(const char* id) override
    {
        if (m_captures && isAsked<ICameraCapture>(id))
            return static_cast<ICameraCapture*>(this);
        if (m_settings && isAsked<ICameraSettings>(id))
            return static_cast<ICameraSettings*>(this);
        return own(id);
    }

    void setCaptureCallback(Callback callback) override
    {
        m_watch.run("ksCoreCtrl: setCaptureCallback()", [&] { m_captures->setCaptureCallback(std::move(callback)); });
    }
    void capture(const QString& key, quint64 number) override
    {
        m_watch.run("ksCoreCtrl: capture()", [&] { m_captures->capture(key, number); });
    }

    CameraStatus status(const QString& key) override
    {
        return m_watch.run("ksCoreCtrl: status()", [&] { return m_settings->status(key); });
    }
    QVariantMap settings(const QString& key) override
    {
        return m_watch.run("ksCoreCtrl: settings()", [&] { return m_settings->settings(key); });
    }
    bool applySettings(const QString& key, const QVariantMap& settings, QString* error) override
    {
        return m_watch.run("ksCoreCtrl: applySettings()",
                           [&] { return m_settings->applySettings(key, settings, error); });
    }

private:
    ICameraCapture* const m_captures;
    ICameraSettings* const m_settings;
};

class GuardedModules::Engine : public guarding::Guard<IEngine>, public ITaskList
{
public:
    Engine(IEngine* module, CallWatch& watch)
        : Guard(module, watch, "ksbengine: extension()")
    {
    }

    void initialise() override
    {
        m_watch.run(
            "ksbengine: initialise()", [&] { m_module->initialise(); }, CallWatch::Takes);
    }
    ITaskList* taskList() override { return this; }
    QStringList list() override
    {
        return m_watch.run("ksbengine: taskList()", [&] {
            ITaskList* const tasks = m_module->taskList();
            return tasks ? tasks->list() : QStringList();
        });
    }
    void runTask(const QVariantMap& input, const QString& solution, const QString& model,
                 ResultCallback callback) override
    {
        m_watch.run("ksbengine: runTask()", [&] { m_module->runTask(input, solution, model, std::move(callback)); });
    }
    void* extension(const char* id) override { return own(id); }
};

class GuardedModules::Designer : public guarding::Guard<IDesigner>, public IImageWatch
{
public:
    Designer(IDesigner* module, CallWatch& watch)
        : Guard(module, watch, "ksdesigner: extension()")
        , m_images(own<IImageWatch>())
    {
    }

    void attachEngine(IEngine* engine) override
    {
        m_watch.run(
            "ksdesigner: attachEngine()", [&] { m_module->attachEngine(engine); }, CallWatch::Takes);
    }
    void openDesigner(QWidget* parent) override
    {
        m_watch.run(
            "ksdesigner: openDesigner()", [&] { m_module->openDesigner(parent); }, CallWatch::Takes);
    }
    void* extension(const char* id) override
    {
        return m_images && isAsked<IImageWatch>(id) ? static_cast<IImageWatch*>(this) : own(id);
    }
    void imageCaptured(const QString& key, const QImage& image) override
    {
        m_watch.run("ksdesigner: imageCaptured()", [&] { m_images->imageCaptured(key, image); });
    }

private:
    IImageWatch* const m_images;
};

/// Owns the module's port.
class GuardedModules::Port : public guarding::Guard<ISerialPort>, public ISerialSession, public ISerialReopen
{
public:
    Port(ISerialPort* module, CallWatch& watch)
        : Guard(module, watch, "SerialPortTool: extension()")
        , m_port(module)
        , m_sessions(own<ISerialSession>())
        , m_reopens(own<ISerialReopen>())
    {
    }

    void setReceiveCallback(QObject* owner, ReceiveCallback callback) override
    {
        m_watch.run("SerialPortTool: setReceiveCallback()",
                    [&] { m_module->setReceiveCallback(owner, std::move(callback)); });
    }
    bool open(const QString& name, const QString& baudRate) override
    {
        return m_watch.run(
            "SerialPortTool: open()", [&] { return m_module->open(name, baudRate); }, CallWatch::Takes);
    }
    void close() override
    {
        m_watch.run(
            "SerialPortTool: close()", [&] { m_module->close(); }, CallWatch::Takes);
    }
    void send(const SComFrame* frame) override
    {
        m_watch.run("SerialPortTool: send()", [&] { m_module->send(frame); });
    }
    void* extension(const char* id) override
    {
        if (m_sessions && isAsked<ISerialSession>(id))
            return static_cast<ISerialSession*>(this);
        if (m_reopens && isAsked<ISerialReopen>(id))
            return static_cast<ISerialReopen*>(this);
        return own(id);
    }

    /// On any thread, so not watched.
    quint64 session() const override { return m_sessions->session(); }
    void send(const SComFrame& frame, quint64 session) override
    {
        m_watch.run("SerialPortTool: send()", [&] { m_sessions->send(frame, session); });
    }
    bool reopen(const QString& name, const QString& baudRate) override
    {
        return m_watch.run("SerialPortTool: reopen()", [&] { return m_reopens->reopen(name, baudRate); });
    }

private:
    const std::unique_ptr<ISerialPort> m_port;
    ISerialSession* const m_sessions;
    ISerialReopen* const m_reopens;
};

GuardedModules::GuardedModules(std::unique_ptr<IModules> modules, CallWatch& watch)
    : m_modules(std::move(modules))
    , m_watch(watch)
{
}

GuardedModules::~GuardedModules() = default;

QString GuardedModules::start(const CameraCallbacks& cameras)
{
    QString fatal = m_modules->start(cameras);
    if (!m_coreCtrl && m_modules->coreCtrl())
        m_coreCtrl = std::make_unique<CoreCtrl>(m_modules->coreCtrl(), m_watch);
    if (!m_engine && m_modules->engine())
        m_engine = std::make_unique<Engine>(m_modules->engine(), m_watch);
    if (!m_designer && m_modules->designer())
        m_designer = std::make_unique<Designer>(m_modules->designer(), m_watch);
    return fatal;
}

void GuardedModules::stop()
{
    m_coreCtrl.reset();
    m_designer.reset();
    m_engine.reset();
    m_modules->stop();
}

ISerialPort* GuardedModules::createSerialPort()
{
    ISerialPort* const port = m_modules->createSerialPort();
    return port ? new Port(port, m_watch) : nullptr;
}

ICoreCtrl* GuardedModules::coreCtrl() const
{
    return m_coreCtrl.get();
}

IEngine* GuardedModules::engine() const
{
    return m_engine.get();
}

IDesigner* GuardedModules::designer() const
{
    return m_designer.get();
}
