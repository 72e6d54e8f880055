#pragma once

#include <QString>

/// A file that a library writes under another name in the same folder, until it is whole. Removed when it never is.
class WholeFile
{
public:
    explicit WholeFile(QString path);
    ~WholeFile();
    Q_DISABLE_COPY(WholeFile)

    const QString& path() const { return m_path; }
    const QString& aside() const { return m_aside; }
    /// Takes the place of an older file in one step, once the disk holds it. Otherwise returns the reason.
    QString commit();

private:
    const QString m_path;
    const QString m_aside;
};
