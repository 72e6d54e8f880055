#include "dialogs/registration/LicenceTexts.h"

#include <QCoreApplication>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(LicenceTexts)
};

} // namespace

QString LicenceTexts::content(const Licence& licence)
{
    const QString granted = Tr::tr("%1，%2个工位").arg(licence.customer).arg(licence.stations);
    return licence.expires.isValid() ? Tr::tr("%1，有效期至%2").arg(granted, licence.expires.toString(Qt::ISODate))
                                     : Tr::tr("%1，长期有效").arg(granted);
}

QString LicenceTexts::refusal(const LicenceVerdict& verdict)
{
    const Licence& licence = verdict.licence;
    switch (verdict.refusal) {
    case LicenceRefusal::None:
        return {};
    case LicenceRefusal::Missing:
        return Tr::tr("没有授权文件");
    case LicenceRefusal::NotALicence:
        return Tr::tr("这不是授权文件：授权以“ValveCell licence”一行开头，以签名结尾");
    case LicenceRefusal::Altered:
        return Tr::tr("授权不完整、被改动过，或不是由本程序的供应商签发");
    case LicenceRefusal::OtherMachine:
        return Tr::tr("授权属于另一台电脑，其识别码是 %1").arg(licence.machine);
    case LicenceRefusal::NotYet:
        return Tr::tr("授权于%1签发，晚于本机的日期，请检查电脑的时钟").arg(licence.issued.toString(Qt::ISODate));
    case LicenceRefusal::Expired:
        return Tr::tr("授权已于%1到期").arg(licence.expires.toString(Qt::ISODate));
    case LicenceRefusal::TooFewStations:
        break;
    }
    return Tr::tr("授权只包含%1个工位，少于本机使用的工位").arg(licence.stations);
}
