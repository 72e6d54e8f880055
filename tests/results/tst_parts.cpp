#include "../db/OtherProgram.h"
#include "db/PartTable.h"
#include "db/StationDB.h"
#include "results/data/PartReader.h"
#include "support/Table.h"
#include "support/TempHome.h"

namespace {

const QDateTime start(QDate(2026, 3, 28), QTime(23, 59, 58, 7));

/// Part `i` of a home: found, not found and refused in turn, at the stations in turn, a second apart.
StationResult numbered(int i)
{
    StationResult result;
    PartRecord& part = result.part;
    part.station = 1 + i % 2;
    part.model = i % 4 < 2 ? QStringLiteral("五辐") : QStringLiteral("钢圈_2");
    part.outcome = PartOutcome(i % 3);
    part.angle = part.outcome == PartOutcome::Found ? 10.5 + i : part.outcome == PartOutcome::Refused ? 999 : 361;
    part.x = part.outcome == PartOutcome::Found ? 100.125 + i : 0;
    part.y = part.outcome == PartOutcome::Found ? -20.25 : 0;
    part.plcIndex = 7;
    part.score = result.matchScore = 90 + i % 10;
    result.angle = part.angle;
    result.errorType = i % 3 == 0 ? 0 : 100 + i;
    result.stationName = QStringLiteral("Station_%1").arg(part.station);
    result.value2 = QStringLiteral("%1_%2").arg(part.station).arg(part.model);
    result.value3 = QStringLiteral("score=0.9;plc=7;x=%1;y=%2").arg(part.x).arg(part.y);
    result.resultTip = i == 5 ? QStringLiteral("100%_亮") : QStringLiteral("提示%1").arg(i);
    return result;
}

QString textOf(const QVector<PartRow>& rows)
{
    QStringList texts;
    for (const PartRow& row : rows) {
        const PartRecord& part = row.part;
        texts << QStringLiteral("%1 %2 s%3 %4 %5 o%6 e%7 a%8 ")
                         .arg(row.uid)
                         .arg(row.wall)
                         .arg(part.station)
                         .arg(part.model)
                         .arg(part.plcIndex)
                         .arg(int(part.outcome))
                         .arg(row.error)
                         .arg(part.angle) +
                     (row.placed ? QStringLiteral("%1 %2").arg(part.x).arg(part.y) : QStringLiteral("-")) +
                     QStringLiteral(" %1 %2").arg(part.score).arg(row.tip);
    }
    return texts.join(QLatin1Char('\n'));
}

QString uids(const QVector<PartRow>& rows)
{
    QStringList texts;
    for (const PartRow& row : rows)
        texts << QString::number(row.uid);
    return texts.join(QLatin1Char(' '));
}

} // namespace

