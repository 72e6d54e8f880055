#include "accounts/Account.h"

QString AccountRules::roleText(Role role)
{
    switch (role) {
    case Role::Operator:
        return tr("操作员");
    case Role::Engineer:
        return tr("工程师");
    case Role::Administrator:
        return tr("管理员");
    case Role::None:
        break;
    }
    return {};
}

QString AccountRules::nameProblem(const QString& name)
{
    if (name.trimmed().isEmpty())
        return tr("请输入用户名");
    if (name != name.trimmed())
        return tr("用户名的前后不能有空格");
    if (name.size() > maxNameLength)
        return tr("用户名最多 %1 个字符").arg(maxNameLength);
    // Names end up in log lines and file names.
    for (const QChar c : name)
        if (!c.isPrint() || QStringLiteral("'\"`\\/:*?<>|;").contains(c))
            return tr("用户名不能包含字符“%1”").arg(c.isPrint() ? QString(c) : QStringLiteral("?"));
    return {};
}

QString AccountRules::passwordProblem(const QString& name, const QString& password)
{
    if (password.size() < minPasswordLength)
        return tr("密码至少 %1 个字符").arg(minPasswordLength);
    if (password.size() > maxPasswordLength)
        return tr("密码最多 %1 个字符").arg(maxPasswordLength);
    if (password.count(password[0]) == password.size())
        return tr("密码不能只由一个重复的字符组成");
    if (sameName(password, name))
        return tr("密码不能与用户名相同");
    return {};
}

QString AccountRules::passwordProblem(const QString& name, const QString& password, const QString& again)
{
    QString problem = passwordProblem(name, password);
    return problem.isEmpty() && password != again ? tr("两次输入的密码不一致") : problem;
}

bool AccountRules::sameName(const QString& a, const QString& b)
{
    const auto folded = [](const QString& name) {
        return name.trimmed().normalized(QString::NormalizationForm_KC).toCaseFolded();
    };
    return folded(a) == folded(b);
}
