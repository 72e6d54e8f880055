#pragma once

#include <QCoreApplication>
#include <QString>

/// Which reports are written by themselves, in "user/reports.json" of the home. Any thread.
struct ReportSettings
{
    Q_DECLARE_TR_FUNCTIONS(ReportSettings)

public:
    enum When { Off, Shift, Day };
    When when = Off;
    QString folder; ///< empty: "reports" of the home
    bool pdf = true;
    bool xlsx = false;
    QString cell; ///< what headings call it; empty: the name of the home's folder

    /// Those that are off when there is no file; what is wrong with one that cannot be read goes to `error`.
    static ReportSettings load(const QString& home, QString* error = nullptr);
    /// Returns why they could not be stored; empty when they were.
    QString store(const QString& home) const;
    /// What keeps them from being used, as a sentence; empty when nothing does.
    QString problem() const;
    QString folderIn(const QString& home) const;
};
