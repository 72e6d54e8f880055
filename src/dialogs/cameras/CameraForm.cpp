#include "dialogs/cameras/CameraForm.h"

#include "common/forms/ChoiceBox.h"
#include "common/forms/DialogForm.h"
#include "common/forms/NumberField.h"
#include "dialogs/cameras/FolderProbe.h"

#include <valvecell/HomeFiles.h>

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

namespace {

using Kind = CameraParameter::Kind;

constexpr int rowBelowAll = 500;

QString fullPath(const QString& folder)
{
    return QDir(HomeFiles::home()).absoluteFilePath(folder.trimmed());
}

void setValue(QWidget* field, const QVariant& value)
{
    if (auto* number = qobject_cast<DecimalField*>(field))
        number->setValue(value.toDouble());
    else if (auto* whole = qobject_cast<NumberField*>(field))
        whole->setValue(value.toInt());
    else if (auto* box = qobject_cast<QCheckBox*>(field))
        box->setChecked(value.toBool());
    else if (auto* choice = qobject_cast<ChoiceBox*>(field))
        choice->setValue(value.toString());
    else
        static_cast<QLineEdit*>(field)->setText(value.toString());
}

QVariant valueOf(const QWidget* field)
{
    if (const auto* number = qobject_cast<const DecimalField*>(field))
        return number->value();
    if (const auto* whole = qobject_cast<const NumberField*>(field))
        return whole->value();
    if (const auto* box = qobject_cast<const QCheckBox*>(field))
        return box->isChecked();
    if (const auto* choice = qobject_cast<const ChoiceBox*>(field))
        return choice->value();
    return static_cast<const QLineEdit*>(field)->text().trimmed();
}

/// Texts and limits as described; what a field holds stays.
void describe(QWidget* field, const CameraParameter& parameter)
{
    field->setAccessibleName(parameter.label());
    field->setToolTip(parameter.tip);
    if (auto* number = qobject_cast<DecimalField*>(field)) {
        number->setMinimum(parameter.minimum);
        number->setMaximum(parameter.maximum);
    } else if (auto* whole = qobject_cast<NumberField*>(field)) {
        whole->setMinimum(int(parameter.minimum));
        whole->setMaximum(int(parameter.maximum));
    } else if (auto* choice = qobject_cast<ChoiceBox*>(field)) {
        QStringList values;
        QMap<QString, QString> captions;
        for (const CameraParameter::Choice& one : parameter.choices) {
            values << one.value;
            captions.insert(one.value, one.caption);
        }
        const QSignalBlocker quiet(choice);
        choice->setChoices(values, captions);
    }
}

} // namespace

CameraForm::CameraForm(QWidget* parent)
    : QWidget(parent)
    , m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(10);
    m_grid->setVerticalSpacing(8);
    m_grid->setColumnMinimumWidth(0, 110);
    m_grid->setColumnStretch(1, 1);
    m_grid->setRowStretch(rowBelowAll, 1); // what is left of the height
}

void CameraForm::setParameters(const QVector<CameraParameter>& parameters)
{
    if (!showsSame(parameters)) {
        for (const Row& row : qAsConst(m_rows))
            qDeleteAll(widgetsOf(row) << row.missing);
        m_rows.clear();
        for (const CameraParameter& parameter : parameters)
            addRow(parameter);
        DialogForm::prepareFields(this);
        orderTabs();
    }
    for (int i = 0; i < m_rows.size(); ++i) {
        m_rows[i].parameter = parameters[i];
        label(m_rows[i]);
    }
}

QVector<QWidget*> CameraForm::widgetsOf(const Row& row)
{
    return {row.caption, row.field, row.unit ? static_cast<QWidget*>(row.unit) : row.browse};
}

bool CameraForm::isMissing(const Row& row)
{
    return !row.missing->text().isEmpty();
}

bool CameraForm::showsSame(const QVector<CameraParameter>& parameters) const
{
    return std::equal(m_rows.begin(), m_rows.end(), parameters.begin(), parameters.end(),
                      [](const Row& row, const CameraParameter& parameter) {
                          return row.parameter.name == parameter.name && row.parameter.kind == parameter.kind;
                      });
}

void CameraForm::addRow(const CameraParameter& parameter)
{
    Row row{parameter, new QLabel(this), makeField(parameter), new QLabel(this), nullptr, nullptr, nullptr};
    row.caption->setObjectName(parameter.name + QStringLiteral("Caption"));
    row.caption->setBuddy(row.field);
    row.missing->setObjectName(parameter.name + QStringLiteral("Missing"));
    row.missing->setTextFormat(Qt::PlainText);
    row.missing->setWordWrap(true);
    row.missing->hide();
    const int line = 2 * m_rows.size();
    m_grid->addWidget(row.caption, line, 0);
    m_grid->addWidget(row.field, line, 1);
    m_grid->addWidget(row.missing, line + 1, 1, 1, 2);
    if (parameter.kind == Kind::ImageFolder) {
        addFolderTools(row);
        m_grid->addWidget(row.browse, line, 2);
    } else {
        row.unit = new QLabel(this);
        row.unit->setObjectName(parameter.name + QStringLiteral("Unit"));
        m_grid->addWidget(row.unit, line, 2);
    }
    for (QWidget* widget : widgetsOf(row))
        widget->setVisible(true); // at once, though the form may be on the screen already
    m_rows.append(row);
    setValue(row.field, parameter.initial);
}

