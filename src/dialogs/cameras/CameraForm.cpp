#include "dialogs/cameras/CameraForm.h"

#include "dialogs/cameras/FolderProbe.h"
#include "ui_CameraForm.h"

#include <valvecell/HomeFiles.h>

#include <QEvent>
#include <QFileDialog>

struct CameraForm::Row
{
    const char* name; ///< of the setting
    QLabel* caption;
    QLineEdit* field;
    QWidget* beside; ///< the unit, or a button
};

CameraForm::CameraForm(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CameraForm>())
    , m_probe(new FolderProbe(this))
{
    m_ui->setupUi(this);
    const QVector<Row> all = rows();
    for (const Row& row : all)
        connect(row.field, &QLineEdit::textChanged, this, &CameraForm::edited);
    connect(m_ui->folderEdit, &QLineEdit::textChanged, this, &CameraForm::lookForFolder);
    connect(m_probe, &FolderProbe::looked, this, &CameraForm::warningChanged);
    connect(m_ui->folderButton, &QPushButton::clicked, this, &CameraForm::askFolder);
    setSettings({});
}

CameraForm::~CameraForm() = default;

QVector<CameraForm::Row> CameraForm::rows() const
{
    return {{"exposure_ms", m_ui->exposureCaption, m_ui->exposureEdit, m_ui->exposureUnit},
            {"gain_db", m_ui->gainCaption, m_ui->gainEdit, m_ui->gainUnit},
            {"transfer_ms", m_ui->transferCaption, m_ui->transferEdit, m_ui->transferUnit},
            {"folder", m_ui->folderCaption, m_ui->folderEdit, m_ui->folderButton}};
}

void CameraForm::setSettings(const QVariantMap& settings)
{
    m_shown = settings;
    const QVector<Row> all = rows();
    for (const Row& row : all) {
        const bool has = settings.contains(QLatin1String(row.name));
        const QVariant value = settings.value(QLatin1String(row.name));
        for (QWidget* widget : {static_cast<QWidget*>(row.caption), static_cast<QWidget*>(row.field), row.beside})
            widget->setVisible(has);
        if (auto* number = qobject_cast<DecimalField*>(row.field))
            number->setValue(value.toDouble());
        else
            row.field->setText(value.toString());
    }
}

QVariantMap CameraForm::values() const
{
    QVariantMap values;
    const QVector<Row> all = rows();
    for (const Row& row : all) {
        const auto* number = qobject_cast<const DecimalField*>(row.field);
        if (m_shown.contains(QLatin1String(row.name)))
            values.insert(QLatin1String(row.name), number ? QVariant(number->value()) : row.field->text().trimmed());
    }
    return values;
}

QString CameraForm::problem() const
{
    const QVector<Row> all = rows();
    for (const Row& row : all) {
        const auto* number = qobject_cast<const DecimalField*>(row.field);
        if (!m_shown.contains(QLatin1String(row.name)))
            continue;
        if (number && !number->problem().isEmpty())
            return tr("%1：%2").arg(number->accessibleName(), number->problem());
        if (row.field->text().trimmed().isEmpty())
            return tr("%1：不能为空").arg(row.field->accessibleName());
    }
    return {};
}

QString CameraForm::folder() const
{
    return QDir(HomeFiles::home()).absoluteFilePath(m_ui->folderEdit->text().trimmed());
}

void CameraForm::lookForFolder()
{
    if (!m_ui->folderEdit->text().trimmed().isEmpty())
        m_probe->look(folder());
}

QString CameraForm::warning() const
{
    const bool missing = m_shown.contains(QStringLiteral("folder")) && m_probe->isMissing(folder());
    return missing ? tr("图像文件夹“%1”不存在").arg(folder()) : QString();
}

/// A dialog of the program's own: the platform's would block, and cannot be told the language.
void CameraForm::askFolder()
{
    const QDir home(HomeFiles::home());
    auto* dialog = new QFileDialog(this, tr("图像文件夹"), folder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this, home](const QString& folder) {
        const QString inside = home.relativeFilePath(folder); // a home that is moved takes its images along
        m_ui->folderEdit->setText(inside.startsWith(QLatin1String("..")) ? folder : inside);
    });
    dialog->open();
}

void CameraForm::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
    QWidget::changeEvent(event);
}
