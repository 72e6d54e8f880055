#include "host/WindowLook.h"

#include "common/LookColors.h"
#include "config/IniFile.h"
#include "platform/AppHome.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QProxyStyle>
#include <QToolBar>

namespace {

const QString kFile = QStringLiteral("/user/look.ini");
const QString kKey = QStringLiteral("Look/Dark");
constexpr int kButtonRoom = 14;

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
        return type == CT_PushButton ? size + QSize(kButtonRoom, 0) : size;
    }
};

/// Lengths are device-independent pixels; buttons are as large as a finger in a work glove needs.
QString styleSheet(const LookColors& colors)
{
    QString sheet = QStringLiteral(R"(
QToolBar { background: @card; border: none; border-bottom: 1px solid @border; padding: 2px; spacing: 0px; }
QToolBar QToolButton { color: @text; background: transparent; border: none; border-radius: 6px; font-size: 13px;
                       padding: 4px 3px 2px 3px; min-width: 62px; min-height: 52px; }
QToolBar QToolButton:hover { background: @window; }
QToolBar QToolButton:pressed, QToolBar QToolButton:checked { background: @border; }
QToolBar QToolButton:disabled { color: @faint; }
QToolBar QToolButton#qt_toolbar_ext_button { min-width: 0px; padding: 0px; background: @window; }
QToolBar QToolButton::menu-indicator { image: none; }
QStatusBar { background: @card; border-top: 1px solid @border; }
QStatusBar::item { border: none; }
QStatusBar QLabel { color: @text; padding: 3px 8px; font-size: 14px; }
QStatusBar QLabel#linkLabel { color: white; border-radius: 4px; }
QWidget#central { background: @window; }
AlarmStrip { background: @cautionGround; border-radius: 8px; }
AlarmStrip QLabel { color: @cautionInk; font-size: 15px; }
AlarmStrip QPushButton { background: @card; color: @cautionInk; border: 1px solid @cautionInk; border-radius: 6px;
                         padding: 4px 16px; min-height: 28px; font-size: 14px; }
AlarmStrip QPushButton:pressed { background: @border; }
AlarmStrip[known="true"] { background: @card; }
AlarmStrip[known="true"] QLabel { color: @faint; }
QLabel#singleStationHint { color: @faint; font-size: 13px; }
StationView, LogPanel { background: @card; border: 1px solid @border; border-radius: 8px; }
QLabel#stationLabel { color: @faint; font-size: 20px; font-weight: bold; }
QLabel#modelLabel { color: @text; font-size: 18px; }
LogPanel QPlainTextEdit { background: @card; color: @text; border: none; font-size: 13px;
                          selection-background-color: @accent; selection-color: @card; }
LogPanel QLabel { color: @faint; font-size: 13px; }
LogPanel QLineEdit { background: @window; border: 1px solid @border; border-radius: 5px;
                     padding: 2px 6px; min-height: 24px; font-size: 13px; }
LogPanel QPushButton { background: @window; color: @text; border: 1px solid @border; border-radius: 5px;
                       padding: 2px 12px; min-height: 24px; font-size: 13px; }
LogPanel QPushButton:pressed { background: @border; }
LogPanel QPushButton:checked { background: @accent; color: @card; border-color: @accent; }
)");
    const QPair<QLatin1String, QColor> tokens[] = {
        {QLatin1String("@card"), colors.card},
        {QLatin1String("@window"), colors.window},
        {QLatin1String("@border"), colors.border},
        {QLatin1String("@text"), colors.text},
        {QLatin1String("@faint"), colors.faint},
        {QLatin1String("@accent"), colors.accent},
        {QLatin1String("@cautionInk"), colors.caution.ink},
        {QLatin1String("@cautionGround"), colors.caution.ground},
    };
    for (const auto& token : tokens)
        sheet.replace(token.first, token.second.name());
    return sheet;
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
    m_dark = IniFile(platform::inHome(kFile)).settings().value(kKey, false).toBool();
    QApplication::setStyle(new RoomyStyle);
    wear();
}

void WindowLook::choose(bool dark)
{
    if (dark == m_dark)
        return;
    m_dark = dark;
    IniFile file(platform::inHome(kFile));
    file.settings().setValue(kKey, dark);
    file.commit();
    wear();
}

void WindowLook::dress(QWidget* part)
{
    m_parts.append(part);
    part->setStyleSheet(styleSheet(lookColors(m_dark)));
}

void WindowLook::wear()
{
    QApplication::setPalette(palette(lookColors(m_dark)));
    dressParts();
    dressIcons();
}

void WindowLook::dressParts()
{
    const QString sheet = styleSheet(lookColors(m_dark));
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
