#include "SmallDisk.h"
#include "db/archive/ImageArchive.h"
#include "db/archive/SaveImgThread.h"

#include <QtTest>

namespace {

const QDateTime noon(QDate(2024, 5, 1), QTime(12, 34, 56, 789));

QImage picture(QImage::Format format, int width = 333, int height = 97)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x / 2, 255 - x / 2, y));
    return image.convertToFormat(format);
}

QStringList filesBelow(const QString& root)
{
    QStringList files;
    for (QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); it.hasNext();)
        files << it.next().mid(root.size());
    files.sort();
    return files;
}

} // namespace

class tst_archive : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void imagesLieBelowDateStationAndModel();
    void modelNameThatIsNoFolderNameIsMadeOne();
    void twoImagesOfOneMillisecondBothSurvive();
    void clockIsSetBackAnHour();
    void nullImageHasAPathButNoFile();
    void imagesBeyondTheLimitAreGivenUp();
    void closingTheProgramWritesWhatWaits();
    void imagesKeepTheirPixels_data();
    void imagesKeepTheirPixels();
    void otherSuffixesHaveTheirFormat();
    void folderIsReplacedByAFileAndBack();
    void diskFillsUpAndIsEmptied();

private:
    ImageArchive::Rules rulesAt(const QDateTime& time) const
    {
        ImageArchive::Rules rules;
        rules.clock = [time] { return time; };
        return rules;
    }
    QScopedPointer<QTemporaryDir> m_home;
};

void tst_archive::init()
{
    m_home.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/图像-XXXXXX")));
}

void tst_archive::imagesLieBelowDateStationAndModel()
{
    const QImage image = picture(QImage::Format_Grayscale8);
    const QString model = QStringLiteral("轮毂18");
    const QString source = QStringLiteral("/DBFiles/SrcImages/2024-05-01/Station1/轮毂18/2024_05_01_123456789.jpg");
    const QString result = QStringLiteral("/DBFiles/Images/2024-05-01/Station2/轮毂18/2024_05_01_123456789.jpg");
    ImageArchive archive(m_home->path(), rulesAt(noon));
    QVERIFY(archive.prepare());
    const QSignalSpy saved(&archive, &ImageArchive::saved);
    QCOMPARE(archive.save(1, model, image, ImageArchive::Source), source);
    QCOMPARE(archive.save(0, model, image, ImageArchive::Result), result);
    QTRY_COMPARE(archive.waiting(), 0);
    QCOMPARE(saved.count(), 2);
    QCOMPARE(filesBelow(m_home->path()), (QStringList{result, source}));
    QCOMPARE(QImage(m_home->path() + source).size(), image.size());
}

void tst_archive::modelNameThatIsNoFolderNameIsMadeOne()
{
    ImageArchive archive(m_home->path(), rulesAt(noon));
    const QString path = archive.save(1, "../../out", picture(QImage::Format_RGB32), ImageArchive::Result);
    QCOMPARE(path, QString("/DBFiles/Images/2024-05-01/Station1/_._.._out/2024_05_01_123456789.jpg"));
    QTRY_COMPARE(archive.waiting(), 0);
    QCOMPARE(filesBelow(m_home->path()), QStringList{path});
}

void tst_archive::twoImagesOfOneMillisecondBothSurvive()
{
    ImageArchive archive(m_home->path(), rulesAt(noon));
    QStringList paths;
    for (int i = 0; i < 5; ++i)
        paths << archive.save(1, "W18", picture(QImage::Format_Grayscale8, 100 + i), ImageArchive::Source);
    QTRY_COMPARE(archive.waiting(), 0);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(QImage(m_home->path() + paths[i]).width(), 100 + i);
    QCOMPARE(paths[1], QString("/DBFiles/SrcImages/2024-05-01/Station1/W18/2024_05_01_123456789_1.jpg"));
}

void tst_archive::clockIsSetBackAnHour()
{
    QDateTime now = noon;
    ImageArchive::Rules rules;
    rules.clock = [&now] { return now; };
    ImageArchive archive(m_home->path(), rules);
    for (const int hours : {0, -1, 0}) { // back, and once more past the same moment
        now = noon.addSecs(hours * 3600);
        QVERIFY(!archive.save(1, "W18", picture(QImage::Format_Grayscale8), ImageArchive::Source).isEmpty());
        QTRY_COMPARE(archive.waiting(), 0);
    }
    QCOMPARE(filesBelow(m_home->path()).size(), 3);
}

void tst_archive::nullImageHasAPathButNoFile()
{
    ImageArchive archive(m_home->path(), rulesAt(noon));
    const QString path = archive.save(1, "W18", QImage(), ImageArchive::Result);
    QCOMPARE(path, QString("/DBFiles/Images/2024-05-01/Station1/W18/2024_05_01_123456789.jpg"));
    QCOMPARE(archive.waiting(), 0);
    QVERIFY(QDir(m_home->path() + QFileInfo(path).path()).exists());
    QVERIFY(filesBelow(m_home->path()).isEmpty());
}

