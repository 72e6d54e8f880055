#include "plant/PlantTopics.h"
#include "plant/RowBatch.h"
#include "plant/Sparkplug.h"
#include "support/Table.h"

namespace {

const QString id = "6b0f6b0f-1111-4222-8333-444455556666";

RowBatch batchOf(const QString& stream)
{
    RowBatch batch{id, stream, id, 1200, 1204, {}, {}};
    if (stream == RowBatch::partsStream)
        batch.parts = {
            {1201,
             1795256130123,
             1795284930123,
             1,
             17,
             "W-17",
             "c3",
             "found",
             0,
             12.5,
             -1.25,
             3.0,
             99.0,
             40.0,
             {},
             61.5,
             "张工",
             true},
            {1204, 1795256140000, 1795284940000, 2, {}, "", "", "refused", 16, {}, {}, {}, {}, {}, {}, {}, "", false}};
    else
        batch.lines = {{1202, 1795256130123, 1795284930123, "audit", "a \"b\" ±°", "张工"}};
    return batch;
}

} // namespace

/// What travels between cell and plant: what is written is read again, and rubbish is refused with its place.
class TelegramsTest : public QObject
{
    Q_OBJECT

private slots:
    void batchesComeBackAsTheyWere()
    {
        for (const QString& stream : {RowBatch::partsStream, RowBatch::logStream}) {
            QString error;
            const QByteArray json = batchOf(stream).encode();
            const auto back = RowBatch::decode(json, &error);
            QVERIFY2(back, qPrintable(error));
            QCOMPARE(back->encode(), json);
            QCOMPARE(back->size(), batchOf(stream).size());
        }
    }

    void rubbishIsRefusedWithItsPlace_data()
    {
        Table::of<QByteArray, QByteArray, QString>({
            {"not JSON", R"({"after")", "{'after'", "JSON"},
            {"newer", R"("v":1)", R"("v":2)", "v："},
            {"no cell", id.toUtf8(), "nobody", "cellId"},
            {"stream", R"("parts")", R"("pictures")", "stream"},
            {"rows behind the end", R"("upTo":1204)", R"("upTo":1203)", "rows[1].row"},
            {"rows twice", R"("row":1204)", R"("row":1201)", "rows[1].row"},
            {"backwards", R"("after":1200)", R"("after":1300)", "upTo"},
            {"row beyond JSON's integers", R"("row":1201)", R"("row":1e300)", "rows[0].row"},
            {"angle", R"("angle":12.5)", R"("angle":"12.5")", "rows[0].angle"},
            {"outcome", R"("refused")", R"("good")", "rows[1].outcome"},
            {"time", "2026-11-21T", "2026-13-21T", "rows[0].creationTime"},
            {"station", R"("station":2)", R"("station":3)", "rows[1].station"},
        });
    }
    void rubbishIsRefusedWithItsPlace()
    {
        const auto [what, with, place] = Table::row<QByteArray, QByteArray, QString>();
        QByteArray json = batchOf(RowBatch::partsStream).encode();
        QVERIFY2(json.contains(what), json.constData());
        QString error;
        QVERIFY(!RowBatch::decode(json.replace(what, with), &error));
        QVERIFY2(error.contains(place), qPrintable(error));
    }

    void sparkplugHoldsEachType()
    {
        using Sparkplug::Type;
        const Sparkplug::Payload sent{1795256130123,
                                      255,
                                      {{"bdSeq", Type::UInt64, 18446744073709551615ull},
                                       {"Node Control/Rebirth", Type::Boolean, true},
                                       {"Health/Plc", Type::String, "ok 张"},
                                       {"Health/Clock", Type::DateTime, 1795256130123ull},
                                       {"low", Type::Int32, -5ll},
                                       {"Day/1/Found", Type::UInt32, 4294967295ull},
                                       {"none", Type::Double, {}}}};
        QString error;
        const auto back = Sparkplug::decode(Sparkplug::encode(sent), &error);
        QVERIFY2(back, qPrintable(error));
        QCOMPARE(back->seq, 255);
        for (const Sparkplug::Metric& metric : sent.metrics)
            QCOMPARE(back->value(metric.name, metric.type).value_or(QVariant()), metric.value);
        QByteArray bytes = Sparkplug::encode(sent);
        bytes.chop(5); // into the last metric, behind which stands the number of the message
        QVERIFY(!Sparkplug::decode(bytes, &error) && !error.isEmpty());
        // "a" of type UInt64 with a text for its value
        QVERIFY(!Sparkplug::decode(QByteArray::fromHex("12080a0161200882010178").replace(1, 1, "\x09"), &error));
        QVERIFY2(error.contains("metrics[0]"), qPrintable(error));
    }

    void topicsAndNames_data()
    {
        Table::of<QString, bool>({{"plain", "Zelle 3 北线", true},
                                  {"level", "a/b", false},
                                  {"wildcard", "+", false},
                                  {"space", " a", false},
                                  {"control", QString("a") + QChar(7), false},
                                  {"empty", "", false},
                                  {"long", QString(65, 'a'), false}});
    }
    void topicsAndNames()
    {
        const auto [name, good] = Table::row<QString, bool>();
        QCOMPARE(PlantTopics::whyNoName(name).isEmpty(), good);
        using PlantTopics::Kind;
        for (const Kind kind : {Kind::Birth, Kind::Data, Kind::Death, Kind::Command, Kind::Rows, Kind::Picture,
                                Kind::Offer, Kind::Answer}) {
            const QString text = PlantTopics::text({kind, "plant", name, "parts"});
            const auto topic = PlantTopics::parse(text);
            QCOMPARE(topic.has_value(), good);
            QVERIFY(!good || (topic->kind == kind && topic->cell == name && topic->group == "plant"));
        }
    }
};

QTEST_GUILESS_MAIN(TelegramsTest)
#include "tst_telegrams.moc"
