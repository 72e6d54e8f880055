// Renders the drawings in svg/ to the pictures in png/, each at its own size and at twice the size.
// Usage: draw_icons RESOURCES_DIR

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
    return good ? 0 : 1;
}
