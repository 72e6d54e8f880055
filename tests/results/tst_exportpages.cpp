#include "PartsHome.h"
#include "results/ResultsView.h"
#include "results/charts/ResultPlot.h"
#include "results/charts/StatisticsPage.h"
#include "results/export/forms/ExportBar.h"
#include "results/logs/LogPage.h"
#include "results/parts/PartTableModel.h"
#include "results/parts/PartsPage.h"
#include "support/Table.h"

#include <QHeaderView>
#include <QTableView>
#include <qwt_scale_div.h>

namespace {

/// What the bar has written, as far as a spreadsheet goes: its lines.
QList<QByteArray> written(ExportBar& bar, int choice, const QString& path)
{
    ExportOutcome outcome;
    bool finished = false;
    const auto connection = QObject::connect(&bar, &ExportBar::finished, [&](const ExportOutcome& result) {
        outcome = result;
        finished = true;
    });
    bar.write(choice, path);
    [&] { QTRY_VERIFY(finished); }();
    QObject::disconnect(connection);
    QFile file(outcome.path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>{outcome.error.toUtf8()};
}

} // namespace

/// What the pages write is what they show.
class ExportPagesTest : public QObject
{
    Q_OBJECT

private slots:
    void partsComeWithTheColumnsAndOrderOfTheTable()
    {
        PartsHome home;
        home.addParts(12, QDateTime::currentDateTime().addSecs(-60));
        PartsPage page;
        page.setHome(home.path());
        page.showTimes(QDateTime::currentDateTime().addDays(-1), QDateTime::currentDateTime().addDays(1));
        QTRY_COMPARE(page.table().rowCount(), 12);
        auto* view = page.findChild<QTableView*>("partTable");
        for (int column = 0; column < view->model()->columnCount(); ++column)
            view->setColumnHidden(column, column != PartTableModel::X && column != PartTableModel::Station);
        view->horizontalHeader()->moveSection(view->horizontalHeader()->visualIndex(PartTableModel::X), 0);
        view->sortByColumn(PartTableModel::X, Qt::DescendingOrder);
        const QTemporaryDir folder;
        const QList<QByteArray> lines = written(page.exports(), 0, folder.filePath("a.csv"));
        QCOMPARE(lines.size(), 14);
        QCOMPARE(lines.at(0).mid(3), QByteArray("X,工位\r"));
        QCOMPARE(lines.at(1), QByteArray("111.125,工位2\r"));
        QVERIFY(written(page.exports(), 4, folder.filePath("a.pdf")).first().startsWith("%PDF"));
        const QByteArray said = written(page.exports(), 1, "/nowhere/a.xlsx").first();
        QVERIFY2(said.contains("/nowhere/a.xlsx"), said);
    }

    void chartsAndTheirNumbersAreWritten_data()
    {
        Table::of<int, int>({{"yield", Charts::Yield, 2},
                             {"models", Charts::ByModel, 4},
                             {"trend", Charts::Trend, 8},
                             {"scatter", Charts::Scatter, 8},
                             {"control", Charts::Control, 8},
                             {"failures", Charts::Failures, 6}});
    }
    void chartsAndTheirNumbersAreWritten()
    {
        const auto [kind, lines] = Table::row<int, int>();
        PartsHome home;
        QDateTime noon(QDate::currentDate(), QTime(12, 0));
        home.addParts(12, noon);
        StatisticsPage page;
        bool shown = false;
        connect(&page, &StatisticsPage::shown, this, [&shown] { shown = true; });
        page.setHome(home.path());
        page.choose(Charts::Kind(kind));
        page.refresh();
        QTRY_VERIFY(shown);
        if (kind == Charts::Yield || kind == Charts::ByModel || kind == Charts::Failures) // bars stand on the ground
            QCOMPARE(page.plot().axisScaleDiv(QwtPlot::yLeft).lowerBound(), 0.0);
        const QTemporaryDir folder;
        const QList<QByteArray> numbers = written(page.exports(), 0, folder.filePath("a.csv"));
        QVERIFY2(numbers.size() >= lines, numbers.join('\n'));
        const QByteArray columns = numbers.first();
        for (const QByteArray& line : numbers.mid(1, numbers.size() - 2))
            QCOMPARE(line.count(','), columns.count(','));
        written(page.exports(), 1, folder.filePath("a.png"));
        QVERIFY(QImage(folder.filePath("a.png")).width() > 1000);
        QVERIFY(written(page.exports(), 2, folder.filePath("a.pdf")).first().startsWith("%PDF"));
    }
};

QTEST_MAIN(ExportPagesTest)
#include "tst_exportpages.moc"
