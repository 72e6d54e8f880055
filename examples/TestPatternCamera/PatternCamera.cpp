#include "PatternCamera.h"

#include <QPointF>
#include <QtMath>

#include <algorithm>
#include <cmath>
#include <cstring>

PatternCamera::PatternCamera(QString key, const QVariantMap& settings, Deliver deliver)
    : m_key(std::move(key))
    , m_deliver(std::move(deliver))
    , m_settings(settings)
    , m_thread([this] { run(); })
{
}

PatternCamera::~PatternCamera()
{
    requestStop();
    m_thread.join();
}

QVariantMap PatternCamera::settings() const
{
    const Lock lock(m_mutex);
    return m_settings;
}

void PatternCamera::apply(const QVariantMap& settings)
{
    const Lock lock(m_mutex);
    for (auto it = settings.begin(); it != settings.end(); ++it)
        m_settings.insert(it.key(), it.value());
}

void PatternCamera::trigger()
{
    {
        const Lock lock(m_mutex);
        ++m_waiting;
    }
    m_changed.notify_one();
}

void PatternCamera::requestStop()
{
    {
        const Lock lock(m_mutex);
        m_stopping = true;
    }
    m_changed.notify_one();
}

// Exposes by waiting on the condition, not for the time alone, so that the program never waits for a long exposure when
// it ends.
void PatternCamera::run()
{
    Lock lock(m_mutex);
    for (int number = 0;; ++number) {
        m_changed.wait(lock, [this] { return m_stopping || m_waiting > 0; });
        if (m_stopping)
            return;
        --m_waiting;
        const QSize size(m_settings[QStringLiteral("width")].toInt(), m_settings[QStringLiteral("height")].toInt());
        const std::chrono::duration<double, std::milli> exposure(m_settings[QStringLiteral("exposure_ms")].toDouble());
        m_changed.wait_for(lock, exposure, [this] { return m_stopping; });
        lock.unlock();
        m_deliver(m_key, testPattern(size, number));
        lock.lock();
    }
}

namespace {

constexpr int dark = 30;
constexpr int bright = 190;
constexpr double degreesPerImage = 15;

void fillDisc(QImage& image, const QPointF& center, double radius, int value)
{
    const int bottom = std::min(image.height() - 1, qFloor(center.y() + radius));
    for (int y = std::max(0, qCeil(center.y() - radius)); y <= bottom; ++y) {
        const double down = y - center.y();
        const double half = std::sqrt(std::max(0.0, radius * radius - down * down));
        const int left = std::max(0, qCeil(center.x() - half));
        const int right = std::min(image.width() - 1, qFloor(center.x() + half));
        if (left <= right)
            std::memset(image.scanLine(y) + left, value, size_t(right - left) + 1);
    }
}

} // namespace

QImage testPattern(const QSize& size, int number)
{
    QImage image(size, QImage::Format_Grayscale8);
    if (image.isNull())
        return image;
    image.fill(dark);
    const QPointF center((size.width() - 1) / 2.0, (size.height() - 1) / 2.0);
    const double radius = 0.4 * std::min(size.width(), size.height());
    const double angle = qDegreesToRadians(std::fmod(number * degreesPerImage, 360.0));
    fillDisc(image, center, radius, bright);
    fillDisc(image, center + 0.75 * radius * QPointF(std::cos(angle), -std::sin(angle)), 0.03 * radius, dark);
    return image;
}
