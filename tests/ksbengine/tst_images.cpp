#include "Pictures.h"
#include "Wheels.h"
#include "support/Table.h"

#include <opencv2/imgproc.hpp>

using finder::FindError;

namespace {

QImage gray(int width, int height, int value = 128)
{
    QImage image(width, height, QImage::Format_Grayscale8);
    image.fill(QColor(value, value, value));
    return image;
}

/// The same wheel in a pixel format of which each needs its own way to gray.
QImage converted(const QImage& image, QImage::Format format)
{
    if (format != QImage::Format_Indexed8)
        return image.convertToFormat(format);
    QImage inverted = image.convertToFormat(QImage::Format_Indexed8);
    QVector<QRgb> table;
    for (int i = 0; i < 256; ++i)
        table.append(qRgb(255 - i, 255 - i, 255 - i));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            inverted.setPixel(x, y, static_cast<uint>(255 - qGray(image.pixel(x, y))));
    }
    inverted.setColorTable(table);
    return inverted;
}

QImage twelveBit(const QImage& image)
{
    QImage deep(image.size(), QImage::Format_Grayscale16);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<quint16*>(deep.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            row[x] = static_cast<quint16>(16 * qGray(image.pixel(x, y)));
    }
    return deep;
}

} // namespace

Q_DECLARE_METATYPE(FindError)

class ImagesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // An odd width, so that rows of the image are padded.
        m_spec = Wheels::spec("six", 3, true, wheel::Difficulty::Demo, {815, 683});
        m_image = finder::toImage(Wheels::image(m_spec));
        QVERIFY(m_image.bytesPerLine() > m_image.width());
    }

    void everyPixelFormatGivesTheSameAnswer_data()
    {
        QTest::addColumn<QImage>("image");
        for (const QImage::Format format :
             {QImage::Format_Grayscale8, QImage::Format_Indexed8, QImage::Format_Grayscale16, QImage::Format_RGB32,
              QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB888, QImage::Format_BGR888,
              QImage::Format_RGBA8888, QImage::Format_RGBX64, QImage::Format_RGB30})
            QTest::newRow(qPrintable(QStringLiteral("format %1").arg(format))) << converted(m_image, format);
        QTest::newRow("12 bits in 16") << twelveBit(m_image);
    }
    void everyPixelFormatGivesTheSameAnswer()
    {
        QFETCH(QImage, image);
        const finder::GrayImage input = finder::toGray(image);
        const finder::FindResult found = Wheels::locate(input.gray, Wheels::model(m_spec));
        QCOMPARE(found.error, FindError::None);
        QVERIFY(Wheels::turnBetween(found.angle, wheel::truthOf(m_spec).angle) < 0.1);
        QCOMPARE(drawResult(input.gray, found).size(), image.size());
    }

    void unusableImageIsRefused_data()
    {
        Table::of<QImage, FindError>(
            {{"null", QImage(), FindError::BadImage},
             {"1 x 1", gray(1, 1), FindError::BadImage},
             {"one row", gray(5000, 1), FindError::BadImage},
             {"one column", gray(1, 5000), FindError::BadImage},
             {"lens cap on", gray(1000, 800, 3), FindError::TooDark},
             {"overexposed", gray(1000, 800, 255), FindError::TooBright},
             {"empty belt", gray(1000, 800, 110), FindError::NoHub},
             {"very flat", gray(4000, 100, 110), FindError::NoHub},
             {"smallest size", gray(64, 64, 110), FindError::NoHub},
             {"mono", gray(640, 480, 255).convertToFormat(QImage::Format_Mono), FindError::TooBright}});
    }
    void unusableImageIsRefused()
    {
        const auto [image, error] = Table::row<QImage, FindError>();
        const finder::GrayImage input = finder::toGray(image);
        const finder::FindResult found = Wheels::locate(input.gray, finder::autoModel());
        QCOMPARE(found.error, error);
        QCOMPARE(found.angle, 361.0);
        QVERIFY(!finder::resultTip(found.error).isEmpty());
        QCOMPARE(drawResult(input.gray, found).size(), image.size());
    }

    void aHundredMegapixelsAreLocated()
    {
        cv::Mat large;
        cv::resize(Wheels::image(m_spec), large, {12207, 10245}, 0, 0, cv::INTER_LINEAR);
        finder::HoleModel model = Wheels::model(m_spec);
        for (double* length : {&model.rimRadius, &model.ringRadius, &model.holeRadius})
            *length *= 15;
        const finder::FindResult found = Wheels::locate(large, model);
        QCOMPARE(found.error, FindError::None);
        QVERIFY(Wheels::turnBetween(found.angle, wheel::truthOf(m_spec).angle) < 0.1);
    }

    void colourSurvivesTheWayToAnImage()
    {
        const cv::Mat blue(3, 5, CV_8UC3, cv::Scalar(200, 20, 10));
        QCOMPARE(finder::toImage(blue).pixelColor(4, 2), QColor(10, 20, 200));
        const cv::Mat deep(3, 5, CV_16UC1, cv::Scalar(0x1234));
        QCOMPARE(reinterpret_cast<const quint16*>(finder::toImage(deep).constScanLine(2))[4], quint16(0x1234));
    }

private:
    wheel::WheelSpec m_spec;
    QImage m_image;
};

QTEST_GUILESS_MAIN(ImagesTest)
#include "tst_images.moc"
