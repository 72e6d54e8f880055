#pragma once

#include <QString>

#include <optional>

namespace SystemLog {

/// The line of a change of the set-up, "设置更改[name]:before → after,用户:user", in whatever language the screen
/// speaks: those who write it and those who read it again keep to this form.
struct ChangeLine
{
    static const QString prefix;   ///< of every such line
    static const QString userMark; ///< what stands before the user

    QString name;
    QString before;
    QString after;
    QString user;

    QString text() const;
    /// Nothing for a line of another kind.
    static std::optional<ChangeLine> of(const QString& message);
};

/// A line without the time that it begins with.
QString withoutTime(QString message);

} // namespace SystemLog
