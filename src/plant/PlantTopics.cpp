#include "plant/PlantTopics.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace PlantTopics {
namespace {

struct Shape
{
    Kind kind;
    const char* pattern; ///< %1: group, %2: cell, %3: leaf
};

const Shape shapes[] = {
    {Kind::Birth, "spBv1.0/%1/NBIRTH/%2"},        {Kind::Data, "spBv1.0/%1/NDATA/%2"},
    {Kind::Death, "spBv1.0/%1/NDEATH/%2"},        {Kind::Command, "spBv1.0/%1/NCMD/%2"},
    {Kind::Rows, "valvecell/1/%1/%2/rows/%3"},    {Kind::Picture, "valvecell/1/%1/%2/picture"},
    {Kind::Offer, "valvecell/1/%1/%2/offers/%3"}, {Kind::Answer, "valvecell/1/%1/%2/answers/%3"},
};

QStringList levelsOf(Kind kind)
{
    for (const Shape& shape : shapes) {
        if (shape.kind == kind)
            return QString::fromLatin1(shape.pattern).split(QLatin1Char('/'));
    }
    return {};
}

QString filled(Kind kind, const QString& group, const QString& cell, const QString& leaf)
{
    QStringList levels = levelsOf(kind);
    for (QString& level : levels) {
        if (level == QLatin1String("%1"))
            level = group;
        else if (level == QLatin1String("%2"))
            level = cell;
        else if (level == QLatin1String("%3"))
            level = leaf;
    }
    return levels.join(QLatin1Char('/'));
}

bool matches(const QStringList& pattern, const QStringList& levels, Topic& topic)
{
    if (pattern.size() != levels.size())
        return false;
    for (int i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == QLatin1String("%1"))
            topic.group = levels[i];
        else if (pattern[i] == QLatin1String("%2"))
            topic.cell = levels[i];
        else if (pattern[i] == QLatin1String("%3"))
            topic.leaf = levels[i];
        else if (pattern[i] != levels[i])
            return false;
    }
    return whyNoName(topic.group).isEmpty() && whyNoName(topic.cell).isEmpty();
}

} // namespace

QString whyNoName(const QString& name)
{
    const auto say = [](const char* text) { return QCoreApplication::translate("Plant", text); };
    if (name.isEmpty())
        return say(QT_TRANSLATE_NOOP("Plant", "名称不能为空"));
    if (name.size() > longestName)
        return say(QT_TRANSLATE_NOOP("Plant", "名称最多 %1 个字符")).arg(longestName);
    if (name != name.trimmed())
        return say(QT_TRANSLATE_NOOP("Plant", "名称首尾不能有空格"));
    const bool foreign = std::any_of(name.begin(), name.end(), [](QChar letter) {
        return letter.category() == QChar::Other_Control || QStringLiteral("/+#").contains(letter);
    });
    return foreign ? say(QT_TRANSLATE_NOOP("Plant", "名称不能含有 / + # 或控制字符")) : QString();
}

QString text(const Topic& topic)
{
    return filled(topic.kind, topic.group, topic.cell, topic.leaf);
}

std::optional<Topic> parse(const QString& text)
{
    const QStringList levels = text.split(QLatin1Char('/'));
    for (const Shape& shape : shapes) {
        Topic topic{shape.kind, {}, {}, {}};
        if (matches(levelsOf(shape.kind), levels, topic))
            return topic;
    }
    return {};
}

QString filter(Kind kind, const QString& group, const QString& share)
{
    const QString any = QStringLiteral("+");
    const QString topics = filled(kind, group, any, any);
    return share.isEmpty() ? topics : QStringLiteral("$share/%1/%2").arg(share, topics);
}

} // namespace PlantTopics
