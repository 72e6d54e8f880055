#include "dialogs/cameras/QCameraEditUI.h"

#include "common/forms/DialogForm.h"
#include "dialogs/cameras/CameraAccess.h"
#include "dialogs/cameras/CameraNames.h"
#include "ui_QCameraEditUI.h"

#include <QEvent>
#include <QSignalBlocker>

namespace {
constexpr QSize sizeWithFound(940, 640); ///< the list of found cameras has many columns
} // namespace

QCameraEditUI::QCameraEditUI(CameraAccess& cameras, QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::QCameraEditUI>())
    , m_cameras(cameras)
{
    m_ui->setupUi(this);
    m_ui->found->setDiscovery(cameras.discovery);
    if (cameras.discovery)
        resize(sizeWithFound);
    DialogForm::prepare(this);
    connect(m_ui->found, &FoundCameras::chosen, this, &QCameraEditUI::take);
    connect(m_ui->keyEdit, &QLineEdit::textChanged, this, &QCameraEditUI::judge);
    connect(m_ui->form, &CameraForm::edited, this, &QCameraEditUI::judge);
    connect(m_ui->form, &CameraForm::warningChanged, this, &QCameraEditUI::judge);
    connect(m_ui->typeBox, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &QCameraEditUI::showSettings);
    connect(m_ui->okButton, &QPushButton::clicked, this, &QCameraEditUI::accept);
    connect(m_ui->cancelButton, &QPushButton::clicked, this, &QCameraEditUI::reject);
}

QCameraEditUI::~QCameraEditUI()
{
    DialogForm::takeDown(this);
}

void QCameraEditUI::begin(const Task& task)
{
    m_task = task;
    retranslate();
    m_ui->keyEdit->setText(task.entry.key);
    m_ui->keyEdit->setReadOnly(!task.isNew);
    listTypes();
    showSettings();
    m_proposed.clear();
    open();
    if (task.isNew)
        m_ui->found->search();
    QWidget* first = task.isNew ? static_cast<QWidget*>(m_ui->keyEdit) : m_ui->typeBox;
    first->setFocus();
}

/// The types that work; a camera of another type shows it until another is chosen.
void QCameraEditUI::listTypes()
{
    const QSignalBlocker quiet(m_ui->typeBox);
    const QVector<CameraType> driven = m_cameras.list->drivenTypes();
    m_ui->typeBox->clear();
    for (const CameraTypeName& known : cameraTypeNames) {
        if (driven.contains(known.type))
            m_ui->typeBox->addItem(CameraNames::of(known.type), int(known.type));
    }
    if (!m_task.isNew && !driven.contains(m_task.entry.type))
        m_ui->typeBox->addItem(CameraNames::of(m_task.entry.type), int(m_task.entry.type));
    m_ui->typeBox->setCurrentIndex(qMax(0, m_ui->typeBox->findData(int(m_task.entry.type))));
}

CameraType QCameraEditUI::type() const
{
    return CameraType(m_ui->typeBox->currentData().toInt());
}

void QCameraEditUI::showSettings()
{
    m_ui->form->setParameters(parameters());
    m_ui->form->setValues(m_task.entry.settings);
    judge();
}

/// What was typed stays, as far as the found camera does not say otherwise.
void QCameraEditUI::take(const FoundCamera& found)
{
    m_task.entry.settings = m_ui->form->values();
    for (auto it = found.settings.begin(); it != found.settings.end(); ++it)
        m_task.entry.settings.insert(it.key(), it.value());
    const QString key = m_ui->keyEdit->text();
    if (m_task.isNew && (key.isEmpty() || key == m_proposed)) {
        m_proposed = proposedKey(found);
        m_ui->keyEdit->setText(m_proposed);
    }
    const QSignalBlocker quiet(m_ui->typeBox);
    m_ui->typeBox->setCurrentIndex(qMax(0, m_ui->typeBox->findData(int(found.type))));
    showSettings();
}

/// Empty when none of the names that come to mind can be had.
QString QCameraEditUI::proposedKey(const FoundCamera& found) const
{
    for (const QString& name :
         {found.userName, found.model, (found.model + QLatin1Char(' ') + found.serial).trimmed()}) {
        if (m_task.keyProblem(name).isEmpty())
            return name;
    }
    return {};
}

QVector<CameraParameter> QCameraEditUI::parameters() const
{
    return m_cameras.parameters(type(), m_task.isNew ? QString() : m_task.entry.key);
}

CameraEntry QCameraEditUI::typed() const
{
    return {m_ui->keyEdit->text(), type(), m_ui->form->values()};
}

QString QCameraEditUI::problem() const
{
    const QString name = m_task.isNew ? m_task.keyProblem(m_ui->keyEdit->text()) : QString();
    if (!name.isEmpty())
        return name;
    if (!m_cameras.list->drivenTypes().contains(type()))
        return tr("没有类型“%1”的驱动程序，请选择其他类型").arg(m_ui->typeBox->currentText());
    return m_ui->form->problem();
}

void QCameraEditUI::judge()
{
    if (!m_task.keyProblem)
        return;
    const bool wrongKey = m_task.isNew && !m_task.keyProblem(m_ui->keyEdit->text()).isEmpty();
    setTone(m_ui->keyEdit, wrongKey ? Tone::Error : Tone::Plain);
    const QString problem = this->problem();
    m_ui->okButton->setEnabled(problem.isEmpty());
    if (!problem.isEmpty())
        m_ui->message->say(Tone::Error, problem);
    else
        m_ui->message->say(Tone::Warning, m_ui->form->warning(m_ui->form->values()));
}

void QCameraEditUI::accept()
{
    judge(); // another window may have taken the name meanwhile
    if (!m_ui->okButton->isEnabled())
        return;
    m_task.submit(typed());
    QDialog::accept();
}

void QCameraEditUI::retranslate()
{
    m_ui->retranslateUi(this);
    setWindowTitle(m_task.isNew ? tr("添加相机") : tr("修改相机"));
}

void QCameraEditUI::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
        m_ui->form->setParameters(parameters());
        judge();
    }
    QDialog::changeEvent(event);
}
