#include "Resources.h"
#include "common/Background.h"
#include "common/CsvFile.h"
#include "common/ImageFile.h"
#include "common/LookColors.h"
#include "common/TaskResult.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <valvecell/ResultKeys.h>

#include <QStandardItemModel>

#include <array>
#include <atomic>
#include <cmath>

namespace {

/// The contrast of two colours, from 1 to 21, as the Web Content Accessibility Guidelines 2.1 define it.
double contrast(const QColor& a, const QColor& b)
{
    const auto luminance = [](const QColor& color) {
        const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

QVariantMap withAnswer(const QVariantMap& answer)
{
    return {{ResultKeys::algoResult, answer}};
}

} // namespace

class CommonTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void resultsArriveInOrderOnTheOwnersThread()
    {
        Background background(Background::AtEnd::Wait);
        QVector<int> results;
        for (int i = 0; i < 20; ++i) {
            background.run([i] { return QThread::currentThread() == qApp->thread() ? -1 : i; },
                           [&](int result) {
                               QCOMPARE(QThread::currentThread(), thread());
                               results << result;
                           });
        }
        QTRY_COMPARE(results.size(), 20);
        for (int i = 0; i < 20; ++i)
            QCOMPARE(results[i], i);
    }

    void ownerWaitsForTheJobInHandAndDropsTheOthers()
    {
        QSemaphore begun;
        QSemaphore gate;
        bool ended = false;
        bool dropped = true;
        bool delivered = false;
        {
            Background background(Background::AtEnd::Wait);
            const auto first = [&] {
                begun.release();
                gate.acquire(); // until the second job is dropped
                return ended = true;
            };
            std::shared_ptr<QSemaphore> whenGone(&gate, [](QSemaphore* opened) { opened->release(); });
            background.run(first, [&](bool) { delivered = true; });
            background.run([&dropped, token = std::move(whenGone)] { return dropped = false; },
                           [&](bool) { delivered = true; });
            begun.acquire();
        }
        QCoreApplication::sendPostedEvents();
        QVERIFY(ended && dropped && !delivered);
    }

    void jobsToFinishAreDoneThoughTheirOwnerWent()
    {
        QSemaphore gate;
        std::atomic<int> ran{0};
        bool delivered = false;
        {
            Background background(Background::AtEnd::Finish);
            for (int i = 0; i < 3; ++i) {
                background.run(
                    [&] {
                        gate.acquire();
                        return ++ran;
                    },
                    [&](int) { delivered = true; });
            }
        }
        QCOMPARE(ran.load(), 0);
        gate.release(3);
        QThreadPool::globalInstance()->waitForDone(); // as the application's end does
        QCoreApplication::sendPostedEvents();
        QCOMPARE(ran.load(), 3);
        QVERIFY(!delivered);
    }

    void nobodyWaitsForAnAbandonedJob()
    {
        const auto gates = std::make_shared<std::array<QSemaphore, 3>>(); // the thread may be the last to hold them
        auto& [begun, gate, ended] = *gates;
        {
            Background background(Background::AtEnd::Abandon);
            const auto hang = [gates] {
                auto& [begun, gate, ended] = *gates;
                begun.release();
                gate.acquire();
                ended.release();
                return 0;
            };
            background.run(hang, [](int) { QFAIL("there is nobody to hear it"); });
            begun.acquire();
        }
        QThreadPool::globalInstance()->waitForDone();
        QCOMPARE(ended.available(), 0);
        gate.release();
        QVERIFY(ended.tryAcquire(1, patienceMs));
        QCoreApplication::sendPostedEvents();
    }

    void resultMayDeleteTheOwner()
    {
        int results = 0;
        auto background = std::make_unique<Background>(Background::AtEnd::Wait);
        const auto done = [&](int) {
            ++results;
            background.reset();
        };
        background->run([] { return 1; }, done);
        background->run([] { return 2; }, done);
        QTRY_VERIFY(!background);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(results, 1);
    }

    void unreadableImageIsNamedWithItsReason_data()
    {
        Table::of<QByteArray, QString>({{"missing", QByteArray(), QString()},
                                        {"text", "no image at all", QString()},
                                        {"cut off", QByteArray::fromHex("89504e470d0a1a0a0000000d49484452"), QString()},
                                        {"huge", "P5 30000 30000 255\n", "图像过大（30000 × 30000）"}});
    }
    void unreadableImageIsNamedWithItsReason()
    {
        const auto [content, reason] = Table::row<QByteArray, QString>();
        const TempHome home;
        if (!content.isEmpty())
            home.write("/图.pgm", content);
        const ImageFile file = ImageFile::read(home.path("/图.pgm"));
        QVERIFY(file.image.isNull() && !file.reason.isEmpty());
        QVERIFY2(file.problem().startsWith("图.pgm：" + reason), qPrintable(file.problem()));
    }

    void imageIsReadByItsContent()
    {
        const TempHome home;
        QImage image(3, 2, QImage::Format_Grayscale8);
        image.fill(90);
        QString error;
        QVERIFY2(ImageFile::write(image, home.path("/新/深/b.jpg"), "png", &error), qPrintable(error));
        QVERIFY(!ImageFile::write(image, home.path("/新/c.nothing"), {}, &error));
        QVERIFY2(error.contains("c.nothing"), qPrintable(error));
        home.write("/新/d.svg", "<svg/>");
        QCOMPARE(ImageFile::below(home.path("/新")), QStringList(home.path("/新/深/b.jpg")));
        QCOMPARE(ImageFile::read(home.path("/新/深/b.jpg")).image, image);
    }

    void tableIsHarmlessInASpreadsheet()
    {
        const TempHome home;
        QStandardItemModel table;
        table.setHorizontalHeaderLabels({"移动\npx", "说明"});
        table.appendRow({new QStandardItem("1.5"), new QStandardItem("=1+1")});
        table.appendRow({new QStandardItem("a,\"b\""), new QStandardItem});
        table.appendRow({new QStandardItem("-1"), new QStandardItem("1-2=3")});
        table.appendRow({new QStandardItem("\t=1"), new QStandardItem("@A1")});
        QCOMPARE(CsvFile::write(home.path("/表.csv"), CsvFile::linesOf(table)), QString());
        QCOMPARE(home.read("/表.csv"), QByteArray("\xEF\xBB\xBF移动 px,说明\r\n1.5,'=1+1\r\n\"a,\"\"b\"\"\",\r\n"
                                                  "'-1,1-2=3\r\n'\t=1,'@A1\r\n"));
        QVERIFY(CsvFile::write(home.path("/表.csv/b.csv"), {}).contains("b.csv"));
    }

    void answerOfTheEngineIsRead_data()
    {
        const QVariantMap hole{{ResultKeys::angle, 12.5}, {ResultKeys::centerPoint, QPointF(3, 4)}};
        const auto with = [hole](const char* key, const QVariant& value) {
            QVariantMap answer = hole;
            answer.insert(key, value);
            return withAnswer(answer);
        };
        Table::of<QVariantMap, bool, double, int, QPointF>(
            {{"hole", with(ResultKeys::error, 0), true, 12.5, 0, {3, 4}},
             {"hub's centre", with(ResultKeys::holeCenter, QPointF(5, 6)), true, 12.5, 16, {5, 6}},
             {"no error code", withAnswer(hole), true, 12.5, 16, {3, 4}},
             {"refused", with(ResultKeys::error, 4), false, 12.5, 4, {3, 4}},
             {"no angle", withAnswer({{ResultKeys::error, 0}}), false, 365, 0, {}},
             {"nothing found", with(ResultKeys::angle, 361.0), false, 361, 16, {3, 4}},
             {"no number", with(ResultKeys::angle, std::nan("")), false, 365, 16, {3, 4}},
             {"no task", {{ResultKeys::taskTime, 0.1}}, false, 365, 16, {}}});
    }
    void answerOfTheEngineIsRead()
    {
        const auto [map, found, angle, error, place] = Table::row<QVariantMap, bool, double, int, QPointF>();
        const TaskResult result = TaskResult::fromMap(map);
        QCOMPARE(result.hasAlgoResult, map.contains(ResultKeys::algoResult));
        QCOMPARE(result.found, found);
        QCOMPARE(result.angle, angle);
        QCOMPARE(result.error, error);
        QCOMPARE(result.hole, place);
        QCOMPARE(result.evidence, QString());
    }

    void everyInkIsReadableOnItsGround()
    {
        for (const LookKind kind : {LookKind::Light, LookKind::Dark, LookKind::Contrast}) {
            const LookColors& look = lookColors(kind);
            QVector<QPair<QColor, QColor>> pairs{{look.faint, look.window}, {look.faint, look.card},
                                                 {look.card, look.accent},  {look.text, look.field},
                                                 {look.text, look.window},  {look.bad.ink, look.caution.ground}};
            for (const LookColors::Sign& sign : {look.good, look.caution, look.bad}) {
                for (const QColor& ground : {sign.ground, look.card, look.window})
                    pairs << qMakePair(sign.ink, ground);
                pairs << qMakePair(look.text, sign.ground);
            }
            for (const auto& [ink, ground] : qAsConst(pairs))
                QVERIFY2(contrast(ink, ground) >= (kind == LookKind::Contrast ? 7 : 4.5),
                         qPrintable(ink.name() + " on " + ground.name()));
            for (const char* name : {"window", "controls"}) {
                const QString sheet = lookSheet(name, look);
                QVERIFY(sheet.contains(look.card.name()));
                QVERIFY2(!sheet.section("*/", 1).contains('@'), "a name is no colour's");
            }
        }
    }
};

QTEST_MAIN(CommonTest)
#include "tst_common.moc"
