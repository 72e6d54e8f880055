#include "Subject.h"

#include "modules/ModuleReport.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <cstdio>
#include <mutex>

namespace {

struct Known
{
    Subject::Kind kind;
    const char* symbol;
    const char* name;
    bool takesArgument;
};

constexpr Known knownKinds[] = {{Subject::CoreCtrl, "Lib_CoreCtrl_Init", "ksCoreCtrl", true},
                                {Subject::Engine, "Lib_Engine_Init", "ksbengine", true},
                                {Subject::Designer, "Lib_Designer_Init", "ksdesigner", true},
                                {Subject::SerialPort, "SerialPortCreate", "SerialPortTool", false},
                                {Subject::UserCtrl, "UserCtrlCreate", "QUserInfo", false}};

void print(const char* word, const QString& text)
{
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    std::printf("%s %s\n", word, qUtf8Printable(text.simplified()));
    std::fflush(stdout);
}

} // namespace

Subject::Subject(const QString& file)
    : m_file(file)
    , m_library(file)
{
    step("loading");
    const QString other = qtProblem(file);
    if (!other.isEmpty() || !loadModule(m_library)) {
        fault(other.isEmpty() ? m_library.errorString() : other);
        return;
    }
    for (const Known& known : knownKinds) {
        if (!m_library.resolve(known.symbol))
            continue;
        m_kind = known.kind;
        m_symbol = known.symbol;
        const QString name = QFileInfo(file).completeBaseName();
        if (name != QLatin1String(known.name))
            note(QStringLiteral("the program looks for the file name %1, not %2").arg(QLatin1String(known.name), name));
    }
    const QString interface = m_kind == None ? QString() : interfaceProblem(m_library);
    if (m_kind == None)
        fault(QStringLiteral("no function of a module in it, such as Lib_CoreCtrl_Init"));
    if (!interface.isEmpty()) {
        fault(interface);
        m_kind = None;
    }
    if (m_kind != None && !m_library.resolve("Lib_InterfaceVersion"))
        note(QStringLiteral("it names no interface version: VALVECELL_MODULE_VERSION(\"1.0\") does"));
}

void* Subject::create()
{
    const QFunctionPointer function = m_library.resolve(m_symbol);
    if (m_kind == SerialPort || m_kind == UserCtrl)
        return reinterpret_cast<void* (*)()>(function)();
    return reinterpret_cast<void* (*)(void*)>(function)(nullptr);
}

void Subject::fault(const QString& sentence) const
{
    print("fault", sentence);
}

void Subject::note(const QString& sentence) const
{
    print("note", sentence);
}

void Subject::step(const char* name) const
{
    print("step", QString::fromLatin1(name));
}

bool Subject::waitFor(const std::function<bool()>& condition, int ms)
{
    const qint64 end = GrantedClock::ms() + ms;
    while (!condition() && GrantedClock::ms() < end) {
        if (QThread::currentThread() == QCoreApplication::instance()->thread())
            QCoreApplication::processEvents();
        QThread::msleep(2);
    }
    return condition();
}
