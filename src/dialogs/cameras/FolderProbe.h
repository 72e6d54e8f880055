#pragma once

#include "common/Background.h"

#include <QTimer>

/// Finds out whether a folder exists, while its name is typed. It looks from a thread of its own: a drive of the
/// network that is switched off answers late. GUI thread.
class FolderProbe : public QObject
{
    Q_OBJECT

public:
    explicit FolderProbe(QObject* parent = nullptr);

    /// Looks for this folder soon, once the typing pauses; takes the place of the one before.
    void look(const QString& path);

    /// Whether this folder is known to be missing.
    bool isMissing(const QString& path) const { return m_missing && path == m_seen; }

signals:
    /// isMissing() may have another answer.
    void looked();

private:
    void begin();

    QTimer m_pause;
    QString m_wanted;
    QString m_seen; ///< of which the answer is known
    bool m_missing = false;
    bool m_looking = false;
    Background m_background{Background::AtEnd::Abandon}; // a dialog that closes does not wait for a dead drive
};
