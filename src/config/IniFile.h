#pragma once

#include "config/ConfigVisitors.h"

#include <QSettings>

#include <memory>

/// One INI file, opened for one reading or one writing. UTF-8, with or without a byte-order mark; the file is replaced
/// in one step. A file that is nothing like INI is kept beside under another name at once; one with a line that is
/// neither group, key nor comment is read without it, and copied beside before it is overwritten. GUI thread.
class IniFile
{
public:
    explicit IniFile(const QString& path);

    QSettings& settings() { return *m_settings; }

    /// Why the file was kept aside; empty when it was not.
    const QString& problem() const { return m_problem; }
    /// Lines that are not in INI format, each with file and number.
    const QStringList& strays() const { return m_strays; }

    /// Writes what was set, which `loses` something of the file. Returns false, with a warning in the log, when that
    /// failed.
    bool commit(bool loses = false);

private:
    QString m_path;
    QString m_problem;
    QStringList m_strays;
    std::unique_ptr<QSettings> m_settings;
};

/// Reads the fields of a configuration, see ConfigVisitors.h. A key that is absent, or whose text does not convert,
/// gives the fallback; the latter is a problem.
class IniReadVisitor : public EveryField<IniReadVisitor>
{
public:
    /// `file` outlives the visitor.
    explicit IniReadVisitor(const QSettings& file)
        : m_file(file)
    {
    }

    void field(const ConfigKey& key, QString& value, const QString& fallback);
    void field(const ConfigKey& key, bool& value, bool fallback);
    void field(const ConfigKey& key, int& value, int fallback);

    /// Keys whose text does not convert, each with file and group.
    const QStringList& problems() const { return m_problems; }

private:
    QString textOf(const ConfigKey& key) const;
    void notConverted(const ConfigKey& key, const char* wanted);

    const QSettings& m_file;
    QStringList m_problems;
};

/// Sets every field of a configuration; other keys of the file stay.
class IniWriteVisitor : public EveryField<IniWriteVisitor>
{
public:
    /// `file` outlives the visitor.
    explicit IniWriteVisitor(QSettings& file)
        : m_file(file)
    {
    }

    template <typename Value, typename Fallback>
    void field(const ConfigKey& key, const Value& value, const Fallback&)
    {
        m_file.setValue(key, value);
    }
    template <typename Value, typename Fallback>
    void addition(const ConfigKey& key, const Value& value, const Fallback& fallback, SettingRange = {})
    {
        if (value != fallback || m_file.contains(key))
            field(key, value, fallback);
    }

private:
    QSettings& m_file;
};

/// Remembers the zoom factor of a viewer in "/showImg.ini" below the home, under "ShowImg/" + `viewer`. The viewers:
/// "ScaleA", "ScaleB" of the main window, "Scale_Standard_1", "Scale_Standard_2" of the calibration dialogs. Written by
/// the global thread pool, so that turning a wheel waits for no disk; of several in a row the last. GUI thread.
void saveViewerScale(const QString& viewer, double scale);
