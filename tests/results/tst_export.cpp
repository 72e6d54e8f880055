#include "../db/OtherProgram.h"
#include "../db/SmallDisk.h"
#include "PartsHome.h"
#include "db/PartTable.h"
#include "results/data/ReviewStore.h"
#include "results/data/ToleranceStore.h"
#include "results/export/CsvTable.h"
#include "results/export/ExportProgress.h"
#include "results/export/LogExport.h"
#include "results/export/PartExport.h"
#include "results/export/PictureExport.h"
#include "results/export/ShiftReport.h"
#include "results/export/XlsxTable.h"
#include "results/parts/PartColumns.h"
#include "support/Table.h"

namespace {

const QDateTime start(QDate(2026, 3, 31), QTime(6, 0, 0, 7));

QByteArray run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(patienceMs) && process.exitCode() == 0 ? process.readAllStandardOutput()
                                                                          : process.readAllStandardError();
}

/// Cells of a sheet, a line each row: reference, style, value or text; as another program reads them.
QByteArray sheetOf(const QString& path, int sheet)
{
    const char* const reader = R"(
import sys, zipfile, xml.etree.ElementTree as tree
archive = zipfile.ZipFile(sys.argv[1]); assert archive.testzip() is None
main = '{http://schemas.openxmlformats.org/spreadsheetml/2006/main}'
root = tree.fromstring(archive.read('xl/worksheets/sheet%s.xml' % sys.argv[2]))
for row in root.iter(main + 'row'):
    print('|'.join(''.join(cell.itertext()) for cell in row.iter(main + 'c')))
print('filter', root.find(main + 'autoFilter').get('ref') if root.find(main + 'autoFilter') is not None else '',
      'frozen', next((p.get('ySplit') for p in root.iter(main + 'pane')), ''))
)";
    return run("python3", {"-c", reader, path, QString::number(sheet)});
}

using Export = std::function<ExportOutcome(const QString& path, ExportProgress& progress)>;

} // namespace

