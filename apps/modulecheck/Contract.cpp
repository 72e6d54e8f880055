#include "Contract.h"

#include "platform/System.h"

#include <QApplication>

#include <atomic>
#include <clocale>
#include <thread>

namespace Contract {

namespace {

void swallow(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

/// What belongs to the whole process, and is no module's to change.
class ProcessState
{
public:
    ProcessState() { m_before = read(); }

    void compare(const Subject& subject) const
    {
        const QMap<QString, QString> now = read();
        for (auto part = m_before.begin(); part != m_before.end(); ++part) {
            if (now[part.key()] != part.value())
                subject.fault(QStringLiteral("the process's %1 is left changed: \"%2\", it was \"%3\"")
                                  .arg(part.key(), now[part.key()], part.value()));
        }
    }

private:
    static QMap<QString, QString> read()
    {
        const QtMessageHandler present = qInstallMessageHandler(swallow);
        const bool own = present == swallow || !s_installed;
        s_installed = true;
        return {{QStringLiteral("working directory"), QDir::currentPath()},
                {QStringLiteral("locale"),
                 QLatin1String(std::setlocale(LC_ALL, nullptr)) + QLatin1Char(' ') + QLocale().name()},
                {QStringLiteral("message handler"), own ? QStringLiteral("the program's") : QStringLiteral("another")},
                {QStringLiteral("style sheet"), qApp->styleSheet()},
                {QStringLiteral("cursor"),
                 QApplication::overrideCursor() ? QStringLiteral("another") : QStringLiteral("the window's")}};
    }

    static inline bool s_installed = false;
    QMap<QString, QString> m_before;
};

uint sumOf(const QImage& image)
{
    uint sum = 0;
    const int bytes = (image.width() * image.depth() + 7) / 8; // what pads a row belongs to nobody
    for (int y = 0; y < image.height(); ++y)
        sum = qHashBits(image.constScanLine(y), size_t(bytes), sum);
    return sum;
}

} // namespace

QImage gray(int width, int height, QImage::Format format)
{
    QImage image(width, height, format);
    image.fill(Qt::gray);
    return image;
}

void linger(int ms)
{
    Subject::waitFor([] { return false; }, ms);
}

void live(Subject& subject, const std::function<bool()>& once)
{
    const ProcessState before;
    int threads = 0;
    constexpr int lives = 4;
    for (int life = 1; life <= lives; ++life) {
        if (!once())
            return;
        if (life == 2) // what a library starts once for the whole process runs by then
            threads = platform::ownThreads();
    }
    if (!Subject::waitFor([&] { return platform::ownThreads() <= threads; }, 1500))
        subject.fault(QStringLiteral("%1 threads more run after two further instances were deleted")
                          .arg(platform::ownThreads() - threads));
    before.compare(subject);
}

void sideBySide(const std::function<void(int)>& work, const std::function<void()>& meanwhile)
{
    std::atomic<int> done{0};
    std::thread threads[2];
    for (int i = 0; i < 2; ++i)
        threads[i] = std::thread([&, i] {
            work(i);
            ++done;
        });
    while (done < 2)
        meanwhile();
    for (std::thread& thread : threads)
        thread.join();
}

Arrivals::Arrivals(Subject& subject, const char* callback)
    : m_subject(subject)
    , m_callback(callback)
{
}

void Arrivals::add(const QString& key, quint64 number)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_end)
        m_subject.fault(
            QStringLiteral("the %1 is called after %2").arg(QLatin1String(m_callback), QLatin1String(m_end)));
    m_numbers[key].append(number);
}

void Arrivals::end(const char* event)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_end = event;
}

QVector<quint64> Arrivals::of(const QString& key) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_numbers.value(key);
}

int Arrivals::count() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    int count = 0;
    for (const QVector<quint64>& numbers : m_numbers)
        count += numbers.size();
    return count;
}

void Pictures::keep(const QString& whose, const QImage& image)
{
    const uint sum = sumOf(image);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_kept.append({whose, image, sum});
}

void Pictures::compare(const Subject& subject) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Kept& kept : m_kept) {
        if (sumOf(kept.image) != kept.sum)
            subject.fault(QStringLiteral("%1 is changed after it was handed over").arg(kept.whose));
    }
}

} // namespace Contract
