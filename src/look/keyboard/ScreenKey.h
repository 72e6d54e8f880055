#pragma once

#include <QString>
#include <QVector>

/// One key of the keyboard on the screen.
struct ScreenKey
{
    enum Act { Type, Press, Shift, Turn, Hide };

    Act act = Type;
    QString face;  ///< what stands on it, in the present language; what Type types
    int key = 0;   ///< of Qt, for Type and Press
    int width = 2; ///< in halves of a usual key
};

enum class KeyPage { Letters, Capitals, Symbols, Numbers };

/// The rows of a page from top to bottom, all equally wide. Letters, capitals and symbols differ in their faces alone.
/// Pure.
QVector<QVector<ScreenKey>> keysOf(KeyPage page);
