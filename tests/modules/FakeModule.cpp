// One module that is as wrong as its build says. Each writes what is asked of it into the test's protocol.

#include <valvecell/Export.h>
#include <valvecell/ICoreCtrl.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IEngine.h>

#include <QCoreApplication>

#include <stdexcept>

void functionOfNobody(const QStringList& keys);

namespace {

void note(const char* what)
{
    const QVariant soFar = QCoreApplication::instance()->property("protocol");
    QCoreApplication::instance()->setProperty("protocol", soFar.toStringList() << QLatin1String(what));
}

void start(const char* what)
{
    note(what);
#ifdef FAKE_IS_STARTTHROWS
    throw std::runtime_error("no licence dongle");
#endif
}

#if defined(FAKE_ksCoreCtrl)
#define INIT Lib_CoreCtrl_Init
class Fake : public ICoreCtrl
{
public:
    ~Fake() override { note("core deleted"); }
    QStringList cameraKeys() override
    {
#ifdef FAKE_IS_NOCAMERA
        return {};
#endif
        return {QStringLiteral("cam")};
    }
    void setRequestCallback(RequestCallback callback) override
    {
        note(callback({}, {}).isValid() ? "request answered" : "request");
    }
    void setImageCallback(ImageCallback) override
    {
        note("image");
    }
    void setNotificationCallback(NotificationCallback callback) override
    {
        note("notification");
        callback({}, {});
    }
    void start() override
    {
        ::start("core started");
    }
    void stop() override
    {
        note("core stopped");
    }
#ifdef FAKE_IS_UNDEFINED
    void trigger(const QStringList& keys) override
    {
        functionOfNobody(keys);
    }
#else
    void trigger(const QStringList&) override {}
#endif
};
#elif defined(FAKE_ksbengine)
#define INIT Lib_Engine_Init
class Fake : public IEngine, public ITaskList
{
public:
    virtual ~Fake() { note("engine deleted"); }
    void initialise() override { start("engine initialised"); }
    ITaskList* taskList() override { return this; }
    QStringList list() override { return {}; }
    void runTask(const QVariantMap&, const QString&, const QString&, ResultCallback) override {}
};
#else
#define INIT Lib_Designer_Init
class Fake : public IDesigner
{
public:
    ~Fake() override { note("designer deleted"); }
    void attachEngine(IEngine*) override { start("engine attached"); }
    void openDesigner(QWidget*) override {}
};
#endif

} // namespace

#ifdef FAKE_IS_GOOD
VALVECELL_MODULE_VERSION("1.2 测试")
#endif

#ifdef FAKE_IS_OTHERINTERFACE
VALVECELL_MODULE_EXPORT const char* Lib_InterfaceVersion()
{
    return "2.1";
}
#endif

#ifdef FAKE_IS_VERSIONTHROWS
VALVECELL_MODULE_EXPORT const char* Lib_Version()
{
    throw std::runtime_error("no version");
}
#endif

#ifndef FAKE_IS_NOSYMBOL
VALVECELL_MODULE_EXPORT void* INIT([[maybe_unused]] void* reserved)
{
#if defined(FAKE_IS_THROWS)
    throw std::runtime_error("no licence dongle");
#elif defined(FAKE_IS_NULL)
    return reserved;
#else
    if (reserved)
        return nullptr;
#if defined(FAKE_ksCoreCtrl)
    return static_cast<ICoreCtrl*>(new Fake);
#elif defined(FAKE_ksbengine)
    return static_cast<IEngine*>(new Fake);
#else
    return static_cast<IDesigner*>(new Fake);
#endif
#endif
}
#endif
