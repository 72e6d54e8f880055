// A core control and an engine that break their contracts in as many ways as fit in a page.

#include <valvecell/Export.h>
#include <valvecell/ICameraCapture.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICameraSettings.h>
#include <valvecell/IConcurrentCalls.h>
#include <valvecell/ICoreCtrl.h>
#include <valvecell/IEngine.h>
#include <valvecell/ResultKeys.h>

#include <QDir>
#include <QLocale>

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace {

void wait(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

bool asked(const char* id, const char* interface)
{
    return qstrcmp(id, interface) == 0;
}

class FaultyCore : public ICoreCtrl,
                   public ICameraCapture,
                   public ICameraPreview,
                   public ICameraSettings,
                   public IConcurrentCalls
{
public:
    QStringList cameraKeys() override { return {QStringLiteral("a"), QStringLiteral("a"), QString::number(++s_asked)}; }
    void setRequestCallback(RequestCallback) override { throw std::runtime_error("no requests here"); }
    void setImageCallback(ImageCallback callback) override { m_image = std::move(callback); }
    void setNotificationCallback(NotificationCallback) override {}
    void start() override
    {
        QDir::setCurrent(QDir::rootPath());
        QLocale::setDefault(QLocale(QStringLiteral("ar_EG")));
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        std::thread([] { wait(600000); }).detach();
    }
    void stop() override {}
    void trigger(const QStringList&) override
    {
        if (std::this_thread::get_id() != m_home)
            return;
        m_image(QStringLiteral("b"), QImage()); // crashes when there is no callback
        wait(300);
        std::thread([image = m_image] {
            wait(400);
            image(QStringLiteral("a"), QImage(s_pixels, 2, 1, QImage::Format_Grayscale8));
            ++s_pixels[0];
        }).detach();
    }
    void setCaptureCallback(ICameraCapture::Callback callback) override { m_capture = std::move(callback); }
    void capture(const QString& key, quint64 number) override
    {
        if (key == QLatin1String("a")) {
            m_capture({QStringLiteral("b"), number, QImage(1, 1, QImage::Format_RGB32), {}});
            m_capture({key, number, {}, {}});
            m_capture({key, quint64(int(number)), {}, key});
            m_image(key, QImage(1, 1, QImage::Format_RGB32));
        } else if (number % 8 > 3) {
            m_capture({key, number, QImage(1, 1, QImage::Format_RGB32), {}});
        }
    }
    bool preview(const QString& key, ICameraPreview::Callback callback) override
    {
        callback({}, {});
        callback(QImage(1, 1, QImage::Format_RGB32), key);
        m_image(QStringLiteral("a"), QImage(1, 1, QImage::Format_RGB32));
        return true;
    }
    CameraStatus status(const QString&) override { return {CameraType::Gige, CameraState::Running, {}, {}, {}}; }
    QVariantMap settings(const QString&) override { return m_settings; }
    bool applySettings(const QString& key, const QVariantMap& settings, QString*) override
    {
        if (key == QLatin1String("a"))
            m_settings = settings;
        return settings.contains(QStringLiteral("exposure_ms"));
    }
    void* extension(const char* id) override
    {
        return asked(id, ICameraCapture::id)    ? static_cast<ICameraCapture*>(this)
               : asked(id, ICameraPreview::id)  ? static_cast<ICameraPreview*>(this)
               : asked(id, ICameraSettings::id) ? static_cast<ICameraSettings*>(this)
                                                : static_cast<void*>(static_cast<IConcurrentCalls*>(this));
    }

private:
    static inline int s_asked = 0;
    static inline uchar s_pixels[4];
    const std::thread::id m_home = std::this_thread::get_id();
    ImageCallback m_image;
    ICameraCapture::Callback m_capture;
    QVariantMap m_settings{{QStringLiteral("exposure_ms"), 5.0}, {QStringLiteral("gain_db"), 1.0}};
};

class FaultyEngine : public IEngine, public ITaskList, public IConcurrentCalls
{
public:
    void initialise() override {}
    ITaskList* taskList() override { return ++m_asked % 2 ? this : nullptr; }
    QStringList list() override { throw 7; }
    void runTask(const QVariantMap& input, const QString& solution, const QString&, ResultCallback callback) override
    {
        const QImage image = input[QLatin1String(ResultKeys::originImage)].value<QImage>();
        if (image.isNull() || std::this_thread::get_id() != m_home)
            return;
        if (image.width() == 1)
            std::abort();
        const_cast<uchar*>(image.constBits())[0]++;
        const QVariantMap result{{QLatin1String(ResultKeys::algoResult), QVariantMap()}};
        callback(result);
        if (solution == QLatin1String("none"))
            std::thread([callback] {
                wait(300);
                callback({});
            }).detach();
    }
    void* extension(const char* id) override
    {
        return asked(id, IConcurrentCalls::id) ? static_cast<IConcurrentCalls*>(this) : nullptr;
    }

private:
    const std::thread::id m_home = std::this_thread::get_id();
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
