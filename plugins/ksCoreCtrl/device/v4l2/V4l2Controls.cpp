#include "V4l2Controls.h"

#include "V4l2Text.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <linux/videodev2.h>

namespace {

constexpr double unitsPerMs = 10; // of V4L2_CID_EXPOSURE_ABSOLUTE, 100 microseconds
constexpr double offByAStep = 0.5001;

const auto exposureName = QStringLiteral("exposure_ms");
const auto gainName = QStringLiteral("gain_percent");

bool isShown(quint32 type)
{
    return type == V4L2_CTRL_TYPE_INTEGER || type == V4L2_CTRL_TYPE_BOOLEAN || type == V4L2_CTRL_TYPE_MENU ||
           type == V4L2_CTRL_TYPE_INTEGER_MENU || type == V4L2_CTRL_TYPE_BUTTON || type == V4L2_CTRL_TYPE_BITMASK;
}

CameraFeature::Kind kindOf(quint32 type)
{
    switch (type) {
    case V4L2_CTRL_TYPE_BOOLEAN:
        return CameraFeature::Kind::Switch;
    case V4L2_CTRL_TYPE_MENU:
    case V4L2_CTRL_TYPE_INTEGER_MENU:
        return CameraFeature::Kind::Choice;
    case V4L2_CTRL_TYPE_BUTTON:
        return CameraFeature::Kind::Command;
    default:
        return CameraFeature::Kind::Whole;
    }
}

/// Letters and digits, all else as one underscore.
QString plainName(const QString& caption)
{
    QString name;
    for (const QChar c : caption.toLower()) {
        if (c.isLetterOrNumber())
            name += c;
        else if (!name.isEmpty() && !name.endsWith(QLatin1Char('_')))
            name += QLatin1Char('_');
    }
    return name.endsWith(QLatin1Char('_')) ? name.chopped(1) : name;
}

v4l2_queryctrl queried(V4l2System& system, int descriptor, quint32 id, int* error)
{
    v4l2_queryctrl query{};
    query.id = id;
    *error = system.control(descriptor, VIDIOC_QUERYCTRL, &query);
    if (*error == 0 && query.flags & V4L2_CTRL_FLAG_DISABLED)
        *error = EINVAL;
    return query;
}

} // namespace

QVector<CameraParameter> V4l2Controls::parameters()
{
    CameraParameter gain = CameraParameter::gain();
    gain.name = gainName;
    gain.minimum = 0;
    gain.maximum = 100;
    gain.unit = QStringLiteral("%");
    gain.tip = tr("相机增益范围的百分比");
    return {CameraParameter::exposure(), gain};
}

V4l2Controls::V4l2Controls(V4l2System& system, int descriptor)
    : m_system(system)
    , m_descriptor(descriptor)
{
    int error = 0;
    QString category;
    for (quint32 last = 0; error == 0;) {
        const v4l2_queryctrl query = queried(system, descriptor, last | V4L2_CTRL_FLAG_NEXT_CTRL, &error);
        if ((error && !(query.flags & V4L2_CTRL_FLAG_DISABLED)) || query.id <= last)
            break;
        last = query.id;
        const QString caption = v4l2Text(query.name);
        if (query.type == V4L2_CTRL_TYPE_CTRL_CLASS)
            category = caption;
        else if (error == 0 && isShown(query.type) && !find(plainName(caption)))
            m_controls.append({query.id, query.type, plainName(caption), caption, category});
        error = 0;
    }
}

const V4l2Controls::Control* V4l2Controls::find(const QString& name) const
{
    const auto found = std::find_if(m_controls.begin(), m_controls.end(),
                                    [&name](const Control& control) { return control.name == name; });
    return found == m_controls.end() ? nullptr : &*found;
}

QString V4l2Controls::apply(const QVariantMap& settings)
{
    m_warnings.clear();
    m_missing.clear();
    const QString problem = applyExposure(settings.value(exposureName).toDouble());
    return problem.isEmpty() ? applyGain(settings.value(gainName).toDouble()) : problem;
}

void V4l2Controls::switchOff(quint32 id) const
{
    int error;
    queried(m_system, m_descriptor, id, &error);
    if (error == 0)
        set(id, 0);
}

int V4l2Controls::set(quint32 id, qint32 value) const
{
    v4l2_control control{id, value};
    return m_system.control(m_descriptor, VIDIOC_S_CTRL, &control);
}

/// An exposure that follows the light comes to other lengths, and with a slower picture rate.
QString V4l2Controls::applyExposure(double milliseconds)
{
    int error;
    queried(m_system, m_descriptor, V4L2_CID_EXPOSURE_AUTO, &error);
    if (error == 0 && set(V4L2_CID_EXPOSURE_AUTO, V4L2_EXPOSURE_MANUAL) != 0)
        set(V4L2_CID_EXPOSURE_AUTO, V4L2_EXPOSURE_SHUTTER_PRIORITY);
    switchOff(V4L2_CID_EXPOSURE_AUTO_PRIORITY);
    const v4l2_queryctrl query = queried(m_system, m_descriptor, V4L2_CID_EXPOSURE_ABSOLUTE, &error);
    if (error == EINVAL || error == ENOTTY) {
        m_missing.insert(exposureName, tr("这台相机不能设置曝光时间"));
        return {};
    }
    if (error)
        return v4l2Problem("VIDIOC_QUERYCTRL", error);
    const double wanted = milliseconds * unitsPerMs;
    const double possible = std::clamp(wanted, double(query.minimum), double(query.maximum));
    error = set(V4L2_CID_EXPOSURE_ABSOLUTE, qint32(std::lround(possible)));
    if (error)
        return v4l2Problem("VIDIOC_S_CTRL", error);
    if (std::abs(wanted - possible) > offByAStep)
        m_warnings << tr("曝光时间 %1 毫秒不在相机的范围 %2 到 %3 内，使用 %4 毫秒")
                          .arg(milliseconds)
                          .arg(query.minimum / unitsPerMs)
                          .arg(query.maximum / unitsPerMs)
                          .arg(possible / unitsPerMs);
    return {};
}

