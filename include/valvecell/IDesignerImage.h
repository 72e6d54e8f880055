#pragma once

#include <QString>

class QWidget;

/// Optional interface of a designer module: takes a recorded picture, to see what a model makes of it now. GUI thread.
class IDesignerImage
{
public:
    static constexpr const char* id = "valvecell.IDesignerImage/1";

    /// Opens the designer as IDesigner::openDesigner() does, with that model chosen and the picture file, an absolute
    /// path, to run it on; returns at once. An unknown model leaves the choice as it was. What is not saved stays. A
    /// file that cannot be read is said in the designer's window.
    virtual void openImage(QWidget* parent, const QString& solution, const QString& model, const QString& path) = 0;

protected:
    ~IDesignerImage() = default;
};
