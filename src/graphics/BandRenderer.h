#pragma once

#include <QImage>

#include <functional>

/// Renders rows from `top` on into a band of a picture. Called on several threads at once, for different bands, and
/// possibly for a moment after renderInBands() has returned; so it holds all that it needs by value.
using RenderBand = std::function<void(QImage& band, int top)>;

/// Takes a band that is ready, on the thread that asked for it; in any order.
using DrawBand = std::function<void(QImage& band, int top)>;

/// Renders a picture (RGB32) in bands, on this thread and on idle processors, and hands each on while it is still in
/// the processor's cache. Never waits for the others: a band that a helper has begun and not finished when everything
/// else is done is rendered here.
void renderInBands(const QSize& size, const RenderBand& render, const DrawBand& draw);
