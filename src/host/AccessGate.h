#pragma once

#include <QString>

class AccessPolicy;

/// Decides which actions of the window the present user may start. GUI thread.
class AccessGate
{
public:
    /// From this level of IUserCtrl::sgCurrentUserInfo on, everything may be opened.
    static constexpr int engineerLevel = 2;

    /// `policy` outlives the gate.
    explicit AccessGate(const AccessPolicy& policy);

    /// The level of the present user; 0 is nobody.
    void setLevel(int level) { m_level = level; }

    /// Whether the action of that object name may start now.
    bool allows(const QString& action) const;
    /// Whether what is for engineers may be open now.
    bool allowsEngineering() const;

private:
    const AccessPolicy& m_policy;
    int m_level = 0;
};
