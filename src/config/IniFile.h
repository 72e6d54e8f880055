#pragma once

#include <QSettings>
#include <QString>

#include <memory>

/// One INI file, opened for one reading or one writing. UTF-8; the file is replaced in one step. A file that is not in
/// INI format is kept beside under another name before it is overwritten. GUI thread.
class IniFile
{
public:
    explicit IniFile(const QString& path);

    QSettings& settings() { return *m_settings; }

    /// Writes what was set. Returns false, with a warning in the log, when that failed.
    bool commit();

private:
    QString m_path;
    std::unique_ptr<QSettings> m_settings;
};

/// Remembers the zoom factor of a viewer in "/showImg.ini" below the home, under "ShowImg/" + `viewer`. The viewers:
/// "ScaleA", "ScaleB" of the main window, "Scale_Standard_1", "Scale_Standard_2" of the calibration dialogs.
void saveViewerScale(const QString& viewer, double scale);
