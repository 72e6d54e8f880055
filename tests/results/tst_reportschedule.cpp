#include "../db/SmallDisk.h"
#include "PartsHome.h"
#include "config/ShiftConfig.h"
#include "results/export/ReportSchedule.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"

#include <QGuiApplication>

namespace {

constexpr qint64 minute = 60000;
constexpr qint64 hour = 60 * minute;

} // namespace

/// Reports that are written by themselves, while a test moves the clock.
class ReportScheduleTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home.reset(); // the one before must not take the new one's name with it
        m_home = std::make_unique<PartsHome>();
        m_home->addParts(60, QDateTime(QDate(2026, 3, 30), QTime(0, 30)), hour);
    }

    void eachShiftOrDayHasItsReportsSoonAfterItsEnd_data()
    {
        Table::of<QString, QString, QString, QString>(
            {{"shifts, past midnight", "shift", "06:00, 14:00, 22:00",
              "2026-03-30_夜班.pdf 2026-03-31_中班.pdf 2026-03-31_早班.pdf", "2026-03-31_夜班.pdf"},
             {"days", "day", "", "2026-03-30.pdf", "2026-03-31.pdf"},
             {"days from the first shift on", "day", "06:00, 18:00", "2026-03-30.pdf", "2026-03-31.pdf"},
             {"off", "off", "06:00, 14:00, 22:00", "", ""}});
    }
    void eachShiftOrDayHasItsReportsSoonAfterItsEnd()
    {
        const auto [when, shifts, first, next] = Table::row<QString, QString, QString, QString>();
        store(when, {}, shifts);
        ManualScheduler scheduler(QDateTime(QDate(2026, 3, 30), QTime(23, 0)));
        {
            ReportSchedule schedule(m_home->path(), scheduler);
            schedule.check();
            QCOMPARE(reports(), QString()); // nothing of what was before it was switched on
            scheduler.advance(24 * hour + 30 * minute);
            QCOMPARE(reports(), first);
        }
        scheduler.holdUp(7 * hour); // the program is off meanwhile
        ReportSchedule schedule(m_home->path(), scheduler);
        schedule.check();
        QCOMPARE(reports(), sorted(first + ' ' + next));
        QVERIFY(QDir(m_home->path("/reports")).removeRecursively());
        scheduler.advance(hour); // written once is enough
        QCOMPARE(reports(), QString());
    }

    void noReportIsWrittenOfIdleShiftsOrOfLongAgo()
    {
        m_home->addParts(2, QDateTime(QDate(2026, 4, 20), QTime(10, 0)), hour);
        store("day");
        ManualScheduler scheduler(QDateTime(QDate(2026, 3, 30), QTime(1, 0)));
        ReportSchedule(m_home->path(), scheduler).check();
        scheduler.holdUp(22 * 24 * hour);
        ReportSchedule schedule(m_home->path(), scheduler);
        schedule.check();
        QCOMPARE(reports(), QString("2026-04-20.pdf"));
    }

    /// Reports go on from there, instead of waiting for the wrong time to come.
    void clockThatWasAheadDoesNotKeepReportsAway()
    {
        store("day");
        ManualScheduler scheduler(QDateTime(QDate(2026, 3, 30), QTime(1, 0)));
        ReportSchedule schedule(m_home->path(), scheduler);
        schedule.check();
        scheduler.setClock(QDateTime(QDate(2027, 1, 1), QTime(1, 0)));
        scheduler.advance(hour);
        scheduler.setClock(QDateTime(QDate(2026, 3, 31), QTime(1, 0)));
        scheduler.advance(24 * hour);
        QCOMPARE(reports(), QString("2026-03-31.pdf"));
    }

    void goneFolderOrFullDiskIsSaidAndTriedAgain_data()
    {
        Table::of<bool>({{"gone folder", true}, {"full disk", false}});
    }
    void goneFolderOrFullDiskIsSaidAndTriedAgain()
    {
        const auto [gone] = Table::row<bool>();
        SmallDisk disk(1);
        if (!gone && !disk.isMounted())
            QSKIP("only an administrator has a disk to fill");
        const QString folder = gone ? m_home->path("/stick") : disk.path();
        store("day", folder);
        ManualScheduler scheduler(QDateTime(QDate(2026, 3, 30), QTime(23, 0)));
        ReportSchedule schedule(m_home->path(), scheduler);
        QStringList alarms;
        connect(&schedule, &ReportSchedule::alarmChanged, this, [&alarms](const QString& text) { alarms << text; });
        schedule.check();
        if (!gone)
            disk.fill();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("2026-03-30.*" + folder));
        scheduler.advance(3 * hour);
        QCOMPARE(alarms.size(), 1);
        QVERIFY2(alarms.first().contains(folder), qPrintable(alarms.first()));
        gone ? void(QDir().mkpath(folder)) : disk.empty();
        scheduler.advance(hour);
        QCOMPARE(alarms.mid(1), QStringList(QString()));
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList("2026-03-30.pdf"));
    }

    void threadWritesBothFormats()
    {
        m_home->write("/user/shifts.json",
                      R"({"report_when": "day", "report_xlsx": true, "report_heading": "三号线"})");
        SetClock clock(QDateTime(QDate(2026, 3, 30), QTime(23, 0)));
        ReportSchedule schedule(m_home->path(), clock);
        QStringList written;
        connect(&schedule, &ReportSchedule::written, this, [&written](const QStringList& paths) { written = paths; });
        schedule.check();
        QTRY_VERIFY(QFileInfo::exists(m_home->path("/user/reports-made.json")));
        clock.set(QDateTime(QDate(2026, 3, 31), QTime(0, 2)));
        schedule.check();
        QTRY_COMPARE(written.size(), 2);
        QCOMPARE(reports(), QString("2026-03-30.pdf 2026-03-30.xlsx"));
    }

private:
    static void store(const QString& when, const QString& folder = {}, const QString& shifts = {})
    {
        ShiftConfig config;
        config.reportWhen = when;
        config.reportFolder = folder;
        config.begins = shifts;
        QString error;
        QVERIFY2(config.save(&error), qPrintable(error));
    }
    QString reports() const { return sorted(QDir(m_home->path("/reports")).entryList(QDir::Files).join(' ')); }
    static QString sorted(const QString& names)
    {
        QStringList each = names.split(' ', Qt::SkipEmptyParts);
        each.sort();
        return each.join(' ');
    }

    std::unique_ptr<PartsHome> m_home;
};

QTEST_MAIN(ReportScheduleTest)
#include "tst_reportschedule.moc"
