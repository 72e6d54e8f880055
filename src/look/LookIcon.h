#pragma once

class QColor;
class QIcon;

/// Icons of one family in one colour. GUI thread.
namespace LookIcon {

/// The drawing's shape in that colour.
QIcon tinted(const QIcon& drawn, const QColor& color);

/// The same, with a padlock over its corner: not for the present user.
QIcon locked(const QIcon& drawn, const QColor& color, const QColor& ground);

} // namespace LookIcon
