#include "dialogs/settings/SettingsForm.h"

#include "common/forms/ChoiceBox.h"
#include "common/forms/InlineMessage.h"
#include "common/forms/NumberField.h"
#include "db/SqlText.h"

#include <QCheckBox>

namespace {

constexpr int maxTextLength = 250;

QString keyOf(const QWidget* field)
{
    return field->property("settingKey").toString();
}

void showValue(QWidget* field, const QVariant& value)
{
    if (auto* box = qobject_cast<QCheckBox*>(field))
        box->setChecked(value.toBool());
    else if (auto* choice = qobject_cast<ChoiceBox*>(field))
        choice->setValue(value.toString());
    else if (auto* edit = qobject_cast<QLineEdit*>(field))
        edit->setText(value.toString());
}

QVariant valueOf(const QWidget* field)
{
    if (const auto* box = qobject_cast<const QCheckBox*>(field))
        return box->isChecked();
    if (const auto* choice = qobject_cast<const ChoiceBox*>(field))
        return choice->value();
    if (const auto* number = qobject_cast<const NumberField*>(field))
        return number->problem().isEmpty() ? QVariant(number->value()) : QVariant(number->text());
    return qobject_cast<const QLineEdit*>(field)->text().trimmed();
}

/// As opposed to what lies on a page that is not in front.
bool isPutAway(const QWidget* field)
{
    return field->isHidden() && field->testAttribute(Qt::WA_WState_ExplicitShowHide);
}

bool isMissingChoice(const QWidget* field)
{
    const auto* choice = qobject_cast<const ChoiceBox*>(field);
    return choice && choice->isMissing();
}

QString textProblem(const QString& text)
{
    QString problem;
    if (text.trimmed().isEmpty())
        return SettingsForm::tr("不能为空");
    SqlText::carries(text.trimmed(), &problem, maxTextLength);
    return problem;
}

QString problemOf(const QWidget* field, const QVariant& stored)
{
    if (isMissingChoice(field) && valueOf(field) != stored)
        return SettingsForm::tr("“%1”已不存在，请另选").arg(valueOf(field).toString());
    if (const auto* number = qobject_cast<const NumberField*>(field))
        return number->problem();
    const auto* edit = qobject_cast<const QLineEdit*>(field);
    const bool mayBeEmpty = edit && edit->property("mayBeEmpty").toBool() && edit->text().trimmed().isEmpty();
    return edit && !mayBeEmpty ? textProblem(edit->text()) : QString();
}

} // namespace

SettingsForm::SettingsForm(QWidget* dialog, const QMap<QString, SettingRange>& ranges)
    : QObject(dialog)
{
    const auto children = dialog->findChildren<QWidget*>();
    for (QWidget* child : children) {
        if (!keyOf(child).isEmpty())
            bind(child, ranges.value(keyOf(child)));
    }
}

void SettingsForm::bind(QWidget* field, SettingRange range)
{
    m_fields.append(field);
    if (auto* number = qobject_cast<NumberField*>(field)) {
        number->setMinimum(range.low);
        number->setMaximum(range.high);
    }
    if (auto* box = qobject_cast<QCheckBox*>(field))
        connect(box, &QCheckBox::toggled, this, &SettingsForm::edited);
    else if (auto* choice = qobject_cast<ChoiceBox*>(field))
        connect(choice, &ChoiceBox::valueChanged, this, &SettingsForm::edited);
    else if (auto* edit = qobject_cast<QLineEdit*>(field))
        connect(edit, &QLineEdit::textChanged, this, &SettingsForm::edited);
}

void SettingsForm::show(const SettingsMap& settings)
{
    for (QWidget* field : qAsConst(m_fields))
        showValue(field, settings.value(keyOf(field)));
}

SettingsMap SettingsForm::values() const
{
    SettingsMap settings;
    for (const QWidget* field : m_fields)
        settings.insert(keyOf(field), valueOf(field));
    return settings;
}

QString SettingsForm::judge(const SettingsMap& stored) const
{
    QString first;
    for (QWidget* field : m_fields) {
        if (isPutAway(field))
            continue;
        const QString problem = problemOf(field, stored.value(keyOf(field)));
        setTone(field, !problem.isEmpty() ? Tone::Error : isMissingChoice(field) ? Tone::Warning : Tone::Plain);
        if (first.isEmpty() && !problem.isEmpty())
            first = tr("%1：%2").arg(field->accessibleName(), problem);
    }
    return first;
}

QString SettingsForm::warning() const
{
    QStringList missing;
    for (const QWidget* field : m_fields) {
        if (!isPutAway(field) && isMissingChoice(field))
            missing.append(tr("%1“%2”").arg(field->accessibleName(), valueOf(field).toString()));
    }
    return missing.isEmpty() ? QString() : tr("不存在：%1").arg(missing.join(tr("，")));
}
