#include "../db/OtherProgram.h"
#include "db/log/LogLine.h"
#include "db/log/ksLogDB.h"
#include "results/data/LogReader.h"
#include "support/Table.h"
#include "support/TempHome.h"

/// What the system log wrote, as its reader takes it apart.
class LogReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home = std::make_unique<TempHome>();
        {
            SystemLog::ksLogDB log(LogReader::databaseOf(m_home->path()));
        }
        OtherProgram other(LogReader::databaseOf(m_home->path()));
        const auto line = [&other](const char* time, int type, const char* text) {
            QVERIFY(
                other.run(QStringLiteral("INSERT INTO SystemInfo(datetime, type, message) VALUES('%1', %2, '%1 %3')")
                              .arg(QLatin1String(time))
                              .arg(type)
                              .arg(QString::fromUtf8(text))));
        };
        line("2026-03-25 00:00:00", SystemLog::Information, "start 100%");
        line("2026-03-25 10:00:00", SystemLog::Warning, "相机cam1没有图像");
        line("2026-03-25 10:00:00", SystemLog::Information, "设置更改[StationScale_1]:0.05 → 0.051,用户:李工");
        line("2026-03-26 00:00:00", SystemLog::Information, "设置更改[model/五辐]: → {\"a\":\n1},用户:无");
        line("2026-03-24 23:59:59", SystemLog::Error, "the clock went back");
    }

    void filtersPickTheirLinesNewestFirst_data()
    {
        const QDate day(2026, 3, 25);
        LogFilter ofDay, faults, changes, text, user, upTo, arrival;
        arrival.byArrival = true;
        ofDay.from = ofDay.to = day;
        faults.least = SystemLog::Warning;
        changes.changesOnly = true;
        text.text = QStringLiteral("100%");
        user.user = QStringLiteral("李");
        upTo.upTo = 2;
        Table::of<LogFilter, QString>({{"all", {}, "4 3 2 1 5"},
                                       {"a day, whole", ofDay, "3 2 1"},
                                       {"faults", faults, "2 5"},
                                       {"changes", changes, "4 3"},
                                       {"a text with signs of its own", text, "1"},
                                       {"a user", user, "3"},
                                       {"as they came", arrival, "5 4 3 2 1"},
                                       {"up to a line", upTo, "2 1"}});
    }
    void filtersPickTheirLinesNewestFirst()
    {
        const auto [filter, expected] = Table::row<LogFilter, QString>();
        LogReader reader(m_home->path());
        QVERIFY2(reader.open(), qPrintable(reader.error()));
        QStringList ids;
        for (const LogRow& row : reader.lines(filter, 100, 0))
            ids << QString::number(row.id);
        QCOMPARE(ids.join(' '), expected);
        QCOMPARE(reader.count(filter), ids.size());
        Search<LogRow> search;
        search.rowsASlice = 1;
        QVector<int> percents{0};
        while (!search.ended && percents.size() < 100) {
            reader.goOn(search, filter, 100, 0);
            QVERIFY2(search.percent >= percents.last() && search.percent < 100, qPrintable(ids.join(' ')));
            percents << search.percent;
        }
        QStringList found;
        for (const LogRow& row : qAsConst(search.rows))
            found << QString::number(row.id);
        QCOMPARE(found, ids);
    }

    void changesAreTakenApart()
    {
        LogReader reader(m_home->path());
        QVERIFY(reader.open());
        const QVector<LogRow> rows = reader.lines({}, 2, 0);
        QCOMPARE(QStringList({rows[0].name, rows[0].before, rows[0].after, rows[0].user}),
                 QStringList({"model/五辐", "", "{\"a\":\n1}", "无"}));
        const QVector<LogRow> marks = reader.changes(QDateTime(QDate(2026, 3, 25), QTime(9, 0)),
                                                     QDateTime(QDate(2026, 3, 26), QTime(0, 0)), {"Station"}, 10);
        QCOMPARE(marks.size(), 1);
        QCOMPARE(QStringList({marks[0].name, marks[0].before, marks[0].after, marks[0].message.left(5)}),
                 QStringList({"StationScale_1", "0.05", "0.051", "设置更改["}));
    }

private:
    std::unique_ptr<TempHome> m_home;
};

Q_DECLARE_METATYPE(LogFilter)
QTEST_GUILESS_MAIN(LogReaderTest)
#include "tst_logreader.moc"
