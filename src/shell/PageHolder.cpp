#include "shell/PageHolder.h"

#include <QEvent>
#include <QLayout>
#include <QStyle>

#include <algorithm>

namespace {

/// The first field or button of a page that the Tab key reaches.
QWidget* firstStop(QWidget* page)
{
    for (QWidget* each = page->nextInFocusChain(); each && each != page; each = each->nextInFocusChain()) {
        if (page->isAncestorOf(each) && each->isVisible() && each->isEnabled() && (each->focusPolicy() & Qt::TabFocus))
            return each;
    }
    return page;
}

int leastHeight(const QWidget* page, int width)
{
    const QLayout* const layout = page->layout();
    return layout && layout->hasHeightForWidth() ? layout->minimumHeightForWidth(width)
                                                 : page->minimumSizeHint().height();
}

} // namespace

PageHolder::PageHolder(QWidget* page, Workspaces::Room room, const QString& action, QWidget* parent)
    : QScrollArea(parent)
    , m_room(room)
    , m_action(action)
{
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    page->setWindowFlags(Qt::Widget); // hides it
    page->setAttribute(Qt::WA_Moved); // or a dialog would choose a place of its own
    setWidget(page);
    page->setAutoFillBackground(false);
    page->installEventFilter(this);
    connect(page, &QObject::destroyed, this, &PageHolder::left);
}

PageHolder::~PageHolder()
{
    if (widget())
        widget()->disconnect(this);
}

void PageHolder::present()
{
    if (!widget())
        return;
    fit();
    widget()->show();
    if (!widget()->isAncestorOf(window()->focusWidget()))
        firstStop(widget())->setFocus(Qt::OtherFocusReason);
}

/// An area that resizes its widget gives one with wrapped texts the height that it would like, and scrolls.
void PageHolder::fit()
{
    if (!widget())
        return;
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const QSize least = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    QSize room = maximumViewportSize();
    if (least.width() > room.width())
        room.rheight() -= bar;
    if (leastHeight(widget(), std::max(least.width(), room.width())) > room.height())
        room.rwidth() -= bar;
    const int width = std::max(least.width(), room.width());
    widget()->resize(width, std::max({leastHeight(widget(), width), widget()->minimumHeight(), room.height()}));
}

void PageHolder::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    fit();
}

bool PageHolder::eventFilter(QObject* object, QEvent* event)
{
    if (object == widget()) {
        if (event->type() == QEvent::HideToParent)
            emit left();
        else if (event->type() == QEvent::ShowToParent)
            emit entered();
        else if (event->type() == QEvent::WindowTitleChange)
            emit titleChanged();
        else if (event->type() == QEvent::LayoutRequest)
            fit();
    }
    return QScrollArea::eventFilter(object, event);
}
