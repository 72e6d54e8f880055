#include "look/WindowLook.h"

#include "common/LookColors.h"
#include "config/IniFile.h"
#include "platform/AppHome.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QProxyStyle>
#include <QStyle>
#include <QToolBar>

#include <utility>

namespace {

const QString lookFile = QStringLiteral("/user/look.ini");
const QString darkKey = QStringLiteral("Look/Dark");
constexpr int buttonRoom = 14;

QPalette palette(const LookColors& colors)
{
    QPalette palette(colors.text, colors.card, colors.card.lighter(120), colors.border, colors.border, colors.text,
                     colors.text, colors.field, colors.window);
    palette.setColor(QPalette::AlternateBase, colors.field == colors.card ? colors.window : colors.card);
    palette.setColor(QPalette::Highlight, colors.accent);
    palette.setColor(QPalette::HighlightedText, colors.card);
    palette.setColor(QPalette::ToolTipBase, colors.card);
    palette.setColor(QPalette::ToolTipText, colors.text);
    palette.setColor(QPalette::PlaceholderText, colors.faint);
    palette.setColor(QPalette::Link, colors.accent);
    palette.setColor(QPalette::LinkVisited, colors.accent);
    palette.setColor(QPalette::Shadow, colors.border);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colors.faint);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colors.border);
    return palette;
}

/// Buttons whose text does not touch their edges, in every language.
class RoomyStyle : public QProxyStyle
{
public:
    RoomyStyle()
        : QProxyStyle(QStringLiteral("Fusion"))
    {
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override
    {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        return type == CT_PushButton ? size + QSize(buttonRoom, 0) : size;
    }
};

/// What the host wore before the first of our windows came.
struct HostLook
{
    int windows = 0;
    QStyle* style = nullptr;
    QPalette palette;
};

HostLook& hostLook()
{
    static HostLook look;
    return look;
}

/// Turns light into dark and back, and leaves the hue: what was drawn for a light ground fits a dark one.
QPixmap inverted(const QPixmap& pixmap)
{
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = line[x];
            const auto [low, high] = std::minmax({qRed(c), qGreen(c), qBlue(c)});
            const int shift = 255 - low - high;
            line[x] = qRgba(qRed(c) + shift, qGreen(c) + shift, qBlue(c) + shift, qAlpha(c));
        }
    }
    return QPixmap::fromImage(image);
}

QIcon inverted(const QIcon& icon)
{
    QIcon result;
    for (const qreal ratio : {1.0, 2.0}) {
        QPixmap pixmap = inverted(icon.pixmap(QSize(32, 32) * ratio));
        pixmap.setDevicePixelRatio(pixmap.width() / 32.0);
        result.addPixmap(pixmap);
    }
    return result;
}

} // namespace

WindowLook::WindowLook(QMainWindow* window)
    : QObject(window)
    , m_window(window)
{
}

void WindowLook::load()
{
    m_dark = IniFile(platform::inHome(lookFile)).settings().value(darkKey, false).toBool();
    if (!std::exchange(m_worn, true) && hostLook().windows++ == 0) {
        hostLook().palette = QApplication::palette();
        hostLook().style = QApplication::style();
        hostLook().style->setParent(nullptr); // the application deletes a child of its own with the next style
    }
    QApplication::setStyle(new RoomyStyle);
    wear();
}

void WindowLook::takeOff()
{
    if (!std::exchange(m_worn, false) || --hostLook().windows > 0)
        return;
    QApplication::setStyle(hostLook().style);
    QApplication::setPalette(hostLook().palette);
}

void WindowLook::choose(bool dark)
{
    if (dark == m_dark)
        return;
    m_dark = dark;
    IniFile file(platform::inHome(lookFile));
    file.settings().setValue(darkKey, dark);
    file.commit();
    wear();
}

void WindowLook::dress(QWidget* part)
{
    m_parts.append(part);
    part->setStyleSheet(lookSheet(QStringLiteral("window"), lookColors(m_dark)));
}

void WindowLook::showTesting(bool testing)
{
    for (const QPointer<QWidget>& part : qAsConst(m_parts)) {
        if (!part)
            continue;
        part->setProperty("testing", testing);
        part->style()->unpolish(part);
        part->style()->polish(part);
        part->update();
    }
}

void WindowLook::wear()
{
    QApplication::setPalette(palette(lookColors(m_dark)));
    dressParts();
    dressIcons();
}

void WindowLook::dressParts()
{
    const QString sheet = lookSheet(QStringLiteral("window"), lookColors(m_dark));
    for (const QPointer<QWidget>& part : qAsConst(m_parts)) {
        if (part)
            part->setStyleSheet(sheet);
    }
}

void WindowLook::dressIcons()
{
    QList<QAction*> actions;
    const auto toolBars = m_window->findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QToolBar* bar : toolBars)
        actions += bar->actions();
    for (QAction* action : qAsConst(actions)) {
        if (!m_icons.contains(action))
            m_icons.insert(action, action->icon());
        const QIcon& drawn = m_icons[action];
        if (!drawn.isNull())
            action->setIcon(m_dark ? inverted(drawn) : drawn);
    }
}
