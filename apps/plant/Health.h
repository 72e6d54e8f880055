#pragma once

#include <QMap>
#include <QString>

#include <mutex>

/// What ails this collector, by part: "broker", "database". Any thread.
class Health
{
public:
    struct Trouble
    {
        QString kind; ///< a word of the page
        QString text; ///< as the library has it
    };

    /// An empty kind: it is well.
    void set(const QString& part, const Trouble& trouble)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (trouble.kind.isEmpty())
            m_troubles.remove(part);
        else
            m_troubles.insert(part, trouble);
    }
    QMap<QString, Trouble> troubles() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_troubles;
    }

private:
    mutable std::mutex m_mutex; // protects the following
    QMap<QString, Trouble> m_troubles;
};
