// What cells publish, in a real database: every row once, whatever comes twice, late, damaged or from a stranger.

#include "../db/SmallDisk.h"
#include "Health.h"
#include "PlantServers.h"
#include "collect/Storekeeper.h"
#include "plant/MqttOptions.h"
#include "plant/RowBatch.h"
#include "plant/Sparkplug.h"
#include "support/Table.h"

#include <pqxx/pqxx>
#include <thread>

namespace {

constexpr const char* cellA = "6b0f0000-0000-4000-8000-00000000000a";
constexpr const char* cellB = "6b0f0000-0000-4000-8000-00000000000b";
constexpr const char* epoch = "93c10000-0000-4000-8000-000000000001";

/// Parts (after, upTo] of which every third is a hole, recorded at `created`.
QByteArray batch(const char* cell, qint64 after, qint64 upTo, qint64 created = QDateTime::currentMSecsSinceEpoch())
{
    RowBatch batch{cell, RowBatch::partsStream, epoch, after, upTo, {}, {}};
    for (qint64 row = after + 1; row <= upTo; ++row) {
        PlantPart part;
        part.row = row;
        part.created = created;
        part.wall = created + 8 * 3600 * 1000;
        part.station = 1;
        part.outcome = QStringLiteral("found");
        part.x = double(row);
        part.y = 1.0;
        if (row % 3 != 0)
            batch.parts.append(part);
    }
    return batch.encode();
}

MqttMessage rowsOf(const char* name, const QByteArray& payload)
{
    MqttMessage message;
    message.topic = QStringLiteral("valvecell/1/plant/%1/rows/parts").arg(QLatin1String(name));
    message.payload = payload;
    return message;
}

MqttMessage birthOf(const char* name, const char* cell, qulonglong sent = 0, const char* schema = "1")
{
    using Sparkplug::Type;
    Sparkplug::Payload payload;
    payload.metrics = {{"bdSeq", Type::UInt64, qulonglong(1)},      {"Properties/CellId", Type::String, cell},
                       {"Properties/Schema", Type::String, schema}, {"Calibration/1", Type::String, "v1 no JSON"},
                       {"Alarms", Type::String, "[broken"},         {"Health/Clock", Type::DateTime, qulonglong(1000)},
                       {"Rows/parts/Epoch", Type::String, epoch},   {"Rows/parts/Sent", Type::UInt64, sent}};
    MqttMessage message;
    message.topic = QStringLiteral("spBv1.0/plant/NBIRTH/%1").arg(QLatin1String(name));
    message.payload = Sparkplug::encode(payload);
    return message;
}

} // namespace

class PlantStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!m_server.runs())
            QSKIP("PostgreSQL is not installed");
        Database database(m_server.address().toStdString());
        database.bringUp();
        database.bringUp();
    }
    void init()
    {
        m_keeper = std::make_unique<Storekeeper>(m_server.address().toStdString(), m_health,
                                                 [](const Storekeeper::Unheard&) {});
        ask("TRUNCATE cell, source, part, log_row, picture, part_slot, calibration, aside RESTART IDENTITY CASCADE");
    }

    void batchesInAnyOrderAreStoredOnce_data()
    {
        Table::of<QByteArray, QString, QString>(
            {{"in order", "0-4 4-9", "6 rows, 6 counted", ""},
             {"the same again", "0-4 0-4 0-4", "3 rows, 3 counted", ""},
             {"overlapping", "0-7 2-9 1-4", "6 rows, 6 counted", ""},
             {"late", "4-9 0-4", "6 rows, 6 counted", ""},
             {"lost in the middle and at the end", "0-2 4-6 10-12", "4 rows, 4 counted", "2-4 6-10"},
             {"lost before the first", "5-7", "1 rows, 1 counted", "0-5"},
             {"an empty one covers what was thinned away", "0-1 1-1 3-4", "2 rows, 2 counted", "1-3"}});
    }
    void batchesInAnyOrderAreStoredOnce()
    {
        const auto [sequence, stored, missing] = Table::row<QByteArray, QString, QString>();
        for (const QByteArray& range : sequence.split(' '))
            QVERIFY(m_keeper->store(
                rowsOf("C1", batch(cellA, range.split('-')[0].toLongLong(), range.split('-')[1].toLongLong()))));
        QCOMPARE(
            ask("SELECT (SELECT count(*) FROM part) || ' rows, ' || (SELECT sum(found) FROM part_slot) || ' counted'"),
            stored);
        QCOMPARE(ask("SELECT coalesce(string_agg(after || '-' || upto, ' ' ORDER BY after), '') FROM gap"), missing);
    }

    void strangersMessageIsKeptAside_data()
    {
        const QByteArray good = batch(cellB, 0, 4);
        Table::of<MqttMessage, QString>(
            {{"rubbish", rowsOf("C2", "\xff\x00rubbish"), "damaged"},
             {"rows that are none", rowsOf("C2", QByteArray(good).replace("\"found\"", "\"perhaps\"")), "damaged"},
             {"another cell's identity", rowsOf("C2", batch(cellA, 4, 9)), "identity"},
             {"an identity that is alive", birthOf("C2", cellA), "identity"},
             {"schema of tomorrow", rowsOf("C2", QByteArray(good).replace("\"v\":1", "\"v\":2")), "newer"},
             {"birth of tomorrow", birthOf("C2", cellB, 0, "2"), "damaged"},
             {"birth of nobody", birthOf("C2", "nobody"), "damaged"},
             {"rows outside of the batch", rowsOf("C2", QByteArray(good).replace("\"upTo\":4", "\"upTo\":3")),
              "range damaged"}});
    }
    void strangersMessageIsKeptAside()
    {
        const auto [message, reasons] = Table::row<MqttMessage, QString>();
        QVERIFY(m_keeper->store(birthOf("C1", cellA)));
        QVERIFY(m_keeper->store(rowsOf("C1", batch(cellA, 0, 4))));
        QVERIFY(m_keeper->store(message));
        QVERIFY(m_keeper->store(message));
        QVERIFY(m_keeper->store(rowsOf("C1", batch(cellA, 4, 9))));
        QCOMPARE(ask("SELECT count(*) || ' of ' || count(DISTINCT cell) FROM part"), QString("6 of 1"));
        const QString aside = ask("SELECT string_agg(reason || ' ' || times, ', ') FROM aside");
        QVERIFY2(reasons.split(' ').contains(aside.section(' ', 0, 0)) && aside.endsWith("2"), qUtf8Printable(aside));
        QVERIFY(!ask("SELECT detail FROM aside").isEmpty());
    }

    void twoCellsOfOneNameLoseNothing()
    {
        for (const char* cell : {cellA, cellB}) {
            QVERIFY(m_keeper->store(birthOf("C1", cell)));
            QVERIFY(m_keeper->store(rowsOf("C1", batch(cell, 0, 4))));
        }
        QCOMPARE(ask("SELECT count(*) || ' of ' || count(DISTINCT cell) FROM part"), QString("6 of 2"));
        QCOMPARE(ask("SELECT page_cells(NULL) -> 0 ->> 'twice'"), QString("true"));
    }

    void wrongClockIsMarked_data()
    {
        Table::of<qint64, QString>({{"1970", 0, "true"}, {"2066", 3040000000000, "true"}});
    }
    void wrongClockIsMarked()
    {
        const auto [created, wrong] = Table::row<qint64, QString>();
        QVERIFY(m_keeper->store(birthOf("C1", cellA)));
        QVERIFY(m_keeper->store(rowsOf("C1", batch(cellA, 0, 2, created))));
        QCOMPARE(
            ask("SELECT string_agg(DISTINCT clock_wrong::text, '') FROM part WHERE time > now() - interval '1 day'"),
            wrong);
        QVERIFY(ask("SELECT clock_off_ms FROM cell").toLongLong() < -1000000000);
    }

    void gapIsAskedForOnceAndWithPauses()
    {
        QVERIFY(m_keeper->store(birthOf("C1", cellA, 20)));
        QVERIFY(m_keeper->store(rowsOf("C1", batch(cellA, 0, 4))));
        QVERIFY(m_keeper->store(rowsOf("C1", batch(cellA, 9, 12))));
        const char* asked = "SELECT coalesce(string_agg(after || '-' || upto, ' '), '') FROM gaps_to_ask()";
        QCOMPARE(ask(asked), QString()); // it may be on its way
        ask("UPDATE source SET gap_since = now() - interval '6 seconds'");
        QCOMPARE(ask(asked), QString("4-20"));
        QCOMPARE(ask(asked), QString());
        QVERIFY(m_keeper->store(rowsOf("C1", batch(cellA, 4, 9))));
        ask("UPDATE source SET asked = NULL");
        QCOMPARE(ask(asked), QString()); // the end may be on its way
        ask("UPDATE source SET stored = now() - interval '21 seconds'");
        QCOMPARE(ask(asked), QString("12-20"));
    }

    void fullDiskIsWaitedOut()
    {
        SmallDisk disk(160);
        if (!disk.isMounted())
            QSKIP("a small disk needs an administrator");
        const OwnDatabase server(disk.path());
        QVERIFY(server.runs());
        Database(server.address().toStdString()).bringUp();
        Storekeeper keeper(server.address().toStdString(), m_health, [](const Storekeeper::Unheard&) {});
        MqttMessage picture;
        picture.topic = "valvecell/1/plant/C1/picture";
        picture.payload = "\xff\xd8" + QByteArray(4000000, 'x');
        picture.properties = {{"cellId", cellA}, {"epoch", epoch}, {"row", "1"}, {"width", "1"}, {"height", "1"}};
        QVERIFY(keeper.store(rowsOf("C1", batch(cellA, 0, 4))));
        disk.fill();
        std::atomic<bool> stored{false};
        std::thread storing([&] { stored = keeper.store(picture); });
        QTRY_VERIFY(!m_health.troubles().isEmpty());
        const bool early = stored;
        disk.empty();
        QTRY_VERIFY(stored);
        storing.join();
        QVERIFY(!early);
        QVERIFY(keeper.store(rowsOf("C1", batch(cellA, 4, 6))));
        QVERIFY(m_health.troubles().isEmpty());
    }

private:
    QString ask(const char* query)
    {
        pqxx::nontransaction work(m_database.connection());
        const pqxx::result rows = work.exec(query);
        return rows.empty() ? QString() : QString::fromUtf8(rows[0][0].c_str());
    }

    OwnDatabase m_server;
    Database m_database{m_server.address().toStdString()};
    Health m_health;
    std::unique_ptr<Storekeeper> m_keeper;
};

Q_DECLARE_METATYPE(MqttMessage)

QTEST_GUILESS_MAIN(PlantStoreTest)
#include "tst_plantstore.moc"
