#pragma once

#include <QCoreApplication>
#include <QString>
#include <QVariant>

#include <functional>

/// What a host may choose before it calls "MainWidget_Create", and what it reads when that returned null. Kept at the
/// application object, so that host and library share no symbol. GUI thread, with the application in place.
namespace HostChoice {

/// A start-up that cannot go on returns null, with the reason in startProblem(), instead of showing its reason and
/// ending the process.
inline void returnFailures(bool chosen = true)
{
    qApp->setProperty("valvecell_returns_failures", chosen);
}
inline bool returnsFailures()
{
    return qApp->property("valvecell_returns_failures").toBool();
}

/// Nobody sits in front of the screen: no box asks or tells anything, it is a line in the log instead, and the PLC's
/// shutdown frame closes the program at once. What a person opens or closes by hand still asks that person.
inline void setUnattended(bool chosen = true)
{
    qApp->setProperty("valvecell_unattended", chosen);
}
inline bool isUnattended()
{
    return qApp->property("valvecell_unattended").toBool();
}

/// What a host is called for when the program's window was closed, by a person or by the PLC.
struct ClosedNotice
{
    std::function<void()> call;
};

} // namespace HostChoice

Q_DECLARE_METATYPE(HostChoice::ClosedNotice)

namespace HostChoice {

/// For a host whose event loop does not end with the program's window. The program runs on without it, and answers the
/// PLC, until the host gives it back; not from within the notice. Empty for none.
inline void setClosedNotice(std::function<void()> notice)
{
    qApp->setProperty("valvecell_closed_notice", QVariant::fromValue(ClosedNotice{std::move(notice)}));
}
/// For the library.
inline void noteClosed()
{
    const auto notice = qApp->property("valvecell_closed_notice").value<ClosedNotice>();
    if (notice.call)
        notice.call();
}

/// Why the last "MainWidget_Create" returned null, in the operator's language, with what was looked for and where;
/// empty when it did not.
inline QString startProblem()
{
    return qApp->property("valvecell_start_problem").toString();
}
/// For the library.
inline void setStartProblem(const QString& problem)
{
    qApp->setProperty("valvecell_start_problem", problem);
}

} // namespace HostChoice
