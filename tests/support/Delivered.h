#pragma once

#include <valvecell/ICoreCtrl.h>

#include <QLibrary>
#include <QMap>
#include <QVector>

#include <mutex>

/// What the threads of a core control deliver.
class Delivered
{
public:
    void connectTo(ICoreCtrl& core)
    {
        core.setRequestCallback([](const QString&, const QVariant&) { return QVariant(); });
        core.setImageCallback([this](const QString& key, const QImage& image) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_images[key].append(image);
        });
        core.setNotificationCallback([this](const QString& topic, const QVariant& value) {
            note(topic + ": " + value.toMap().value("message", value).toString());
        });
    }
    void note(const QString& text)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_notes.append(text);
    }

    QVector<QImage> images(const QString& camera) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_images.value(camera);
    }
    /// By their widths, images tell themselves apart.
    QVector<int> widths(const QString& camera) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        QVector<int> widths;
        for (const QImage& image : m_images.value(camera))
            widths.append(image.width());
        return widths;
    }
    QStringList notes(const QString& topic = {}) const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_notes.filter(topic);
    }

    /// The function of a module's file that makes its object.
    static CoreCtrlInitFunction init(const QString& file)
    {
        QLibrary library(file);
        const auto function = reinterpret_cast<CoreCtrlInitFunction>(library.resolve("Lib_CoreCtrl_Init"));
        if (!function || !library.resolve("Lib_CoreCtrl_Free"))
            qFatal("%s %s", qPrintable(library.fileName()), qPrintable(library.errorString()));
        return function;
    }

private:
    mutable std::mutex m_mutex; // protects the two below; one that a thread sanitizer understands
    QMap<QString, QVector<QImage>> m_images;
    QStringList m_notes;
};
