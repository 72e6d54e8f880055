#pragma once

#include <QString>

#include <optional>

/// The topics by which cells and plant speak, see docs/plant-schema.md.
namespace PlantTopics {

enum class Kind { Birth, Data, Death, Command, Rows, Picture, Offer, Answer };

struct Topic
{
    Kind kind = Kind::Data;
    QString group;
    QString cell; ///< of an offer: the target's
    QString leaf; ///< stream of rows, number of an offer; else empty
};

constexpr int longestName = 64;
constexpr int schemaVersion = 1;

/// What keeps a text from being a level of a topic (a group, a cell); a sentence for the user, empty when nothing does.
QString whyNoName(const QString& name);

QString text(const Topic& topic);
/// Nothing when it is none of ours.
std::optional<Topic> parse(const QString& text);

/// What a plant subscribes to, of one group or of all of them ("+"): `share` names those who divide the work, empty for
/// one who takes all.
QString filter(Kind kind, const QString& group, const QString& share = QString());

} // namespace PlantTopics
