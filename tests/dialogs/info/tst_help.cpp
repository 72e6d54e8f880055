#include "Resources.h"
#include "dialogs/DialogDriver.h"
#include "dialogs/about/QAboutUI.h"
#include "dialogs/help/GuideView.h"
#include "dialogs/help/QHelpUI.h"

#include <QListWidget>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTextBlock>

namespace {

const QString guidesFolder = QStringLiteral(VALVECELL_BIN_DIR "/docs");

/// The help with the guides as they are shipped.
struct Bench
{
    QHelpUI dialog{guidesFolder};
    DialogDriver driver{dialog};
    GuideView* page = driver.get<GuideView>("page");
    QListWidget* contents = driver.get<QListWidget>("contents");

    Bench() { dialog.show(); }

    void click(QListWidgetItem* item) const
    {
        contents->scrollToItem(item);
        QTest::mouseClick(contents->viewport(), Qt::LeftButton, {}, contents->visualItemRect(item).center());
    }
    QString atTop() const { return page->cursorForPosition({30, 25}).block().text(); }
};

} // namespace

class HelpTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void operatorFindsWhatAnAngleMeans()
    {
        Bench bench;
        QVERIFY(bench.contents->count() > 10);
        for (const char* angle : {"361", "365", "999"}) {
            bench.driver.type("searchEdit", angle);
            QVERIFY2(bench.page->foundCount() > 0, angle);
            QVERIFY(bench.page->viewport()->rect().contains(
                bench.page->cursorRect(bench.page->extraSelections()[bench.page->current() - 1].cursor).center()));
        }
        const int count = bench.page->foundCount();
        const int before = bench.page->current();
        bench.driver.press("nextButton");
        QCOMPARE(bench.page->current(), before % count + 1);
        bench.driver.press("previousButton");
        QCOMPARE(bench.page->current(), before);
        bench.driver.type("searchEdit", "没有这样的字");
        QCOMPARE(bench.driver.message("foundLabel"), "没有找到");
        QVERIFY(!bench.driver.canPress("nextButton"));
    }

    void contentsLeadToTheirChaptersInBothLanguages()
    {
        Bench bench;
        const int chapters = bench.contents->count();
        for (int row : {3, 6, 1}) {
            QListWidgetItem* item = bench.contents->item(row);
            bench.click(item);
            QCOMPARE(bench.atTop(), item->text().trimmed());
        }
        const English english;
        QTRY_VERIFY(bench.page->source().path().endsWith("/user-guide.md"));
        QCOMPARE(bench.contents->count(), chapters);
        QHelpUI lost(QStringLiteral("/nowhere"));
        QVERIFY(lost.findChild<GuideView*>("page")->toPlainText().contains("/nowhere"));
    }

    void aboutNamesVersionAndLicenceOfEveryPart()
    {
        QAboutUI about;
        about.show();
        const auto* table = about.findChild<QTableWidget*>("table");
        for (int row = 0; row < table->rowCount(); ++row) {
            QVERIFY(!table->item(row, 0)->text().isEmpty() && !table->item(row, 3)->text().isEmpty());
            QVERIFY2(row > 3 || table->item(row, 1)->text().at(0).isDigit(), qPrintable(table->item(row, 0)->text()));
        }
        QVERIFY(about.findChild<QPlainTextEdit*>("licenceText")->toPlainText().startsWith("MIT License"));
    }

    void everyPictureOfTheGuidesIsShipped()
    {
        for (const char* guide : {"/user-guide.md", "/user-guide.zh-CN.md"}) {
            GuideView page;
            QVERIFY(page.open(guidesFolder + QLatin1String(guide)));
            int pictures = 0;
            for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next()) {
                for (auto it = block.begin(); !it.atEnd(); ++it) {
                    const QTextImageFormat picture = it.fragment().charFormat().toImageFormat();
                    if (!picture.isValid())
                        continue;
                    ++pictures;
                    QVERIFY2(QFile::exists(guidesFolder + '/' + picture.name()), qPrintable(picture.name()));
                }
            }
            QVERIFY(pictures >= 3);
        }
    }
};

QTEST_MAIN(HelpTest)
#include "tst_help.moc"
