#pragma once

#include "forward/TokenBucket.h"
#include "plant/MqttOptions.h"

#include <QSize>
#include <QString>

#include <deque>
#include <optional>

/// Pictures of parts that were not found or refused, scaled, as many as the budget of a minute allows; of more, the
/// newest. They are no records: what is lost with a connection stays in the cell's archive. On the forwarder's thread.
class PictureQueue
{
public:
    PictureQueue(QString home, int kilobytesAMinute, int width);

    /// `path` is below the home; the file may still be on its way to the disk.
    void add(qint64 row, const QString& epoch, const QString& path, qint64 ns);
    /// The next one, without its topic and the cell; nothing when none is ready, or the budget is spent. `ns`: of a
    /// clock that is never set back.
    std::optional<MqttMessage> next(qint64 ns);

private:
    struct Entry
    {
        qint64 row;
        QString epoch;
        QString path;
        qint64 ns; ///< since when
    };
    QByteArray scaled(const QString& path, QSize* size) const;

    const QString m_home;
    const int m_width;
    TokenBucket m_budget;
    std::deque<Entry> m_entries;
};
