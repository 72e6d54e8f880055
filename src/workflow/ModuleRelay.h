#pragma once

#include <valvecell/SComFrame.h>

#include <QImage>
#include <QObject>
#include <QVariantMap>

/// Hands what modules call back on their own threads over to the GUI thread.
///
/// A callback holds the relay by a shared pointer and emits one of its signals; queued connections carry the value to
/// the window. A callback that comes while the window closes finds the relay alive and nobody connected, so its value
/// is dropped. Make it on the GUI thread.
class ModuleRelay : public QObject
{
    Q_OBJECT

signals:
    void frameReceived(const SComFrame& frame);
    void imageReceived(const QString& cameraKey, const QImage& image);
    void taskFinished(const QVariantMap& result);
};
