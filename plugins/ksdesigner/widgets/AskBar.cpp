#include "AskBar.h"

#include "ui_AskBar.h"

#include <QKeyEvent>

AskBar::AskBar(QWidget* parent)
    : QFrame(parent)
    , m_ui(std::make_unique<Ui::AskBar>())
{
    m_ui->setupUi(this);
    QPalette paper = palette();
    paper.setColor(QPalette::Window, QColor(0xff, 0xf4, 0xd6));
    paper.setColor(QPalette::WindowText, QColor(0x20, 0x21, 0x24));
    setPalette(paper);
    setAutoFillBackground(true);
    connect(m_ui->firstButton, &QPushButton::clicked, this, [this] { answer(m_first.act); });
    connect(m_ui->secondButton, &QPushButton::clicked, this, [this] { answer(m_second.act); });
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &AskBar::dismiss);
    connect(m_ui->nameEdit, &QLineEdit::returnPressed, m_ui->firstButton, &QPushButton::click);
    connect(m_ui->nameEdit, &QLineEdit::textChanged, this, &AskBar::judgeName);
    hide();
}

AskBar::~AskBar() = default;

void AskBar::ask(const QString& question, const Answer& first, const Answer& second)
{
    m_first = first;
    m_second = second;
    m_problem = nullptr;
    present(question, first.text, second.text, false);
    m_ui->cancelButton->setFocus();
}

void AskBar::askName(const QString& question, const QString& proposal, const NameAnswer& answer,
                     std::function<QString(const QString&)> problem)
{
    m_first = {answer.text, [this, act = answer.act] { act(m_ui->nameEdit->text()); }};
    m_second = {};
    m_problem = std::move(problem);
    present(question, answer.text, QString(), true);
    m_ui->nameEdit->setText(proposal);
    judgeName();
    m_ui->nameEdit->selectAll();
    m_ui->nameEdit->setFocus();
}

void AskBar::present(const QString& question, const QString& first, const QString& second, bool named)
{
    m_ui->question->setText(question);
    m_ui->firstButton->setText(first);
    m_ui->firstButton->setEnabled(true);
    m_ui->secondButton->setText(second);
    m_ui->secondButton->setVisible(!second.isEmpty());
    m_ui->nameEdit->setVisible(named);
    m_ui->problem->hide();
    show();
}

void AskBar::judgeName()
{
    if (!m_problem)
        return;
    const QString problem = m_problem(m_ui->nameEdit->text());
    m_ui->problem->setText(problem);
    m_ui->problem->setVisible(!problem.isEmpty());
    m_ui->firstButton->setEnabled(problem.isEmpty());
}

void AskBar::answer(const std::function<void()>& act)
{
    // Copied: the answer may ask the next question.
    const auto chosen = act;
    dismiss();
    if (chosen)
        chosen();
}

void AskBar::dismiss()
{
    m_problem = nullptr;
    hide();
}

void AskBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
    QFrame::changeEvent(event);
}

void AskBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else
        QFrame::keyPressEvent(event);
}
