#include "look/WindowLook.h"

#include "common/FingerSize.h"
#include "config/IniFile.h"
#include "look/LookIcon.h"
#include "platform/AppHome.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QProxyStyle>
#include <QSettings>
#include <QStyle>

#include <utility>

namespace {

const QString lookFile = QStringLiteral("/user/look.ini");
const QString nameKey = QStringLiteral("Look/Name");
const QString darkKey = QStringLiteral("Look/Dark"); // of files from before there were three
const QStringList names{QStringLiteral("light"), QStringLiteral("dark"), QStringLiteral("contrast")};
constexpr int buttonRoom = 14;
constexpr int fontPixels = 14; // whatever the desktop has: the pages are laid out for it

LookKind kindIn(const QSettings& settings)
{
    const bool dark = settings.value(darkKey, false).toBool();
    const int index = names.indexOf(settings.value(nameKey).toString());
    return index < 0 ? (dark ? LookKind::Dark : LookKind::Light) : LookKind(index);
}

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

/// Controls for fingers, whose text does not touch their edges in any language.
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
        if (type == CT_ItemViewItem || type == CT_MenuItem || type == CT_TabBarTab)
            return size.expandedTo({0, type == CT_MenuItem ? qMin(size.height() * 4, fingerSize) : fingerSize});
        return type == CT_PushButton ? size + QSize(buttonRoom, 0) : size;
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override
    {
        switch (metric) {
        case PM_HeaderDefaultSectionSizeVertical:
            return fingerSize;
        case PM_ScrollBarExtent:
            return 18;
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
            return 22;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
};

/// What the host wore before the first of our windows came.
struct HostLook
{
    int windows = 0;
    QStyle* style = nullptr;
    QPalette palette;
    QString sheet;
    QFont font;
};

HostLook& hostLook()
{
    static HostLook look;
    return look;
}

} // namespace

WindowLook::WindowLook(QMainWindow* window)
    : QObject(window)
    , m_window(window)
{
}

void WindowLook::load()
{
    m_kind = kindIn(IniFile(platform::inHome(lookFile)).settings());
    if (!std::exchange(m_worn, true) && hostLook().windows++ == 0) {
        hostLook().palette = QApplication::palette();
        hostLook().sheet = qApp->styleSheet();
        hostLook().font = QApplication::font();
        qApp->setStyleSheet({});
        hostLook().style = QApplication::style();
        hostLook().style->setParent(nullptr); // the application deletes a child of its own with the next style
    }
    qApp->setStyleSheet({}); // of another window of ours
    QApplication::setStyle(new RoomyStyle);
    QFont font = QApplication::font();
    font.setPixelSize(fontPixels);
    QApplication::setFont(font);
    wear();
}

void WindowLook::takeOff()
{
    if (!std::exchange(m_worn, false) || --hostLook().windows > 0)
        return;
    qApp->setStyleSheet({});
    QApplication::setStyle(hostLook().style);
    QApplication::setPalette(hostLook().palette);
    QApplication::setFont(hostLook().font);
    qApp->setStyleSheet(hostLook().sheet);
}

void WindowLook::choose(LookKind kind)
{
    if (kind == m_kind)
        return;
    m_kind = kind;
    IniFile file(platform::inHome(lookFile));
    file.settings().setValue(nameKey, names.value(int(kind)));
    file.commit();
    wear();
}

void WindowLook::dress(QWidget* part)
{
    m_parts.append(part);
    part->setStyleSheet(lookSheet(QStringLiteral("window"), lookColors(m_kind)));
}

void WindowLook::wear()
{
    QApplication::setPalette(palette(lookColors(m_kind)));
    qApp->setStyleSheet(lookSheet(QStringLiteral("controls"), lookColors(m_kind)));
    dressParts();
    dressIcons();
}

void WindowLook::dressParts()
{
    const QString sheet = lookSheet(QStringLiteral("window"), lookColors(m_kind));
    for (const QPointer<QWidget>& part : qAsConst(m_parts)) {
        if (part)
            part->setStyleSheet(sheet);
    }
}

void WindowLook::dressIcons()
{
    const LookColors& colors = lookColors(m_kind);
    const auto actions = m_window->findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly) + m_window->actions();
    for (QAction* action : actions) {
        if (!m_icons.contains(action))
            m_icons.insert(action, action->icon());
        const QIcon& drawn = m_icons[action];
        if (drawn.isNull())
            continue;
        action->setIcon(action->property("locked").toBool() ? LookIcon::locked(drawn, colors.faint, colors.card)
                                                            : LookIcon::tinted(drawn, colors.text));
    }
}
