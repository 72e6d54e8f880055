#include "forward/BrokerSettings.h"

#include "config/ForwardConfig.h"
#include "forward/ForwardWords.h"
#include "plant/BrokerLogin.h"
#include "plant/PlantTopics.h"

namespace BrokerSettings {
namespace {

QString problemOf(const ForwardConfig& config)
{
    if (config.host.trimmed().isEmpty())
        return ForwardWords::tr("没有设置代理服务器的地址");
    for (const QString& name : {config.group, config.cell}) {
        if (const QString why = PlantTopics::whyNoName(name); !why.isEmpty())
            return ForwardWords::tr("组或单元的名称“%1”不能使用：%2").arg(name, why);
    }
    return config.certificate.isEmpty() == config.key.isEmpty() ? QString()
                                                                : ForwardWords::tr("客户端证书和私钥须同时设置");
}

} // namespace

MqttOptions read(const ForwardConfig& config, const QString& home, QString* error)
{
    *error = problemOf(config);
    const auto path = [&home](const QString& file) {
        return file.isEmpty() ? file : QDir(home).absoluteFilePath(file);
    };
    MqttOptions options;
    options.host = config.host.trimmed();
    options.port = quint16(config.port);
    options.tls = {config.tls, path(config.authorities), path(config.certificate), path(config.key)};
    if (!error->isEmpty() || config.loginFile.isEmpty())
        return options;
    if (const auto login = BrokerLogin::read(path(config.loginFile), error)) {
        options.user = login->user;
        options.password = login->password;
    }
    return options;
}

} // namespace BrokerSettings
