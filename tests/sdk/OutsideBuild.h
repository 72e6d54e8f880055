#pragma once

#include <QTemporaryDir>

/// A place outside of the project, as the author of a module has it: the installed SDK and a copy of one example.
class OutsideBuild
{
public:
    QString prefix() const { return m_dir.filePath(QStringLiteral("prefix")); }
    QString source() const { return m_dir.filePath(QStringLiteral("module")); }
    QString build() const { return m_dir.filePath(QStringLiteral("build")); }

    /// Each returns an empty text, or what was run and all that it said.
    QString installSdk() const;
    QString copyExample(const QString& name) const;
    QString configure() const;
    QString buildAndInstall() const;

private:
    QTemporaryDir m_dir;
};
