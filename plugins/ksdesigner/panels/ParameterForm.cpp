#include "ParameterForm.h"

#include "common/forms/InlineMessage.h"
#include "model/ParameterRules.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace {

constexpr int fieldWidth = 84;

enum Column { Name, Value, Unit, PlusMinus, Tolerance, Percent, Columns };

} // namespace

ParameterForm::ParameterForm(QWidget* parent)
    : QWidget(parent)
{
}

void ParameterForm::show(const QVariantMap& parameters, bool readOnly)
{
    const QStringList before = m_parameters.keys();
    const bool sameFields = layout() && before == parameters.keys();
    m_parameters = parameters;
    if (!sameFields)
        build();
    for (QLineEdit* field : qAsConst(m_fields))
        field->setReadOnly(readOnly);
    for (QCheckBox* box : qAsConst(m_switches))
        box->setEnabled(!readOnly);
    update();
}

void ParameterForm::setScale(double scale)
{
    m_scale = scale;
    update();
}

void ParameterForm::build()
{
    qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
    delete layout();
    m_hints.clear();
    m_fields.clear();
    m_switches.clear();
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(6);
    const QStringList names = ParameterRules::lines(m_parameters);
    for (const QString& name : names) {
        if (m_parameters.value(name).type() == QVariant::Bool)
            buildSwitch(grid, name);
        else
            buildLine(grid, name);
    }
    grid->setColumnStretch(Name, 1);
    grid->setRowStretch(grid->rowCount(), 1);
}

void ParameterForm::buildLine(QGridLayout* grid, const QString& name)
{
    const int row = grid->rowCount();
    auto* caption = new QLabel(ParameterRules::label(name), this);
    caption->setToolTip(ParameterRules::explanation(name));
    grid->addWidget(caption, row, Name);
    grid->addWidget(addField(name), row, Value);
    caption->setBuddy(m_fields.value(name));
    grid->addWidget(new QLabel(ParameterRules::unit(name), this), row, Unit);
    const QString tolerance = name + ParameterRules::toleranceSuffix;
    if (m_parameters.contains(tolerance)) {
        grid->addWidget(new QLabel(QStringLiteral("±"), this), row, PlusMinus);
        grid->addWidget(addField(tolerance), row, Tolerance);
        grid->addWidget(new QLabel(QStringLiteral("%"), this), row, Percent);
    }
    buildHint(grid, name);
}

void ParameterForm::buildHint(QGridLayout* grid, const QString& name)
{
    auto* hint = new QLabel(this);
    hint->setObjectName(name + QStringLiteral("_hint"));
    hint->setWordWrap(true);
    hint->setTextFormat(Qt::PlainText);
    grid->addWidget(hint, grid->rowCount(), Value, 1, Columns - Value);
    m_hints.insert(name, hint);
}

void ParameterForm::buildSwitch(QGridLayout* grid, const QString& name)
{
    auto* box = new QCheckBox(ParameterRules::label(name), this);
    box->setObjectName(name);
    box->setToolTip(ParameterRules::explanation(name));
    grid->addWidget(box, grid->rowCount(), Name, 1, Columns);
    connect(box, &QCheckBox::clicked, this, [this, name](bool on) { take(name, on); });
    m_switches.insert(name, box);
}

QLineEdit* ParameterForm::addField(const QString& name)
{
    auto* field = new QLineEdit(this);
    field->setObjectName(name);
    field->setFixedWidth(fieldWidth);
    field->setAlignment(Qt::AlignRight);
    field->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    field->setToolTip(ParameterRules::explanation(name));
    field->setAccessibleName(ParameterRules::label(name));
    if (ParameterRules::mayBeUnknown(name))
        field->setPlaceholderText(tr("自动"));
    connect(field, &QLineEdit::textEdited, this,
            [this, name](const QString& text) { take(name, ParameterRules::valueOf(name, text, m_scale)); });
    m_fields.insert(name, field);
    return field;
}

void ParameterForm::take(const QString& name, const QVariant& value)
{
    m_parameters.insert(name, value);
    update();
    emit edited(m_parameters);
}

void ParameterForm::update()
{
    for (auto it = m_fields.begin(); it != m_fields.end(); ++it) {
        const QVariant value = m_parameters.value(it.key());
        // "12." and "12" are one value: what is being typed stays.
        if (ParameterRules::valueOf(it.key(), it.value()->text(), m_scale) != value)
            it.value()->setText(ParameterRules::textOf(it.key(), value));
    }
    for (auto it = m_switches.begin(); it != m_switches.end(); ++it)
        it.value()->setChecked(m_parameters.value(it.key()).toBool());
    updateHints(ParameterRules::problems(m_parameters));
}

void ParameterForm::updateHints(const QMap<QString, QString>& problems)
{
    for (auto it = m_fields.begin(); it != m_fields.end(); ++it)
        setTone(it.value(), problems.contains(it.key()) ? Tone::Error : Tone::Plain);
    for (auto it = m_hints.begin(); it != m_hints.end(); ++it) {
        const QString problem = problems.value(it.key(), problems.value(it.key() + ParameterRules::toleranceSuffix));
        const QString range = ParameterRules::rangeText(m_parameters, it.key(), m_scale);
        it.value()->setText(problem.isEmpty() ? range : problem);
        it.value()->setVisible(!it.value()->text().isEmpty());
        it.value()->setForegroundRole(problem.isEmpty() ? QPalette::PlaceholderText : QPalette::WindowText);
        setTone(it.value(), problem.isEmpty() ? Tone::Plain : Tone::Error);
    }
}

void ParameterForm::markRefused(const QString& name, const QString& reason)
{
    updateHints({{name, reason}});
}
