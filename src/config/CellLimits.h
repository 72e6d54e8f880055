#pragma once

#include "config/SmallConfig.h"

/// What the cell grants itself, kept in "/user/limits.json" below the home:
///
///     {"answer_deadline_ms": 2000, "module_call_limit_ms": 1000}
///
/// The file is there only when a limit is another than its default. GUI thread.
class CellLimits : public SmallConfig<CellLimits>
{
public:
    static constexpr const char* fileName = "/user/limits.json";

    CellLimits() { setDefaults(); }

    /// From the acceptance of a trigger: a part without image or result is answered then, as not found.
    int answerDeadlineMs{};
    /// A call into a module that takes longer is logged, and raises an alarm.
    int moduleCallLimitMs{};

    /// What is missing, wrong or out of its range gets its default, with a warning that names it.
    void load();

    /// Every key of the file; see ConfigVisitors.h.
    template <typename Visitor>
    void visit(Visitor& visitor)
    {
        visitor.setting("answer_deadline_ms", answerDeadlineMs, 2000, {200, 60000});
        visitor.setting("module_call_limit_ms", moduleCallLimitMs, 1000, {50, 60000});
    }
};
