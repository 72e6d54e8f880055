#include "config/ksGlobalConfig.h"
#include "db/StationDB.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/models/ModelCell.h"
#include "guided/library/LibraryTable.h"
#include "guided/library/ModelLibrary.h"
#include "support/FakeEngine.h"
#include "support/Table.h"

#include <QSortFilterProxyModel>
#include <QTableView>

namespace {

struct Library
{
    ModelCell cell;
    FakeEngine engine;
    ksGlobalConfig config;
    std::unique_ptr<ModelLibraryDialog> dialog;
    std::unique_ptr<DialogDriver> driver;

    Library()
    {
        for (int i = 1; i <= 2; ++i)
            config.station(i).solution = QStringLiteral("工位%1").arg(i);
        engine.solutions["工位1"]["五辐"] = FakeEngine::parameters(800, 600, 14, true);
    }

    void record(const QString& model, PartOutcome outcome, const QDateTime& time)
    {
        StationDB database(cell.home.path("/DBFiles/Pellix.db"));
        QVERIFY(database.open());
        StationResult result;
        result.part.station = 1;
        result.part.model = model;
        result.part.outcome = outcome;
        result.value1 = QStringLiteral("/DBFiles/Images/last.jpg");
        QVERIFY(database.insertResult(result, time));
    }

    void open()
    {
        dialog = std::make_unique<ModelLibraryDialog>(
            ModelLibrary::Parts{*cell.models, cell.indices, &engine, config, cell.home.path()});
        driver = std::make_unique<DialogDriver>(*dialog);
        dialog->show();
    }

    QTableView* view() const { return driver->get<QTableView>("libraryView"); }
    /// A row as it is shown, cells parted by '|'.
    QString row(int row) const
    {
        QStringList cells;
        for (int column = LibraryTable::Name; column < LibraryTable::Columns; ++column)
            cells << view()->model()->index(row, column).data().toString();
        return cells.join('|');
    }
};

} // namespace

class ModelLibraryTest : public QObject
{
    Q_OBJECT

private slots:
    void modelsAreListedWithWhatTheyDid()
    {
        Library own;
        const QDateTime now = QDateTime::currentDateTime();
        own.record("五辐", PartOutcome::Found, now.addDays(-200)); // too long ago
        own.record("五辐", PartOutcome::Found, now.addSecs(-300));
        own.record("五辐", PartOutcome::Refused, now.addSecs(-200));
        own.record("五辐", PartOutcome::NotFound, now.addSecs(-100));
        QDir().mkpath(own.cell.home.path("/DBFiles/Images"));
        QImage picture(640, 480, QImage::Format_Grayscale8);
        picture.fill(90);
        picture.save(own.cell.home.path("/DBFiles/Images/last.jpg"));
        own.open();
        QTRY_VERIFY(own.row(0).contains('%') || own.row(1).contains('%'));
        const int row = own.row(0).startsWith("五辐") ? 0 : 1;
        QCOMPARE(own.row(row), QStringLiteral("五辐|已示教|未示教|1|1|%1|50.0 %（2 件）")
                                   .arg(now.addSecs(-100).toString("yyyy-MM-dd HH:mm")));
        QTRY_VERIFY(!own.view()->model()->index(row, 0).data(Qt::DecorationRole).isNull());
        own.driver->shoot("model-library");
    }

    void parametersAreCopiedBetweenStations()
    {
        Library own;
        own.open();
        own.driver->type("searchEdit", "辐");
        QCOMPARE(own.view()->model()->rowCount(), 1);
        own.view()->selectRow(0);
        QVERIFY(!own.driver->canPress("copyTo1Button"));
        QString changes;
        connect(&own.dialog->library(), &ModelLibrary::modelsChanged, this,
                [&changes](const AuditChanges& stored) { changes = listed(stored); });
        own.engine.unwritable = QStringLiteral("工位2");
        own.driver->press("copyTo2Button");
        QVERIFY(own.driver->message().contains("no space left"));
        own.engine.unwritable.clear();
        own.driver->press("copyTo2Button");
        QCOMPARE(changes, QStringLiteral("model/五辐/taught:>工位2"));
        QCOMPARE(own.row(0), QStringLiteral("五辐|已示教|已示教|1|1||"));
        QVERIFY(own.driver->canPress("copyTo1Button"));
    }

    /// Numbers are sorted as numbers, and five hundred models in both languages at the smallest screen.
    void manyModelsAreSortedAndFit_data() { Table::of<bool>({{"Chinese", false}, {"English", true}}); }
    void manyModelsAreSortedAndFit()
    {
        const auto [english] = Table::row<bool>();
        std::unique_ptr<English> language(english ? new English : nullptr);
        Library own;
        PlcIndexTable::StationTable table;
        QString error;
        for (int i = 0; i < 500; ++i) {
            const QString name = QStringLiteral("W%1").arg(i, 3, 10, QChar('0'));
            QVERIFY(own.cell.library.addModel(name, {{"md_index", 500 - i}}));
            table.insert(name, 500 - i);
        }
        for (const char* station : {"工位1", "工位2"})
            own.cell.indices.setTable(station, table);
        own.cell.models->refresh();
        own.open();
        own.dialog->resize(1000, 680);
        QCOMPARE(own.view()->model()->rowCount(), 502);
        own.view()->sortByColumn(LibraryTable::Index1, Qt::DescendingOrder);
        QVERIFY(own.row(0).startsWith("W000"));
        own.view()->selectRow(0);
        QTest::qWait(0);
        QCOMPARE(own.driver->clipped(), QStringList());
        if (english)
            QCOMPARE(own.driver->chinese(), QStringList());
        own.driver->shoot(english ? "model-library-en" : "model-library-zh");
    }
};

QTEST_MAIN(ModelLibraryTest)
#include "tst_librarypage.moc"
