#include "shell/Workspaces.h"

#include "shell/PageBar.h"
#include "shell/PageHolder.h"
#include "shell/WorkspaceRail.h"

#include <QAction>
#include <QDialog>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QStackedWidget>

#include <algorithm>

namespace {

constexpr const char* roomIcons[] = {"run", "results", "manage", "standard", "system"};

QAction* newAction(const QString& name, const QIcon& icon, QWidget* owner)
{
    auto* action = new QAction(icon, {}, owner);
    action->setObjectName(name);
    return action;
}

QIcon familyIcon(const char* name)
{
    return QIcon(QStringLiteral(":/toolbar/Resource/toolBar/%1.png").arg(QLatin1String(name)));
}

} // namespace

Workspaces::Workspaces(QWidget* parent)
    : QWidget(parent)
    , m_rail(new WorkspaceRail(this))
    , m_bar(new PageBar(this))
    , m_stack(new QStackedWidget)
    , m_doors(Help + 1)
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_rail);
    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    column->addWidget(m_bar);
    column->addWidget(m_stack, 1);
    row->addLayout(column, 1);
    for (int room = Run; room <= System; ++room) {
        QAction* action = newAction(QStringLiteral("room%1").arg(room + 1), familyIcon(roomIcons[room]), window());
        action->setShortcut(Qt::CTRL + Qt::Key_1 + room);
        connect(action, &QAction::triggered, this, [this, room] { openRoom(Room(room)); });
        m_doors[room].action = action;
        m_rail->addRoom(action);
    }
    connect(m_bar, &PageBar::backWanted, this, &Workspaces::goBack);
    retranslate();
}

Workspaces::~Workspaces()
{
    const auto holders = m_stack->findChildren<PageHolder*>();
    for (PageHolder* holder : holders)
        holder->disconnect(this); // what goes with this object leaves no page to go back to
}

void Workspaces::setRun(QWidget* page)
{
    auto* place = new QWidget;
    auto* row = new QHBoxLayout(place);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    m_run = new PageHolder(page, Run, {}, place);
    m_runPlace = row;
    row->addWidget(m_run, 1);
    m_stack->addWidget(place);
    show(m_run);
}

void Workspaces::addAction(Room room, QAction* action)
{
    m_actions.insert(action->objectName(), action);
    m_doors[room].pages << action->objectName();
    m_bar->addAction(room, action);
}

void Workspaces::addTool(QAction* action)
{
    m_actions.insert(action->objectName(), action);
    m_rail->addTool(action);
}

void Workspaces::addPage(const Page& page)
{
    QAction* action = newAction(page.name, page.icon, window());
    action->setText(page.title());
    connect(action, &QAction::triggered, this, [this, name = page.name] { emit actionWanted(name); });
    m_pages.insert(page.name, page);
    addAction(page.room, action);
}

void Workspaces::open(QWidget* widget, const QString& action)
{
    show(holderOf(widget, action));
}

bool Workspaces::openPage(const QString& name)
{
    const auto page = m_pages.constFind(name);
    if (page == m_pages.constEnd())
        return false;
    QPointer<QWidget>& made = m_made[name];
    if (!made)
        made = page->make();
    if (made)
        open(made, name);
    return true;
}

bool Workspaces::isForEngineers(const QString& name) const
{
    return m_pages.value(name).engineers;
}

void Workspaces::openTool(QWidget* widget)
{
    openRoom(Run);
    auto* holder = qobject_cast<PageHolder*>(widget->parentWidget() ? widget->parentWidget()->parentWidget() : nullptr);
    if (!holder) {
        holder = new PageHolder(widget, Run, {}, m_runPlace->parentWidget());
        holder->setObjectName(QStringLiteral("runTool"));
        m_runPlace->addWidget(holder);
        m_tool = holder;
        connect(holder, &PageHolder::left, holder, &QWidget::hide);
    }
    arrangeTool();
    holder->show();
    holder->present();
}

/// Below the stations where they could not stand side by side otherwise.
void Workspaces::arrangeTool()
{
    if (!m_tool || !m_tool->widget())
        return;
    const QSize least = m_tool->widget()->minimumSizeHint() + QSize(24, 0);
    const int rest = width() - m_rail->width() - least.width();
    const bool beside = rest >= m_run->widget()->minimumSizeHint().width();
    m_runPlace->setDirection(beside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    m_tool->setMinimumSize(beside ? QSize(least.width(), 0) : QSize(0, qMin(least.height(), height() / 2)));
    m_tool->setMaximumSize(beside ? QSize(least.width(), QWIDGETSIZE_MAX) : QSize(QWIDGETSIZE_MAX, least.height()));
}

void Workspaces::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrangeTool();
}

