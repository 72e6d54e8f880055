#include "dialogs/DialogDriver.h"
#include "dialogs/plcmonitor/FrameList.h"
#include "dialogs/plcmonitor/QPlcMonitorUI.h"
#include "support/FakePort.h"
#include "support/TempHome.h"
#include "workflow/PlcLink.h"

#include <QComboBox>
#include <QTableView>

namespace {

/// A monitor on a line, and what its table shows.
struct Bench
{
    FakePort port;
    PlcLink link{&port};
    QPlcMonitorUI dialog{link};
    DialogDriver driver{dialog};

    Bench() { dialog.show(); }

    void receive(char command, const QVector<qint16>& words = {})
    {
        SComFrame frame;
        frame.command = static_cast<quint8>(command);
        std::copy(words.begin(), words.end(), frame.data);
        link.receive(frame);
    }

    /// Of every shown frame the texts of one column.
    QStringList column(int column) const
    {
        const QAbstractItemModel* model = driver.get<QTableView>("table")->model();
        QStringList cells;
        for (int row = 0; row < model->rowCount(); ++row)
            cells << model->index(row, column).data().toString();
        return cells;
    }
    QString commands() const { return column(FrameText::Command).join(QString()); }

    /// The frames of two parts, as they pass on the line: the first found, the second refused.
    void twoParts()
    {
        receive('C', {3, 4});
        receive('P', {5});
        link.sendResult(1, 123.4567, 60.25, -2.5);
        link.sendHeartbeat();
        receive('P', {6});
        link.sendResult(2, 999.0, 0, 0);
    }
};

} // namespace

class PlcMonitorTest : public QObject
{
    Q_OBJECT

private slots:
    void everyFrameTellsWhatItMeans()
    {
        Bench bench;
        bench.driver.press("heartbeatBox");
        bench.twoParts();
        bench.link.sendResult(1, 361.0, 0, 0);
        bench.link.sendResult(2, 365.0, 0, 0);
        bench.receive('P', {7});
        bench.receive('?');
        bench.receive('\xF1');
        QTRY_COMPARE(bench.commands(), "CPFCPGHFHGHP?0xF1");
        const QStringList meanings{"型号索引：工位1 = 3，工位2 = 4",
                                   "触发工位1",
                                   "工位1：角度 123.456°，X 60.250 mm，Y -2.500 mm",
                                   "心跳",
                                   "触发工位2",
                                   "工位2：999，触发被拒绝",
                                   "工位2没有有效结果",
                                   "工位1：361，未找到",
                                   "工位1没有有效结果",
                                   "工位2：365，结果没有角度",
                                   "工位2没有有效结果",
                                   "触发，没有代码为7的工位，忽略",
                                   "未知命令，忽略",
                                   "关闭程序"};
        QCOMPARE(bench.column(FrameText::Meaning), meanings);
        QCOMPARE(bench.column(FrameText::Words).value(2), "0 0 123 456 60 250 -2 -500");
        QCOMPARE(bench.column(FrameText::Direction).value(2), "程序 → PLC");
        QCOMPARE(bench.column(FrameText::Direction).last(), "PLC → 程序");
    }

    void framesOfAClosedMonitorAreNotSeenAndTheOthersSaved()
    {
        const TempHome home;
        Bench bench;
        bench.receive('=', {-5, 1});
        QTRY_COMPARE(bench.commands(), "=");
        bench.dialog.close();
        bench.receive('P', {5});
        bench.dialog.show();
        bench.receive('P', {6});
        QTRY_COMPARE(bench.commands(), "=P");
        bench.dialog.saveTo(home.path("/通信.csv"));
        QTRY_VERIFY(bench.driver.message().startsWith("已保存到"));
        const QStringList lines = QString::fromUtf8(home.read("/通信.csv")).split("\r\n");
        QVERIFY(lines.value(0).endsWith("时间,方向,命令,数据字 0 … 7,含义"));
        QVERIFY(lines.value(1).endsWith(",PLC → 程序,'=,'-5 1 0 0 0 0 0 0,未知命令，忽略"));
        QVERIFY(lines.value(2).endsWith(",P,6 0 0 0 0 0 0 0,触发工位2"));
        bench.dialog.saveTo(home.path("/通信.csv/通信.csv"));
        QTRY_VERIFY(bench.driver.message().startsWith("未能保存："));
        QVERIFY(bench.driver.canPress("saveButton"));
    }

    void filtersFindTheFrameThatIsLookedFor()
    {
        Bench bench;
        bench.twoParts();
        QTRY_COMPARE(bench.commands(), "CPFPGH");
        auto* way = bench.driver.get<QComboBox>("wayBox");
        way->setCurrentIndex(1);
        QCOMPARE(bench.commands(), "CPP");
        way->setCurrentIndex(2);
        QCOMPARE(bench.commands(), "FGH");
        bench.driver.type("textEdit", "999");
        QCOMPARE(bench.commands(), "G");
        bench.driver.type("textEdit", "");
        way->setCurrentIndex(0);
        bench.driver.get<QComboBox>("commandBox")->setCurrentText("P");
        QCOMPARE(bench.commands(), "PP");
        bench.driver.get<QComboBox>("commandBox")->setCurrentIndex(0);
        bench.driver.press("heartbeatBox");
        QCOMPARE(bench.commands(), "CPFCPGH");
    }

    void pausedListStandsStillAndCatchesUp()
    {
        Bench bench;
        bench.receive('C', {1, 2});
        QTRY_COMPARE(bench.commands(), "C");
        bench.driver.press("pauseButton");
        bench.twoParts();
        QTRY_VERIFY(bench.driver.message("countLabel").contains("7 帧待显示"));
        QCOMPARE(bench.commands(), "C");
        bench.driver.press("pauseButton");
        QCOMPARE(bench.commands(), "CCPFPGH");
        bench.driver.press("clearButton");
        QCOMPARE(bench.commands(), "");
    }

    void shiftOfFramesKeepsTheNewest()
    {
        FrameList list;
        list.setFilter({});
        QVector<SeenFrame> batch(100);
        for (int sent = 0; sent < 3 * FrameList::kept; sent += batch.size()) {
            for (int i = 0; i < batch.size(); ++i) {
                batch[i].received = i % 2 == 0; // half of them heartbeats, which are hidden
                batch[i].frame.command = 'C';
                batch[i].frame.data[0] = static_cast<qint16>((sent + i) % 30000);
            }
            list.append(batch);
            QVERIFY(list.total() <= FrameList::kept + 600);
            QCOMPARE(list.rowCount(), list.total() / 2);
        }
        QVERIFY(list.total() >= FrameList::kept);
        const QString newest = list.index(list.rowCount() - 1, FrameText::Words).data().toString();
        QCOMPARE(newest, "29998 0 0 0 0 0 0 0");
    }
};

QTEST_MAIN(PlcMonitorTest)
#include "tst_plcmonitor.moc"
