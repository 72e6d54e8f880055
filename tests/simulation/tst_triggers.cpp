#include "SimulatedCell.h"
#include "db/ResultReader.h"
#include "support/Table.h"

#include <QSignalSpy>

namespace {

/// A plant at work, models switched to index 1.
struct Plant : SimulatedCell
{
    Plant()
    {
        startUp();
        open();
        send('C', 1, 1);
        panel.clear();
    }
    QStringList rows()
    {
        ResultReader reader(home.path("/DBFiles/Pellix.db"));
        QStringList texts;
        if (!reader.open(nullptr))
            return texts;
        for (const StationResultRow& row : reader.resultsOfDay(scheduler.now().date()))
            texts << QStringLiteral("%1 %2 %3")
                         .arg(row.result.threshBenchMark)
                         .arg(row.result.angle)
                         .arg(row.result.errorType);
        return texts;
    }
    QString alarms() const
    {
        QStringList texts;
        for (const Alarm& alarm : cell->alarms().alarms())
            texts << QString::number(alarm.kind) + QLatin1Char('/') + alarm.subject;
        return texts.join(' ');
    }
};

QString alarm(Alarm::Kind kind, int station)
{
    return QStringLiteral("%1/%2").arg(kind).arg(station);
}

} // namespace

/// What held at a trigger judges its part, and its answer comes in time, once, and on its own line.
class TriggersTest : public QObject
{
    Q_OBJECT

private slots:
    void modelOfTheTriggerJudgesThePart()
    {
        Plant plant;
        plant.send('P', 5);
        plant.send('C', 2, 1); // during the exposure
        plant.config.station(1).solution = "别的";
        plant.deliver(1);
        const FakeEngine::Task& task = plant.modules->inspection.tasks.at(0);
        QCOMPARE(task.solution + ' ' + task.model, QString("工位1 五辐"));
        plant.answer(10);
        QCOMPARE(plant.replies(), QByteArray("F"));
        QCOMPARE(plant.rows(), QStringList("1_五辐 10 0"));
    }

    void answerDoesNotReachThePlcOnANewLine()
    {
        Plant plant;
        plant.send('P', 5);
        plant.modules->port->line = 2; // cut, and open again
        plant.deliver(1);
        plant.answer(10);
        QVERIFY(plant.replies().isEmpty());
        QCOMPARE(plant.panel.last(), QString("1|五辐 Not Sent!!!"));
        QCOMPARE(plant.rows(), QStringList("1_五辐 361 103"));
        QCOMPARE(plant.cell->counts().of(1).found, 0);
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(10);
        QCOMPARE(plant.replies(), QByteArray("F"));
    }

    void partWithoutAnImageIsAnswered_data()
    {
        Table::of<QString, int>({{"the camera says so", "says", 100},
                                 {"the image is none", "null", 100},
                                 {"the driver hangs", "hangs", 101}});
    }
    void partWithoutAnImageIsAnswered()
    {
        const auto [how, code] = Table::row<QString, int>();
        Plant plant;
        plant.send('P', 5);
        if (how == "says")
            plant.modules->cameras.notify("noImage", QVariantMap{{"camera", "cam1"}, {"message", "没有文件"}});
        else if (how == "null")
            plant.deliver(1, QImage());
        plant.scheduler.advance(2000);
        QCOMPARE(plant.replies(), QByteArray("FH"));
        QVERIFY2(plant.panel.last().startsWith("1|五辐 No Image!!!"), qPrintable(plant.panel.last()));
        QCOMPARE(plant.rows(), QStringList(QStringLiteral("1_五辐 361 %1").arg(code)));
        QCOMPARE(plant.alarms(), alarm(Alarm::NoImage, 1));
        QCOMPARE(plant.cell->counts().of(1).notFound, 1);
    }

    void lateImageIsShownNowhereAndShiftsNoLaterPart()
    {
        Plant plant;
        plant.send('P', 5);
        plant.scheduler.advance(2000);
        plant.send('P', 5); // the camera may still deliver the image of the first
        QCOMPARE(plant.replies(), QByteArray("FHFH"));
        plant.deliver(1);
        QVERIFY(plant.modules->inspection.tasks.empty());
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(33);
        QCOMPARE(plant.replies(), QByteArray("FHFHF"));
        QCOMPARE(plant.modules->port->words(plant.modules->port->sent.size() - 1), QString("0 0 33 0 100 0 50 0"));
        QVERIFY(plant.alarms().isEmpty());
    }

    void cameraThatLostAnImageForGoodComesBack()
    {
        Plant plant;
        plant.send('P', 5);
        plant.scheduler.advance(2000 + TriggersInHand::deadlinesToDrain * 2000);
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(12);
        QCOMPARE(plant.replies(), QByteArray("FHF"));
    }

    void partWithoutAResultIsAnsweredAndItsLateResultIsNot()
    {
        Plant plant;
        plant.send('P', 5);
        plant.deliver(1);
        plant.scheduler.advance(2000);
        QCOMPARE(plant.replies(), QByteArray("FH"));
        QCOMPARE(plant.alarms(), alarm(Alarm::NoResult, 1));
        plant.answer(77);
        QCOMPARE(plant.replies(), QByteArray("FH"));
        QCOMPARE(plant.rows(), QStringList("1_五辐 361 102"));
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(12);
        QCOMPARE(plant.replies(), QByteArray("FHF"));
        QVERIFY(plant.alarms().isEmpty());
    }

    void oneTriggerHasOneAnswer()
    {
        Plant plant;
        plant.send('P', 5);
        plant.deliver(1);
        plant.deliver(1); // the same camera, unasked
        QCOMPARE(plant.modules->inspection.tasks.size(), size_t(1));
        const FakeEngine::Task task = plant.modules->inspection.tasks.front();
        plant.answer(10);
        plant.modules->inspection.tasks.push_back(task);
        plant.answer(20);
        QCOMPARE(plant.replies(), QByteArray("F"));
        QCOMPARE(plant.rows().size(), 1);
    }

    void thirdPartThatWaitsIsRefusedAtOnce()
    {
        Plant plant;
        for (int i = 0; i < 600; ++i)
            plant.send('P', 5);
        QCOMPARE(plant.modules->cameras.asked, QStringList("cam1"));
        QCOMPARE(plant.replies().count("FH"), 598);
        QCOMPARE(plant.modules->port->words(plant.modules->port->sent.size() - 2), QString("0 0 999 0 0 0 0 0"));
        QCOMPARE(plant.cell->counts().of(1).refused, 598);
        plant.send('P', 6); // the other station is not concerned
        QCOMPARE(plant.modules->cameras.asked.last(), QString("cam2"));
        plant.deliver(1);
        plant.answer(1);
        plant.deliver(1);
        plant.answer(2);
        QCOMPARE(plant.replies().count("FH"), 598);
        QVERIFY(plant.replies().endsWith("FF"));
    }

    void refusedTriggersHaveRowsToo()
    {
        Plant plant;
        plant.send('C', 9, 1);
        plant.send('P', 5);
        QCOMPARE(plant.rows(), QStringList("1_ 999 104"));
    }

    void placeThatCannotBeSentRaisesAnAlarm()
    {
        Plant plant;
        plant.config.station(1).twoPoint.scale = 1e6;
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(10);
        QCOMPARE(plant.replies(), QByteArray("FH"));
        QCOMPARE(plant.alarms(), alarm(Alarm::CalibrationUnusable, 1));
        plant.config.station(1).twoPoint.scale = 1;
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(10);
        QVERIFY(plant.alarms().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TriggersTest)
#include "tst_triggers.moc"