void Workspaces::setLocked(const QString& name, bool locked)
{
    QAction* action = m_actions.value(name);
    if (!action || action->property("locked").toBool() == locked)
        return;
    action->setProperty("locked", locked);
    action->setProperty("lockReason", tr("需要工程师权限，点按登录"));
    emit locksChanged();
}

void Workspaces::lockEngineers(bool locked)
{
    for (const Page& page : qAsConst(m_pages))
        setLocked(page.name, locked && page.engineers);
}

/// What no room has stands at the foot of the column, and belongs to none.
Workspaces::Room Workspaces::roomOf(const QString& action) const
{
    const auto room = std::find_if(m_doors.begin(), m_doors.end(),
                                   [&action](const Doors& each) { return each.pages.contains(action); });
    return room == m_doors.end() ? Help : Room(room - m_doors.begin());
}

PageHolder* Workspaces::holderOf(QWidget* widget, const QString& action)
{
    const auto holders = m_stack->findChildren<PageHolder*>();
    for (PageHolder* holder : holders) {
        if (holder->widget() == widget)
            return holder;
    }
    auto* holder = new PageHolder(widget, roomOf(action), action, this);
    m_stack->addWidget(holder);
    connect(holder, &PageHolder::left, this, [this, holder] { leave(holder); });
    connect(holder, &PageHolder::entered, this, [this, holder] { show(holder); });
    connect(holder, &PageHolder::titleChanged, this, &Workspaces::showTitle);
    return holder;
}

QWidget* Workspaces::page() const
{
    return m_way.isEmpty() || !m_way.last() ? nullptr : m_way.last()->widget();
}

/// A page stands once on the way: where it was on the screen last.
void Workspaces::show(PageHolder* holder)
{
    if (!m_way.isEmpty() && m_way.last() == holder && !holder->widget()->isHidden())
        return;
    m_way.removeAll(nullptr);
    m_way.removeAll(holder);
    m_way.append(holder);
    m_room = holder->room();
    m_stack->setCurrentWidget(holder == m_run ? m_runPlace->parentWidget() : holder);
    m_rail->mark(m_room);
    m_bar->show(m_room, holder->action());
    m_bar->setVisible(m_room != Run);
    holder->present();
    showTitle();
    emit roomChanged(m_room);
}

void Workspaces::leave(PageHolder* holder)
{
    const bool wasShown = !m_way.isEmpty() && m_way.last() == holder;
    m_way.removeAll(nullptr);
    m_way.removeAll(holder);
    if (wasShown && !m_way.isEmpty())
        show(m_way.last());
    if (!holder->widget()) { // its owner deleted it
        m_stack->removeWidget(holder);
        holder->deleteLater();
    }
}

void Workspaces::openRoom(Room room)
{
    if (room == Run)
        return show(m_run);
    const auto last = std::find_if(m_way.rbegin(), m_way.rend(),
                                   [room](const QPointer<PageHolder>& each) { return each && each->room() == room; });
    if (last != m_way.rend())
        return show(*last);
    const QStringList& pages = m_doors[room].pages;
    const auto open = std::find_if(pages.begin(), pages.end(), [this](const QString& name) {
        return !m_actions.value(name)->property("locked").toBool();
    });
    if (!pages.isEmpty())
        emit actionWanted(open == pages.end() ? pages.first() : *open);
}

/// As if its user had closed it: a dialog may ask, or stay.
void Workspaces::goBack()
{
    QWidget* const shown = page();
    if (!shown || m_way.last() == m_run)
        return;
    if (auto* dialog = qobject_cast<QDialog*>(shown))
        dialog->reject();
    else
        shown->hide();
}

void Workspaces::showTitle()
{
    const QWidget* const shown = page();
    m_bar->setTitle(shown ? shown->windowTitle().remove(QStringLiteral("[*]")) : QString());
}

void Workspaces::retranslate()
{
    const QString titles[] = {tr("运行"), tr("结果"), tr("型号"), tr("标定"), tr("系统")};
    for (int room = Run; room <= System; ++room)
        m_doors[room].action->setText(titles[room]);
    for (auto page = m_pages.constBegin(); page != m_pages.constEnd(); ++page)
        m_actions.value(page.key())->setText(page->title());
    for (QAction* action : qAsConst(m_actions))
        action->setProperty("lockReason", tr("需要工程师权限，点按登录"));
    showTitle();
}

void Workspaces::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape)
        return QWidget::keyPressEvent(event);
    goBack();
}

void Workspaces::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
