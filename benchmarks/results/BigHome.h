#pragma once

#include <QTemporaryDir>

/// A home as after three months of production without a pause: a million parts, the last of them now, and three million
/// lines of the log. Made once for a run.
class BigHome
{
public:
    static constexpr int parts = 1000000;
    static constexpr int lines = 3000000;

    static const QString& path();

private:
    BigHome();
    void makeParts();
    void makeLog();

    QTemporaryDir m_folder;
    QString m_path;
};
