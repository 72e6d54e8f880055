#include "dialogs/settings/QSystemSettingUI.h"

#include "common/forms/DialogForm.h"
#include "config/ShiftConfig.h"
#include "dialogs/settings/PortChooser.h"
#include "dialogs/settings/SettingsForm.h"
#include "results/data/Shifts.h"
#include "ui_QSystemSettingUI.h"
#include "workflow/CellForwarding.h"

#include <valvecell/ISerialPorts.h>

#include <QDir>
#include <QFileDialog>
#include <QShowEvent>

QSystemSettingUI::QSystemSettingUI(ksSysConfig& system, ksGlobalConfig& global, AccessPolicy& access,
                                   CellLimits& limits, ShiftConfig& shifts, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QSystemSettingUI>())
    , m_store(system, global, access, limits, shifts)
{
    m_ui->setupUi(this);
    DialogForm::prepare(this);
    m_ui->languageBox->setOptional(false);
    m_ui->reportWhenBox->setOptional(false);
    nameReports();
    if (!CellForwarding::isBuilt())
        m_ui->pages->removeTab(m_ui->pages->indexOf(m_ui->plantPage));
    m_form = new SettingsForm(this, m_store.ranges());
    m_chooser = new PortChooser(m_ui->portButton, m_ui->portEdit);
    connectAll();
    load();
}

QSystemSettingUI::~QSystemSettingUI()
{
    DialogForm::takeDown(this);
}

void QSystemSettingUI::connectAll()
{
    connect(m_form, &SettingsForm::edited, this, &QSystemSettingUI::judge);
    connect(m_ui->reportFolderButton, &QToolButton::clicked, this, &QSystemSettingUI::chooseReportFolder);
    connect(m_ui->okButton, &QPushButton::clicked, this, &QSystemSettingUI::accept);
    connect(m_ui->applyButton, &QPushButton::clicked, this, &QSystemSettingUI::apply);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &QSystemSettingUI::reject);
}

void QSystemSettingUI::setCameras(const QStringList& keys)
{
    m_ui->cameraBox1->setChoices(keys);
    m_ui->cameraBox2->setChoices(keys);
}

void QSystemSettingUI::setSolutions(const QStringList& names)
{
    m_ui->solutionBox1->setChoices(names);
    m_ui->solutionBox2->setChoices(names);
}

void QSystemSettingUI::setLanguages(const QMap<QString, QString>& captions)
{
    m_ui->languageBox->setChoices(captions.keys(), captions);
}

void QSystemSettingUI::setPorts(const ISerialPorts* ports)
{
    m_ports = ports;
    m_chooser->setFinder(ports ? ports->finder() : nullptr);
    judge();
}

void QSystemSettingUI::setOneStation(bool one)
{
    m_oneStation = one;
    const auto widgets = findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (widget->property("secondStation").toBool())
            widget->setVisible(!one);
    }
    judge();
}

void QSystemSettingUI::setImageDisk(qint64 freeMiB, bool keptOneDay)
{
    m_freeMiB = freeMiB;
    m_keptOneDay = keptOneDay;
    judge();
}

void QSystemSettingUI::load()
{
    m_ui->question->dismiss();
    m_shown = m_store.current();
    m_form->show(m_shown);
    judge();
}

void QSystemSettingUI::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        load();
        m_chooser->look();
    }
    QDialog::showEvent(event);
}

SettingsMap QSystemSettingUI::edited() const
{
    SettingsMap edited = m_form->values();
    for (auto it = edited.begin(); it != edited.end();)
        it = it.value() == m_shown.value(it.key()) ? edited.erase(it) : std::next(it);
    return edited;
}

/// The names that a line may have are the serial module's business.
QString QSystemSettingUI::portProblem() const
{
    const QString problem = m_ports ? m_ports->problemOf(m_ui->portEdit->text()) : QString();
    if (!problem.isEmpty())
        setTone(m_ui->portEdit, Tone::Error);
    return problem;
}

/// A camera or solution that both stations name would serve the first only.
QString QSystemSettingUI::sameChoiceProblem() const
{
    if (m_oneStation)
        return {};
    const auto same = [](const ChoiceBox* a, const ChoiceBox* b) {
        return !a->value().isEmpty() && a->value() == b->value();
    };
    if (same(m_ui->cameraBox1, m_ui->cameraBox2))
        return tr("两个工位不能使用同一个相机");
    if (same(m_ui->solutionBox1, m_ui->solutionBox2))
        return tr("两个工位不能使用同一个方案");
    return {};
}

void QSystemSettingUI::nameReports()
{
    m_ui->reportWhenBox->setChoices(
        {ShiftConfig::never, ShiftConfig::eachShift, ShiftConfig::eachDay},
        {{ShiftConfig::never, tr("不写")}, {ShiftConfig::eachShift, tr("每班")}, {ShiftConfig::eachDay, tr("每天")}});
}

void QSystemSettingUI::chooseReportFolder()
{
    auto* dialog = new QFileDialog(this, tr("报告文件夹"), m_ui->reportFolderEdit->text());
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    connect(dialog, &QFileDialog::fileSelected, m_ui->reportFolderEdit, &QLineEdit::setText);
    dialog->open();
}

