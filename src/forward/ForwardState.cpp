#include "forward/ForwardState.h"

#include <valvecell/HomeFiles.h>

#include <QJsonObject>
#include <QUuid>

QString ForwardState::freshId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

ForwardState ForwardState::load(const QString& home, QString* problem)
{
    const QString path = pathIn(home);
    const HomeFiles::JsonRead file = HomeFiles::readJson(path);
    ForwardState state;
    state.cellId = file.object.value(QLatin1String("cellId")).toString();
    const QJsonObject streams = file.object.value(QLatin1String("streams")).toObject();
    const bool good = QUuid(state.cellId).toString(QUuid::WithoutBraces) == state.cellId && !state.cellId.isEmpty();
    if (!good) {
        if (file.state != HomeFiles::JsonRead::Missing)
            *problem = QStringLiteral("%1 -> %2").arg(path, HomeFiles::keepAside(path));
        return {freshId(), 0, {}};
    }
    state.sessions = quint64(file.object.value(QLatin1String("sessions")).toDouble());
    for (auto it = streams.begin(); it != streams.end(); ++it) {
        const QJsonObject own = it->toObject();
        state.streams.insert(it.key(), {own.value(QLatin1String("epoch")).toString(),
                                        qint64(own.value(QLatin1String("row")).toDouble()),
                                        own.value(QLatin1String("time")).toString(),
                                        qint64(own.value(QLatin1String("seen")).toDouble())});
    }
    return state;
}

bool ForwardState::save(const QString& home, QString* error) const
{
    QJsonObject all;
    for (auto it = streams.begin(); it != streams.end(); ++it)
        all.insert(it.key(), QJsonObject{{QStringLiteral("epoch"), it->epoch},
                                         {QStringLiteral("row"), it->row},
                                         {QStringLiteral("time"), it->time},
                                         {QStringLiteral("seen"), it->seen}});
    return HomeFiles::writeJson(pathIn(home),
                                QJsonObject{{QStringLiteral("cellId"), cellId},
                                            {QStringLiteral("sessions"), double(sessions)},
                                            {QStringLiteral("streams"), all}},
                                error);
}
