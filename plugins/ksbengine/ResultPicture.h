#pragma once

#include "finder/FindResult.h"

#include <QImage>

/// The image in gray with hub centre, hole and angle drawn in colour, at full size so that its coordinates stay those
/// of the camera. Gray values and drawing share one byte a pixel (an indexed image), which costs a plain copy; the four
/// brightest gray values make room for the colours. Null for an empty image. Any thread.
QImage drawResult(const cv::Mat& gray, const finder::FindResult& found);
