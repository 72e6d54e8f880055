#include "workflow/DayCountsFile.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>
#include <QRunnable>

namespace {

const auto kDay = QStringLiteral("day");
const auto kStations = QStringLiteral("stations");
const auto kFound = QStringLiteral("found");
const auto kNotFound = QStringLiteral("not_found");
const auto kRefused = QStringLiteral("refused");

QJsonObject toJson(const DayCounts& counts)
{
    QJsonArray stations;
    for (int station = 1; station <= 2; ++station) {
        const DayCount& count = counts.of(station);
        stations.append(QJsonObject{{kFound, count.found}, {kNotFound, count.notFound}, {kRefused, count.refused}});
    }
    return {{kDay, counts.day().toString(Qt::ISODate)}, {kStations, stations}};
}

} // namespace

DayCountsFile::DayCountsFile(const DayCounts& counts, QString path, QObject* parent)
    : QObject(parent)
    , m_counts(counts)
    , m_path(std::move(path))
{
    m_writer.setMaxThreadCount(1);
    connect(&counts, &DayCounts::changed, this, [this] { m_isNew = true; });
}

DayCountsFile::~DayCountsFile()
{
    write();
}

DayRecord DayCountsFile::read(const QString& path)
{
    const QJsonObject file = HomeFiles::readJson(path).object;
    const QJsonArray stations = file[kStations].toArray();
    DayRecord record;
    record.day = QDate::fromString(file[kDay].toString(), Qt::ISODate);
    for (int i = 0; i < 2; ++i) {
        const auto number = [entry = stations[i].toObject()](const QString& key) {
            return qMax(0, entry[key].toInt());
        };
        record.counts[i] = {number(kFound), number(kNotFound), number(kRefused)};
    }
    return record;
}

void DayCountsFile::tick()
{
    if (++m_seconds >= secondsBetweenWrites)
        write();
}

void DayCountsFile::write()
{
    if (!m_begun || !m_isNew)
        return;
    m_isNew = false;
    m_seconds = 0;
    m_writer.start(QRunnable::create([path = m_path, content = toJson(m_counts)] {
        QString error;
        if (!HomeFiles::writeJson(path, content, &error))
            qWarning("counts of the day: %s", qUtf8Printable(error));
    }));
}
