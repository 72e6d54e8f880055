#include "dialogs/backup/QBackupUI.h"

#include "common/forms/DialogForm.h"
#include "home/Restore.h"
#include "ui_QBackupUI.h"

#include <QCheckBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QLocale>
#include <QStandardPaths>

QBackupUI::QBackupUI(const QString& home, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QBackupUI>())
    , m_home(home)
{
    m_ui->setupUi(this);
    addParts();
    DialogForm::prepare(this);
    connectAll();
    setTexts();
    showBusy(false);
    showPending();
}

QBackupUI::~QBackupUI()
{
    DialogForm::takeDown(this);
    *m_stop = true;
}

/// Pictures are many and large: whoever wants them says so.
void QBackupUI::addParts()
{
    for (const HomeParts::Part part : HomeParts::all()) {
        auto* const box = new QCheckBox(this);
        box->setObjectName(HomeParts::name(part));
        box->setChecked(part != HomeParts::Pictures);
        connect(box, &QCheckBox::toggled, this, [this] { showBusy(m_busy); });
        m_ui->parts->addWidget(box);
        m_parts.append(box);
    }
}

void QBackupUI::connectAll()
{
    connect(m_ui->backupButton, &QPushButton::clicked, this, &QBackupUI::chooseTarget);
    connect(m_ui->restoreButton, &QPushButton::clicked, this, &QBackupUI::chooseBackup);
    connect(m_ui->dropButton, &QPushButton::clicked, this, &QBackupUI::dropRestore);
    connect(m_ui->stopButton, &QPushButton::clicked, this, [this] { *m_stop = true; });
    connect(m_ui->closeButton, &QPushButton::clicked, this, &QBackupUI::reject);
}

void QBackupUI::setTexts()
{
    const QStringList captions{tr("设置：参数、相机、PLC索引、用户"), tr("型号：型号库与方案"),
                               tr("标定：标定值、记录与标定图"), tr("结果：检测记录与系统日志"),
                               tr("图像：存档的图像（可能很大）")};
    for (int i = 0; i < m_parts.size(); ++i)
        m_parts[i]->setText(captions[i]);
}

HomeParts::Set QBackupUI::chosen() const
{
    HomeParts::Set parts;
    for (int i = 0; i < m_parts.size(); ++i)
        parts.setFlag(HomeParts::all()[i], m_parts[i]->isChecked());
    return parts;
}

void QBackupUI::chooseTarget()
{
    const QString name = QStringLiteral("valvecell-%1.vcbackup")
                             .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmm")));
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation);
    m_chooser = new QFileDialog(this, tr("备份到文件"), folder, tr("备份 (*.vcbackup)"));
    m_chooser->setAttribute(Qt::WA_DeleteOnClose);
    m_chooser->setAcceptMode(QFileDialog::AcceptSave);
    m_chooser->setDefaultSuffix(QStringLiteral("vcbackup"));
    m_chooser->selectFile(name);
    connect(m_chooser, &QFileDialog::fileSelected, this, &QBackupUI::backUp);
    m_chooser->open();
}

void QBackupUI::chooseBackup()
{
    m_chooser =
        new QFileDialog(this, tr("选择备份文件"), QStandardPaths::writableLocation(QStandardPaths::HomeLocation),
                        tr("备份 (*.vcbackup);;所有文件 (*)"));
    m_chooser->setAttribute(Qt::WA_DeleteOnClose);
    m_chooser->setFileMode(QFileDialog::ExistingFile);
    connect(m_chooser, &QFileDialog::fileSelected, this, &QBackupUI::prepareRestore);
    m_chooser->open();
}

void QBackupUI::backUp(const QString& file)
{
    run([home = m_home, parts = chosen(),
         file](const Backup::Progress& progress) { return Backup::make(home, parts, file, progress); },
        [this, file](const Backup::Outcome& outcome) {
            const QString size = QLocale().formattedDataSize(QFileInfo(file).size());
            m_ui->message->say(Tone::Plain, tr("备份完成：%1（%2个文件，%3）")
                                                .arg(QDir::toNativeSeparators(file))
                                                .arg(outcome.manifest.files.size())
                                                .arg(size));
            emit done(QStringLiteral("backup"), file);
        });
}

void QBackupUI::prepareRestore(const QString& file)
{
    run([home = m_home, parts = chosen(),
         file](const Backup::Progress& progress) { return Restore::stage(home, parts, file, progress); },
        [this, file](const Backup::Outcome& outcome) {
            const BackupManifest& manifest = outcome.manifest;
            m_ui->message->say(Tone::Plain, tr("备份完好：%1 在 %2 建立，%3个文件")
                                                .arg(manifest.machine, manifest.made.toLocalTime().toString(
                                                                           QStringLiteral("yyyy-MM-dd hh:mm")))
                                                .arg(manifest.files.size()));
            emit done(QStringLiteral("restore"), file);
        });
}

void QBackupUI::run(const std::function<Backup::Outcome(const Backup::Progress&)>& work,
                    const std::function<void(const Backup::Outcome&)>& whenGood)
{
    *m_stop = false;
    showBusy(true);
    m_ui->message->clear();
    const auto show = [this](int permille) { m_ui->progress->setValue(permille); };
    const auto progress = [stop = m_stop, slot = m_mailbox.slot(), show, last = -1](qint64 now, qint64 total) mutable {
        const int permille = total > 0 ? int(now * 1000 / total) : 0;
        if (permille != std::exchange(last, permille))
            slot.post([show, permille] { show(permille); });
        return !*stop;
    };
    m_background.run([work, progress] { return work(progress); },
                     [this, whenGood](const Backup::Outcome& outcome) {
                         showBusy(false);
                         showPending();
                         if (outcome.isGood())
                             whenGood(outcome);
                         else
                             m_ui->message->say(Tone::Error, outcome.error);
                     });
}

void QBackupUI::showBusy(bool busy)
{
    m_busy = busy;
    const bool any = chosen();
    m_ui->progress->setValue(0);
    m_ui->progress->setVisible(busy);
    m_ui->stopButton->setVisible(busy);
    m_ui->partsBox->setEnabled(!busy);
    m_ui->backupButton->setEnabled(!busy && any);
    m_ui->restoreButton->setEnabled(!busy && any);
    m_ui->dropButton->setEnabled(!busy);
}

void QBackupUI::showPending()
{
    m_ui->pendingBox->setVisible(Restore::isPending(m_home));
}

void QBackupUI::dropRestore()
{
    Restore::drop(m_home);
    showPending();
    m_ui->message->say(Tone::Plain, tr("已取消恢复，没有改动任何文件"));
}

/// What runs goes on while the dialog is closed.
void QBackupUI::reject()
{
    hide();
}

void QBackupUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        m_ui->message->clear();
        setTexts();
    }
    QDialog::changeEvent(event);
}
