#pragma once

class QImage;
class QString;

/// Optional interface of a designer: it may be shown every image that a camera delivers, so that a model can be tried
/// on the next part. GUI thread; returns at once. The image shares its memory with the program's.
class IImageWatch
{
public:
    static constexpr const char* id = "valvecell.IImageWatch/1";

    virtual void imageCaptured(const QString& cameraKey, const QImage& image) = 0;

protected:
    ~IImageWatch() = default;
};
