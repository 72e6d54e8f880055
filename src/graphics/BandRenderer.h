#pragma once

#include <QImage>
#include <QVector>

#include <functional>

/// Renders rows from `top` on into a band of a picture. Called on several threads at once, for different bands, and
/// possibly for a moment after renderInBands() has returned; so it holds all that it needs by value.
using RenderBand = std::function<void(QImage& band, int top)>;

/// Renders a picture (RGB32) in bands, from top to bottom, on this thread and on idle processors. Never waits for them:
/// a band that a helper has begun and not finished when everything else is done is rendered here.
QVector<QImage> renderInBands(const QSize& size, const RenderBand& render);
