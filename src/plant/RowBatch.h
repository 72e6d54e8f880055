#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <optional>

/// One part as it travels; see docs/plant-schema.md for each field's meaning.
struct PlantPart
{
    qint64 row = 0;
    qint64 created = 0; ///< milliseconds since 1970 UTC
    qint64 wall = 0;    ///< the same on the cell's clock, as if that were UTC
    int station = 0;
    std::optional<int> externalRecipeId;
    QString internalRecipeId;
    QString configurationId;
    QString outcome; ///< "found", "notFound", "refused"
    int error = 0;
    std::optional<double> angle; ///< degrees
    std::optional<double> x;     ///< millimetres
    std::optional<double> y;
    std::optional<double> score;
    std::optional<double> imageMs;
    std::optional<double> resultMs;
    std::optional<double> replyMs;
    QString user;
    bool picture = false;
};

/// One line of the cell's log as it travels.
struct PlantLine
{
    qint64 row = 0;
    qint64 created = 0; ///< as PlantPart's
    qint64 wall = 0;
    QString kind; ///< "alarm", "audit", "warning", "information"
    QString text;
    QString user;
};

/// All rows of a stream in (after, upTo]; of `parts` and `lines`, the one that the stream does not have is empty.
struct RowBatch
{
    QString cellId;
    QString stream; ///< "parts" or "log"
    QString epoch;
    qint64 after = 0;
    qint64 upTo = 0;
    QVector<PlantPart> parts;
    QVector<PlantLine> lines;

    static constexpr int mostRows = 500;
    static constexpr int mostBytes = 256 * 1024;
    static const QString partsStream;
    static const QString logStream;

    int size() const { return parts.size() + lines.size(); }
    /// The number of the last row; there is one.
    qint64 lastRow() const { return parts.isEmpty() ? lines.last().row : parts.last().row; }
    QByteArray encode() const;
    /// Nothing when something in it is not as it should be: `error` says what and where ("rows[3].angle: …"). Such a
    /// message is kept aside as a whole.
    static std::optional<RowBatch> decode(const QByteArray& json, QString* error);
};

/// Rows that a plant misses and asks for once more: those in (after, upTo].
struct ResendRequest
{
    QString stream;
    QString epoch;
    qint64 after = 0;
    qint64 upTo = 0;

    QByteArray encode() const;
    static std::optional<ResendRequest> decode(const QByteArray& json, QString* error);
};
