// Renders the drawings in svg/ to the pictures in png/, each at its own size and at twice the size, and the program's
// to windows/app.ico, by which Windows shows its file. Usage: draw_icons RESOURCES_DIR

#include <QBuffer>
#include <QDataStream>
#include <QDirIterator>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

namespace {

bool render(QSvgRenderer& drawing, int factor, const QString& path)
{
    QImage picture(drawing.defaultSize() * factor, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    QDir().mkpath(QFileInfo(path).path());
    return picture.convertToFormat(QImage::Format_ARGB32).save(path, "PNG", 1);
}

QByteArray pngOf(QSvgRenderer& drawing, int side)
{
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    QBuffer png;
    png.open(QIODevice::WriteOnly);
    picture.convertToFormat(QImage::Format_ARGB32).save(&png, "PNG", 1);
    return png.data();
}

/// A directory of sixteen bytes a picture, then the pictures.
bool writeIcon(QSvgRenderer& drawing, const QString& path)
{
    const QVector<int> sides{16, 20, 24, 32, 40, 48, 64, 128, 256};
    QByteArray pictures;
    QFile file(path);
    if (!drawing.isValid() || !QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly))
        return false;
    QDataStream out(&file);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint16(0) << quint16(1) << quint16(sides.size());
    for (const int side : sides) {
        const QByteArray png = pngOf(drawing, side);
        const quint32 offset = quint32(6 + 16 * sides.size() + pictures.size());
        out << quint8(side) << quint8(side) << quint16(0) << quint16(1) << quint16(32); // 256 is written as 0
        out << quint32(png.size()) << offset;
        pictures += png;
    }
    return file.write(pictures) == pictures.size();
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    const QDir root(app.arguments().value(1, QStringLiteral(".")));
    QDirIterator files(root.filePath(QStringLiteral("svg")), {QStringLiteral("*.svg")}, QDir::Files,
                       QDirIterator::Subdirectories);
    bool good = files.hasNext();
    while (files.hasNext()) {
        QSvgRenderer drawing(files.next());
        QString path = files.filePath().replace(QStringLiteral("/svg/"), QStringLiteral("/png/"));
        path.chop(4);
        good = good && drawing.isValid() && render(drawing, 1, path + QStringLiteral(".png")) &&
               render(drawing, 2, path + QStringLiteral("@2x.png"));
    }
    QSvgRenderer program(root.filePath(QStringLiteral("svg/vantor/Resource/app.svg")));
    good = good && writeIcon(program, root.filePath(QStringLiteral("windows/app.ico")));
    return good ? 0 : 1;
}
