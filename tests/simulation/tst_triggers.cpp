#include "SimulatedCell.h"
#include "db/ResultReader.h"
#include "support/Table.h"

#include <QJsonDocument>
#include <QSemaphore>
#include <QSignalSpy>

namespace {

/// A plant at work, models switched to index 1.
struct Plant : SimulatedCell
{
    explicit Plant(bool numbered = false, bool inLanes = false)
        : SimulatedCell(inLanes)
    {
        modules->cameras.numbered = numbered;
        if (inLanes)
            modules->cameras.offers << IConcurrentCalls::id;
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

    void numberedOutcomeEndsItsOwnTriggerAndNoOther()
    {
        Plant plant(true);
        const auto end = [&plant](quint64 number, const QImage& image, const QString& problem = {}) {
            plant.modules->cameras.end({"cam1", number, image, problem});
            plant.scheduler.settle();
        };
        const QImage image(8, 8, QImage::Format_Grayscale8);
        plant.send('P', 5);
        plant.scheduler.advance(2000);
        QCOMPARE(plant.replies(), QByteArray("FH")); // lost for good, and nothing has to be waited for
        plant.send('P', 5);
        const QVector<quint64> numbers = plant.modules->cameras.numbers;
        end(numbers[0], image); // late
        plant.modules->cameras.deliver("cam1", image);
        plant.scheduler.settle();
        QVERIFY(plant.modules->inspection.tasks.empty());
        end(numbers[1], image);
        end(numbers[1], image); // twice
        QCOMPARE(plant.modules->inspection.tasks.size(), size_t(1));
        plant.answer(33);
        QCOMPARE(plant.replies(), QByteArray("FHF"));
        plant.send('P', 5);
        end(plant.modules->cameras.numbers.last(), {}, "相机断线");
        QCOMPARE(plant.replies(), QByteArray("FHFFH"));
        QCOMPARE(plant.panel.last(), QString("1|五辐 No Image!!! 相机断线"));
        QCOMPARE(plant.rows(), QStringList({"1_五辐 361 101", "1_五辐 33 0", "1_五辐 361 100"}));
    }

    void floodOfImagesIsBoundedAndReportedOnce_data() { Table::of<bool>({{"plain", false}, {"numbered", true}}); }
    void floodOfImagesIsBoundedAndReportedOnce()
    {
        const auto [numbered] = Table::row<bool>();
        Plant plant(numbered);
        plant.send('P', 6);
        static const uchar pixels[64] = {};
        auto kept = std::make_shared<int>(0); // a share for each image that is kept
        for (int i = 0; i < 1000; ++i) {      // while the program is held up
            const auto drop = [](void* share) { delete static_cast<std::shared_ptr<int>*>(share); };
            plant.modules->cameras.deliver(
                "cam1", QImage(pixels, 8, 8, QImage::Format_Grayscale8, drop, new std::shared_ptr<int>(kept)));
        }
        QCOMPARE(kept.use_count(), 1L + ModuleRelay::maxWaiting);
        plant.deliver(2);
        plant.answer(10); // the other camera's image came through
        plant.scheduler.advance(1000);
        QCOMPARE(plant.alarms(), QStringLiteral("%1/cam1").arg(Alarm::CameraFloods));
        plant.scheduler.advance(3000);
        QVERIFY(plant.alarms().isEmpty());
    }

    /// Station 1 waits for its image when station 2's camera does not return from the call.
    void partIsAnsweredInTimeWhileTheProgramIsHeldUp()
    {
        Plant plant;
        QSignalSpy seen(&plant.cell->link(), &PlcLink::frameSeen);
        plant.send('P', 5);
        plant.modules->cameras.within = [&plant] {
            plant.scheduler.holdUp(2050);
            plant.cell->lookAfterGuiThread();
            QCOMPARE(plant.replies(), QByteArray()); // the word is the program's own
            plant.scheduler.holdUp(50);
            plant.cell->lookAfterGuiThread();
            plant.cell->lookAfterGuiThread();
            QCOMPARE(plant.replies(), QByteArray("FHGH"));
            plant.modules->cameras.deliver("cam1", QImage(8, 8, QImage::Format_Grayscale8));
            plant.modules->port->receive('P', 5); // waits for the program
            plant.scheduler.holdUp(2000);
        };
        seen.clear();
        plant.send('P', 6);
        plant.modules->cameras.within = [] {};
        plant.scheduler.advance(1);
        QCOMPARE(plant.replies(), QByteArray("FHGHFH")); // each once
        QCOMPARE(plant.rows(), QStringList({"1_五辐 361 101", "2_五辐 361 101", "1_五辐 361 101"}));
        QCOMPARE(std::count_if(seen.begin(), seen.end(), [](const auto& each) { return !each.at(1).toBool(); }),
                 7); // with one heartbeat
        plant.scheduler.advance(TriggersInHand::deadlinesToDrain * 2000);
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(10);
        QCOMPARE(plant.replies(), QByteArray("FHGHFHF"));
    }

    /// Of a module that allows calls from other threads; what waits behind the call is not captured late.
    void callThatDoesNotReturnHoldsUpItsOwnStationAlone()
    {
        QSemaphore entered;
        QSemaphore back;
        Plant plant(true, true);
        FakeCameras& cameras = plant.modules->cameras;
        cameras.within = [&] {
            const bool first = cameras.numbers.size() == 1;
            entered.release();
            if (first)
                back.acquire();
        };
        plant.send('P', 5);
        entered.acquire();
        plant.send('P', 6);
        entered.acquire();
        plant.deliver(2);
        plant.answer(10);
        QCOMPARE(plant.replies(), QByteArray("G"));
        plant.scheduler.advance(2000);
        QCOMPARE(plant.replies(), QByteArray("GFH"));
        QTRY_VERIFY(plant.alarms().contains("ksCoreCtrl: capture()"));
        plant.send('P', 5);
        plant.scheduler.advance(2000);
        QCOMPARE(plant.replies(), QByteArray("GFHFH"));
        back.release();
        plant.send('P', 5);
        entered.acquire();
        QCOMPARE(cameras.asked, QStringList({"cam1", "cam2", "cam1"}));
        plant.deliver(1);
        plant.answer(20);
        QCOMPARE(plant.replies(), QByteArray("GFHFHF"));
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

    void placeOfAnUnusableCalibrationIsRefused_data()
    {
        const QByteArray fourPoint = R"({"use4pointstand": true, "station1_4p": )";
        Table::of<QByteArray, QString>(
            {{"scale missing", R"({"StationScale_1": null})", "缺少“StationScale_1”"},
             {"scale of 0", R"({"StationScale_1": 0})", "应大于 0"},
             {"negative scale", R"({"StationScale_1": -0.28})", "-0.28"},
             {"no number", R"({"StationScale_1": "nan"})", "不是数字"},
             {"scale as a text", R"({"StationScale_1": "0,28"})", "globalConfig.json: “StationScale_1”的值 \"0,28\""},
             {"offset as a text", R"({"StationScale_1": 0.28, "StationXOffset_1": "12"})", "StationXOffset_1"},
             {"which kind is unknown", R"({"StationScale_1": 0.28, "use4pointstand": "true"})", "use4pointstand"},
             {"map never made", fourPoint + "{}}", "尚未进行四点标定"},
             {"map to a line", fourPoint + R"({"m11": 1, "m21": 2, "dx": 0, "m12": 2, "m22": 4.00001, "dy": 0}})",
              "共线"},
             {"half a map", fourPoint + R"({"m11": 1, "m21": 0, "m12": 0, "m22": 1, "dy": 5}})", "缺少“dx”"},
             {"map as a text", fourPoint + R"("none"})", "station1_4p"}});
    }
    void placeOfAnUnusableCalibrationIsRefused()
    {
        const auto [file, problem] = Table::row<QByteArray, QString>();
        Plant plant;
        QJsonObject keys = QJsonDocument::fromJson(plant.config.text()).object();
        const QJsonObject own = QJsonDocument::fromJson(file).object();
        for (auto it = own.begin(); it != own.end(); ++it) // null: the key is missing
            keys.insert(it.key(), it.value().isNull() ? QJsonValue(QJsonValue::Undefined) : it.value());
        plant.home.write("/user/globalConfig.json", QJsonDocument(keys).toJson());
        plant.config.load();
        QVERIFY(plant.config.save());
        plant.config.load(); // a start later it is unusable still
        QStringList tips;
        QObject::connect(plant.cell.get(), &Cell::readingChanged,
                         [&tips](int, const StationReading& reading) { tips << reading.tip; });
        plant.send('P', 5);
        plant.deliver(1);
        plant.answer(10, {1500, 900});
        QCOMPARE(plant.replies(), QByteArray("FH"));
        QCOMPARE(plant.modules->port->words(plant.modules->port->sent.size() - 2), QString("0 0 361 0 0 0 0 0"));
        QCOMPARE(plant.rows(), QStringList("1_五辐 361 107"));
        QVERIFY2(tips.join('|').contains(problem), qPrintable(tips.join('|')));
        QCOMPARE(plant.alarms(), alarm(Alarm::CalibrationUnusable, 1));
        QVERIFY(plant.cell->alarms().alarms().first().detail.contains(problem));
        plant.send('P', 6);
        plant.deliver(2);
        plant.answer(10);
        const bool usable = plant.config.calibration(2).problem().isEmpty();
        QCOMPARE(plant.alarms().contains(alarm(Alarm::CalibrationUnusable, 2)), !usable);
        QCOMPARE(usable, !own.contains("use4pointstand"));
    }
};

QTEST_GUILESS_MAIN(TriggersTest)
#include "tst_triggers.moc"
