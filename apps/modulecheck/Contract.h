#pragma once

#include "Subject.h"

#include <QDir>
#include <QImage>
#include <QLocale>
#include <QMap>
#include <QVector>

#include <memory>
#include <mutex>

/// What the contracts of several kinds of modules have in common.
namespace Contract {

/// A picture with nothing on it.
QImage gray(int width = 640, int height = 480, QImage::Format format = QImage::Format_Grayscale8);

/// Lets the event loop and the module's threads go on, for what has no right to come any more.
void linger(int ms = 700);

/// Makes the module and brings it up by its first call; null when it does not come up. Half of one is not asked for
/// anything, not even to go.
template <typename Module, typename Bring>
std::unique_ptr<Module> bringUp(Subject& subject, const char* name, Bring bring)
{
    std::unique_ptr<Module> module(subject.make<Module>());
    if (module && !subject.call(name, 10000, [&] { bring(*module); }))
        module.release();
    return module;
}

template <typename Module>
void refuseStrangers(Subject& subject, Module& module)
{
    void* strange = nullptr;
    subject.call("extension()", atOnceMs, [&] { strange = module.extension("valvecell.nothing/1"); });
    if (strange)
        subject.fault(QStringLiteral("extension() answers to an id that there is not"));
}

template <typename Module>
void destroy(Subject& subject, std::unique_ptr<Module>& module, const char* name = "the destructor")
{
    subject.call(name, 5000, [&] { module.reset(); });
}

/// Has the module made, used and deleted by `once` again and again, until that returns false. What the process keeps of
/// it is a fault: threads, working directory, locale, message handler, style sheet, cursor.
void live(Subject& subject, const std::function<bool()>& once);

/// Runs `work` on two threads at a time, with 0 and 1, and `meanwhile` on this one until both are done.
void sideBySide(const std::function<void(int)>& work, const std::function<void()>& meanwhile);

/// The calls of one callback: numbers, by the key that they came for. Any thread.
class Arrivals
{
public:
    /// `callback`: what a fault calls it.
    Arrivals(Subject& subject, const char* callback);

    void add(const QString& key, quint64 number = 0);
    /// Every further call is a fault.
    void end(const char* event);

    QVector<quint64> of(const QString& key) const;
    int count() const;

private:
    Subject& m_subject;
    const char* const m_callback;
    mutable std::mutex m_mutex; // protects the following
    QMap<QString, QVector<quint64>> m_numbers;
    const char* m_end = nullptr;
};

/// Images that were handed over, which nobody may write into any more. Any thread.
class Pictures
{
public:
    void keep(const QString& whose, const QImage& image);
    void compare(const Subject& subject) const;

private:
    struct Kept
    {
        QString whose;
        QImage image;
        uint sum;
    };
    mutable std::mutex m_mutex; // protects the following
    QVector<Kept> m_kept;
};

} // namespace Contract