/// Whether the folder is there is seen by those who write into it: asking a network drive may take long.
QString QSystemSettingUI::shiftProblem() const
{
    QString problem;
    Shifts::fromText(m_ui->shiftsEdit->text(), &problem);
    if (!problem.isEmpty()) {
        setTone(m_ui->shiftsEdit, Tone::Error);
        return problem;
    }
    if (m_ui->reportWhenBox->value() == QLatin1String(ShiftConfig::never))
        return {};
    if (!m_ui->reportPdfCheck->isChecked() && !m_ui->reportXlsxCheck->isChecked())
        return tr("自动报告：请至少选择一种格式");
    const QString folder = m_ui->reportFolderEdit->text().trimmed();
    if (folder.isEmpty() || QDir::isAbsolutePath(folder))
        return {};
    setTone(m_ui->reportFolderEdit, Tone::Error);
    return tr("报告文件夹：“%1”不是完整路径").arg(folder);
}

/// Whether files can be used, and the broker answers, is seen by those who connect.
QString QSystemSettingUI::plantProblem() const
{
    if (!m_ui->plantOnCheck->isChecked())
        return {};
    for (QLineEdit* field : {m_ui->plantGroupEdit, m_ui->plantCellEdit}) {
        const QString why = CellForwarding::whyNoName(field->text());
        if (why.isEmpty())
            continue;
        setTone(field, Tone::Error);
        return tr("%1：%2").arg(field->accessibleName(), why);
    }
    if (m_ui->plantHostEdit->text().trimmed().isEmpty()) {
        setTone(m_ui->plantHostEdit, Tone::Error);
        return tr("转发到工厂：请输入代理服务器地址");
    }
    if (m_ui->plantCertificateEdit->text().isEmpty() == m_ui->plantKeyEdit->text().isEmpty())
        return {};
    setTone(m_ui->plantKeyEdit, Tone::Error);
    return tr("客户端证书和私钥须同时设置");
}

QString QSystemSettingUI::keepingWarning() const
{
    if (m_keptOneDay)
        return tr("剩余空间曾低于最小剩余空间，到程序结束图像只保留1天");
    if (m_freeMiB >= 0 && qint64(m_ui->spaceEdit->value()) * 1024 > m_freeMiB)
        return tr("现在只剩%1 GB，少于最小剩余空间：图像将只保留1天，不管保留天数")
            .arg(QString::number(m_freeMiB / 1024.0, 'f', 1));
    return {};
}

QString QSystemSettingUI::problem() const
{
    QString problem = m_form->judge(m_shown);
    if (problem.isEmpty())
        problem = portProblem();
    if (problem.isEmpty())
        problem = shiftProblem();
    if (problem.isEmpty())
        problem = plantProblem();
    return problem.isEmpty() ? sameChoiceProblem() : problem;
}

void QSystemSettingUI::judge()
{
    const QString problem = this->problem();
    m_ui->okButton->setEnabled(problem.isEmpty());
    m_ui->applyButton->setEnabled(problem.isEmpty() && !edited().isEmpty());
    m_ui->question->dismiss(); // its answer was about other values
    if (!problem.isEmpty())
        m_ui->message->say(Tone::Error, problem);
    else
        m_ui->message->say(Tone::Warning, warning());
}

QString QSystemSettingUI::warning()
{
    const QString keeping = keepingWarning();
    m_ui->spaceEdit->setToolTip(keeping);
    if (!keeping.isEmpty())
        setTone(m_ui->spaceEdit, Tone::Warning);
    QStringList warnings{m_form->warning(), keeping};
    warnings.removeAll({});
    return warnings.join(tr("；"));
}

void QSystemSettingUI::accept()
{
    submit(After::Close);
}

void QSystemSettingUI::apply()
{
    submit(After::Stay);
}

void QSystemSettingUI::submit(After after)
{
    if (!problem().isEmpty())
        return;
    const QStringList foreign = edited().isEmpty() ? QStringList() : m_store.foreignChanges();
    if (!foreign.isEmpty())
        askAboutFiles(foreign, after);
    else
        askAboutCalibration(after);
}

SettingsMap QSystemSettingUI::wanted() const
{
    SettingsMap wanted = m_store.current();
    wanted.insert(edited());
    return wanted;
}

void QSystemSettingUI::askAboutCalibration(After after)
{
    const QStringList doubts = m_store.calibrationDoubts(wanted(), m_oneStation);
    if (edited().isEmpty() || doubts.isEmpty())
        return store(after);
    m_ui->question->ask(doubts.join(QLatin1Char('\n')), {tr("仍然切换标定方式"), [this, after] { store(after); }});
}

void QSystemSettingUI::askAboutFiles(const QStringList& foreign, After after)
{
    const QuestionStrip::Answer overwrite{tr("覆盖文件"), [this, after] { askAboutCalibration(after); }};
    const QuestionStrip::Answer take{m_store.canReload() ? tr("采用文件中的值") : QString(), [this] { takeFiles(); }};
    m_ui->question->ask(foreign.join(QLatin1Char('\n')), overwrite, take);
}

void QSystemSettingUI::store(After after)
{
    const SettingsMap typed = edited();
    const SettingsMap before = m_store.current();
    const SettingsMap wanted = this->wanted();
    QString error;
    if (!typed.isEmpty() && !m_store.store(wanted, &error)) {
        m_ui->message->say(Tone::Error, tr("未能保存，设置没有改变：%1").arg(error));
        return;
    }
    const AuditChanges changes = SettingsStore::differences(before, wanted);
    load();
    if (!changes.isEmpty())
        emit settingsApplied(changes);
    if (after == After::Close)
        QDialog::accept();
    else
        m_ui->message->say(Tone::Plain, tr("已保存"));
}

void QSystemSettingUI::takeFiles()
{
    const SettingsMap before = m_store.current();
    m_store.reload();
    load();
    const AuditChanges changes = SettingsStore::differences(before, m_store.current());
    if (!changes.isEmpty())
        emit settingsApplied(changes);
}

void QSystemSettingUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        nameReports();
        judge();
    }
    QDialog::changeEvent(event);
}
