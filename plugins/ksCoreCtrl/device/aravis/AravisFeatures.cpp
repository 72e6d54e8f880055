#include "AravisFeatures.h"

#include "AravisSettings.h"
#include "AravisText.h"
#include "GObjectPtr.h"

#include <optional>

namespace {

constexpr int deepest = 8; ///< categories within categories; a description may contain itself

using Kind = CameraFeature::Kind;

/// What is no feature with a value of its own gives nothing.
std::optional<Kind> kindOf(ArvGcNode* node)
{
    if (ARV_IS_GC_COMMAND(node))
        return Kind::Command;
    if (ARV_IS_GC_BOOLEAN(node))
        return Kind::Switch;
    if (ARV_IS_GC_ENUMERATION(node))
        return Kind::Choice;
    if (ARV_IS_GC_STRING(node))
        return Kind::Text;
    if (ARV_IS_GC_FLOAT(node))
        return Kind::Number;
    if (ARV_IS_GC_INTEGER(node))
        return Kind::Whole;
    return std::nullopt;
}

QString orElse(const char* text, const QString& otherwise)
{
    return text && *text ? QString::fromUtf8(text) : otherwise;
}

QStringList choicesOf(ArvGcEnumeration* enumeration)
{
    guint count = 0;
    const char** texts = arv_gc_enumeration_dup_available_string_values(enumeration, &count, nullptr);
    QStringList choices;
    for (guint i = 0; texts && i < count; ++i)
        choices.append(QString::fromUtf8(texts[i]));
    g_free(texts);
    return choices;
}

void writeValue(ArvDevice* device, Kind kind, const char* name, const QVariant& value, GError** error)
{
    switch (kind) {
    case Kind::Command:
        return arv_device_execute_command(device, name, error);
    case Kind::Switch:
        return arv_device_set_boolean_feature_value(device, name, value.toBool(), error);
    case Kind::Choice:
    case Kind::Text:
        return arv_device_set_string_feature_value(device, name, value.toString().toUtf8().constData(), error);
    case Kind::Number:
        return arv_device_set_float_feature_value(device, name, value.toDouble(), error);
    case Kind::Whole:
        return arv_device_set_integer_feature_value(device, name, value.toLongLong(), error);
    }
}

} // namespace

AravisFeatures::AravisFeatures(ArvDevice* device)
    : m_device(device)
{
}

QStringList AravisFeatures::names()
{
    QStringList names;
    collect(QStringLiteral("Root"), &names, 0);
    return names;
}

void AravisFeatures::collect(const QString& category, QStringList* names, int depth)
{
    ArvGcNode* node = arv_device_get_feature(m_device, category.toUtf8().constData());
    if (!ARV_IS_GC_CATEGORY(node) || depth > deepest)
        return;
    const QString caption = orElse(arv_gc_feature_node_get_display_name(ARV_GC_FEATURE_NODE(node)), category);
    for (const GSList* one = arv_gc_category_get_features(ARV_GC_CATEGORY(node)); one; one = one->next) {
        const auto* name = static_cast<const char*>(one->data);
        ArvGcNode* feature = arv_device_get_feature(m_device, name);
        if (ARV_IS_GC_CATEGORY(feature))
            collect(QString::fromUtf8(name), names, depth + 1);
        if (!ARV_IS_GC_FEATURE_NODE(feature) || !kindOf(feature) || names->contains(QString::fromUtf8(name)) ||
            arv_gc_feature_node_get_visibility(ARV_GC_FEATURE_NODE(feature)) == ARV_GC_VISIBILITY_INVISIBLE)
            continue;
        names->append(QString::fromUtf8(name));
        m_categories.insert(names->last(), caption);
    }
}

CameraFeature AravisFeatures::read(const QString& name)
{
    CameraFeature feature;
    feature.name = feature.caption = name;
    feature.category = m_categories.value(name);
    ArvGcNode* node = arv_device_get_feature(m_device, name.toUtf8().constData());
    if (!ARV_IS_GC_FEATURE_NODE(node) || !kindOf(node)) {
        feature.locked = tr("这台相机没有参数 %1").arg(name);
        return feature;
    }
    auto* shown = ARV_GC_FEATURE_NODE(node);
    feature.kind = *kindOf(node);
    feature.caption = orElse(arv_gc_feature_node_get_display_name(shown), name);
    feature.tip =
        orElse(arv_gc_feature_node_get_tooltip(shown), orElse(arv_gc_feature_node_get_description(shown), QString()));
    if (arv_gc_feature_node_is_available(shown, nullptr))
        readValue(node, &feature);
    feature.locked = lockReason(node, feature);
    return feature;
}

