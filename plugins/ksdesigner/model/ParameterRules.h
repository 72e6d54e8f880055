#pragma once

#include <QMap>
#include <QStringList>
#include <QVariantMap>

/// What the designer knows about a model's parameters: their names on the screen, units and limits. An engine may have
/// others; they are shown by their plain names and only have to stay numbers. The engine has the last word on saving.
namespace ParameterRules {

/// Ends the name of a parameter that is the tolerance, in percent, of the one named before it.
extern const QString toleranceSuffix;
/// The switch that says that a model may be used by the cell.
extern const QString taughtName;

/// The parameters that get a line of their own, in the order of the screen: the known ones first, in the order of
/// the road from rim to hole, then the others by name. Tolerances of a present parameter are left out.
QStringList lines(const QVariantMap& parameters);

/// The name on the screen.
QString label(const QString& name);
/// "px", "%" or empty.
QString unit(const QString& name);
/// One sentence on what the parameter is for; empty for an unknown one.
QString explanation(const QString& name);
/// Whether 0 stands for "unknown" and an empty field for 0.
bool mayBeUnknown(const QString& name);

/// A value as text: at most three decimals, "." as the decimal point, empty for an unknown one.
QString textOf(const QString& name, const QVariant& value);
/// A typed text as a value: a double, or the text itself when it is no number, so that nothing typed is lost. With a
/// scale in millimetres per pixel, lengths may be typed as "150 mm".
QVariant valueOf(const QString& name, const QString& text, double scale = 0);

/// What is wrong, by parameter name, in the operator's language; empty when all may be saved. Limits and
/// contradictions between parameters.
QMap<QString, QString> problems(const QVariantMap& parameters);

/// The lengths that a value with its tolerance allows, "780 – 860 px", with a scale a second line in millimetres; empty
/// when value or tolerance are unknown.
QString rangeText(const QVariantMap& parameters, const QString& name, double scale = 0);

/// An engine's message with the parameters' names on the screen instead of the plain ones.
QString readable(const QString& message);

} // namespace ParameterRules
