#include "forward/PlantWish.h"

#include "forward/ForwardWords.h"
#include "plant/PlantTopics.h"
#include "plant/Sparkplug.h"

namespace {

void readCommand(const Sparkplug::Payload& command, PlantWish& wish)
{
    const auto rebirth = command.value(QStringLiteral("Node Control/Rebirth"), Sparkplug::Type::Boolean);
    wish.rebirth = rebirth && rebirth->toBool();
    const QString text = command.text(QStringLiteral("Node Control/Resend"));
    if (!text.isEmpty())
        wish.resend = ResendRequest::decode(text.toUtf8(), &wish.strange);
    else if (!rebirth)
        wish.strange = ForwardWords::tr("未知命令");
}

} // namespace

PlantWish PlantWish::of(const MqttMessage& message)
{
    PlantWish wish;
    const auto topic = PlantTopics::parse(message.topic);
    const auto payload = Sparkplug::decode(message.payload, &wish.strange);
    if (!payload)
        return wish;
    if (topic && topic->kind == PlantTopics::Kind::Command) {
        readCommand(*payload, wish);
    } else if (topic && topic->kind == PlantTopics::Kind::Birth) {
        wish.instance = payload->text(QStringLiteral("Properties/Instance"));
        wish.cellId = payload->text(QStringLiteral("Properties/CellId"));
        if (wish.instance.isEmpty())
            wish.instance = QStringLiteral("?"); // of somebody all the same
    } else {
        wish.strange = message.topic;
    }
    return wish;
}
