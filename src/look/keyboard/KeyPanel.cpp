#include "look/keyboard/KeyPanel.h"

#include "common/FingerSize.h"
#include "look/keyboard/KeyButton.h"

#include <QGridLayout>

#include <algorithm>

namespace {

constexpr int gap = 4;
constexpr int keyWidth = 94;
constexpr int numberWidth = 72;
constexpr int keyHeight = 54;

} // namespace

KeyPanel::KeyPanel(KeyPage page, QWidget* window)
    : QFrame(window, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus)
    , m_page(page)
{
    setObjectName(QStringLiteral("keyPanel"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    build();
}

void KeyPanel::build()
{
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(gap + 2, gap + 2, gap + 2, gap + 2);
    grid->setSpacing(gap);
    const QVector<QVector<ScreenKey>> rows = keysOf(m_page);
    for (int row = 0; row < rows.size(); ++row) {
        grid->setRowStretch(row, 1);
        int column = 0;
        for (const ScreenKey& key : rows[row]) {
            auto* button = new KeyButton(this);
            button->setKey(key);
            connect(button, &QPushButton::pressed, this, [this, button] { act(button->key()); });
            grid->addWidget(button, row, column, 1, key.width);
            m_keys.append(button);
            for (const int end = column + key.width; column < end; ++column)
                grid->setColumnStretch(column, 1);
        }
    }
}

void KeyPanel::turnTo(KeyPage page)
{
    m_page = page;
    auto button = m_keys.begin();
    const QVector<QVector<ScreenKey>> rows = keysOf(page);
    for (const QVector<ScreenKey>& row : rows) {
        for (const ScreenKey& key : row)
            (*button++)->setKey(key);
    }
}

/// A capital is followed by small letters.
void KeyPanel::act(const ScreenKey& key)
{
    switch (key.act) {
    case ScreenKey::Type:
        emit pressed(key.key, key.face);
        if (m_page == KeyPage::Capitals)
            turnTo(KeyPage::Letters);
        break;
    case ScreenKey::Press:
        emit pressed(key.key, {});
        break;
    case ScreenKey::Shift:
        turnTo(m_page == KeyPage::Capitals ? KeyPage::Letters : KeyPage::Capitals);
        break;
    case ScreenKey::Turn:
        turnTo(m_page == KeyPage::Symbols ? KeyPage::Letters : KeyPage::Symbols);
        break;
    case ScreenKey::Hide:
        emit hideWanted();
        break;
    }
}

void KeyPanel::leaveFree(const QRect& place, const QRect& screen)
{
    const bool isPad = m_page == KeyPage::Numbers;
    const int rows = isPad ? 4 : 5;
    const int columns = isPad ? 4 : 10;
    const int room = std::max(place.top() - screen.top(), screen.bottom() - place.bottom()) - 4 * gap;
    const int height = std::max(fingerSize, std::min(keyHeight, room / rows - gap));
    const int width = std::min(columns * (isPad ? numberWidth : keyWidth), screen.width());
    const QSize size(width, rows * (height + gap) + 2 * gap);
    setGeometry({panelPlace(size, place, screen, isPad), size});
}

QPoint panelPlace(const QSize& panel, const QRect& place, const QRect& screen, bool isClose)
{
    const auto within = [&](int x) { return std::clamp(x, screen.left(), screen.right() + 1 - panel.width()); };
    const int down = screen.bottom() + 1 - panel.height();
    const int beside = within(place.left());
    const int middle = within(screen.center().x() - panel.width() / 2);
    QVector<QPoint> tries{{middle, down},
                          {middle, screen.top()},
                          {within(place.right() + gap), down},
                          {within(place.left() - gap - panel.width()), down}};
    if (isClose) {
        tries.prepend({beside, place.top() - gap - panel.height()});
        tries.prepend({beside, place.bottom() + gap});
    }
    const auto fits = [&](const QPoint& at) {
        const QRect lies(at, panel);
        return screen.contains(lies) && !lies.intersects(place);
    };
    const auto found = std::find_if(tries.begin(), tries.end(), fits);
    return found == tries.end() ? QPoint(middle, down) : *found;
}
