#pragma once

#include <QMap>
#include <QVariantMap>
#include <QWidget>

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;

/// One line for each parameter of a model: name, value with unit, tolerance in percent, and below it the
/// range that they allow or what is wrong. Fields are plain text fields: a mouse wheel over the form changes nothing.
///
/// A field's object name is the parameter's name.
class ParameterForm : public QWidget
{
    Q_OBJECT

public:
    explicit ParameterForm(QWidget* parent = nullptr);

    /// Shows these values; a field that already reads as its value keeps its text and cursor.
    void show(const QVariantMap& parameters, bool readOnly);
    /// Millimetres per pixel, so that lengths are shown and may be typed in millimetres as well; 0 for unknown.
    void setScale(double scale);
    /// Marks one field as refused by the engine until the next show() or edit.
    void markRefused(const QString& name, const QString& reason);

signals:
    /// Something was typed; `parameters` holds all values as they stand, see ParameterRules::valueOf().
    void edited(const QVariantMap& parameters);

private:
    void build();
    void buildLine(QGridLayout* grid, const QString& name);
    void buildSwitch(QGridLayout* grid, const QString& name);
    void buildHint(QGridLayout* grid, const QString& name);
    QLineEdit* addField(const QString& name);
    void take(const QString& name, const QVariant& value);
    void update();
    void updateHints(const QMap<QString, QString>& problems);

    QVariantMap m_parameters;
    double m_scale = 0;
    QMap<QString, QLineEdit*> m_fields;
    QMap<QString, QCheckBox*> m_switches;
    QMap<QString, QLabel*> m_hints; ///< below each line: what is wrong, else the range
};
