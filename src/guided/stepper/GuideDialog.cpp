#include "guided/stepper/GuideDialog.h"

#include "common/FingerSize.h"
#include "common/forms/DialogForm.h"
#include "guided/stepper/GuidePage.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {
constexpr int besideCompanion = 400; // pixels of a page beside a picture
} // namespace

GuideDialog::GuideDialog(QWidget* parent)
    : QDialog(parent)
{
    buildRows();
    connect(m_back, &QPushButton::clicked, this, &GuideDialog::back);
    connect(m_next, &QPushButton::clicked, this, &GuideDialog::next);
    connect(m_close, &QPushButton::clicked, this, &GuideDialog::reject);
    connect(new QShortcut(Qt::ALT | Qt::Key_Left, this), &QShortcut::activated, this, &GuideDialog::back);
}

GuideDialog::~GuideDialog()
{
    DialogForm::takeDown(this);
}

void GuideDialog::buildRows()
{
    auto* rows = new QVBoxLayout(this);
    rows->setSpacing(10);
    auto* top = new QHBoxLayout;
    m_steps = new QHBoxLayout;
    m_steps->setSpacing(2);
    m_state = new QLabel(this);
    m_state->setObjectName(QStringLiteral("state"));
    m_state->setMargin(6);
    top->addLayout(m_steps);
    top->addStretch(1);
    top->addWidget(m_state);
    rows->addLayout(top);
    m_hint = new QLabel(this);
    m_hint->setObjectName(QStringLiteral("hint"));
    m_hint->setWordWrap(true);
    rows->addWidget(m_hint);
    m_middle = new QHBoxLayout;
    m_middle->setSpacing(12);
    m_stack = new QStackedWidget(this);
    m_middle->addWidget(m_stack);
    rows->addLayout(m_middle, 1);
    m_message = new InlineMessage(this);
    m_message->setObjectName(QStringLiteral("message"));
    rows->addWidget(m_message);
    rows->addLayout(buttonRow());
    resize(1000, 700);
}

QHBoxLayout* GuideDialog::buttonRow()
{
    m_buttons = new QHBoxLayout;
    m_close = new QPushButton(this);
    m_close->setObjectName(QStringLiteral("closeButton"));
    m_back = new QPushButton(this);
    m_back->setObjectName(QStringLiteral("backButton"));
    m_next = new QPushButton(this);
    m_next->setObjectName(QStringLiteral("nextButton"));
    m_next->setDefault(true);
    m_buttons->addWidget(m_close);
    m_buttons->addStretch(1);
    m_buttons->addWidget(m_back);
    m_buttons->addWidget(m_next);
    for (QPushButton* button : {m_close, m_back})
        button->setAutoDefault(false);
    return m_buttons;
}

void GuideDialog::addPage(GuidePage* page)
{
    const int step = m_pages.size();
    m_pages.append(page);
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(page);
    m_stack->addWidget(scroll);
    auto* mark = new QToolButton(this);
    mark->setCheckable(true);
    mark->setAutoRaise(true);
    mark->setMinimumHeight(fingerSize);
    mark->setObjectName(QStringLiteral("step%1").arg(step + 1));
    m_marks.append(mark);
    m_steps->addWidget(mark);
    connect(mark, &QToolButton::clicked, this, [this, step] { goTo(step); });
    connect(page, &GuidePage::changed, this, &GuideDialog::judge);
    connect(page, &GuidePage::finished, this, [this, step] {
        if (this->step() == step)
            next();
    });
}

void GuideDialog::setCompanion(QWidget* companion)
{
    m_middle->insertWidget(0, companion, 1);
    m_stack->setFixedWidth(besideCompanion);
}

QPushButton* GuideDialog::addButton(const QString& objectName)
{
    auto* button = new QPushButton(this);
    button->setObjectName(objectName);
    button->setAutoDefault(false);
    m_buttons->insertWidget(m_buttons->count() - 2, button);
    return button;
}

void GuideDialog::begin()
{
    DialogForm::prepare(this);
    const auto buttons = findChildren<QPushButton*>();
    for (QPushButton* button : buttons)
        button->setMinimumHeight(fingerSize);
    retranslateAll();
    m_pages.first()->enter();
    judge();
}

int GuideDialog::step() const
{
    return m_stack->currentIndex();
}

int GuideDialog::reachable() const
{
    const auto stop =
        std::find_if(m_pages.begin(), m_pages.end(), [](const GuidePage* page) { return !page->problem().isEmpty(); });
    return std::min(int(stop - m_pages.begin()), m_pages.size() - 1);
}

void GuideDialog::goTo(int step)
{
    const int wanted = std::clamp(step, 0, reachable());
    if (wanted != this->step()) {
        m_pages[this->step()]->leave();
        m_stack->setCurrentIndex(wanted);
        m_pages[wanted]->enter();
    }
    judge();
}

void GuideDialog::next()
{
    if (step() + 1 < m_pages.size())
        goTo(step() + 1);
    else if (m_pages.last()->problem().isEmpty())
        finish();
}

void GuideDialog::back()
{
    goTo(step() - 1);
}

void GuideDialog::judge()
{
    const GuidePage* shown = m_pages[step()];
    const QString problem = shown->problem();
    const int last = reachable();
    for (int i = 0; i < m_marks.size(); ++i) {
        m_marks[i]->setChecked(i == step());
        m_marks[i]->setEnabled(i <= std::max(last, step()));
    }
    m_hint->setText(shown->hint());
    m_back->setEnabled(step() > 0);
    m_next->setEnabled(problem.isEmpty());
    m_next->setText(step() + 1 < m_pages.size() ? tr("下一步(&N)") : finishText());
    const QString warning = shown->warning();
    say(problem.isEmpty() && warning.isEmpty() ? Tone::Plain : Tone::Warning, problem.isEmpty() ? warning : problem);
}

void GuideDialog::say(Tone tone, const QString& text)
{
    m_message->say(tone, text);
}

void GuideDialog::setState(Tone tone, const QString& text)
{
    m_state->setText(text);
    setTone(m_state, tone);
}

void GuideDialog::retranslateAll()
{
    setWindowTitle(windowText());
    m_close->setText(tr("关闭(&C)"));
    m_back->setText(tr("上一步(&B)"));
    for (int i = 0; i < m_pages.size(); ++i) {
        m_pages[i]->retranslate();
        m_marks[i]->setText(QStringLiteral("%1  %2").arg(i + 1).arg(m_pages[i]->title()));
    }
    retranslate();
    judge();
}

void GuideDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange && !m_pages.isEmpty())
        retranslateAll();
    QDialog::changeEvent(event);
}
