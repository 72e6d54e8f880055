#include "db/log/ksSysLog.h"
#include "home/HomeVersion.h"
#include "host/Messages.h"
#include "host/ksMain.h"
#include "platform/System.h"

#include <valvecell/Export.h>
#include <valvecell/HomeFiles.h>
#include <valvecell/HostChoice.h>

#include <cstdlib>

namespace {

IMainWidget* s_program = nullptr; // what the host has of us

IMainWidget* refused(const QString& problem)
{
    HostChoice::setStartProblem(problem);
    qCritical("MainWidget_Create: %s", qUtf8Printable(problem));
    return nullptr;
}

} // namespace

VALVECELL_MODULE_EXPORT IMainWidget* MainWidget_Create()
{
    if (s_program)
        return refused(messages::alreadyRuns());
    HostChoice::setStartProblem({});
    HomeFiles::fixHome();
    platform::keepOthersOut();
    platform::keepThisLibrary();
    const QString unfit = HomeVersion::enter(HomeFiles::home());
    if (!unfit.isEmpty() && !HostChoice::returnsFailures()) {
        messages::fatal(unfit, {});
        std::exit(0);
    }
    if (!unfit.isEmpty())
        return refused(unfit);
    auto program = std::make_unique<ksMain>();
    if (!program->problem().isEmpty()) {
        const QString problem = program->problem();
        program.reset();
        SystemLog::ksSysLog::instance()->stop();
        return refused(problem);
    }
    return s_program = program.release();
}

VALVECELL_MODULE_EXPORT void MainWidget_Delete(IMainWidget* widget)
{
    if (!widget)
        return;
    delete widget;
    s_program = nullptr;
    SystemLog::ksSysLog::instance()->stop();
}
