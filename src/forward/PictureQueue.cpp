#include "forward/PictureQueue.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

namespace {

constexpr std::size_t mostPictures = 100;
constexpr qint64 longestWriting = 30000000000; // ns
constexpr int jpegQuality = 80;

} // namespace

PictureQueue::PictureQueue(QString home, int kilobytesAMinute, int width)
    : m_home(std::move(home))
    , m_width(width)
    , m_budget(kilobytesAMinute * 1000. / 60, kilobytesAMinute * 1000.)
{
}

void PictureQueue::add(qint64 row, const QString& epoch, const QString& path, qint64 ns)
{
    m_entries.push_back({row, epoch, path, ns});
    if (m_entries.size() > mostPictures)
        m_entries.pop_front();
}

QByteArray PictureQueue::scaled(const QString& path, QSize* size) const
{
    QImageReader reader(path);
    QSize full = reader.size();
    if (full.width() > m_width)
        reader.setScaledSize(full.scaled(m_width, full.height(), Qt::KeepAspectRatio));
    const QImage image = reader.read();
    *size = image.size();
    QBuffer bytes;
    return !image.isNull() && bytes.open(QIODevice::WriteOnly) && image.save(&bytes, "JPG", jpegQuality) ? bytes.data()
                                                                                                         : QByteArray();
}

std::optional<MqttMessage> PictureQueue::next(qint64 ns)
{
    if (m_entries.empty() || !m_budget.isOpen(ns))
        return {};
    const Entry entry = m_entries.front();
    QSize size;
    const QByteArray jpeg = scaled(m_home + QLatin1Char('/') + entry.path, &size);
    if (jpeg.isEmpty() && ns - entry.ns < longestWriting)
        return {};
    m_entries.pop_front();
    if (jpeg.isEmpty())
        return {};
    m_budget.take(jpeg.size());
    MqttMessage message;
    message.payload = jpeg;
    message.properties = {{QStringLiteral("epoch"), entry.epoch},
                          {QStringLiteral("row"), QString::number(entry.row)},
                          {QStringLiteral("width"), QString::number(size.width())},
                          {QStringLiteral("height"), QString::number(size.height())}};
    return message;
}
