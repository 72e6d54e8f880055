#include "workflow/LogKind.h"

#include <QPair>

LogKind logKind(const QString& line)
{
    static const QPair<QString, LogKind> words[] = {
        {QStringLiteral(" no found Value"), LogKind::NotFound}, {QStringLiteral(" No Cali!!!"), LogKind::NotFound},
        {QStringLiteral(" No Task!!!"), LogKind::NotFound},     {QStringLiteral("不能拍照"), LogKind::Refused},
        {QStringLiteral("型号设置失败"), LogKind::Refused},     {QStringLiteral("切换型号为"), LogKind::ModelSwitch},
        {QStringLiteral(" angle :"), LogKind::Found},
    };
    for (const auto& word : words) {
        if (line.contains(word.first))
            return word.second;
    }
    return LogKind::Plain;
}
