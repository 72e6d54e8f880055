#include "dialogs/registration/QCryptokeyUI.h"

#include "common/forms/DialogForm.h"
#include "dialogs/registration/LicenceTexts.h"
#include "ui_QCryptokeyUI.h"

#include <QClipboard>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QTextOption>

QCryptokeyUI::QCryptokeyUI(Registration& registration, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QCryptokeyUI>())
    , m_registration(registration)
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    m_ui->codeEdit->setFont(fixed);
    m_ui->licenceEdit->setFont(fixed);
    m_ui->licenceEdit->setWordWrapMode(QTextOption::WrapAnywhere);
    connectAll();
    showMachine();
}

QCryptokeyUI::~QCryptokeyUI()
{
    DialogForm::takeDown(this);
}

void QCryptokeyUI::connectAll()
{
    connect(m_ui->copyButton, &QPushButton::clicked, this, &QCryptokeyUI::copyCode);
    connect(m_ui->fileButton, &QPushButton::clicked, this, &QCryptokeyUI::chooseFile);
    connect(m_ui->licenceEdit, &QPlainTextEdit::textChanged, this, &QCryptokeyUI::takeText);
    connect(m_ui->registerButton, &QPushButton::clicked, this, &QCryptokeyUI::submit);
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QCryptokeyUI::reject);
}

void QCryptokeyUI::setRegistered(bool registered)
{
    m_registered = registered;
    showState();
}

void QCryptokeyUI::showMachine()
{
    m_ui->codeEdit->setText(m_registration.machine());
    m_ui->copyButton->setEnabled(!m_registration.machine().isEmpty());
    showState();
    judge();
}

void QCryptokeyUI::showState()
{
    const LicenceVerdict present = m_registration.present();
    if (m_registered)
        m_ui->state->say(Tone::Plain, present.isGood() ? tr("已注册：%1").arg(LicenceTexts::content(present.licence))
                                                       : tr("已注册"));
    else if (!m_registration.isMachineKnown())
        m_ui->state->say(Tone::Plain, tr("正在读取本机识别码…"));
    else if (m_registration.machine().isEmpty())
        m_ui->state->say(Tone::Error, tr("未注册：这台电脑没有可用的识别码"));
    else
        m_ui->state->say(Tone::Warning, tr("未注册：%1").arg(LicenceTexts::refusal(present)));
}

void QCryptokeyUI::copyCode()
{
    QGuiApplication::clipboard()->setText(m_registration.machine());
    m_ui->message->say(Tone::Plain, tr("识别码已复制"));
}

void QCryptokeyUI::chooseFile()
{
    m_chooser = new QFileDialog(this, tr("选择授权文件"), QString(), tr("授权文件 (*.lic *.txt);;所有文件 (*)"));
    m_chooser->setAttribute(Qt::WA_DeleteOnClose);
    m_chooser->setFileMode(QFileDialog::ExistingFile);
    connect(m_chooser, &QFileDialog::fileSelected, this, &QCryptokeyUI::openFile);
    m_chooser->open();
}

void QCryptokeyUI::openFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return m_ui->message->say(Tone::Error, tr("无法读取%1：%2").arg(path, file.errorString()));
    const QByteArray content = file.read(LicenceText::maxBytes + 1);
    const bool readable = m_registration.judge(content).refusal != LicenceRefusal::NotALicence;
    m_ui->licenceEdit->setPlainText(readable ? QString::fromUtf8(content) : QString());
    m_candidate = content;
    judge();
}

void QCryptokeyUI::takeText()
{
    m_candidate = m_ui->licenceEdit->toPlainText().toUtf8();
    judge();
}

void QCryptokeyUI::judge()
{
    const LicenceVerdict verdict = m_registration.judge(m_candidate);
    m_ui->registerButton->setEnabled(verdict.isGood());
    if (verdict.isGood())
        m_ui->message->say(Tone::Plain, tr("授权有效：%1").arg(LicenceTexts::content(verdict.licence)));
    else if (verdict.refusal == LicenceRefusal::Missing)
        m_ui->message->clear();
    else
        m_ui->message->say(Tone::Error, LicenceTexts::refusal(verdict));
}

void QCryptokeyUI::submit()
{
    QString error;
    if (!m_registration.submit(m_candidate, &error).isGood())
        return judge(); // it has expired since
    if (!error.isEmpty())
        return m_ui->message->say(Tone::Error, tr("授权有效，但无法保存：%1").arg(error));
    m_ui->licenceEdit->clear();
    setRegistered(true);
    m_ui->message->say(Tone::Plain, tr("注册成功"));
    emit sgRegisterFinish(true);
}

void QCryptokeyUI::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        showState();
    QDialog::showEvent(event);
}

void QCryptokeyUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        showState();
        judge();
    }
    QDialog::changeEvent(event);
}
