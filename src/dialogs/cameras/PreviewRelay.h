#pragma once

#include <QImage>
#include <QObject>

/// Hands a picture from a camera's thread over to the dialog; a picture that comes when the dialog is gone finds nobody
/// connected.
class PreviewRelay : public QObject
{
    Q_OBJECT

signals:
    void answered(const QImage& image, const QString& error);
};
