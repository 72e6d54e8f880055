#include "../db/OtherProgram.h"
#include "common/forms/InlineMessage.h"
#include "db/PartTable.h"
#include "db/StationDB.h"
#include "db/log/ksLogDB.h"
#include "results/ResultsView.h"
#include "results/charts/ResultPlot.h"
#include "results/charts/StatisticsPage.h"
#include "results/data/LogReader.h"
#include "results/data/PartReader.h"
#include "results/logs/LogPage.h"
#include "results/logs/LogTableModel.h"
#include "results/parts/PartDetail.h"
#include "results/parts/PartPictures.h"
#include "results/parts/PartTableModel.h"
#include "results/parts/PartsPage.h"
#include "support/English.h"
#include "support/Look.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QPlainTextEdit>
#include <QTableView>

namespace {

/// Tomorrow's: part of what is called today's also when midnight passes during a test.
QDateTime moment(int second)
{
    static const QDateTime first(QDate::currentDate().addDays(1), QTime(10, 0));
    return first.addSecs(second);
}

/// Found, not found, refused in turn, at the stations in turn.
StationResult numbered(int i)
{
    StationResult result;
    PartRecord& part = result.part;
    part.station = 1 + i % 2;
    part.model = QStringLiteral("W18");
    part.outcome = PartOutcome(i % 3);
    part.angle = result.angle = part.outcome == PartOutcome::Found ? 10.5 + i % 7 : 361;
    part.x = 100 + i % 5;
    result.stationName = QStringLiteral("Station_%1").arg(part.station);
    result.value2 = QStringLiteral("%1_W18").arg(part.station);
    return result;
}

} // namespace

/// The pages over a small home, as a person uses them.
class PagesTest : public QObject
{
    Q_OBJECT

    QString results() const { return m_home->path("/DBFiles/Pellix.db"); }
    void record(const QVector<int>& seconds)
    {
        StationDB database(results());
        QVERIFY(database.open());
        for (int i = 0; i < seconds.size(); ++i)
            QVERIFY(database.insertResult(numbered(i), moment(seconds.at(i))));
    }
    void recordParts(int count)
    {
        QVector<int> seconds;
        for (int i = 0; i < count; ++i)
            seconds << 20 * i;
        record(seconds);
    }

    /// Shows the home, on the page of that kind.
    std::unique_ptr<ResultsView> open(QWidget* (*page)(ResultsView&) = nullptr)
    {
        auto view = std::make_unique<ResultsView>();
        view->resize(1000, 700);
        view->setHome(m_home->path());
        if (page)
            view->setCurrentWidget(page(*view));
        view->show();
        return view;
    }
    static QWidget* partsPage(ResultsView& view) { return &view.parts(); }
    static QWidget* chartsPage(ResultsView& view) { return &view.statistics(); }
    static QWidget* logPage(ResultsView& view) { return &view.logs(); }

