#include "modules/ModuleSet.h"

#include "modules/DllModules.h"
#include "platform/AppHome.h"

#include <valvecell/Extension.h>
#include <valvecell/IDesigner.h>
#include <valvecell/IEngine.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/IUserCtrl.h>

namespace {

/// Calls a factory of a library that then stays loaded for the life of the process.
template <typename Object, typename Factory>
Object* createFrom(const QString& base, const char* symbol, QVector<ModuleInfo>* report)
{
    QLibrary library(platform::moduleLoadName(base));
    const QString other = loadModule(library) ? interfaceProblem(library) : QString();
    const auto factory = other.isEmpty() ? reinterpret_cast<Factory>(library.resolve(symbol)) : nullptr;
    if (!other.isEmpty())
        qWarning("module %s: %s: %s", qUtf8Printable(base), qUtf8Printable(library.fileName()), qUtf8Printable(other));
    else if (!factory)
        qDebug("module %s: %s", qUtf8Printable(base), qUtf8Printable(library.errorString()));
    Object* made = nullptr;
    if (factory)
        callModule(base, [&] { made = factory(); });
    report->append(withObject(describeModule(base, library, symbol), made != nullptr));
    return made;
}

} // namespace

ModuleSet::ModuleSet(QStringList searchDirs)
    : m_searchDirs(std::move(searchDirs))
{
}

ModuleSet::~ModuleSet()
{
    stop();
}

QString ModuleSet::start(const CameraCallbacks& cameras)
{
    QString fatal = startCoreCtrl(cameras);
    if (fatal.isEmpty())
        fatal = startEngine();
    if (fatal.isEmpty())
        fatal = startDesigner();
    return fatal;
}

/// Nothing is asked by the first callback, but a module may count on having it.
QString ModuleSet::startCoreCtrl(const CameraCallbacks& callbacks)
{
    if (m_coreCtrl)
        return {};
    m_coreCtrl = std::make_unique<CDllCoreCtrl>(m_searchDirs);
    ICoreCtrl* core = m_coreCtrl->instance();
    QStringList cameras;
    const bool kept = core && callModule(QStringLiteral("ksCoreCtrl"), [&] {
                          core->setRequestCallback([](const QString&, const QVariant&) { return QVariant(); });
                          core->setNotificationCallback(callbacks.notification);
                          core->setImageCallback(callbacks.image);
                          if (auto* captures = extensionOf<ICameraCapture>(core))
                              captures->setCaptureCallback(callbacks.capture);
                          cameras = core->cameraKeys();
                      });
    if (!kept)
        return QStringLiteral("Corectrl模块加载失败,请检查!");
    return cameras.isEmpty() ? QStringLiteral("camera.json文件出错,请检查!") : QString();
}

QString ModuleSet::startEngine()
{
    if (!m_engine)
        m_engine = std::make_unique<CDllEngine>(m_searchDirs);
    return m_engine->instance() ? QString() : QStringLiteral("ksbengine模块加载失败,请检查!");
}

QString ModuleSet::startDesigner()
{
    if (m_designer)
        return {};
    m_designer = std::make_unique<CDllDesigner>(m_searchDirs);
    IDesigner* designer = m_designer->instance();
    const bool attached =
        designer && engine() && callModule(QStringLiteral("ksdesigner"), [&] { designer->attachEngine(engine()); });
    return attached ? QString() : QStringLiteral("ksdesigner模块加载失败,请检查!");
}

ISerialPort* ModuleSet::createSerialPort()
{
    return createFrom<ISerialPort, SerialPortCreateFunction>(QStringLiteral("SerialPortTool"), "SerialPortCreate",
                                                             &m_optional);
}

IUserCtrl* ModuleSet::createUserCtrl()
{
    return createFrom<IUserCtrl, UserCtrlCreateFunction>(QStringLiteral("QUserInfo"), "UserCtrlCreate", &m_optional);
}

QVector<ModuleInfo> ModuleSet::report() const
{
    QVector<ModuleInfo> all;
    const auto add = [&all](const auto& module) {
        if (module)
            all.append(withObject(module->loader().info(), module->instance() != nullptr));
    };
    add(m_coreCtrl);
    add(m_engine);
    add(m_designer);
    return all + m_optional;
}

void ModuleSet::stop()
{
    m_coreCtrl.reset();
    m_designer.reset();
    m_engine.reset();
}

ICoreCtrl* ModuleSet::coreCtrl() const
{
    return m_coreCtrl ? m_coreCtrl->instance() : nullptr;
}

IEngine* ModuleSet::engine() const
{
    return m_engine ? m_engine->instance() : nullptr;
}

IDesigner* ModuleSet::designer() const
{
    return m_designer ? m_designer->instance() : nullptr;
}