/// Files that are written of parts and lines, as other programs read them.
class ExportTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_home = std::make_unique<PartsHome>();
        m_folder = std::make_unique<QTemporaryDir>();
    }

    /// Numbers stay numbers, also negative ones; texts that a spreadsheet would compute do not.
    void csvHasTheRowsAsShownAndNoFormulas()
    {
        m_home->addParts(4, start);
        PartExport parts;
        parts.home = m_home->path();
        parts.by = PartReader::Station;
        parts.order = Qt::DescendingOrder;
        parts.columns = {PartColumns::Time, PartColumns::Reason, PartColumns::X, PartColumns::Y};
        QVERIFY(parts.toCsv(path("a.csv"), m_progress).isGood());
        QCOMPARE(read("a.csv"), QByteArray("\xEF\xBB\xBF时间,原因,X,Y\r\n"
                                           "2026-03-31 06:00:03.007,,103.125,-18.250\r\n"
                                           "2026-03-31 06:00:01.007,'-没有找到气门孔,,\r\n"
                                           "2026-03-31 06:00:02.007,PLC 索引没有型号,,\r\n"
                                           "2026-03-31 06:00:00.007,,100.125,-20.250\r\n"));
        CsvTable table(path("b.csv"));
        QVERIFY(table.begin({{"=1"}, {"n", ExportColumn::Number, -1}}));
        for (const char* text : {"=1+1", "+1", "-1", "@a", "\ta", "\ra", "a,b", "\"a\""})
            QVERIFY(table.add({QString::fromUtf8(text), -0.125}));
        QVERIFY(table.finish());
        QCOMPARE(read("b.csv").mid(3),
                 QByteArray("'=1,n\r\n'=1+1,-0.125\r\n'+1,-0.125\r\n'-1,-0.125\r\n'@a,-0.125\r\n'\ta,-0.125\r\n"
                            "\"'\ra\",-0.125\r\n\"a,b\",-0.125\r\n\"\"\"a\"\"\",-0.125\r\n"));
    }

    void workbookHoldsNumbersDatesAndYield()
    {
        m_home->addParts(40, start);
        PartExport parts;
        parts.home = m_home->path();
        parts.columns = {PartColumns::Time, PartColumns::Model, PartColumns::X};
        parts.filter.station = 1;
        QVERIFY(parts.toXlsx(path("a.xlsx"), m_progress).isGood());
        const QList<QByteArray> lines = sheetOf(path("a.xlsx"), 1).trimmed().split('\n');
        QVERIFY2(lines.size() == 22, lines.join('\n'));
        QCOMPARE(lines.first(), QByteArray("时间|型号|X"));
        QCOMPARE(lines.last(), QByteArray("filter A1:C21 frozen 1"));
        for (int i = 0; i < 20; ++i) {
            const StationResult part = PartsHome::part(2 * i);
            const QList<QByteArray> cells = lines.at(1 + i).split('|');
            const double days = cells.first().toDouble() - 25569;
            QCOMPARE(qRound64(days * 86400000), PartTable::wallOf(start.addSecs(2 * i)));
            QCOMPARE(QString::fromUtf8(cells.mid(1, part.part.model.count('|') + 1).join('|')), part.part.model);
            QCOMPARE(cells.last().toDouble(), part.part.outcome == PartOutcome::Found ? part.part.x : 0.0);
        }
        const QByteArray summary = sheetOf(path("a.xlsx"), 2);
        QVERIFY2(summary.contains("工位1|五辐/17|5|0|5|10|100\n") && summary.contains("全部|10|0|10|20|100\n") &&
                     summary.contains("工位|工位1\n"),
                 summary);
    }

    void moreRowsThanASheetTakesGoOnOnTheNext()
    {
        XlsxTable table(path("a.xlsx"), "表", 3);
        QVERIFY(table.begin({{"n", ExportColumn::Number}}));
        for (int i = 0; i < 7; ++i)
            QVERIFY(table.add({i}));
        QVERIFY(table.finish());
        QCOMPARE(sheetOf(path("a.xlsx"), 1), QByteArray("n\n0\n1\n2\nfilter A1:A4 frozen 1\n"));
        QCOMPARE(sheetOf(path("a.xlsx"), 3), QByteArray("n\n6\nfilter A1:A2 frozen 1\n"));
    }

    void picturesAreNamedAndMissingOnesCounted()
    {
        m_home->addParts(6, start, 1000, true);
        for (const int i : {0, 1, 2, 4})
            m_home->write(QStringLiteral("/DBFiles/Images/%1.jpg").arg(i), QByteArray("picture ") + char('0' + i));
        const PictureExport pictures{m_home->path(), {}};
        const ExportOutcome zip = pictures.toZip(path("a.zip"), m_progress);
        QVERIFY2(zip.isGood(), qPrintable(zip.error));
        QCOMPARE(QPair(zip.written, zip.missing), QPair(4, 2));
        const char* const lister = "import sys, zipfile\narchive = zipfile.ZipFile(sys.argv[1])\n"
                                   "for name in archive.namelist(): print(name, archive.read(name).decode())";
        const QByteArray listed = run("python3", {"-c", lister, path("a.zip")});
        QCOMPARE(listed.split('\n').first(), QByteArray("2026-03-31_06-00-00.007_工位1_五辐-17_找到.jpg picture 0"));
        QCOMPARE(listed.count('\n'), 4);
        for (const QString& name : {path("b"), path("b (2)")}) {
            const ExportOutcome folder = pictures.toFolder(path("b"), m_progress);
            QCOMPARE(QStringList({folder.path, folder.error}), QStringList({name, {}}));
            QStringList names = QDir(name).entryList(QDir::Files);
            QCOMPARE(names.size(), 4);
            QVERIFY(listed.startsWith(names.first().toUtf8()));
        }
        PictureExport none = pictures;
        none.filter.from = start.addDays(1);
        QVERIFY(!none.toZip(path("c.zip"), m_progress).error.isEmpty());
        QVERIFY(!QFileInfo::exists(path("c.zip")));
    }

    void logHasItsChangesInPieces()
    {
        OtherProgram log(m_home->path("/dbLog.db"));
        QVERIFY(log.run("CREATE TABLE SystemInfo(id INTEGER PRIMARY KEY, datetime, type, message)"));
        QVERIFY(log.run("INSERT INTO SystemInfo(datetime, type, message) VALUES('2026-03-31 06:00:01', 0, '=a'), "
                        "('2026-03-31 06:00:02', 2, '设置更改[k]:1 → 2,用户:李工')"));
        QVERIFY(LogExport({m_home->path(), {}}).toCsv(path("a.csv"), m_progress).isGood());
        QCOMPARE(read("a.csv").mid(3),
                 QByteArray("时间,类型,用户,设置,原值,新值,内容\r\n"
                            "2026-03-31 06:00:02,更改,李工,k,1,2,\"设置更改[k]:1 → 2,用户:李工\"\r\n"
                            "2026-03-31 06:00:01,错误,,,,,'=a\r\n"));
    }

    void neitherCancelNorFullDiskTouchesTheOlderFile_data()
    {
        Table::columns<QString>();
        for (const char* name : {"a.csv", "a.xlsx", "a.zip", "a.pdf", "log.csv"})
            QTest::newRow(name) << QString(name);
    }
    void neitherCancelNorFullDiskTouchesTheOlderFile()
    {
        const auto [name] = Table::row<QString>();
        m_home->addParts(200, start, 1000, true);
        for (int i = 0; i < 200; ++i)
            m_home->write(QStringLiteral("/DBFiles/Images/%1.jpg").arg(i), QByteArray(20000, 'a'));
        OtherProgram log(m_home->path("/dbLog.db"));
        QVERIFY(log.run("CREATE TABLE SystemInfo(id INTEGER PRIMARY KEY, datetime, type, message)"));
        QVERIFY(log.run("INSERT INTO SystemInfo(message) VALUES('a')"));
        const auto leavesTheOld = [&, name = name](const QString& folder, bool cancelled) {
            QFile old(folder + '/' + name);
            QVERIFY(old.open(QIODevice::WriteOnly));
            old.write("old");
            old.close();
            const QStringList before = QDir(folder).entryList(QDir::Files | QDir::Hidden);
            if (!cancelled)
                m_fill();
            ExportProgress progress;
            if (cancelled)
                progress.cancel();
            const ExportOutcome outcome = work(name)(old.fileName(), progress);
            QVERIFY2(!outcome.isGood() && outcome.error.isEmpty() == cancelled, qPrintable(outcome.error));
            QVERIFY2(cancelled || outcome.error.contains(old.fileName()), qPrintable(outcome.error));
            QVERIFY(old.open(QIODevice::ReadOnly));
            QCOMPARE(old.readAll(), QByteArray("old"));
            QStringList after = QDir(folder).entryList(QDir::Files | QDir::Hidden);
            after.removeAll("ballast");
            QCOMPARE(after, before);
        };
        leavesTheOld(m_folder->path(), true);
        SmallDisk disk(1);
        if (!disk.isMounted())
            QSKIP("only an administrator has a disk to fill");
        m_fill = [&disk] { disk.fill(); };
        leavesTheOld(disk.path(), false);
    }

    /// The library's temporary files on a full disk: it does not notice.
    void workbookCutShortByFullTemporaryFolderIsNoFile()
    {
        SmallDisk disk(1);
        if (!disk.isMounted())
            QSKIP("only an administrator has a disk to fill");
        disk.fill();
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TMPDIR", disk.path());
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), {"writeInto", path("a.xlsx")});
        QVERIFY(process.waitForFinished(patienceMs));
        QVERIFY2(process.readAllStandardOutput().contains("no file"), process.readAllStandardError());
        QVERIFY(QDir(m_folder->path()).isEmpty(QDir::Files | QDir::Hidden));
    }

    void reportSaysWhatTheShiftWas()
    {
        m_home->addParts(400, start, 70000);
        const auto note = [this](qint64 uid, const char* text) {
            return ReviewStore::store(m_home->path(),
                                      {uid, PartTable::wallOf(start.addMSecs(70000 * (uid - 1))), true, text, "李工"});
        };
        QCOMPARE(note(2, "毛刺挡住了"), QString());
        QCOMPARE(note(3, QByteArray("长").repeated(2000)), QString()); // no row is longer than a page
        OtherProgram log(m_home->path("/dbLog.db"));
        QVERIFY(log.run("CREATE TABLE SystemInfo(id INTEGER PRIMARY KEY, datetime, type, message)"));
        QVERIFY(log.run(
            "INSERT INTO SystemInfo(datetime, type, message) VALUES('2026-03-31 05:59:59', 0, '早先的报警'), "
            "('2026-03-31 07:00:00', 1, '相机2没有连接'), ('2026-03-31 08:00:00', 1, '相机2没有连接'), "
            "('2026-03-31 09:00:00', 2, '普通消息'), ('2026-03-31 10:00:00', 2, '设置更改[k]:1 → 2,用户:李工')"));
        QCOMPARE(ToleranceStore::store(m_home->path(), "五辐/17", Statistics::X, {95, 155}), QString());
        double n = 0, sum = 0, squares = 0;
        for (int i = 0; i < 400; ++i) {
            const PartRecord part = PartsHome::part(i).part;
            const bool counts = part.model == "五辐/17" && part.outcome == PartOutcome::Found;
            n += counts;
            sum += counts * part.x;
            squares += counts * part.x * part.x;
        }
        const double mean = sum / n;
        const double sigma = std::sqrt((squares - n * mean * mean) / (n - 1));
        const QByteArray fit = QString::asprintf("/17 X 95.000 155.000 %d %.3f %.4f %.2f %.2f 0", int(n), mean, sigma,
                                                 10 / sigma, qMin(155 - mean, mean - 95) / (3 * sigma))
                                   .toLatin1();
        const Shifts shifts = Shifts::fromText("06:00, 14:00, 22:00");
        const auto span = ReportData::Span::of(shifts, shifts.at(PartTable::wallOf(start)));
        QVERIFY((ShiftReport{m_home->path(), span, "三号线"}.toPdf(path("a.pdf"), m_progress).isGood()));
        const QByteArray info = run("pdfinfo", {path("a.pdf")});
        const int pages = info.mid(info.indexOf("Pages:") + 6).trimmed().split('\n').first().toInt();
        QVERIFY2(pages == 7 && info.contains("(A4)"), info);
        const QByteArray text = run("pdftotext", {"-layout", path("a.pdf"), "-"}).simplified();
        for (const char* words : {"三号线 生产报告", "2026-03-31 早班", "2026-03-31 06:00 至 2026-03-31 14:00",
                                  "合计 400 200 100 100 66.67", "工位1 五辐/17 100 50 0 50 100.00", "毛刺挡住了",
                                  "相机2没有连接（共 2 次）", "k: 1 → 2", "操作员 / 日期", fit.constData()})
            QVERIFY2(text.contains(words), words + QByteArray(" is missing in ") + text);
        for (const char* words : {"早先的报警", "普通消息"})
            QVERIFY2(!text.contains(words), words);
        for (int page = 1; page <= pages; ++page)
            QVERIFY(QByteArray(text).replace(' ', "").contains(QStringLiteral("%1/%2").arg(page).arg(pages).toUtf8()));
    }

