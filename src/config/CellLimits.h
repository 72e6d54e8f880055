#pragma once

#include "config/ks_singleton_base.h"

#include <QString>

/// What the cell grants itself, kept in "/user/limits.json" below the home:
///
///     {"answer_deadline_ms": 2000, "module_call_limit_ms": 1000}
///
/// The file is there only when a limit is another than its default. GUI thread.
class CellLimits : public ks_singleton_base<CellLimits>
{
public:
    /// Gives every field its default.
    CellLimits();

    /// From the acceptance of a trigger: a part without image or result is answered then, as not found.
    int answerDeadlineMs{};
    /// A call into a module that takes longer is logged, and raises an alarm.
    int moduleCallLimitMs{};

    /// What is missing, wrong or out of its range gets its default, with a warning that names it.
    void load();
    /// Replaces the file in one step; false with the reason when it cannot be written, and the old one is unchanged.
    bool save(QString* error);
    static QString path();

    /// Every key of the file; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.setting("answer_deadline_ms", answerDeadlineMs, 2000, {200, 60000});
        visitor.setting("module_call_limit_ms", moduleCallLimitMs, 1000, {50, 60000});
    }
};