    static QStringList column(const QAbstractItemModel& model, int column)
    {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts << model.index(row, column).data().toString();
        return texts;
    }
    /// What a page says in its message or in place of the table.
    static QString said(const QWidget& page)
    {
        QStringList texts;
        for (const QLabel* label : page.findChildren<QLabel*>()) {
            if (label->isVisible())
                texts << label->text();
        }
        return texts.join(QLatin1Char('|'));
    }

private slots:
    void init() { m_home = std::make_unique<TempHome>(); }
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); } // writes into the home

    void aStationsCountLeadsToItsParts_data()
    {
        Table::of<int, bool, QString>({{"failures of one", 2, true, "station = 2 AND outcome > 0"},
                                       {"all of one", 1, false, "station = 1"},
                                       {"failures of both", 0, true, "outcome > 0"}});
    }
    void aStationsCountLeadsToItsParts()
    {
        const auto [station, failures, condition] = Table::row<int, bool, QString>();
        recordParts(250);
        const auto view = open(logPage);
        view->showDay(station, failures);
        QCOMPARE(view->currentWidget(), static_cast<QWidget*>(&view->parts()));
        OtherProgram other(results());
        QTRY_COMPARE(QString::number(view->parts().table().rowCount()),
                     other.value("SELECT count(*) FROM PartTable WHERE " + condition));
        const QString newest = other.value("SELECT max(uid) FROM PartTable WHERE " + condition);
        QTRY_COMPARE(QString::number(view->parts().table().rowAt(0)->uid), newest);
        const auto* pictures = view->parts().findChild<QTableView*>("partPictures");
        QCOMPARE(pictures->isVisible(), failures);
        QVERIFY2(pictures->rowHeight(0) > PartPictures::pictureHeight,
                 qPrintable(QString::number(pictures->rowHeight(0))));
    }

    void aMomentOfAStationLeadsToItsPart()
    {
        recordParts(250);
        const auto view = open(logPage);
        view->showPart(2, PartTable::wallOf(moment(20 * 101)));
        QCOMPARE(view->currentWidget(), static_cast<QWidget*>(&view->parts()));
        const auto* table = view->parts().findChild<QTableView*>("partTable");
        const auto chosen = [&] { return view->parts().table().rowAt(table->currentIndex().row()); };
        QTRY_COMPARE(view->parts().table().rowCount(), 3); // with its neighbours
        QTRY_VERIFY(chosen() && chosen()->uid == 102);
    }

    void whatIsNotedOfAPartComesBack()
    {
        recordParts(9);
        for (const QString& expected : {QString(), QStringLiteral("划痕 'x' 50%")}) {
            auto view = open();
            view->setUser([] { return QStringLiteral("李工"); });
            auto* table = view->parts().findChild<QTableView*>("partTable");
            QTRY_COMPARE(view->parts().table().rowCount(), 9);
            table->selectRow(4);
            auto* comment = view->parts().findChild<QPlainTextEdit*>();
            QTRY_COMPARE(comment->toPlainText(), expected);
            comment->setPlainText(QStringLiteral("划痕 'x' 50%"));
            view->refresh(); // while it is being typed
            QTest::keyClick(table, Qt::Key_Return);
            QCOMPARE(comment->toPlainText(), QStringLiteral("划痕 'x' 50%"));
            view.reset(); // nothing that was typed is lost
            OtherProgram notes(PartReader::reviewsOf(m_home->path()));
            QTRY_COMPARE(notes.column("SELECT uid || account || comment FROM Review"),
                         QStringList("5李工划痕 'x' 50%"));
        }
    }

    void aNoteThatCannotBeWrittenIsSaid()
    {
        recordParts(3);
        QVERIFY(QDir().mkpath(PartReader::reviewsOf(m_home->path())));
        const auto view = open();
        QTRY_COMPARE(view->parts().table().rowCount(), 3);
        view->parts().findChild<QPlainTextEdit*>()->setPlainText("x");
        QTRY_VERIFY2(said(view->parts()).contains("不能写入备注"), qPrintable(said(view->parts())));
    }

    /// A clock that was put back sorts parts by what it said; the live log shows what came last.
    void clockPutBack()
    {
        record({0, 20, -7200, -7180});
        const auto view = open();
        QTRY_COMPARE(view->parts().table().rowCount(), 4);
        QStringList uids;
        for (int row = 0; row < 4; ++row)
            uids << QString::number(view->parts().table().rowAt(row)->uid);
        QCOMPARE(uids.join(' '), QString("2 1 4 3"));
        view->setCurrentWidget(&view->statistics());
        const QSignalSpy shown(&view->statistics(), &StatisticsPage::shown);
        QTRY_VERIFY(!shown.isEmpty());
        const double wall = double(PartTable::wallOf(moment(-7190)));
        QTRY_VERIFY(view->statistics().plot().tell({wall, 0}).contains("2 个工件"));
    }

    void liveLogShowsWhatCameLast()
    {
        {
            SystemLog::ksLogDB log(LogReader::databaseOf(m_home->path()));
        }
        OtherProgram other(LogReader::databaseOf(m_home->path()));
        const auto write = [&other](const QDateTime& time, const char* text) {
            return other.run(QStringLiteral("INSERT INTO SystemInfo(datetime, type, message) VALUES('%1', 2, '%2')")
                                 .arg(time.toString("yyyy-MM-dd hh:mm:ss"), QLatin1String(text)));
        };
        const QDateTime noon(QDate::currentDate(), QTime(12, 0));
        QVERIFY(write(noon, "first"));
        const auto view = open(logPage);
        const auto* table = view->logs().findChild<LogTableModel*>();
        const auto texts = [table] { return column(*table, LogTableModel::Text).join(' '); };
        QTRY_COMPARE(texts(), QString("first"));
        auto boxes = view->logs().findChildren<QCheckBox*>();
        boxes.first()->click();
        QVERIFY(write(noon.addSecs(-3600), "second"));
        QTRY_COMPARE(texts(), QString("second first"));
    }

    /// The charts' numbers are those that SQLite counts, and a click leads to the parts behind them.
    void aBarLeadsToItsParts()
    {
        recordParts(400);
        const auto view = open(chartsPage);
        const QSignalSpy shown(&view->statistics(), &StatisticsPage::shown);
        QTRY_VERIFY(!shown.isEmpty());
        const qint64 begin = PartTable::wallOf(moment(3600));
        const QString hour = QStringLiteral("wall >= %1 AND wall < %2").arg(begin).arg(begin + 3600000);
        OtherProgram other(results());
        const QStringList counts =
            other
                .value("SELECT count(*) || ' ' || total(outcome = 0) || ' ' || total(outcome = 1) || ' ' || "
                       "total(outcome = 2) FROM PartTable WHERE " +
                       hour)
                .remove(".0")
                .split(' ');
        ResultPlot& plot = view->statistics().plot();
        const QPointF place(double(begin) + 1800000, 1);
        QVERIFY2(plot.tell(place).contains(QStringLiteral("%1 个工件，找到 %2，未找到 %3，拒绝 %4")
                                               .arg(counts[0], counts[1], counts[2], counts[3])),
                 qPrintable(plot.tell(place)));
        emit plot.placePicked(place);
        QCOMPARE(view->currentWidget(), static_cast<QWidget*>(&view->parts()));
        QTRY_COMPARE(QString::number(view->parts().table().rowCount()), counts[0]);
        emit plot.partPicked(7);
        const auto* table = view->parts().findChild<QTableView*>("partTable");
        const auto chosen = [&] { return view->parts().table().rowAt(table->currentIndex().row()); };
        QTRY_VERIFY(chosen() && chosen()->uid == 7 && view->parts().table().rowCount() == 6); // with its neighbours
        QVERIFY(said(view->parts()).contains(moment(120).toString("yyyy-MM-dd hh:mm:ss")));
    }

    void everyKindOfHomeIsSaid_data()
    {
        Table::of<QString, QString, int>({
            {"none", "", "还没有检测结果", 0},
            {"empty", "parts 0", "没有符合条件的工件", 0},
            {"another program's", "sql CREATE TABLE other(a)", "没有检测结果表", 0},
            {"with other columns", "sql CREATE TABLE RltTable(a)", "没有检测结果表", 0},
            {"a later version's", "sql CREATE TABLE RltTable(a); PRAGMA user_version = 99", "更新版本", 0},
            {"no database", "bytes", "已损坏", 0},
            {"an earlier version's", "parts 3; DROP TABLE PartTable; PRAGMA user_version = 0", "3 个工件", 3},
            {"nothing can be written", "frozen 3", "不能写入，只能查看", 3},
        });
    }
    void everyKindOfHomeIsSaid()
    {
        const auto [made, expected, parts] = Table::row<QString, QString, int>();
        if (made.contains("parts") || made.contains('3'))
            recordParts(parts);
        if (made == "parts 0")
            StationDB(results()).initialise();
        if (made == "bytes")
            m_home->write("/DBFiles/Pellix.db", QByteArray(5000, 'x'));
        if (made.startsWith("frozen")) // what a reader would have to make is in the way
            QVERIFY(QDir().mkpath(results() + "-wal"));
        if (made.startsWith("sql") || made.contains(';')) {
            QVERIFY(QDir().mkpath(m_home->path("/DBFiles")));
            OtherProgram other(results());
            for (const QString& statement : QString(made).remove("sql").remove("parts 3;").split(';'))
                QVERIFY(other.run(statement));
        }
        const auto view = open();
        QTRY_VERIFY2(said(view->parts()).contains(expected), qPrintable(said(view->parts())));
        QCOMPARE(view->parts().table().rowCount(), parts);
        QCOMPARE(QFileInfo::exists(results()), !made.isEmpty());
        const bool failed = parts == 0 && made != "parts 0";
        QVERIFY2(!failed || !said(view->parts()).contains("0 个工件"), qPrintable(said(view->parts())));
        view->setCurrentWidget(&view->statistics());
        const QString inCharts = parts > 0 ? QStringLiteral("3 个工件") : expected;
        QTRY_VERIFY2(said(view->statistics()).contains(inCharts), qPrintable(said(view->statistics())));
        QVERIFY2(!failed || !said(view->statistics()).contains("0 个工件"), qPrintable(said(view->statistics())));
        view->setCurrentWidget(&view->parts());
        // A good one takes its place meanwhile.
        QDir(m_home->path("/DBFiles")).removeRecursively();
        recordParts(5);
        view->refresh();
        QTRY_VERIFY2(said(view->parts()).contains("5 个工件"), qPrintable(said(view->parts())));
    }

    void everyKindOfLogIsSaid_data()
    {
        const char* const columns = "CREATE TABLE SystemInfo(id INTEGER PRIMARY KEY, datetime, type, message)";
        Table::of<QString, QString>({{"none", "", "还没有系统日志"},
                                     {"no database", "bytes", "已损坏"},
                                     {"another program's", "CREATE TABLE other(a)", "没有系统日志表"},
                                     {"with other columns", "CREATE TABLE SystemInfo(a)", "没有系统日志表"},
                                     {"empty", columns, "没有符合条件的日志"}});
    }
    void everyKindOfLogIsSaid()
    {
        const auto [made, expected] = Table::row<QString, QString>();
        const QString path = LogReader::databaseOf(m_home->path());
        if (made == "bytes")
            m_home->write("/dbLog.db", QByteArray(5000, 'x'));
        else if (!made.isEmpty())
            QVERIFY(OtherProgram(path).run(made));
        const auto view = open(logPage);
        QTRY_VERIFY2(said(view->logs()).contains(expected), qPrintable(said(view->logs())));
        QVERIFY2(made.contains("message") || !said(view->logs()).contains("0 行"), qPrintable(said(view->logs())));
        QDate day = QDate::currentDate();
        view->logs().findChild<QDateEdit*>()->setDate(day.addDays(1)); // the first of the two
        QTRY_VERIFY2(said(view->logs()).contains("起始日期晚于结束日期"), qPrintable(said(view->logs())));
        QFile::remove(path);
        {
            SystemLog::ksLogDB log(path);
        }
        QVERIFY(OtherProgram(path).run(QStringLiteral("INSERT INTO SystemInfo(datetime, type, message) VALUES('%1 "
                                                      "12:00:00', 2, 'a')")
                                           .arg(day.toString(Qt::ISODate))));
        view->logs().findChild<QDateEdit*>()->setDate(day);
        QTRY_VERIFY2(said(view->logs()).contains("1 行"), qPrintable(said(view->logs())));
    }

    void rowsThatGoMeanwhileAreNotWaitedFor()
    {
        recordParts(450);
        const auto view = open();
        QTRY_COMPARE(view->parts().table().rowCount(), 450);
        OtherProgram other(results());
        QVERIFY(other.run("DELETE FROM RltTable WHERE uid <= 150"));
        auto* table = view->parts().findChild<QTableView*>("partTable");
        table->scrollToBottom();
        QTRY_COMPARE(view->parts().table().rowCount(), 300);
        QTRY_VERIFY(said(view->parts()).contains("300 个工件"));
        view->refresh();
        QTRY_VERIFY(!view->parts().table().rowAt(299) && view->parts().table().rowCount() == 300);
        QVERIFY(other.run("ALTER TABLE RltTable RENAME TO gone"));
        table->scrollToBottom();
        QTRY_VERIFY2(said(view->parts()).contains("没有检测结果表"), qPrintable(said(view->parts())));
    }

    void textsFitInBothLanguages_data()
    {
        Table::of<bool, QSize>({{"Chinese", false, QSize(1000, 680)}, {"English", true, QSize(1000, 680)}});
    }
    void textsFitInBothLanguages()
    {
        const auto [inEnglish, size] = Table::row<bool, QSize>();
        recordParts(30);
        const auto view = open();
        std::unique_ptr<English> english;
        if (inEnglish) // while the pages are there
            english = std::make_unique<English>();
        view->resize(size);
        QStringList faults;
        for (int page = 0; page < view->count(); ++page) {
            view->setCurrentIndex(page);
            const auto faultsNow = [&] {
                return Look::clipped(*view) + Look::overlapping(*view->currentWidget()) +
                       (inEnglish ? Look::chinese(*view->currentWidget()).filter(QRegularExpression("^(?!.*工厂)"))
                                  : QStringList());
            };
            if (!QTest::qWaitFor([&] { return faultsNow().isEmpty(); }, patienceMs / 40))
                faults << faultsNow();
            QVERIFY2(view->minimumSizeHint().width() <= 1000, qPrintable(QString::number(page)));
        }
        QCOMPARE(faults.join('\n'), QString());
    }

private:
    std::unique_ptr<TempHome> m_home;
};

QTEST_MAIN(PagesTest)
#include "tst_pages.moc"
