#include "results/export/forms/ReportScheduleForm.h"

#include "common/forms/DialogForm.h"
#include "common/forms/InlineMessage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

namespace {

QWidget* inARow(QWidget* parent, const QVector<QWidget*>& widgets)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    for (QWidget* widget : widgets)
        layout->addWidget(widget, qobject_cast<QLineEdit*>(widget) ? 1 : 0);
    layout->addStretch();
    return row;
}

} // namespace

ReportScheduleForm::ReportScheduleForm(QWidget* parent)
    : QWidget(parent)
    , m_form(new QFormLayout(this))
    , m_when(new QComboBox(this))
    , m_pdf(new QCheckBox(QStringLiteral("PDF"), this))
    , m_xlsx(new QCheckBox(QStringLiteral("XLSX"), this))
    , m_formats(inARow(this, {m_pdf, m_xlsx}))
    , m_folder(new QLineEdit(this))
    , m_browse(new QPushButton(this))
    , m_cell(new QLineEdit(this))
    , m_message(new InlineMessage(this))
{
    m_place = inARow(this, {m_folder, m_browse});
    m_when->addItems({{}, {}, {}});
    for (QWidget* field : {static_cast<QWidget*>(m_when), m_formats, m_place, static_cast<QWidget*>(m_cell)})
        m_form->addRow(new QLabel(this), field);
    m_form->addRow(m_message);
    DialogForm::prepareFields(this);
    retranslate();
    setSettings({});
    connect(m_when, qOverload<int>(&QComboBox::currentIndexChanged), this, &ReportScheduleForm::onChanged);
    for (QCheckBox* box : {m_pdf, m_xlsx})
        connect(box, &QCheckBox::toggled, this, &ReportScheduleForm::onChanged);
    for (QLineEdit* field : {m_folder, m_cell})
        connect(field, &QLineEdit::textChanged, this, &ReportScheduleForm::onChanged);
    connect(m_browse, &QPushButton::clicked, this, &ReportScheduleForm::browse);
}

void ReportScheduleForm::setSettings(const ReportSettings& settings)
{
    {
        const QSignalBlocker quiet(this);
        m_when->setCurrentIndex(settings.when);
        m_pdf->setChecked(settings.pdf);
        m_xlsx->setChecked(settings.xlsx);
        m_folder->setText(QDir::toNativeSeparators(settings.folder));
        m_cell->setText(settings.cell);
    }
    onChanged();
}

ReportSettings ReportScheduleForm::settings() const
{
    ReportSettings settings;
    settings.when = ReportSettings::When(m_when->currentIndex());
    settings.pdf = m_pdf->isChecked();
    settings.xlsx = m_xlsx->isChecked();
    settings.folder = QDir::fromNativeSeparators(m_folder->text().trimmed());
    settings.cell = m_cell->text().trimmed();
    return settings;
}

void ReportScheduleForm::onChanged()
{
    const bool on = m_when->currentIndex() != ReportSettings::Off;
    for (QWidget* field : {m_formats, m_place, static_cast<QWidget*>(m_cell)})
        field->setEnabled(on);
    m_message->sayOrHide(Tone::Warning, problem());
    emit changed();
}

void ReportScheduleForm::browse()
{
    auto* dialog = new QFileDialog(this, tr("报告文件夹"), m_folder->text());
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& folder) { m_folder->setText(QDir::toNativeSeparators(folder)); });
    dialog->open();
}

void ReportScheduleForm::retranslate()
{
    const QString captions[] = {tr("自动报告"), tr("格式"), tr("文件夹"), tr("报告抬头")};
    for (int i = 0; i < 4; ++i)
        qobject_cast<QLabel*>(m_form->itemAt(i, QFormLayout::LabelRole)->widget())->setText(captions[i]);
    const QString whens[] = {tr("关闭"), tr("每班"), tr("每天")};
    for (int i = 0; i < 3; ++i)
        m_when->setItemText(i, whens[i]);
    m_browse->setText(tr("选择…"));
    m_folder->setPlaceholderText(tr("工作目录下的 reports"));
    m_cell->setPlaceholderText(tr("工作目录的名称"));
    m_message->sayOrHide(Tone::Warning, problem());
}

void ReportScheduleForm::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
