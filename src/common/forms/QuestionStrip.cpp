#include "common/forms/QuestionStrip.h"

#include "ui_QuestionStrip.h"

#include <QKeyEvent>

QuestionStrip::QuestionStrip(QWidget* parent)
    : QFrame(parent)
    , m_ui(std::make_unique<Ui::QuestionStrip>())
{
    m_ui->setupUi(this);
    connect(m_ui->firstAnswer, &QPushButton::clicked, this, [this] { answer(m_first.act); });
    connect(m_ui->secondAnswer, &QPushButton::clicked, this, [this] { answer(m_second.act); });
    connect(m_ui->noAnswer, &QPushButton::clicked, this, &QuestionStrip::dismiss);
    hide();
}

QuestionStrip::~QuestionStrip() = default;

void QuestionStrip::ask(const QString& question, const Answer& first, const Answer& second)
{
    m_first = first;
    m_second = second;
    m_ui->question->setText(question);
    m_ui->firstAnswer->setText(first.text);
    m_ui->secondAnswer->setText(second.text);
    m_ui->secondAnswer->setVisible(!second.text.isEmpty());
    show();
    m_ui->noAnswer->setFocus();
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
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else
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
