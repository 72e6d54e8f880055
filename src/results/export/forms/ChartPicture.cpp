#include "results/export/forms/ChartPicture.h"

#include "common/LookColors.h"
#include "results/charts/ResultPlot.h"

#include <valvecell/HomeFiles.h>

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <qwt_plot_renderer.h>

namespace {

constexpr int dotsAnInch = 85; // of paper: texts become about as large beside the chart as on a screen
constexpr int pictureWidth = 1600;
constexpr int pictureHeight = 1000;

void render(ResultPlot* plot, QPainter& painter, const QRectF& place)
{
    QwtPlotRenderer renderer;
    painter.fillRect(place, lookColors().window);
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    renderer.render(plot, &painter, place.adjusted(10, 10, -10, -10));
}

} // namespace

QImage ChartPicture::image(ResultPlot* plot)
{
    QImage image(pictureWidth, pictureHeight, QImage::Format_RGB32);
    QPainter painter(&image);
    render(plot, painter, QRectF(image.rect()));
    painter.end();
    return image;
}

QByteArray ChartPicture::png(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray ChartPicture::pdf(ResultPlot* plot)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageOrientation(QPageLayout::Landscape);
    writer.setPageMargins({0, 0, 0, 0});
    writer.setResolution(dotsAnInch);
    writer.setTitle(plot->title().text());
    QPainter painter(&writer);
    render(plot, painter, QRectF(0, 0, writer.width(), writer.height()));
    painter.end();
    return bytes;
}

ExportOutcome ChartPicture::write(const QByteArray& bytes, const QString& path)
{
    QString error;
    if (!HomeFiles::writeFile(path, bytes, &error))
        return ExportOutcome::failed(error);
    return {path, {}, 1, 0};
}
