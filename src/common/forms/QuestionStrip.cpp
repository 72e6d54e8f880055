#include "common/forms/QuestionStrip.h"

#include "common/forms/InlineMessage.h"
#include "ui_QuestionStrip.h"

#include <QKeyEvent>

QuestionStrip::QuestionStrip(QWidget* parent)
    : QFrame(parent)
    , m_ui(std::make_unique<Ui::QuestionStrip>())
{
    m_ui->setupUi(this);
    connect(m_ui->firstAnswer, &QPushButton::clicked, this, [this] { answer(m_first.act); });
    connect(m_ui->secondAnswer, &QPushButton::clicked, this, [this] { answer(m_second.act); });
    connect(m_ui->answerEdit, &QLineEdit::returnPressed, m_ui->firstAnswer, &QPushButton::click);
    connect(m_ui->answerEdit, &QLineEdit::textChanged, this, &QuestionStrip::judgeName);
    connect(m_ui->noAnswer, &QPushButton::clicked, this, &QuestionStrip::dismiss);
    hide();
}

QuestionStrip::~QuestionStrip() = default;

void QuestionStrip::ask(const QString& question, const Answer& first, const Answer& second)
{
    m_problem = nullptr;
    present(question, first, second);
    m_ui->noAnswer->setFocus();
}

void QuestionStrip::askName(const QString& question, const QString& proposal, const NameAnswer& answer,
                            std::function<QString(const QString&)> problem)
{
    m_problem = std::move(problem);
    present(question, {answer.text, [this, act = answer.act] { act(m_ui->answerEdit->text()); }}, {});
    m_ui->answerEdit->setText(proposal);
    judgeName();
    m_ui->answerEdit->selectAll();
    m_ui->answerEdit->setFocus();
}

void QuestionStrip::present(const QString& question, const Answer& first, const Answer& second)
{
    m_first = first;
    m_second = second;
    setGround(this, {lookColors().text, lookColors().caution.ground});
    setTone(m_ui->answerProblem, Tone::Error);
    m_ui->question->setText(breakable(question));
    m_ui->firstAnswer->setText(first.text);
    m_ui->firstAnswer->setEnabled(true);
    m_ui->secondAnswer->setText(second.text);
    m_ui->secondAnswer->setVisible(!second.text.isEmpty());
    m_ui->answerEdit->setVisible(bool(m_problem));
    m_ui->answerProblem->hide();
    show();
}

void QuestionStrip::judgeName()
{
    if (!m_problem)
        return;
    const QString problem = m_problem(m_ui->answerEdit->text());
    m_ui->answerProblem->setText(problem);
    m_ui->answerProblem->setVisible(!problem.isEmpty());
    m_ui->firstAnswer->setEnabled(problem.isEmpty());
}

void QuestionStrip::answer(const std::function<void()>& act)
{
    const auto chosen = act; // the answer may ask the next question
    hide();
    if (chosen)
        chosen();
}

void QuestionStrip::dismiss()
{
    if (!isAsking())
        return;
    hide();
    emit dismissed();
}

void QuestionStrip::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else if (!isEnter || !m_problem) // Enter ends a name, and not the dialog around
        QFrame::keyPressEvent(event);
}

void QuestionStrip::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    m_ui->retranslateUi(this);
    dismiss(); // the question was asked in the language before
}
