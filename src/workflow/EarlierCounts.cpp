#include "workflow/EarlierCounts.h"

#include "db/ResultReader.h"
#include "workflow/DayCountsFile.h"
#include "workflow/PlcFrames.h"

#include <QDateTime>

namespace {

DayRecord recorded(const QString& path, const QDateTime& now)
{
    DayRecord record;
    ResultReader reader(path);
    if (!reader.open(nullptr))
        return record;
    for (int station = 1; station <= 2; ++station) {
        const QString name = QStringLiteral("Station_%1").arg(station);
        int all = 0;
        int found = 0;
        if (reader.countStation(name, now, plc::kNothingFoundAngle, &all, &found))
            record.counts[station - 1] = {found, all - found, 0};
    }
    return record;
}

DayCount greater(const DayCount& a, const DayCount& b)
{
    return {qMax(a.found, b.found), qMax(a.notFound, b.notFound), qMax(a.refused, b.refused)};
}

} // namespace

EarlierCounts::EarlierCounts(const QString& database, const QString& file, QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<DayCount>();
    m_thread.reset(QThread::create([=, now = QDateTime::currentDateTime()] { read(database, file, now); }));
}

EarlierCounts::~EarlierCounts()
{
    m_thread->wait();
}

void EarlierCounts::read(const QString& database, const QString& file, const QDateTime& now)
{
    const DayRecord rows = recorded(database, now);
    DayRecord kept = DayCountsFile::read(file);
    if (kept.day != now.date())
        kept = {};
    for (int i = 0; i < 2; ++i)
        emit counted(now.date(), i + 1, greater(rows.counts[i], kept.counts[i]));
    emit finished();
}
