#pragma once

#include "config/SmallConfig.h"

/// The shifts of a plant and the reports that are written of them by themselves, in "/user/shifts.json" of a home:
///
///     {"shift_begins": "06:00, 14:00, 22:00", "report_when": "shift", "report_pdf": true, "report_xlsx": false,
///      "report_folder": "", "report_heading": ""}
///
/// An object of one's own may be used on any thread.
class ShiftConfig : public SmallConfig<ShiftConfig>
{
public:
    static constexpr const char* fileName = "/user/shifts.json";
    static constexpr const char* shiftGroup = "shift_";
    static constexpr const char* reportGroup = "report_";

    ShiftConfig() { setDefaults(); }

    QString begins; ///< see Shifts; empty: one from midnight to midnight
    QString reportWhen;
    bool reportPdf{};
    bool reportXlsx{};
    QString reportFolder;  ///< empty: "reports" of the home
    QString reportHeading; ///< empty: the name of the home's folder

    static constexpr const char* never = "off"; ///< as any other text that is none of these
    static constexpr const char* eachShift = "shift";
    static constexpr const char* eachDay = "day";

    /// What is missing or of a wrong type gets its default; returns the latter, each with file and key. Of a file that
    /// cannot be read at all, the reason goes to `error`. `home`: without a separator at its end.
    QStringList load(const QString& home, QString* error = nullptr);
    /// That of this program's home, with a warning for what is wrong.
    void load();

    bool writesReports() const
    {
        return reportWhen == QLatin1String(eachShift) || reportWhen == QLatin1String(eachDay);
    }
    QString reportFolderIn(const QString& home) const
    {
        return reportFolder.isEmpty() ? home + QStringLiteral("/reports") : reportFolder;
    }

    /// Every key of the file; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.setting({shiftGroup, "begins"}, begins, QString());
        visitor.setting({reportGroup, "when"}, reportWhen, QString::fromLatin1(never));
        visitor.setting({reportGroup, "pdf"}, reportPdf, true);
        visitor.setting({reportGroup, "xlsx"}, reportXlsx, false);
        visitor.setting({reportGroup, "folder"}, reportFolder, QString());
        visitor.setting({reportGroup, "heading"}, reportHeading, QString());
    }
};
