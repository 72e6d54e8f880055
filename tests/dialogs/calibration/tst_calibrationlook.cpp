#include "CalibrationBench.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "support/Table.h"

namespace {

std::unique_ptr<CalibrationDialog> newDialog(bool fourPoints)
{
    if (fourPoints)
        return std::make_unique<ksImageCaliUI4P>();
    return std::make_unique<ksImageCaliUI>();
}

} // namespace

class CalibrationLookTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void everyTextFitsAndIsPictured_data()
    {
        Table::columns<QByteArray, bool, bool, bool>();
        for (int i = 0; i < 8; ++i) {
            const QByteArray name =
                QByteArray(i & 4 ? "4p" : "2p") + (i & 2 ? "_en" : "_zh") + (i & 1 ? "_one" : "_two");
            QTest::newRow(name) << name << bool(i & 4) << bool(i & 2) << bool(i & 1);
        }
    }
    void everyTextFitsAndIsPictured()
    {
        const auto [name, fourPoints, english, oneStation] = Table::row<QByteArray, bool, bool, bool>();
        CalibrationBench bench;
        CalibrationBench::picture({2448, 2048}).save(bench.home.path("/user/StandImage_1.jpg"));
        StationConfig& first = bench.config()->stations[0];
        first.twoPoint = {{420, 800}, {1980, 1130}, 478.25, 0.299927, -12.5, 33.75};
        first.fourPoint.pixelPoints = {QPoint(310, 290), QPoint(2140, 330), QPoint(280, 1720), QPoint(2110, 1755)};
        first.fourPoint.realPoints = {QPointF(-112.35, 20.1), QPointF(436.95, 33.4), QPointF(-121.3, 449.2),
                                      QPointF(427.85, 459.85)};
        first.fourPoint.testPoint = {1224, 1024};
        bench.config()->stations[1].fourPoint.pixelPoints = {QPoint(10, 10), QPoint(10, 10), QPoint(900, 10), QPoint()};
        std::unique_ptr<English> texts;
        if (english) {
            texts = std::make_unique<English>();
            QVERIFY(*texts);
        }
        const auto dialog = newDialog(fourPoints);
        dialog->setOneStation(oneStation);
        dialog->show();
        const DialogDriver hand(*dialog);
        hand.act({"m_pbApply", "m_pbLock"});
        QCoreApplication::processEvents(); // the layout settles
        QStringList left = hand.clipped();
        left.removeAll(QStringLiteral("label_status")); // cuts its own text, with the whole in its tip
        left.removeAll(QStringLiteral("label_status_2"));
        left += Look::overlapping(*dialog);
        QVERIFY2(left.isEmpty(), qPrintable(left.join(QStringLiteral(", "))));
        if (english)
            QCOMPARE(hand.chinese(), QStringList());
        hand.shoot(QString("calibration_%1_%2x").arg(QString(name)).arg(qApp->devicePixelRatio()));
    }

    void languageChangesWhileItIsOpen()
    {
        CalibrationBench bench;
        const auto dialog = newDialog(true);
        dialog->setWindowTitle(QStringLiteral("图像标定 4点标定"));
        dialog->show();
        const DialogDriver hand(*dialog);
        hand.press("m_pbLock_2");
        const QString real = hand.get<QLabel>("label_testRealPoint")->text();
        QTranslator texts;
        QVERIFY(texts.load(QStringLiteral(VALVECELL_BIN_DIR "/language/English/calibration_en.qm")));
        QCoreApplication::installTranslator(&texts);
        QTRY_COMPARE(hand.get<QPushButton>("m_pbLock")->text(), QStringLiteral("Unlock"));
        QCOMPARE(hand.get<QPushButton>("m_pbLock_2")->text(), QStringLiteral("Lock")); // stays unlocked
        QCOMPARE(told(hand.get<QLabel>("label_test_2")->text(), hand.get<QGroupBox>("CalibrationPanel_2")->title()),
                 "Test point:|Station 2: camera field calibration");
        QCOMPARE(hand.get<QLabel>("label_testRealPoint")->text(), real);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("图像标定 4点标定")); // its opener's
        hand.press("m_pbLock_2");
        QCOMPARE(hand.get<QLabel>("label_status_2")->text(), QStringLiteral("Locked"));
    }
};

QTEST_MAIN(CalibrationLookTest)
#include "tst_calibrationlook.moc"