private:
    Export work(const QString& name) const
    {
        PartExport parts;
        parts.home = m_home->path();
        if (name == "a.xlsx")
            return [parts](const QString& path, ExportProgress& progress) { return parts.toXlsx(path, progress); };
        if (name == "a.zip")
            return [home = m_home->path()](const QString& path, ExportProgress& progress) {
                return PictureExport{home, {}}.toZip(path, progress);
            };
        const qint64 begin = PartTable::wallOf(start);
        if (name == "a.pdf")
            return [home = m_home->path(), begin](const QString& path, ExportProgress& progress) {
                return ShiftReport{home, {"a", begin, begin + 3600000}, {}}.toPdf(path, progress);
            };
        if (name == "log.csv")
            return [home = m_home->path()](const QString& path, ExportProgress& progress) {
                return LogExport{home, {}}.toCsv(path, progress);
            };
        return [parts](const QString& path, ExportProgress& progress) { return parts.toCsv(path, progress); };
    }
    QString path(const QString& name) const { return m_folder->filePath(name); }
    QByteArray read(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<PartsHome> m_home;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::function<void()> m_fill;
    ExportProgress m_progress;
};

/// Without the test: a workbook of some rows, for a test that gives it too little room.
int writeInto(const QString& path)
{
    XlsxTable table(path, "a");
    bool good = table.begin({{"n", ExportColumn::Number}});
    for (int i = 0; good && i < 5000; ++i)
        good = table.add({i});
    fputs(good && table.finish() ? "whole" : "no file", stdout);
    return 0;
}

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "writeInto") == 0)
        return writeInto(QString::fromLocal8Bit(argv[2]));
    ExportTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_export.moc"
