#include "SmallDisk.h"
#include "db/archive/ImageArchive.h"
#include "db/archive/SaveImgThread.h"
#include "support/ManualScheduler.h"
#include "support/Table.h"

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

/// Their paths; each is a pixel wider than the one before.
QStringList saveParts(ImageArchive& archive, int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i)
        paths << archive.save(1, "W18", picture(QImage::Format_Grayscale8, 300 + i), ImageArchive::Source);
    return paths;
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

class ArchiveTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_home.reset(new QTemporaryDir(QDir::tempPath() + QStringLiteral("/图像-XXXXXX"))); }

    void imagesLieBelowDateStationAndModel()
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
        const QString outside = archive.save(1, "../../out", image, ImageArchive::Result);
        QCOMPARE(outside, QString("/DBFiles/Images/2024-05-01/Station1/_._.._out/2024_05_01_123456789.jpg"));
        QTRY_COMPARE(archive.waiting(), 0);
        QCOMPARE(saved.count(), 3);
        QCOMPARE(filesBelow(m_home->path()), (QStringList{outside, result, source}));
        QCOMPARE(QImage(m_home->path() + source).size(), image.size());
    }

    void imagesOfOneMillisecondAllSurviveTheEndOfTheProgram()
    {
        auto archive = std::make_unique<ImageArchive>(m_home->path(), rulesAt(noon));
        const QStringList paths = saveParts(*archive, 5);
        archive.reset(); // writes what waits
        for (int i = 0; i < 5; ++i)
            QCOMPARE(QImage(m_home->path() + paths[i]).width(), 300 + i);
        QCOMPARE(paths[1], QString("/DBFiles/SrcImages/2024-05-01/Station1/W18/2024_05_01_123456789_1.jpg"));
    }

    void clockIsSetBackAnHour()
    {
        ImageArchive::Rules rules = rulesAt(noon);
        ImageArchive archive(m_home->path(), rules);
        for (const int hours : {0, -1, 0}) { // back, and once more past the same moment
            m_clock.set(noon.addSecs(hours * 3600));
            saveParts(archive, 1);
            QTRY_COMPARE(archive.waiting(), 0);
        }
        QCOMPARE(filesBelow(m_home->path()).size(), 3);
    }

    void nullImageHasAPathButNoFile()
    {
        ImageArchive archive(m_home->path(), rulesAt(noon));
        const QString path = archive.save(1, "W18", QImage(), ImageArchive::Result);
        QCOMPARE(told(path, archive.waiting()), "/DBFiles/Images/2024-05-01/Station1/W18/2024_05_01_123456789.jpg|0");
        QVERIFY(QDir(m_home->path() + QFileInfo(path).path()).exists());
        QVERIFY(filesBelow(m_home->path()).isEmpty());
    }

    void imagesBeyondTheLimitAreGivenUp_data()
    {
        Table::of<int, int>({{"number", 4, 1 << 30}, {"bytes", 200, 120000}});
    }
    void imagesBeyondTheLimitAreGivenUp()
    {
        ImageArchive::Rules rules = rulesAt(noon);
        std::tie(rules.maxWaiting, rules.maxBytes) = Table::row<int, int>();
        ImageArchive archive(m_home->path(), rules);
        // The threads' ends are met in the event loop, so that all four wait until then.
        QTest::ignoreMessage(QtWarningMsg,
                             QStringLiteral("等待保存的图像已有4幅，放弃保存新图像").toUtf8().constData());
        QCOMPARE(saveParts(archive, 7).count(QString()), 3);
        QCOMPARE(archive.givenUp(), 3);
        QTest::ignoreMessage(QtWarningMsg, QStringLiteral("图像保存已跟上，期间放弃了3幅图像").toUtf8().constData());
        QTRY_COMPARE(archive.waiting(), 0);
        QCOMPARE(filesBelow(m_home->path()).size(), 4);
    }

    void imagesKeepTheirPixels_data()
    {
        Table::of<int, bool>({{"gray", int(QImage::Format_Grayscale8), true},
                              {"deep gray", int(QImage::Format_Grayscale16), true},
                              {"palette", int(QImage::Format_Indexed8), false},
                              {"rgb", int(QImage::Format_RGB888), false},
                              {"bgr", int(QImage::Format_BGR888), false},
                              {"rgb32", int(QImage::Format_RGB32), false},
                              {"rgbx", int(QImage::Format_RGBX8888), false},
                              {"16 bits a pixel", int(QImage::Format_RGB16), false}});
    }
    void imagesKeepTheirPixels()
    {
        const auto [format, gray] = Table::row<int, bool>();
        const QImage image = picture(QImage::Format(format));
        const QString path = m_home->filePath("image.jpg");
        QString error;
        QVERIFY2(writeImageFile(image, path, &error), qPrintable(error));
        const QImage read(path);
        QCOMPARE(read.format() == QImage::Format_Grayscale8, gray);
        QCOMPARE(read.size(), image.size());
        for (const QPoint at : {QPoint(5, 5), QPoint(160, 50), QPoint(330, 94)}) {
            const QColor was = image.pixelColor(at);
            const QColor is = read.pixelColor(at);
            const int difference = qMax(qAbs(was.red() - is.red()), qAbs(was.blue() - is.blue()));
            QVERIFY2(difference < 40, qPrintable(was.name() + is.name()));
        }
        QCOMPARE(filesBelow(m_home->path()), QStringList{"/image.jpg"});
    }

    void otherSuffixesHaveTheirFormat()
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

    void folderIsReplacedByAFileAndBack()
    {
        ImageArchive archive(m_home->path(), rulesAt(noon));
        QFile inTheWay(m_home->filePath("DBFiles"));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^图像不能保存")));
        saveParts(archive, 3);
        QTRY_COMPARE(archive.failed(), 3);
        QVERIFY(inTheWay.remove());
        QTest::ignoreMessage(QtWarningMsg, QStringLiteral("图像又能保存，期间有3幅未能保存").toUtf8().constData());
        saveParts(archive, 1);
        QTRY_COMPARE(filesBelow(m_home->path()).size(), 1);
        QTRY_COMPARE(archive.waiting(), 0);
    }

    void diskFillsUpAndIsEmptied()
    {
        SmallDisk disk(2);
        if (!disk.isMounted())
            QSKIP("a small disk cannot be mounted here");
        ImageArchive archive(disk.path(), rulesAt(noon));
        QVERIFY(archive.prepare());
        disk.fill();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^图像不能保存.*磁盘已满")));
        QVERIFY(!saveParts(archive, 20).contains(QString()));
        QTRY_COMPARE(archive.waiting(), 0);
        QCOMPARE(archive.failed(), 20);
        QCOMPARE(filesBelow(disk.path() + "/DBFiles"), QStringList());
        disk.empty();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("20")));
        saveParts(archive, 1);
        QTRY_COMPARE(filesBelow(disk.path() + "/DBFiles").size(), 1);
        QTRY_COMPARE(archive.waiting(), 0);
    }

private:
    ImageArchive::Rules rulesAt(const QDateTime& time)
    {
        m_clock.set(time);
        ImageArchive::Rules rules;
        rules.scheduler = &m_clock;
        return rules;
    }
    SetClock m_clock{QDateTime()};
    QScopedPointer<QTemporaryDir> m_home;
};

QTEST_GUILESS_MAIN(ArchiveTest)
#include "tst_archive.moc"
