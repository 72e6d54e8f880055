#include "host/TestMode.h"

#include "dialogs/testmode/QTestWidget.h"
#include "workflow/AutoTrigger.h"
#include "workflow/TriggerDispatch.h"

void TestMode::enter(int mode)
{
    switch (mode) {
    case QTestWidget::Start:
        return m_row.start(m_intervalMs);
    case QTestWidget::SnapStation1:
        return m_dispatch.onTrigger(1);
    case QTestWidget::SnapStation2:
        return m_dispatch.onTrigger(2);
    default:
        return m_row.stop();
    }
}
