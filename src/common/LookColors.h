#pragma once

#include <QColor>
#include <QString>

/// The colours of the window, light or dark, for what a widget paints itself.
struct LookColors
{
    struct Sign
    {
        QColor ink;
        QColor ground;
    };

    QColor window;
    QColor card;  ///< the ground of what stands out from the window
    QColor field; ///< the ground of what can be typed or ticked
    QColor border;
    QColor text;
    QColor faint; ///< captions and what matters less
    QColor accent;
    Sign good;
    Sign caution;
    Sign bad;
};

/// Those of the application's present palette. GUI thread.
const LookColors& lookColors();

/// Those of one look.
const LookColors& lookColors(bool dark);

/// The style sheet of resources/qss/<name>.qss in these colours: there "@card" is the card's, "@cautionInk" the ink and
/// "@cautionGround" the ground of the sign.
QString lookSheet(const QString& name, const LookColors& colors);
