#pragma once

#include <QColor>
#include <QString>

/// The looks of the program. Contrast: black, white and strong colours, for bad light and weak eyes.
enum class LookKind { Light, Dark, Contrast };

/// The colours of the window in one look, for what a widget paints itself.
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
const LookColors& lookColors(LookKind kind);
inline const LookColors& lookColors(bool dark)
{
    return lookColors(dark ? LookKind::Dark : LookKind::Light);
}

/// The style sheet of resources/qss/<name>.qss in these colours: there "@card" is the card's, "@cautionInk" the ink and
/// "@cautionGround" the ground of the sign.
QString lookSheet(const QString& name, const LookColors& colors);
