#pragma once

#include <QComboBox>
#include <QMap>
#include <QStringList>

/// A choice among names that come and go, such as cameras: the chosen name stays, marked as missing, when the list no
/// longer holds it, and nothing may be chosen, too. GUI thread.
class ChoiceBox : public QComboBox
{
    Q_OBJECT

public:
    explicit ChoiceBox(QWidget* parent = nullptr);

    /// The names to choose from, and how they are shown where that differs.
    void setChoices(const QStringList& names, const QMap<QString, QString>& captions = {});
    /// Whether "nothing" is among the choices; it is by default.
    void setOptional(bool optional);

    /// Chooses a name, whether or not it is in the list.
    void setValue(const QString& name);
    /// The chosen name; empty for nothing.
    QString value() const { return currentData().toString(); }
    /// Whether a name is chosen that the list does not hold.
    bool isMissing() const;

signals:
    /// Another name is chosen, or whether it is missing has changed.
    void valueChanged();

protected:
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void rebuild(const QString& value);
    void onCurrentChanged();

    QStringList m_names;
    QMap<QString, QString> m_captions;
    bool m_optional = true;
};
