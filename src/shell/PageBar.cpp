#include "shell/PageBar.h"

#include "shell/ShellButton.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

PageBar::PageBar(QWidget* parent)
    : QFrame(parent)
    , m_row(new QHBoxLayout(this))
    , m_title(new QLabel)
    , m_goBack(new QAction(window()))
{
    m_title->setObjectName(QStringLiteral("pageTitle"));
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_title->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_title->setTextFormat(Qt::PlainText);
    m_title->installEventFilter(this);
    m_goBack->setObjectName(QStringLiteral("pageBack"));
    m_goBack->setIcon(QIcon(QStringLiteral(":/toolbar/Resource/toolBar/back.png")));
    m_back = new ShellButton(m_goBack, this);
    m_row->setContentsMargins(6, 2, 6, 2);
    m_row->setSpacing(2);
    m_row->addWidget(m_title, 1);
    m_row->addWidget(m_back);
    connect(m_goBack, &QAction::triggered, this, &PageBar::backWanted);
    retranslate();
}

void PageBar::addAction(int room, QAction* action)
{
    auto* button = new ShellButton(action, this);
    m_row->insertWidget(m_entries.size(), button);
    m_entries.append({room, action->objectName(), button});
    button->hide();
}

/// Room by room: the buttons of two at once would make the window wider, and it would stay so.
void PageBar::show(int room, const QString& current)
{
    for (const Entry& entry : qAsConst(m_entries)) {
        if (entry.room != room)
            entry.button->hide();
    }
    for (const Entry& entry : qAsConst(m_entries)) {
        entry.button->setVisible(entry.room == room);
        ShellButton::mark(entry.button, entry.action == current);
    }
}

void PageBar::setTitle(const QString& title)
{
    m_title->setToolTip(title);
    showTitle();
}

void PageBar::showTitle()
{
    const QString title = m_title->toolTip();
    m_title->setText(m_title->fontMetrics().horizontalAdvance(title) > m_title->width() ? QString() : title);
}

bool PageBar::eventFilter(QObject* object, QEvent* event)
{
    if (object == m_title && event->type() == QEvent::Resize)
        showTitle();
    return QFrame::eventFilter(object, event);
}

void PageBar::setBack(bool possible)
{
    m_back->setVisible(possible);
}

void PageBar::retranslate()
{
    m_goBack->setText(tr("返回"));
    m_goBack->setToolTip(tr("关闭本页，回到之前的页面 (Esc)"));
}

void PageBar::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
