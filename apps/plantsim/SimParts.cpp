#include "SimParts.h"

#include <QBuffer>
#include <QDateTime>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

/// Even in [0, 1), by cell, row and what it is for.
double chance(int cell, qint64 row, int purpose)
{
    quint64 bits = static_cast<quint64>(cell) * 0x9E3779B97F4A7C15u + static_cast<quint64>(row) * 0xBF58476D1CE4E5B9u +
                   static_cast<quint64>(purpose) * 0x94D049BB133111EBu;
    for (int i = 0; i < 3; ++i)
        bits = (bits ^ (bits >> 31)) * 0xD6E8FEB86659FD93u;
    return static_cast<double>(bits >> 11) / 9007199254740992.0;
}

double normal(int cell, qint64 row, int purpose)
{
    return chance(cell, row, purpose) + chance(cell, row, purpose + 100) + chance(cell, row, purpose + 200) - 1.5;
}

} // namespace

PlantPart SimParts::part(int cell, const SimStore::Row& row, int zoneSeconds)
{
    static const char* const models[] = {"W-17", "W-18A", "W-21", "K-5"};
    const double missing = cell % 17 == 5 ? 0.08 : 0.004 + 0.01 * chance(cell, 0, 1);
    const double luck = chance(cell, row.row, 2);
    PlantPart part;
    part.row = row.row;
    part.created = row.created;
    part.wall = row.created + zoneSeconds * qint64(1000);
    part.station = static_cast<int>(row.row % 2) + 1;
    const int model = (cell + static_cast<int>(row.created / 7200000)) % 4;
    part.externalRecipeId = model + 1;
    part.internalRecipeId = QLatin1String(models[model]);
    part.configurationId = QStringLiteral("K%1-%2").arg(cell).arg(part.station);
    part.outcome = luck < missing / 6 ? QStringLiteral("refused")
                   : luck < missing   ? QStringLiteral("notFound")
                                      : QStringLiteral("found");
    part.user = chance(cell, row.row / 1000, 3) < 0.5 ? QStringLiteral("张工") : QStringLiteral("王师傅");
    part.imageMs = 28 + 4 * chance(cell, row.row, 4);
    part.resultMs = *part.imageMs + 35 + 10 * chance(cell, row.row, 5);
    part.replyMs = *part.resultMs + 2 + 3 * chance(cell, row.row, 6);
    part.picture = part.outcome != QLatin1String("found") || row.row % 50 == 0;
    part.angle = part.outcome == QLatin1String("found") ? 360 * chance(cell, row.row, 7) : 361;
    if (part.outcome == QLatin1String("refused")) {
        part.error = 12;
        return part;
    }
    if (part.outcome != QLatin1String("found")) {
        part.error = chance(cell, row.row, 8) < 0.7 ? 3 : 5;
        return part;
    }
    const double days = static_cast<double>(row.created % (30 * 86400000LL)) / 86400000.0;
    const double slope = cell % 11 == 3 ? 0.02 : 0.001 * normal(cell, 0, 9);
    part.x = 250 + slope * days + 0.05 * normal(cell, row.row, 10);
    part.y = 180 + 0.5 * slope * days + 0.05 * normal(cell, row.row, 11);
    part.score = 96 + 3 * normal(cell, row.row, 12) / 1.5;
    return part;
}

PlantLine SimParts::line(int cell, const SimStore::Row& row, int zoneSeconds)
{
    static const char* const texts[] = {"工位1：连续3件未找到气门孔", "相机2无图像，正在重连", "登录：张工",
                                        "型号切换为 W-18A", "磁盘剩余空间低于 20 GB"};
    static const char* const kinds[] = {"alarm", "alarm", "audit", "information", "warning"};
    const int which = static_cast<int>(5 * chance(cell, row.row, 13));
    return {row.row,
            row.created,
            row.created + zoneSeconds * qint64(1000),
            QLatin1String(kinds[which]),
            QString::fromUtf8(texts[which]),
            QString()};
}

QByteArray SimParts::picture(const PlantPart& part)
{
    QImage image(320, 240, QImage::Format_Grayscale8);
    image.fill(60);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre(160 + 4 * normal(1, part.row, 14), 120 + 4 * normal(1, part.row, 15));
    const auto disc = [&painter](const QPointF& at, double radius, int grey) {
        painter.setBrush(QColor(grey, grey, grey));
        painter.drawEllipse(at, radius, radius);
    };
    painter.setPen(Qt::NoPen);
    disc(centre, 105, 170);
    disc(centre, 92, 120);
    disc(centre, 80, 185);
    for (int i = 0; i < 5; ++i)
        disc(centre + 50 * QPointF(std::cos(2 * pi * i / 5), std::sin(2 * pi * i / 5)), 16, 70);
    disc(centre, 14, 50);
    if (part.outcome == QLatin1String("found")) {
        const double turn = *part.angle * pi / 180;
        disc(centre + 86 * QPointF(std::cos(turn), -std::sin(turn)), 5, 15);
    }
    painter.end();
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 70);
    return jpeg;
}

QByteArray SimParts::alarms(int cell, qint64 now)
{
    QJsonArray list;
    const qint64 quarter = now / 900000;
    if (chance(cell, quarter, 16) < 0.05)
        list.append(QJsonObject{
            {"id", "camera2"},
            {"since", QDateTime::fromMSecsSinceEpoch(quarter * 900000, Qt::UTC).toString(Qt::ISODateWithMs)},
            {"severity", "fault"},
            {"text", QStringLiteral("相机2无图像")}});
    if (cell % 17 == 5)
        list.append(QJsonObject{
            {"id", "yield1"},
            {"since", QDateTime::fromMSecsSinceEpoch(quarter * 900000, Qt::UTC).toString(Qt::ISODateWithMs)},
            {"severity", "warning"},
            {"text", QStringLiteral("工位1：合格率低于 95 %")}});
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}