/// What the cell wrote of its parts, and what comes back.
class PartsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home = std::make_unique<TempHome>(); }

    void rowsOfEarlierVersionsReadTheSameHoweverManyAreFilledIn()
    {
        fill(12);
        QString before;
        {
            PartReader reader(m_home->path());
            QVERIFY2(reader.open(), qPrintable(reader.error()));
            before = textOf(reader.rows({}, PartReader::Time, Qt::AscendingOrder, 100, 0));
            QCOMPARE(before.count('\n'), 11);
        }
        const auto now = [this] {
            PartReader reader(m_home->path());
            return reader.open() ? textOf(reader.rows({}, PartReader::Time, Qt::AscendingOrder, 100, 0))
                                 : reader.error();
        };
        OtherProgram other(path());
        QVERIFY(other.run("DROP TABLE PartTable") && other.run("PRAGMA user_version = 0"));
        QCOMPARE(now(), before); // a home of an earlier version, of which nobody writes
        StationDB database(path());
        QVERIFY2(database.open(), qPrintable(database.lastError()));
        QVERIFY(database.insertResult(numbered(12), start.addSecs(12)));
        const QString whole = now();
        QVERIFY(whole.startsWith(before) && whole.count('\n') == 12);
        int rounds = 0;
        for (; database.fillInParts(5); ++rounds)
            QCOMPARE(now(), whole);
        QCOMPARE(rounds, 3);
        QCOMPARE(now(), whole);
        QCOMPARE(other.value("SELECT count(*) FROM PartTable"), QString("13"));
        QVERIFY(other.run("DELETE FROM RltTable WHERE uid < 4"));
        QCOMPARE(other.value("SELECT min(uid) FROM PartTable"), QString("4"));
    }

    void filtersAndOrdersPickTheirRows_data()
    {
        PartFilter station2, model, notFound, none, night, tip, upTo;
        station2.station = 2;
        model.model = QStringLiteral("钢圈_2");
        notFound.found = notFound.refused = false;
        none.found = none.notFound = none.refused = false;
        night.from = QDateTime(start.date().addDays(1), QTime(0, 0));
        night.to = night.from.addSecs(4);
        tip.text = QStringLiteral("%_");
        upTo.upTo = 3;
        using Column = PartReader::Column;
        Table::of<PartFilter, int, bool, QString>(
            {{"all, newest first", {}, Column::Time, false, "12 11 10 9 8 7 6 5 4 3 2 1"},
             {"a station", station2, Column::Time, true, "2 4 6 8 10 12"},
             {"a model", model, Column::Time, true, "3 4 7 8 11 12"},
             {"an outcome", notFound, Column::Time, true, "2 5 8 11"},
             {"no outcome", none, Column::Time, true, ""},
             {"past midnight", night, Column::Time, true, "3 4 5 6"},
             {"a tip with signs of its own", tip, Column::Time, true, "6"},
             {"up to a row", upTo, Column::Time, true, "1 2 3"},
             {"by X", model, Column::X, false, "7 4 12 11 8 3"}});
    }
    void filtersAndOrdersPickTheirRows()
    {
        const auto [filter, column, ascending, expected] = Table::row<PartFilter, int, bool, QString>();
        fill(12);
        PartReader reader(m_home->path());
        QVERIFY(reader.open());
        const auto order = ascending ? Qt::AscendingOrder : Qt::DescendingOrder;
        const QVector<PartRow> all = reader.rows(filter, PartReader::Column(column), order, 100, 0);
        QCOMPARE(uids(all), expected);
        QCOMPARE(uids(reader.rows(filter, PartReader::Column(column), order, 2, 1)), uids(all.mid(1, 2)));
        QCOMPARE(reader.count(filter), all.size());
        Search<PartRow> search;
        search.rowsASlice = 2;
        for (int step = 0; !search.ended && step < 100; ++step)
            reader.goOn(search, filter, 100, 0);
        QCOMPARE(uids(search.rows), uids(reader.rows(filter, PartReader::Time, Qt::DescendingOrder, 100, 0)));
        const PartSeries series = reader.series(filter, PartSeries::All);
        QCOMPARE(series.size(), all.size());
        for (const PartRow& row : all) {
            const int at = series.uid.indexOf(row.uid);
            QCOMPARE(series.wall.value(at), row.wall);
            QCOMPARE(series.models.value(series.model.value(at)), row.part.model);
            QCOMPARE(!qIsNaN(series.x.value(at)), row.placed);
        }
    }

    void onePartHasAllThatIsKnownOfIt()
    {
        StationResult result = numbered(3);
        result.value1 = QStringLiteral("/DBFiles/Images/a.jpg");
        result.part.imageMs = 12.5;
        result.part.resultMs = 30;
        result.part.user = QStringLiteral("李工");
        result.part.calibration = QStringLiteral("0a1b2c3d");
        result.part.sourceImage = QStringLiteral("/DBFiles/SrcImages/a.bmp");
        StationDB database(path());
        QVERIFY(database.open() && database.insertResult(result, start));
        PartReader reader(m_home->path());
        QVERIFY(reader.open());
        const PartRow row = reader.row(1).value();
        QCOMPARE(PartTable::timeOf(row.wall), start);
        QCOMPARE(
            QStringList({row.resultImage, row.part.sourceImage, row.part.user, row.part.calibration, row.evidence}),
            QStringList({result.value1, result.part.sourceImage, "李工", "0a1b2c3d", result.value3}));
        QCOMPARE(QVector<double>({row.part.imageMs, row.part.resultMs, row.part.replyMs}),
                 QVector<double>({12.5, 30, -1}));
        QVERIFY(!reader.row(2).has_value());
        QCOMPARE(reader.span(), qMakePair(start, start));
    }

    /// Rows before the damage are not all rows.
    void damageAmongTheRowsIsNoEnd()
    {
        fill(1);
        {
            OtherProgram other(path());
            QVERIFY(other.run("WITH RECURSIVE n(i) AS (VALUES(2) UNION ALL SELECT i + 1 FROM n WHERE i < 6000) INSERT "
                              "INTO PartTable(wall, uid, outcome) SELECT i, i, 0 FROM n") &&
                    other.run("PRAGMA wal_checkpoint(TRUNCATE)"));
        }
        QFile file(path());
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
        file.write(QByteArray(int(file.size() / 4), '\xff'));
        file.close();
        PartReader reader(m_home->path());
        QVERIFY(reader.open());
        const int read = reader.series({}, {}).size();
        QVERIFY2(read > 0 && read < 6000 && reader.error().contains("malformed"), qPrintable(reader.error()));
        reader.rows({}, PartReader::Time, Qt::AscendingOrder, 6000, 0);
        QVERIFY(reader.error().contains("malformed"));
    }

private:
    QString path() const { return m_home->path("/DBFiles/Pellix.db"); }
    void fill(int parts)
    {
        StationDB database(path());
        QVERIFY(database.open());
        for (int i = 0; i < parts; ++i)
            QVERIFY(database.insertResult(numbered(i), start.addSecs(i)));
    }

    std::unique_ptr<TempHome> m_home;
};

Q_DECLARE_METATYPE(PartFilter)
QTEST_GUILESS_MAIN(PartsTest)
#include "tst_parts.moc"
