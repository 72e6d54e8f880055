#include "PlantPolicy.h"

#include "db/Database.h"

#include <QStringList>
#include <QTime>

#include <pqxx/pqxx>

namespace {

[[noreturn]] void refuse(const QString& what, const char* remedy)
{
    throw std::runtime_error(what.toStdString() + ": " + remedy);
}

} // namespace

void PlantPolicy::setShifts(Database& database, const QString& text)
{
    QStringList times = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (QString& time : times) {
        const QTime read = QTime::fromString(time.trimmed(), QStringLiteral("H:mm"));
        if (!read.isValid() || read.minute() % 30 != 0)
            refuse(time.trimmed(), "a full or half hour is needed, as 06:30");
        time = read.toString(QStringLiteral("HH:mm"));
    }
    times.sort();
    if (times.isEmpty() || times.removeDuplicates() > 0)
        refuse(text, "one or more different times are needed");
    pqxx::work work(database.connection());
    work.exec("DELETE FROM shift");
    for (int i = 0; i < times.size(); ++i)
        work.exec_params("INSERT INTO shift VALUES ($1, $2)", i + 1, times[i].toStdString());
    work.commit();
}

void PlantPolicy::setRetention(Database& database, const QString& text)
{
    pqxx::work work(database.connection());
    for (const QString& entry : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const int months = entry.section(QLatin1Char('='), 1).toInt();
        if (months < 1 || months > 1200)
            refuse(entry, "1 to 1200 months are needed, as part=24");
        const pqxx::result done =
            work.exec_params("UPDATE retention SET months = $2 WHERE what = $1",
                             entry.section(QLatin1Char('='), 0, 0).trimmed().toStdString(), months);
        if (done.affected_rows() == 0)
            refuse(entry, "known are part, log_row, picture, part_slot, aside");
    }
    work.commit();
}