QString V4l2Controls::applyGain(double percent)
{
    switchOff(V4L2_CID_AUTOGAIN);
    int error;
    const v4l2_queryctrl query = queried(m_system, m_descriptor, V4L2_CID_GAIN, &error);
    if (error == EINVAL || error == ENOTTY) {
        m_missing.insert(gainName, tr("这台相机不能设置增益"));
        return {};
    }
    if (error)
        return v4l2Problem("VIDIOC_QUERYCTRL", error);
    const double share = percent / 100 * (double(query.maximum) - query.minimum);
    error = set(V4L2_CID_GAIN, query.minimum + qint32(std::lround(share)));
    return error ? v4l2Problem("VIDIOC_S_CTRL", error) : QString();
}

double V4l2Controls::exposureMs() const
{
    v4l2_control control{V4L2_CID_EXPOSURE_ABSOLUTE, 0};
    return m_system.control(m_descriptor, VIDIOC_G_CTRL, &control) == 0 ? control.value / unitsPerMs : 0;
}

QStringList V4l2Controls::names() const
{
    QStringList names;
    for (const Control& control : m_controls)
        names << control.name;
    return names;
}

QVector<QPair<qint32, QString>> V4l2Controls::menu(const Control& control) const
{
    QVector<QPair<qint32, QString>> items;
    int error;
    const v4l2_queryctrl query = queried(m_system, m_descriptor, control.id, &error);
    for (qint32 index = query.minimum; error == 0 && index <= query.maximum; ++index) {
        v4l2_querymenu item{};
        item.id = control.id;
        item.index = quint32(index);
        if (m_system.control(m_descriptor, VIDIOC_QUERYMENU, &item) != 0)
            continue; // menus may have gaps
        items.append(
            {index, control.type == V4L2_CTRL_TYPE_INTEGER_MENU ? QString::number(item.value) : v4l2Text(item.name)});
    }
    return items;
}

/// What is locked changes with other controls, so it is asked each time.
void V4l2Controls::describe(const Control& control, CameraFeature* feature) const
{
    int error;
    const v4l2_queryctrl query = queried(m_system, m_descriptor, control.id, &error);
    feature->minimum = query.minimum;
    feature->maximum = query.maximum;
    if (error)
        feature->locked = v4l2Problem("VIDIOC_QUERYCTRL", error);
    else if (query.flags & V4L2_CTRL_FLAG_READ_ONLY)
        feature->locked = tr("只读");
    else if (query.flags & V4L2_CTRL_FLAG_GRABBED)
        feature->locked = tr("取像时不能修改");
    else if (query.flags & V4L2_CTRL_FLAG_INACTIVE)
        feature->locked = tr("现在不起作用：先关闭相应的自动功能");
}

CameraFeature V4l2Controls::feature(const QString& name) const
{
    CameraFeature feature;
    feature.name = name;
    const Control* control = find(name);
    if (!control)
        return feature;
    feature.caption = control->caption;
    feature.category = control->category;
    feature.kind = kindOf(control->type);
    describe(*control, &feature);
    v4l2_control now{control->id, 0};
    const bool isRead = feature.kind != CameraFeature::Kind::Command &&
                        m_system.control(m_descriptor, VIDIOC_G_CTRL, &now) == 0; // EACCES: it is only written
    if (feature.kind == CameraFeature::Kind::Choice) {
        for (const auto& item : menu(*control)) {
            feature.choices << item.second;
            if (isRead && item.first == now.value)
                feature.value = item.second;
        }
    } else if (isRead) {
        feature.value =
            feature.kind == CameraFeature::Kind::Switch ? QVariant(now.value != 0) : QVariant(qlonglong(now.value));
    }
    return feature;
}

QString V4l2Controls::range(const Control& control) const
{
    int error;
    const v4l2_queryctrl query = queried(m_system, m_descriptor, control.id, &error);
    return tr("%1 到 %2").arg(query.minimum).arg(query.maximum);
}

QString V4l2Controls::write(const QString& name, const QVariant& value)
{
    const Control* control = find(name);
    if (!control)
        return tr("相机没有“%1”").arg(name);
    qint32 number = kindOf(control->type) == CameraFeature::Kind::Switch ? qint32(value.toBool()) : value.toInt();
    if (kindOf(control->type) == CameraFeature::Kind::Choice) {
        const auto items = menu(*control);
        const auto chosen =
            std::find_if(items.begin(), items.end(), [&](const auto& item) { return item.second == value.toString(); });
        if (chosen == items.end())
            return tr("“%1”没有“%2”可选").arg(control->caption, value.toString());
        number = chosen->first;
    }
    const int error = set(control->id, number);
    switch (error) {
    case 0:
        return {};
    case ERANGE:
    case EINVAL:
        return tr("相机不接受 %1，应在 %2 之间").arg(value.toString(), range(*control));
    case EBUSY:
        return tr("取像时不能修改");
    case EACCES:
        return tr("只读，或现在不起作用");
    default:
        return v4l2Problem("VIDIOC_S_CTRL", error);
    }
}
