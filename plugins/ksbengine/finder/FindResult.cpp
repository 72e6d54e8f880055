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

} // namespace

QString resultTip(FindError error)
{
    for (const Tip& tip : tips) {
        if (tip.error == error)
            return QCoreApplication::translate("FindResult", tip.text);
    }
    return {};
}

} // namespace finder
