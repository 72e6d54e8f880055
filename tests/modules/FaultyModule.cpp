// A core control and an engine that break their contracts in as many ways as fit in a page.

#include <valvecell/Export.h>
#include <valvecell/ICoreCtrl.h>
#include <valvecell/IEngine.h>
#include <valvecell/ResultKeys.h>

#include <chrono>
#include <stdexcept>
#include <thread>

namespace {

void wait(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

class FaultyCore : public ICoreCtrl
{
public:
    QStringList cameraKeys() override { return {QStringLiteral("a"), QStringLiteral("a"), QString::number(++m_asked)}; }
    void setRequestCallback(RequestCallback) override { throw std::runtime_error("no requests here"); }
    void setImageCallback(ImageCallback callback) override { m_image = std::move(callback); }
    void setNotificationCallback(NotificationCallback) override {}
    void start() override {}
    void stop() override {}
    void trigger(const QStringList&) override
    {
        m_image(QStringLiteral("b"), QImage()); // crashes when there is no callback
        wait(300);
        std::thread([image = m_image] {
            wait(400);
            image(QStringLiteral("a"), QImage(1, 1, QImage::Format_RGB32));
        }).detach();
    }
    void* extension(const char*) override { return this; }

private:
    ImageCallback m_image;
    int m_asked = 0;
};

class FaultyEngine : public IEngine, public ITaskList
{
public:
    void initialise() override {}
    ITaskList* taskList() override { return ++m_asked % 2 ? this : nullptr; }
    QStringList list() override { throw 7; }
    void runTask(const QVariantMap& input, const QString& solution, const QString&, ResultCallback callback) override
    {
        if (input[QLatin1String(ResultKeys::originImage)].value<QImage>().isNull())
            return;
        const QVariantMap result{{QLatin1String(ResultKeys::algoResult), QVariantMap()}};
        callback(result);
        if (solution == QLatin1String("none"))
            std::thread([callback] {
                wait(300);
                callback({});
            }).detach();
    }

private:
    int m_asked = 0;
};

} // namespace

#ifdef FAKE_ksCoreCtrl
VALVECELL_MODULE_EXPORT void* Lib_CoreCtrl_Init(void*)
{
    return static_cast<ICoreCtrl*>(new FaultyCore);
}
#else
VALVECELL_MODULE_EXPORT void* Lib_Engine_Init(void*)
{
    return static_cast<IEngine*>(new FaultyEngine);
}
#endif

/// As the linker of another Qt leaves it in a file.
#ifdef FAKE_IS_OTHERQT
extern "C" Q_DECL_EXPORT const char needed[] = "libQt6Core.so.6";
#endif
