#pragma once

#include <QFutureWatcher>
#include <QImage>
#include <QTimer>
#include <QVector>

/// An image at its own size, a half, a quarter and so on, so that it can be drawn small both smooth and fast. The
/// smaller ones are made on another thread, once somebody asks for them and no new image has come for a moment; a live
/// picture costs nothing. GUI thread.
class ImagePyramid : public QObject
{
    Q_OBJECT

public:
    static constexpr int levels = 7; ///< enough for a scale of 0.01

    explicit ImagePyramid(QObject* parent = nullptr);

    /// Gray8, RGB32 or premultiplied ARGB32.
    void setImage(const QImage& image);

    /// The smallest level, beginning with 0, that has at least as many pixels as the scale shows; a larger one as long
    /// as that is not made yet.
    int levelFor(double scale);
    const QImage& level(int level) const { return m_images.at(level); }

signals:
    void refined(); ///< more levels are there

private:
    /// Begins to make the smaller levels on another thread.
    void build();
    /// Takes them over, unless the image has changed meanwhile.
    void onBuilt();

    QVector<QImage> m_images;
    QFutureWatcher<QVector<QImage>> m_builder;
    QTimer m_pause;
};
