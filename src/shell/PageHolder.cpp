#include "shell/PageHolder.h"

#include <QEvent>

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

} // namespace

PageHolder::PageHolder(QWidget* page, Workspaces::Room room, const QString& action, QWidget* parent)
    : QScrollArea(parent)
    , m_room(room)
    , m_action(action)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
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
    widget()->show();
    if (!widget()->isAncestorOf(window()->focusWidget()))
        firstStop(widget())->setFocus(Qt::OtherFocusReason);
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
    }
    return QScrollArea::eventFilter(object, event);
}
