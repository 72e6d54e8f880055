#pragma once

#include <QString>
#include <QtPlugin>

#include <functional>

/// One change of the users, or of the rules of their log-in.
struct UserChange
{
    QString by;     ///< the user who did it; empty for the first administrator, whom nobody could make
    QString name;   ///< what changed, the same in every language, such as "user/张工/role"
    QString before; ///< empty when there was none
    QString after;  ///< empty when there is none any more
};

/// Optional interface of a log-in module: reports who changed what of the users, for the system log. IUserCtrl is a
/// QObject, so Qt finds the interface, and a module that has it names it by Q_INTERFACES(IUserAudit):
///
///     if (auto* audit = qobject_cast<IUserAudit*>(userCtrl)) ...
///
/// It belongs to the module and lives as long as the IUserCtrl. GUI thread throughout.
class IUserAudit
{
public:
    using Listener = std::function<void(const UserChange&)>;

    /// Stands in both values of a change of a password; passwords and their hashes are never reported.
    static QString secret() { return QStringLiteral("***"); }

    /// From now on the listener is called once for each change, when it is stored; what was refused, could not be
    /// stored or changed nothing is not reported. A second call replaces the listener, an empty one ends the reports.
    virtual void setListener(Listener listener) = 0;

protected:
    ~IUserAudit() = default;
};

Q_DECLARE_INTERFACE(IUserAudit, "valvecell.IUserAudit/1")
