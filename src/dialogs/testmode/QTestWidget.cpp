#include "dialogs/testmode/QTestWidget.h"

#include "common/forms/DialogForm.h"
#include "ui_QTestWidget.h"
#include "workflow/CTrigDetector.h"

#include <QEvent>

QTestWidget::QTestWidget(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QTestWidget>())
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    setInterval(defaultIntervalMs);
    connectAll();
    judge();
}

QTestWidget::~QTestWidget()
{
    DialogForm::takeDown(this);
}

void QTestWidget::connectAll()
{
    connect(m_ui->startButton, &QPushButton::clicked, this, &QTestWidget::start);
    connect(m_ui->stopButton, &QPushButton::clicked, this, &QTestWidget::stop);
    connect(m_ui->snap1Button, &QPushButton::clicked, this, [this] { emit sgTestMode(TestMode::SnapStation1); });
    connect(m_ui->snap2Button, &QPushButton::clicked, this, [this] { emit sgTestMode(TestMode::SnapStation2); });
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QTestWidget::reject);
    connect(m_ui->intervalEdit, &QLineEdit::textChanged, this, &QTestWidget::judge);
    connect(m_ui->intervalEdit, &QLineEdit::editingFinished, this, &QTestWidget::takeInterval);
}

void QTestWidget::setInterval(int ms)
{
    m_intervalMs = ms;
    m_ui->intervalEdit->setValue(ms);
}

void QTestWidget::setOneStation(bool one)
{
    m_ui->snap2Button->setVisible(!one);
}

void QTestWidget::setRunning(bool running)
{
    m_running = running;
    judge();
}

void QTestWidget::judge()
{
    const QString problem = m_ui->intervalEdit->problem();
    m_ui->startButton->setEnabled(!m_running && problem.isEmpty());
    m_ui->stopButton->setEnabled(m_running);
    if (!problem.isEmpty())
        m_ui->message->say(Tone::Error, tr("触发间隔：%1").arg(problem));
    else if (m_running)
        m_ui->message->say(Tone::Warning, tr("正在自动触发，关闭窗口即停止"));
    else
        m_ui->message->clear();
}

void QTestWidget::takeInterval()
{
    if (!m_ui->intervalEdit->problem().isEmpty() || m_ui->intervalEdit->value() == m_intervalMs)
        return;
    m_intervalMs = m_ui->intervalEdit->value();
    emit intervalChanged(m_intervalMs);
}

void QTestWidget::start()
{
    takeInterval(); // the button may be pressed by its shortcut, while the field still has the focus
    setRunning(true);
    emit sgTestMode(TestMode::Start);
}

void QTestWidget::stop()
{
    setRunning(false);
    emit sgTestMode(TestMode::Stop);
}

void QTestWidget::done(int result)
{
    if (m_running)
        stop();
    setInterval(m_intervalMs); // what was typed and not taken is gone
    QDialog::done(result);
}

void QTestWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        judge();
    }
    QDialog::changeEvent(event);
}
