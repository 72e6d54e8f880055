#pragma once

#include <QImage>

#include <opencv2/core.hpp>

/// An image as 8-bit gray, a copy of its own; empty for a null image. Any thread.
cv::Mat grayPicture(const QImage& image);
