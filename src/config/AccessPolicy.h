#pragma once

#include "config/ks_singleton_base.h"

#include <QString>

/// Who may open what, kept in "/user/access.json" below the home:
///
///     {"engineer_only": true}
///
/// A missing file restricts nothing, unless there was one (see HomeFiles::markPresent()). One that is damaged or gone,
/// or says anything but true or false, restricts: whoever spoils it gains nothing. GUI thread.
class AccessPolicy : public ks_singleton_base<AccessPolicy>
{
public:
    /// Gives every field its default.
    AccessPolicy();

    bool engineerOnly{}; ///< calibration, settings, models and designer are for engineers and administrators

    void load();
    /// Replaces the file in one step; false with the reason when it cannot be written, and the old one is unchanged.
    bool save(QString* error);
    static QString path();

    /// Every key of the file; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.setting("engineer_only", engineerOnly, false);
    }
};
