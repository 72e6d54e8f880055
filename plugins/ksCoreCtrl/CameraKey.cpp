#include "CameraKey.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(CameraKey)
};

constexpr int kLongest = 64;

/// A key may end up in the name of a file, on any system.
bool isSpecial(QChar c)
{
    static const QString special = QStringLiteral("/\\:*?\"<>|'");
    return special.contains(c) || !c.isPrint();
}

} // namespace

QString cameraKeyProblem(const QString& key)
{
    if (key.trimmed().isEmpty())
        return Tr::tr("相机名称不能为空");
    if (key != key.trimmed() || key.startsWith(QLatin1Char('.')) || key.endsWith(QLatin1Char('.')))
        return Tr::tr("相机名称不能以空格或点开头或结尾");
    if (key.size() > kLongest)
        return Tr::tr("相机名称不能超过 %1 个字符").arg(kLongest);
    const auto bad = std::find_if(key.begin(), key.end(), isSpecial);
    return bad == key.end() ? QString() : Tr::tr("相机名称不能含有字符“%1”").arg(*bad);
}
