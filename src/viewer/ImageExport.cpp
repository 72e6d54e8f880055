#include "viewer/ImageExport.h"

#include "common/ImageFile.h"
#include "viewer/QTipWidget.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>

ImageExport::ImageExport(QWidget* viewer)
    : QObject(viewer)
    , m_viewer(viewer)
{
}

void ImageExport::copy(const QImage& image)
{
    QGuiApplication::clipboard()->setImage(image);
}

void ImageExport::askAndSave(const QImage& image)
{
    auto* dialog = new QFileDialog(m_viewer, tr("图像另存为"), QString(),
                                   QStringLiteral("PNG (*.png);;JPEG (*.jpg);;BMP (*.bmp)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("png"));
    connect(dialog, &QFileDialog::filterSelected, dialog, [dialog](const QString& filter) {
        dialog->setDefaultSuffix(filter.mid(filter.lastIndexOf(QLatin1Char('.')) + 1).chopped(1));
    });
    connect(dialog, &QFileDialog::fileSelected, this, [this, image](const QString& path) { save(image, path); });
    dialog->open();
}

void ImageExport::save(const QImage& image, const QString& path)
{
    if (m_writing) {
        QTipWidget::showText(m_viewer, tr("上一幅图像仍在保存，请稍后再试"));
        return;
    }
    m_path = QFileInfo(path).suffix().isEmpty() ? path + QStringLiteral(".png") : path;
    m_writing = true;
    const auto write = [image, file = m_path] {
        QString error;
        ImageFile::write(image, file, QByteArray(), &error);
        return error;
    };
    m_background.run(write, [this](const QString& error) { onWritten(error); });
}

void ImageExport::onWritten(const QString& error)
{
    m_writing = false;
    QTipWidget::showText(m_viewer, error.isEmpty() ? tr("已保存：%1").arg(m_path) : tr("未能保存：%1").arg(error));
    emit saved(m_path, error);
}
