#include "host/SettingsEffects.h"

#include "config/ksSysConfig.h"
#include "workflow/CellRecords.h"

#include <valvecell/Extension.h>
#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialReopen.h>

#include <algorithm>

namespace {

bool touches(const AuditChanges& changes, const char* group)
{
    return std::any_of(changes.begin(), changes.end(),
                       [group](const AuditChange& change) { return change.name.startsWith(QLatin1String(group)); });
}

} // namespace

SettingsEffects::SettingsEffects(const ksSysConfig& settings, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
{
}

void SettingsEffects::apply(const AuditChanges& changes)
{
    if (touches(changes, ksSysConfig::lineGroup))
        reopenPort();
    if (m_records && touches(changes, ksSysConfig::cleanerGroup))
        m_records->applySettings();
    if (touches(changes, ksSysConfig::languageGroup))
        emit sgChangeLanguage(m_settings.language);
}

void SettingsEffects::reopenPort()
{
    const QString baudRate = QString::number(m_settings.baudRate);
    if (auto* line = extensionOf<ISerialReopen>(m_port)) {
        line->reopen(m_settings.comPort, baudRate);
    } else if (m_port) { // a module without it promises to wait for nothing in these
        m_port->close();
        m_port->open(m_settings.comPort, baudRate);
    }
}
