#include "workflow/EarlierCounts.h"

#include "db/ResultReader.h"
#include "workflow/PlcFrames.h"

#include <QDateTime>

EarlierCounts::EarlierCounts(const QString& path, QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<DayCount>();
    m_thread.reset(QThread::create([this, path, now = QDateTime::currentDateTime()] { read(path, now); }));
}

EarlierCounts::~EarlierCounts()
{
    m_thread->wait();
}

void EarlierCounts::read(const QString& path, const QDateTime& now)
{
    ResultReader reader(path);
    if (!reader.open(nullptr))
        return;
    for (int station = 1; station <= 2; ++station) {
        const QString name = QStringLiteral("Station_%1").arg(station);
        DayCount count;
        int all = 0;
        if (!reader.countStation(name, now, plc::kNothingFoundAngle, &all, &count.found))
            return;
        count.notFound = all - count.found;
        emit counted(now.date(), station, count);
    }
}