void tst_archive::imagesBeyondTheLimitAreGivenUp()
{
    ImageArchive::Rules rules = rulesAt(noon);
    rules.maxWaiting = 4;
    ImageArchive archive(m_home->path(), rules);
    // The threads' ends are met in the event loop, so that all four wait until then.
    QTest::ignoreMessage(QtWarningMsg, QStringLiteral("等待保存的图像已有4幅，放弃保存新图像").toUtf8().constData());
    QStringList paths;
    for (int i = 0; i < 7; ++i)
        paths << archive.save(1, "W18", picture(QImage::Format_Grayscale8), ImageArchive::Source);
    QCOMPARE(archive.givenUp(), 3);
    QCOMPARE(paths.count(QString()), 3);
    QTest::ignoreMessage(QtWarningMsg, QStringLiteral("图像保存已跟上，期间放弃了3幅图像").toUtf8().constData());
    QTRY_COMPARE(archive.waiting(), 0);
    QCOMPARE(filesBelow(m_home->path()).size(), 4);
}

void tst_archive::closingTheProgramWritesWhatWaits()
{
    {
        ImageArchive archive(m_home->path(), rulesAt(noon));
        for (int i = 0; i < 10; ++i)
            archive.save(1, "W18", picture(QImage::Format_Grayscale8), ImageArchive::Source);
    }
    QCOMPARE(filesBelow(m_home->path()).size(), 10);
}

void tst_archive::imagesKeepTheirPixels_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("gray");
    QTest::newRow("gray") << int(QImage::Format_Grayscale8) << true;
    QTest::newRow("deep gray") << int(QImage::Format_Grayscale16) << true;
    QTest::newRow("palette") << int(QImage::Format_Indexed8) << false;
    QTest::newRow("rgb") << int(QImage::Format_RGB888) << false;
    QTest::newRow("bgr") << int(QImage::Format_BGR888) << false;
    QTest::newRow("rgb32") << int(QImage::Format_RGB32) << false;
    QTest::newRow("rgbx") << int(QImage::Format_RGBX8888) << false;
    QTest::newRow("16 bits a pixel") << int(QImage::Format_RGB16) << false;
}

void tst_archive::imagesKeepTheirPixels()
{
    QFETCH(int, format);
    const QImage image = picture(QImage::Format(format));
    const QString path = m_home->filePath("image.jpg");
    QString error;
    QVERIFY2(writeImageFile(image, path, &error), qPrintable(error));
    const QImage read(path);
    QTEST(read.format() == QImage::Format_Grayscale8, "gray");
    QCOMPARE(read.size(), image.size());
    for (const QPoint at : {QPoint(5, 5), QPoint(160, 50), QPoint(330, 94)}) {
        const QColor was = image.pixelColor(at);
        const QColor is = read.pixelColor(at);
        const int difference = qMax(qAbs(was.red() - is.red()), qAbs(was.blue() - is.blue()));
        QVERIFY2(difference < 40, qPrintable(was.name() + is.name()));
    }
    QCOMPARE(filesBelow(m_home->path()), QStringList{"/image.jpg"});
}

void tst_archive::otherSuffixesHaveTheirFormat()
{
    const QImage image = picture(QImage::Format_RGB32);
    QString error;
    QVERIFY(writeImageFile(image, m_home->filePath("image.png"), &error));
    QCOMPARE(QImage(m_home->filePath("image.png")), image);
    QVERIFY(!writeImageFile(image, m_home->filePath("image.nothing"), &error));
    QVERIFY(error.contains("image.nothing"));
    QVERIFY(!writeImageFile(QImage(), m_home->filePath("null.jpg"), &error));
    QCOMPARE(filesBelow(m_home->path()), QStringList{"/image.png"});
}

void tst_archive::folderIsReplacedByAFileAndBack()
{
    ImageArchive archive(m_home->path(), rulesAt(noon));
    QFile inTheWay(m_home->filePath("DBFiles"));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^图像不能保存")));
    for (int i = 0; i < 3; ++i)
        archive.save(1, "W18", picture(QImage::Format_Grayscale8), ImageArchive::Source);
    QTRY_COMPARE(archive.failed(), 3);
    QVERIFY(inTheWay.remove());
    QTest::ignoreMessage(QtWarningMsg, QStringLiteral("图像又能保存，期间有3幅未能保存").toUtf8().constData());
    archive.save(1, "W18", picture(QImage::Format_Grayscale8), ImageArchive::Source);
    QTRY_COMPARE(filesBelow(m_home->path()).size(), 1);
    QTRY_COMPARE(archive.waiting(), 0);
}

void tst_archive::diskFillsUpAndIsEmptied()
{
    SmallDisk disk(2);
    if (!disk.isMounted())
        QSKIP("a small disk cannot be mounted here");
    ImageArchive archive(disk.path(), rulesAt(noon));
    QVERIFY(archive.prepare());
    disk.fill();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^图像不能保存")));
    for (int i = 0; i < 20; ++i)
        QVERIFY(!archive.save(1, "W18", picture(QImage::Format_RGB32), ImageArchive::Source).isEmpty());
    QTRY_COMPARE(archive.waiting(), 0);
    QCOMPARE(archive.failed(), 20);
    QCOMPARE(filesBelow(disk.path() + "/DBFiles"), QStringList());
    disk.empty();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("20")));
    archive.save(1, "W18", picture(QImage::Format_RGB32), ImageArchive::Source);
    QTRY_COMPARE(filesBelow(disk.path() + "/DBFiles").size(), 1);
    QTRY_COMPARE(archive.waiting(), 0);
}

QTEST_GUILESS_MAIN(tst_archive)
#include "tst_archive.moc"
