#include "ParameterRules.h"

#include "common/Number.h"

#include <QCoreApplication>

#include <array>
#include <cmath>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ParameterRules)
};

struct Known
{
    QLatin1String name;
    const char* label;
    const char* unit;
    const char* explanation;
    double low;  ///< the smallest value that makes sense
    double high; ///< the largest one
};

const std::array<Known, 5> known{{
    {QLatin1String("rim_radius"), QT_TRANSLATE_NOOP("ParameterRules", "轮缘半径"), "px",
     QT_TRANSLATE_NOOP("ParameterRules", "轮毂中心到轮缘外边的距离"), 0, 50000},
    {QLatin1String("ring_radius"), QT_TRANSLATE_NOOP("ParameterRules", "孔圆半径"), "px",
     QT_TRANSLATE_NOOP("ParameterRules", "轮毂中心到气门孔中心的距离"), 0, 50000},
    {QLatin1String("hole_radius"), QT_TRANSLATE_NOOP("ParameterRules", "气门孔半径"), "px",
     QT_TRANSLATE_NOOP("ParameterRules", "气门孔孔口的半径"), 0, 2000},
    {QLatin1String("score_limit"), QT_TRANSLATE_NOOP("ParameterRules", "得分下限"), "",
     QT_TRANSLATE_NOOP("ParameterRules", "得分低于此值的孔不被采信，0 到 1"), 0, 1},
    {QLatin1String("hole_depth"), QT_TRANSLATE_NOOP("ParameterRules", "孔深"), "mm",
     QT_TRANSLATE_NOOP("ParameterRules", "气门孔口在轮缘外边后方的深度，0 表示不修正"), -300, 300},
}};

const Known* find(const QString& name)
{
    for (const Known& entry : known) {
        if (entry.name == name)
            return &entry;
    }
    return nullptr;
}

bool isTolerance(const QString& name)
{
    return name.endsWith(ParameterRules::toleranceSuffix);
}

QString problem(const QString& name, const QVariant& value)
{
    if (value.type() == QVariant::Bool)
        return {};
    if (!isNumber(value))
        return Tr::tr("请输入数字");
    const double number = value.toDouble();
    if (isTolerance(name))
        return number > 0 && number < 100 ? QString() : Tr::tr("公差应大于 0%，小于 100%");
    const Known* entry = find(name);
    if (!entry || (number >= entry->low && number <= entry->high))
        return {};
    return Tr::tr("应在 %1 到 %2 之间").arg(entry->low).arg(entry->high);
}

/// Only between values that are right by themselves: a wrong one has its own message.
double usable(const QVariantMap& parameters, const QMap<QString, QString>& wrong, const char* name)
{
    const QString key = QLatin1String(name);
    return wrong.contains(key) ? 0 : parameters.value(key).toDouble();
}

void findContradictions(const QVariantMap& parameters, QMap<QString, QString>* wrong)
{
    const double rim = usable(parameters, *wrong, "rim_radius");
    const double ring = usable(parameters, *wrong, "ring_radius");
    const double hole = usable(parameters, *wrong, "hole_radius");
    if (rim > 0 && ring >= rim)
        wrong->insert(QStringLiteral("ring_radius"), Tr::tr("应小于轮缘半径"));
    if (ring > 0 && hole >= ring / 2)
        wrong->insert(QStringLiteral("hole_radius"), Tr::tr("应小于孔圆半径的一半"));
}

QString span(double middle, double slack, const QString& unit)
{
    const int decimals = slack < 10 ? 1 : 0;
    return QStringLiteral("%1 – %2 %3")
        .arg(middle - slack, 0, 'f', decimals)
        .arg(middle + slack, 0, 'f', decimals)
        .arg(unit)
        .trimmed();
}

} // namespace

namespace ParameterRules {

const QString toleranceSuffix = QStringLiteral("_tol");
const QString taughtName = QStringLiteral("taught");

QStringList lines(const QVariantMap& parameters)
{
    QStringList names;
    for (const Known& entry : known) {
        if (parameters.contains(entry.name))
            names.append(entry.name);
    }
    for (auto it = parameters.begin(); it != parameters.end(); ++it) {
        QString value = it.key();
        if (isTolerance(value))
            value.chop(toleranceSuffix.size());
        if (!names.contains(it.key()) && (value == it.key() || !parameters.contains(value)))
            names.append(it.key());
    }
    return names;
}

QString label(const QString& name)
{
    if (name == taughtName)
        return Tr::tr("已示教");
    if (isTolerance(name))
        return Tr::tr("%1的公差").arg(label(name.chopped(toleranceSuffix.size())));
    const Known* entry = find(name);
    return entry ? Tr::tr(entry->label) : name;
}

QString unit(const QString& name)
{
    if (isTolerance(name))
        return QStringLiteral("%");
    const Known* entry = find(name);
    return entry ? QString::fromLatin1(entry->unit) : QString();
}

QString explanation(const QString& name)
{
    if (name == taughtName)
        return Tr::tr("未示教的型号在线时不给出角度");
    const Known* entry = find(name);
    return entry ? Tr::tr(entry->explanation) : QString();
}

bool mayBeUnknown(const QString& name)
{
    const Known* entry = find(name);
    return entry && entry->unit == QByteArray("px");
}

QString textOf(const QString& name, const QVariant& value)
{
    if (!isNumber(value))
        return value.toString();
    const double number = value.toDouble();
    if (number == 0 && mayBeUnknown(name))
        return {};
    QString text = QString::number(number, 'f', 3);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

QVariant valueOf(const QString& name, const QString& text, double scale)
{
    QString typed = text.trimmed();
    if (typed.isEmpty() && mayBeUnknown(name))
        return 0.0;
    const bool millimetres = scale > 0 && mayBeUnknown(name) && typed.endsWith(QLatin1String("mm"));
    if (millimetres)
        typed.chop(2);
    bool number = false;
    const double value = typed.trimmed().toDouble(&number) / (millimetres ? scale : 1);
    return number && std::isfinite(value) ? QVariant(value) : QVariant(text);
}

QMap<QString, QString> problems(const QVariantMap& parameters)
{
    QMap<QString, QString> found;
    for (auto it = parameters.begin(); it != parameters.end(); ++it) {
        const QString wrong = problem(it.key(), it.value());
        if (!wrong.isEmpty())
            found.insert(it.key(), wrong);
    }
    findContradictions(parameters, &found);
    return found;
}

QString rangeText(const QVariantMap& parameters, const QString& name, double scale)
{
    const double value = parameters.value(name).toDouble();
    const double percent = parameters.value(name + toleranceSuffix).toDouble();
    if (value <= 0 || percent <= 0)
        return {};
    QString pixels = span(value, value * percent / 100, unit(name));
    if (scale <= 0 || !mayBeUnknown(name))
        return pixels;
    return pixels + QLatin1Char('\n') + span(scale * value, scale * value * percent / 100, QStringLiteral("mm"));
}

QString readable(const QString& message)
{
    QString text = message;
    for (const Known& entry : known) {
        // The longer name first: the tolerance's name contains the value's.
        const QString tolerance = entry.name + toleranceSuffix;
        text.replace(tolerance, QStringLiteral("“%1”").arg(label(tolerance)));
        text.replace(entry.name, QStringLiteral("“%1”").arg(label(entry.name)));
    }
    return text;
}

} // namespace ParameterRules
