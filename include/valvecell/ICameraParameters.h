#pragma once

#include "CameraCodes.h"

#include <QCoreApplication>
#include <QVariantMap>
#include <QVector>

#include <cmath>

/// One setting of a camera as its module describes it: forms are built from it, and values are checked by it.
struct CameraParameter
{
    Q_DECLARE_TR_FUNCTIONS(CameraParameter)

public:
    enum class Kind {
        Number,      ///< a double from minimum to maximum
        Whole,       ///< an int from minimum to maximum
        Switch,      ///< a bool
        Choice,      ///< a QString, one of the values in `choices`
        Text,        ///< a QString that is not blank
        ImageFolder, ///< a QString, the path of a folder with images; absolute, or relative to the home
    };
    struct Choice
    {
        QString value;   ///< as settings and files hold it
        QString caption; ///< in the operator's language
    };

    QString name;    ///< as settings and files hold it; with its unit, for example "exposure_ms"
    QString caption; ///< in the operator's language; a letter after '&' is its shortcut in the dialogs
    Kind kind = Kind::Number;
    QVariant initial;   ///< of a new camera; one that is not right, such as a blank text, has to be given by somebody
    double minimum = 0; ///< of a number, like the next three
    double maximum = 0;
    QString unit;            ///< in the operator's language; may be empty
    QVector<Choice> choices; ///< of a Choice
    QString tip;             ///< what somebody who sets it should know, in the operator's language; may be empty

    /// The caption without its shortcut.
    QString label() const;
    /// What a value may be, in the operator's language: "0 到 10000 毫秒", or the values to choose from.
    QString range() const;
    bool isRight(const QVariant& value) const;
    /// Why a value is wrong, with parameter, value and range, in the operator's language; empty when it is right.
    QString problem(const QVariant& value) const;

    /// Those that every module uses the same way; a module may narrow or widen the range.
    static CameraParameter exposure();     ///< "exposure_ms"
    static CameraParameter gain();         ///< "gain_db"
    static CameraParameter transferTime(); ///< "transfer_ms": from the end of the exposure to the image
    static CameraParameter imageFolder();  ///< "folder"
};

/// Optional interface of a core-control module, beside ICameraSettings: which settings its cameras have. A dialog shows
/// a field for each, in their order; settings that are not described it leaves alone. GUI thread; returns at once.
class ICameraParameters
{
public:
    static constexpr const char* id = "valvecell.ICameraParameters/1";

    /// The parameters of cameras of one type, empty for a type that the module cannot drive. `cameraKey` names the
    /// camera if there is one already, since a device may narrow a range, and is empty for a new one. Texts are those
    /// of the present language; the program asks again when it changes.
    virtual QVector<CameraParameter> parameters(CameraType type, const QString& cameraKey) = 0;

protected:
    ~ICameraParameters() = default;
};

namespace CameraParameters {

/// The values that a new camera starts with, by name.
inline QVariantMap initialValues(const QVector<CameraParameter>& parameters)
{
    QVariantMap values;
    for (const CameraParameter& parameter : parameters)
        values.insert(parameter.name, parameter.initial);
    return values;
}

/// Why some of these settings are wrong, with camera, parameter, value and range; empty when all are right.
inline QString problem(const QString& cameraKey, const QVector<CameraParameter>& parameters,
                       const QVariantMap& settings)
{
    for (auto it = settings.begin(); it != settings.end(); ++it) {
        QString problem = CameraParameter::tr("没有参数“%1”").arg(it.key());
        for (const CameraParameter& parameter : parameters) {
            if (parameter.name == it.key())
                problem = parameter.problem(it.value());
        }
        if (!problem.isEmpty())
            return CameraParameter::tr("相机“%1”：%2").arg(cameraKey, problem);
    }
    return {};
}

} // namespace CameraParameters

inline QString CameraParameter::label() const
{
    QString text = caption;
    const int at = text.indexOf(QLatin1Char('&'));
    if (at > 0 && text.at(at - 1) == QLatin1Char('(') && text.mid(at + 2, 1) == QLatin1String(")"))
        return text.remove(at - 1, 4); // Chinese captions name their letter in brackets
    return at < 0 ? text : text.remove(at, 1);
}

inline QString CameraParameter::range() const
{
    switch (kind) {
    case Kind::Number:
    case Kind::Whole: {
        const QString whole = kind == Kind::Whole ? tr("整数 ") : QString();
        const QString span = tr("%1 到 %2").arg(QString::number(minimum, 'g', 10), QString::number(maximum, 'g', 10));
        return whole + span + (unit.isEmpty() ? QString() : QLatin1Char(' ') + unit);
    }
    case Kind::Switch:
        return QStringLiteral("true / false");
    case Kind::Choice: {
        QStringList values;
        for (const Choice& choice : choices)
            values << choice.value;
        return values.join(QStringLiteral(" / "));
    }
    case Kind::Text:
        return tr("文字，不能为空");
    case Kind::ImageFolder:
        return tr("图像文件夹的路径");
    }
    return {};
}

inline bool CameraParameter::isRight(const QVariant& value) const
{
    const int type = value.userType();
    if (kind == Kind::Switch)
        return type == QMetaType::Bool;
    if (kind == Kind::Number || kind == Kind::Whole) {
        const double number = value.toDouble();
        const bool isNumber = type == QMetaType::Double || type == QMetaType::Float || type == QMetaType::Int ||
                              type == QMetaType::UInt || type == QMetaType::LongLong || type == QMetaType::ULongLong;
        const bool fits = kind == Kind::Number || number == std::floor(number);
        return isNumber && fits && number >= minimum && number <= maximum;
    }
    const QString text = value.toString();
    bool known = kind != Kind::Choice;
    for (const Choice& choice : choices)
        known = known || choice.value == text;
    return type == QMetaType::QString && known && !text.trimmed().isEmpty();
}

inline QString CameraParameter::problem(const QVariant& value) const
{
    return isRight(value)
               ? QString()
               : tr("%1 (%2) 的值“%3”不对，应为：%4").arg(label(), name, value.toString().left(100), range());
}

inline CameraParameter CameraParameter::exposure()
{
    return {QStringLiteral("exposure_ms"), tr("曝光时间(&E)"), Kind::Number, 5.0, 0, 10000, tr("毫秒"), {}, {}};
}

inline CameraParameter CameraParameter::gain()
{
    return {QStringLiteral("gain_db"), tr("增益(&G)"), Kind::Number, 0.0, -20, 60, tr("dB"), {}, {}};
}

inline CameraParameter CameraParameter::transferTime()
{
    return {QStringLiteral("transfer_ms"), tr("传输时间(&R)"), Kind::Number, 10.0, 0, 10000, tr("毫秒"), {}, {}};
}

inline CameraParameter CameraParameter::imageFolder()
{
    return {QStringLiteral("folder"), tr("图像文件夹(&F)"), Kind::ImageFolder, QString(), 0, 0, {}, {}, {}};
}
