#pragma once

#include <QStringList>

/// Optional interface of a designer module: lets its window go with its user, without losing his work. GUI thread.
class IDesignerEdits
{
public:
    static constexpr const char* id = "valvecell.IDesignerEdits/1";

    /// What has changes that are not saved, each named as the engineer knows it, for a message; empty when all is
    /// saved.
    virtual QStringList unsaved() = 0;

    /// Takes the designer's window, with what it has opened, off the screen without a question; returns when it is
    /// gone. What is not saved stays, and is there again after the next IDesigner::openDesigner(). Does nothing when
    /// the window is not on the screen.
    virtual void hideDesigner() = 0;

protected:
    ~IDesignerEdits() = default;
};
