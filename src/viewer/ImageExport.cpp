#include "viewer/ImageExport.h"

#include "viewer/ImageFile.h"
#include "viewer/QTipWidget.h"

#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QtConcurrentRun>

ImageExport::ImageExport(QWidget* viewer)
    : QObject(viewer)
    , m_viewer(viewer)
{
    connect(&m_writing, &QFutureWatcherBase::finished, this, &ImageExport::onWritten);
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
    if (m_writing.isRunning()) {
        QTipWidget::showText(m_viewer, tr("上一幅图像仍在保存，请稍后再试"));
        return;
    }
    m_path = QFileInfo(path).suffix().isEmpty() ? path + QStringLiteral(".png") : path;
    m_writing.setFuture(QtConcurrent::run([image, file = m_path] {
        QString error;
        writeImageFile(image, file, QByteArray(), &error);
        return error;
    }));
}

void ImageExport::onWritten()
{
    const QString error = m_writing.result();
    QTipWidget::showText(m_viewer, error.isEmpty() ? tr("已保存：%1").arg(m_path) : tr("未能保存：%1").arg(error));
    emit saved(m_path, error);
}