QWidget* CameraForm::makeField(const CameraParameter& parameter)
{
    QWidget* field;
    if (parameter.kind == Kind::Switch) {
        auto* box = new QCheckBox(this);
        connect(box, &QCheckBox::toggled, this, &CameraForm::edited);
        field = box;
    } else if (parameter.kind == Kind::Choice) {
        auto* choice = new ChoiceBox(this);
        choice->setOptional(false);
        connect(choice, &ChoiceBox::valueChanged, this, &CameraForm::edited);
        field = choice;
    } else {
        QLineEdit* text = parameter.kind == Kind::Number  ? static_cast<QLineEdit*>(new DecimalField(this))
                          : parameter.kind == Kind::Whole ? new NumberField(this)
                                                          : new QLineEdit(this);
        if (parameter.kind == Kind::Text || parameter.kind == Kind::ImageFolder)
            text->setMaxLength(1000);
        connect(text, &QLineEdit::textChanged, this, &CameraForm::edited);
        field = text;
    }
    field->setObjectName(parameter.name);
    return field;
}

void CameraForm::addFolderTools(Row& row)
{
    row.browse = new QPushButton(this);
    row.browse->setObjectName(row.parameter.name + QStringLiteral("Button"));
    row.browse->setAutoDefault(false);
    connect(row.browse, &QPushButton::clicked, this, [this, name = row.parameter.name] { askFolder(name); });
    auto* probe = new FolderProbe(row.field);
    row.probe = probe;
    connect(static_cast<QLineEdit*>(row.field), &QLineEdit::textChanged, probe, [probe](const QString& typed) {
        if (!typed.trimmed().isEmpty())
            probe->look(fullPath(typed));
    });
    connect(probe, &FolderProbe::looked, this, &CameraForm::warningChanged);
}

void CameraForm::label(Row& row)
{
    row.caption->setText(row.parameter.caption);
    row.caption->setToolTip(row.parameter.tip);
    if (row.unit)
        row.unit->setText(row.parameter.unit);
    else
        row.browse->setText(tr("浏览(&B)…"));
    describe(row.field, row.parameter);
}

/// The fields follow the form's own place, and not all others because they came last.
void CameraForm::orderTabs()
{
    QWidget* last = previousInFocusChain();
    while (last != this && !(last->focusPolicy() & Qt::TabFocus))
        last = last->previousInFocusChain();
    for (const Row& row : qAsConst(m_rows)) {
        for (QWidget* widget : widgetsOf(row)) {
            if (widget->focusPolicy() == Qt::NoFocus)
                continue; // would break the chain
            setTabOrder(last, widget);
            last = widget;
        }
    }
}

void CameraForm::setValues(const QVariantMap& settings)
{
    for (const Row& row : qAsConst(m_rows))
        setValue(row.field, settings.value(row.parameter.name, row.parameter.initial));
}

void CameraForm::setMissing(const QMap<QString, QString>& reasons)
{
    for (const Row& row : qAsConst(m_rows)) {
        const QString reason = reasons.value(row.parameter.name);
        row.missing->setText(reason);
        row.missing->setVisible(!reason.isEmpty());
        for (QWidget* widget : widgetsOf(row)) {
            widget->setEnabled(reason.isEmpty());
            widget->setToolTip(reason.isEmpty() ? row.parameter.tip : reason);
        }
    }
}

QVariantMap CameraForm::values() const
{
    QVariantMap values;
    for (const Row& row : m_rows) {
        if (!isMissing(row))
            values.insert(row.parameter.name, valueOf(row.field));
    }
    return values;
}

QString CameraForm::problem() const
{
    for (const Row& row : m_rows) {
        if (isMissing(row))
            continue;
        const auto* judged = qobject_cast<const JudgedField*>(row.field);
        const QVariant value = valueOf(row.field);
        const QString problem = judged ? judged->problem() : QString();
        if (!problem.isEmpty())
            return tr("%1：%2").arg(row.parameter.label(), problem);
        if (value.userType() == QMetaType::QString && value.toString().isEmpty())
            return tr("%1：不能为空").arg(row.parameter.label());
        if (!row.parameter.isRight(value))
            return row.parameter.problem(value);
    }
    return {};
}

QString CameraForm::warning(const QVariantMap& settings) const
{
    for (const Row& row : m_rows) {
        const QString folder = fullPath(settings.value(row.parameter.name).toString());
        if (row.probe && settings.contains(row.parameter.name) && row.probe->isMissing(folder))
            return tr("图像文件夹“%1”不存在").arg(folder);
    }
    return {};
}

/// A dialog of the program's own: the platform's would block, and has a language of its own.
void CameraForm::askFolder(const QString& name)
{
    auto* field = findChild<QLineEdit*>(name);
    const QDir home(HomeFiles::home());
    auto* dialog = new QFileDialog(this, field->accessibleName(), fullPath(field->text()));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, field, [field, home](const QString& folder) {
        const QString inside = home.relativeFilePath(folder); // a home that is moved takes its images along
        field->setText(inside.startsWith(QLatin1String("..")) ? folder : inside);
    });
    dialog->open();
}
