#include "common/forms/ChoiceBox.h"

#include <QEvent>
#include <QSignalBlocker>
#include <QWheelEvent>

ChoiceBox::ChoiceBox(QWidget* parent)
    : QComboBox(parent)
{
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(14);
    connect(this, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &ChoiceBox::onCurrentChanged);
    rebuild({});
}

void ChoiceBox::setChoices(const QStringList& names, const QMap<QString, QString>& captions)
{
    m_names = names;
    m_names.removeDuplicates();
    m_names.removeAll(QString());
    m_captions = captions;
    rebuild(value());
}

void ChoiceBox::setOptional(bool optional)
{
    m_optional = optional;
    rebuild(value());
}

void ChoiceBox::setValue(const QString& name)
{
    rebuild(name);
}

bool ChoiceBox::isMissing() const
{
    return !value().isEmpty() && !m_names.contains(value());
}

void ChoiceBox::rebuild(const QString& value)
{
    {
        const QSignalBlocker quiet(this);
        clear();
        if (m_optional || value.isEmpty())
            addItem(tr("（未选择）"), QString());
        for (const QString& name : qAsConst(m_names))
            addItem(m_captions.value(name, name), name);
        if (!value.isEmpty() && !m_names.contains(value))
            addItem(tr("%1（不存在）").arg(value), value);
        setCurrentIndex(findData(value));
    }
    onCurrentChanged();
}

void ChoiceBox::onCurrentChanged()
{
    setToolTip(value()); // a long name may be cut on the screen
    emit valueChanged();
}

/// A wheel that scrolls the page must not change a setting on its way.
void ChoiceBox::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

void ChoiceBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        rebuild(value());
    QComboBox::changeEvent(event);
}
