#include "AravisText.h"

#include <arv.h>

QString AravisText::inUse()
{
    return tr("相机正被另一个程序（或本机另一个工位）使用：请先关闭那个程序，或选择另一台相机");
}

bool AravisText::isAccessDenied(const GError* error)
{
    return error && error->domain == ARV_DEVICE_ERROR &&
           (error->code == ARV_DEVICE_ERROR_NOT_CONTROLLER ||
            error->code == ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED);
}

bool AravisText::isSilence(const GError* error)
{
    return error && error->domain == ARV_DEVICE_ERROR &&
           (error->code == ARV_DEVICE_ERROR_TIMEOUT || error->code == ARV_DEVICE_ERROR_NOT_CONNECTED);
}

QString AravisText::failed(const QString& what, const GError* error)
{
    if (isAccessDenied(error))
        return inUse();
    if (isSilence(error))
        return tr("%1：相机不应答，请检查电源和网线").arg(what);
    return error ? tr("%1：%2").arg(what, QString::fromUtf8(error->message)) : what;
}
