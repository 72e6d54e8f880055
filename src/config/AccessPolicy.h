#pragma once

#include "config/SmallConfig.h"

/// Who may open what, kept in "/user/access.json" below the home:
///
///     {"engineer_only": true}
///
/// A missing file restricts nothing, unless there was one (see HomeFiles::markPresent()). One that is damaged or gone,
/// or says anything but true or false, restricts: whoever spoils it gains nothing. GUI thread.
class AccessPolicy : public SmallConfig<AccessPolicy>
{
public:
    static constexpr const char* fileName = "/user/access.json";

    AccessPolicy() { setDefaults(); }

    bool engineerOnly{}; ///< calibration, settings, models and designer are for engineers and administrators

    void load();
    /// And from then on, its loss restricts.
    bool save(QString* error);

    /// Every key of the file; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.setting("engineer_only", engineerOnly, false);
    }
};
