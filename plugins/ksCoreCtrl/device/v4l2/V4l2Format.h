#pragma once

#include "V4l2System.h"

#include <valvecell/ICameraParameters.h>

#include <QCoreApplication>
#include <QImage>

/// What a device delivers, as it was agreed upon with its driver. The camera's thread.
class V4l2Format
{
    Q_DECLARE_TR_FUNCTIONS(V4l2Format)

public:
    /// "pixel_format", "width" and "height".
    static QVector<CameraParameter> parameters();

    /// Agrees upon the wanted format and size, or what comes nearest; a driver may choose otherwise, which is no error
    /// as long as its format is known. Nothing may stream yet. Empty, or why there is no format.
    QString agree(V4l2System& system, int descriptor, const QVariantMap& settings);
    /// What is otherwise than wanted; empty when nothing is.
    QString warning() const { return m_warnings.join(QLatin1Char('\n')); }

    /// An image with memory of its own; null when data are missing.
    QImage image(const uchar* data, size_t size) const;

private:
    QVector<quint32> offered(V4l2System& system, int descriptor) const;
    QSize largest(V4l2System& system, int descriptor, quint32 fourcc) const;
    void warn(quint32 wanted, const QSize& wantedSize);

    quint32 m_fourcc = 0;
    QSize m_size;
    int m_bytesPerLine = 0;
    QStringList m_warnings;
};
