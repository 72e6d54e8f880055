#include "db/log/ChangeLine.h"

#include <QRegularExpression>

namespace SystemLog {

const QString ChangeLine::prefix = QStringLiteral("设置更改[");
const QString ChangeLine::userMark = QStringLiteral(",用户:");

QString ChangeLine::text() const
{
    return QStringLiteral("设置更改[%1]:%2 → %3,用户:%4").arg(name, before, after, user);
}

std::optional<ChangeLine> ChangeLine::of(const QString& message)
{
    static const QRegularExpression form(QStringLiteral("^设置更改\\[([^\\]]*)\\]:(.*) → (.*),用户:(.*)$"),
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(message);
    if (!match.hasMatch())
        return {};
    return ChangeLine{match.captured(1), match.captured(2), match.captured(3), match.captured(4)};
}

QString withoutTime(QString message)
{
    static const QRegularExpression stamp(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d ?"));
    return message.remove(stamp);
}

} // namespace SystemLog
