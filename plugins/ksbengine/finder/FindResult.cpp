#include "FindResult.h"

#include <QCoreApplication>

namespace finder {

namespace {

struct Tip
{
    FindError error;
    const char* text;
};

constexpr Tip tips[] = {
    {FindError::None, QT_TRANSLATE_NOOP("FindResult", "定位成功")},
    {FindError::NoHole, QT_TRANSLATE_NOOP("FindResult", "未找到气门孔")},
    {FindError::Ambiguous, QT_TRANSLATE_NOOP("FindResult", "存在多个相似的气门孔")},
    {FindError::NoHub, QT_TRANSLATE_NOOP("FindResult", "未找到轮毂")},
    {FindError::CutOff, QT_TRANSLATE_NOOP("FindResult", "轮毂超出视野")},
    {FindError::TooDark, QT_TRANSLATE_NOOP("FindResult", "图像过暗")},
    {FindError::TooBright, QT_TRANSLATE_NOOP("FindResult", "图像过亮")},
    {FindError::OutOfFocus, QT_TRANSLATE_NOOP("FindResult", "图像模糊")},
    {FindError::BadImage, QT_TRANSLATE_NOOP("FindResult", "图像无效")},
    {FindError::BadModel, QT_TRANSLATE_NOOP("FindResult", "模型参数无效")},
};

struct DoubtText
{
    Doubt doubt;
    const char* text;
};

constexpr DoubtText doubts[] = {
    {Doubt::NothingSeen, QT_TRANSLATE_NOOP("FindResult", "没有像孔的地方")},
    {Doubt::Ragged, QT_TRANSLATE_NOOP("FindResult", "轮廓不规则")},
    {Doubt::Flat, QT_TRANSLATE_NOOP("FindResult", "没有深度")},
    {Doubt::Letter, QT_TRANSLATE_NOOP("FindResult", "像字符")},
    {Doubt::Edge, QT_TRANSLATE_NOOP("FindResult", "像槽或开口的边缘")},
    {Doubt::OffRing, QT_TRANSLATE_NOOP("FindResult", "不在模型的圆周上")},
    {Doubt::OtherSize, QT_TRANSLATE_NOOP("FindResult", "尺寸与模型不符")},
    {Doubt::Rejected, QT_TRANSLATE_NOOP("FindResult", "与排除的示例相似")},
    {Doubt::OneOfMany, QT_TRANSLATE_NOOP("FindResult", "一圈相同孔之一")},
    {Doubt::TwoAlike, QT_TRANSLATE_NOOP("FindResult", "两处相似")},
};

} // namespace

QString doubtText(Doubt doubt)
{
    for (const DoubtText& entry : doubts) {
        if (entry.doubt == doubt)
            return QCoreApplication::translate("FindResult", entry.text);
    }
    return {};
}

QString resultTip(FindError error)
{
    for (const Tip& tip : tips) {
        if (tip.error == error)
            return QCoreApplication::translate("FindResult", tip.text);
    }
    return {};
}

QString tipOf(const FindResult& result)
{
    const QString tip = resultTip(result.error);
    const bool tipSuffices = result.found() || result.error == FindError::Ambiguous;
    const QString reason = tipSuffices ? QString() : doubtText(result.doubt);
    return reason.isEmpty() ? tip : QStringLiteral("%1：%2").arg(tip, reason);
}

} // namespace finder
