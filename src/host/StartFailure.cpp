#include "host/StartFailure.h"

#include "db/log/ksSysLog.h"
#include "host/Messages.h"
#include "workflow/Cell.h"

#include <valvecell/HostChoice.h>

#include <cstdlib>

namespace StartFailure {

namespace {

/// What is wrong with which module, a line each.
QString detailsOf(const QVector<ModuleInfo>& modules)
{
    QStringList lines;
    for (const ModuleInfo& module : modules) {
        if (!module.working)
            lines.append(QStringLiteral("%1 (%2): %3").arg(module.name, module.file, module.problem));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

QString report(const QString& text, std::unique_ptr<Cell>& cell)
{
    const QString details = detailsOf(cell->modules().report());
    qCritical("%s %s", qUtf8Printable(text), qUtf8Printable(details));
    if (HostChoice::returnsFailures())
        return details.isEmpty() ? text : text + QLatin1Char('\n') + details;
    messages::fatal(text, details);
    cell.reset();
    SystemLog::ksSysLog::instance()->stop(); // no thread may outlive the databases, which go with the process
    std::exit(0);
}

} // namespace StartFailure