void AravisFeatures::readValue(ArvGcNode* node, CameraFeature* feature)
{
    GErrorHolder error;
    switch (feature->kind) {
    case Kind::Command:
        break;
    case Kind::Switch:
        feature->value = bool(arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), &error));
        break;
    case Kind::Choice:
        feature->choices = choicesOf(ARV_GC_ENUMERATION(node));
        feature->value = QString::fromUtf8(arv_gc_enumeration_get_string_value(ARV_GC_ENUMERATION(node), &error));
        break;
    case Kind::Text:
        feature->value = QString::fromUtf8(arv_gc_string_get_value(ARV_GC_STRING(node), &error));
        break;
    case Kind::Number:
        readFloat(node, feature);
        break;
    case Kind::Whole:
        readInteger(node, feature);
        break;
    }
    if (error)
        feature->value = QVariant();
}

void AravisFeatures::readFloat(ArvGcNode* node, CameraFeature* feature)
{
    GErrorHolder error;
    const double value = arv_gc_float_get_value(ARV_GC_FLOAT(node), &error);
    if (!error)
        feature->value = value;
    feature->minimum = arv_gc_float_get_min(ARV_GC_FLOAT(node), nullptr);
    feature->maximum = arv_gc_float_get_max(ARV_GC_FLOAT(node), nullptr);
    feature->unit = orElse(arv_gc_float_get_unit(ARV_GC_FLOAT(node)), QString());
}

void AravisFeatures::readInteger(ArvGcNode* node, CameraFeature* feature)
{
    GErrorHolder error;
    const qlonglong value = arv_gc_integer_get_value(ARV_GC_INTEGER(node), &error);
    if (!error)
        feature->value = value;
    feature->minimum = double(arv_gc_integer_get_min(ARV_GC_INTEGER(node), nullptr));
    feature->maximum = double(arv_gc_integer_get_max(ARV_GC_INTEGER(node), nullptr));
    feature->unit = orElse(arv_gc_integer_get_unit(ARV_GC_INTEGER(node)), QString());
}

QString AravisFeatures::lockReason(ArvGcNode* node, const CameraFeature& feature)
{
    auto* shown = ARV_GC_FEATURE_NODE(node);
    const QString setting = AravisSettings::settingOf(feature.name);
    if (!setting.isEmpty())
        return tr("由相机设置 %1 决定").arg(setting);
    if (!arv_gc_feature_node_is_available(shown, nullptr))
        return tr("在相机现在的状态下不可用");
    if (feature.kind != Kind::Command && arv_gc_feature_node_get_actual_access_mode(shown) == ARV_GC_ACCESS_MODE_RO)
        return tr("只读");
    return {};
}

QString AravisFeatures::write(const QString& name, const QVariant& value)
{
    const CameraFeature feature = read(name);
    if (!feature.locked.isEmpty())
        return tr("参数 %1 不能写入：%2").arg(name, feature.locked);
    const double number = value.toDouble();
    const bool ranged = feature.kind == Kind::Number || feature.kind == Kind::Whole;
    if (ranged && (number < feature.minimum || number > feature.maximum))
        return tr("参数 %1 的值 %2 超出范围 %3 到 %4").arg(name).arg(number).arg(feature.minimum).arg(feature.maximum);
    if (feature.kind == Kind::Choice && !feature.choices.contains(value.toString()))
        return tr("参数 %1 没有值“%2”，可选：%3")
            .arg(name, value.toString(), feature.choices.join(QStringLiteral(", ")));
    GErrorHolder error;
    writeValue(m_device, feature.kind, name.toUtf8().constData(), value, &error);
    return error ? AravisText::failed(tr("相机没有接受参数 %1").arg(name), error.get()) : QString();
}
