// The guided work among the actions: teaching, calibration, the overview of models, and the assistant of a first start.

#include "config/ksGlobalConfig.h"
#include "dialogs/calibration/CalibrationDialog.h"
#include "guided/calibration/CalibrationGuide.h"
#include "guided/library/ModelLibrary.h"
#include "guided/start/FirstStart.h"
#include "guided/teaching/TeachingGuide.h"
#include "host/WindowActions.h"
#include "look/LanguageSwitch.h"
#include "modules/ModuleSet.h"
#include "platform/AppHome.h"
#include "workflow/CZdCtrl.h"
#include "workflow/Cell.h"

#include <QMainWindow>

namespace {

FirstStart::Parts startParts(const WindowActions::Parts& own)
{
    Cell& cell = own.cell;
    return {own.settings,     own.config,         cell.modules().coreCtrl(),
            cell.port(),      cell.models(),      LanguageSwitch::available(),
            platform::home(), Scheduler::system()};
}

} // namespace

void WindowActions::openCalibrationGuide()
{
    auto* guide = dialog<CalibrationGuide>(Engineers, [this] {
        auto* made = new CalibrationGuide(
            {m_parts.config, m_parts.cell.modules().coreCtrl(), platform::home(), [this] { return currentUser(); }},
            &m_parts.window);
        connect(made, &CalibrationGuide::calibrationApplied, this, &WindowActions::logChanges);
        connect(made, &CalibrationGuide::calibrationApplied, &m_parts.twoPoint, &CalibrationDialog::refresh);
        connect(made, &CalibrationGuide::calibrationApplied, &m_parts.fourPoint, &CalibrationDialog::refresh);
        return made;
    });
    if (!guide->isVisible())
        guide->setOneStation(hasOneStation());
    place(guide, "actionGuide");
}

void WindowActions::openTeaching(const QString& name)
{
    Cell& cell = m_parts.cell;
    if (!cell.models())
        return;
    auto* guide = dialog<TeachingGuide>(Engineers, [this, &cell] {
        auto* made = new TeachingGuide(
            {*cell.models(), cell.modules().engine(), cell.modules().coreCtrl(), m_parts.config, platform::home()},
            &m_parts.window);
        connect(made, &TeachingGuide::modelsChanged, this, &WindowActions::logChanges);
        connect(made, &TeachingGuide::designerWanted, this, [this] { trigger(QStringLiteral("actionSetting")); });
        return made;
    });
    if (!guide->isVisible()) {
        guide->setOneStation(hasOneStation());
        guide->beginModel(name);
    }
    place(guide, "actionTeach");
}

void WindowActions::openLibrary()
{
    Cell& cell = m_parts.cell;
    if (!cell.models())
        return;
    const auto make = [this, &cell] {
        auto* made = new ModelLibraryDialog({*cell.models(), cell.controller()->plcIndices(), cell.modules().engine(),
                                             m_parts.config, platform::home()},
                                            &m_parts.window);
        connect(&made->library(), &ModelLibrary::modelsChanged, this, &WindowActions::logChanges);
        connect(&made->library(), &ModelLibrary::teachingWanted, this, &WindowActions::openTeaching);
        connect(&made->library(), &ModelLibrary::managerWanted, this, &WindowActions::openModels);
        return made;
    };
    place(dialog<ModelLibraryDialog>(Engineers, make), "actionLibrary");
}

/// Besides whatever box the start shows; never where nobody sits.
void WindowActions::offerFirstStart()
{
    if (FirstStart::isAttended() && allowsEngineering() && FirstStart::isWanted(startParts(m_parts)))
        openFirstStart();
}

void WindowActions::openFirstStart()
{
    const auto make = [this] {
        auto* made = new FirstStart(startParts(m_parts), &m_parts.window);
        connect(made, &FirstStart::settingsApplied, this, &WindowActions::logChanges);
        connect(made, &FirstStart::settingsApplied, this, &WindowActions::settingsApplied);
        connect(made, &FirstStart::actionWanted, this, &WindowActions::trigger);
        connect(made, &FirstStart::teachingWanted, this, [this] { openTeaching({}); });
        connect(made, &FirstStart::calibrationWanted, this, &WindowActions::openCalibrationGuide);
        return made;
    };
    place(dialog<FirstStart>(Engineers, make), "actionAssistant");
}
