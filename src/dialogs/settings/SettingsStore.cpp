#include "dialogs/settings/SettingsStore.h"

#include "config/AccessPolicy.h"
#include "config/CellLimits.h"
#include "config/ShiftConfig.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "dialogs/calibration/CalibrationFit.h"
#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#include <QCoreApplication>

#include <algorithm>
#include <functional>
#include <utility>

namespace {

const QString globalFile = QStringLiteral("/user/globalConfig.json");

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(SettingsStore)
};

/// Visits those fields of a configuration that the dialog edits.
template <typename Act>
class SettingsVisitor
{
public:
    explicit SettingsVisitor(Act act)
        : m_act(act)
    {
    }
    void setting(const ConfigKey& key, QString& value, const QString&) { m_act(key, value, SettingRange()); }
    void setting(const ConfigKey& key, bool& value, bool) { m_act(key, value, SettingRange()); }
    void setting(const ConfigKey& key, int& value, int, SettingRange range) { m_act(key, value, range); }
    template <typename Value, typename Fallback>
    void addition(const ConfigKey& key, Value& value, const Fallback&, SettingRange range = {})
    {
        m_act(key, value, range);
    }
    template <typename Value, typename Fallback>
    void field(const ConfigKey&, const Value&, const Fallback&)
    {
    }
    template <typename Visit>
    void object(const ConfigKey&, Visit)
    {
    }

private:
    Act m_act;
};

/// Calls `act(key, value, range)` for each setting.
template <typename Config, typename Act>
void eachSetting(Config& config, Act act)
{
    SettingsVisitor<Act> visitor(act);
    config.visit(visitor);
}

template <typename Config>
SettingsMap read(Config& config)
{
    SettingsMap settings;
    eachSetting(config, [&](const QString& key, const auto& value, SettingRange) { settings.insert(key, value); });
    return settings;
}

template <typename Config>
void write(Config& config, const SettingsMap& settings)
{
    eachSetting(config, [&](const QString& key, auto& value, SettingRange) {
        if (settings.contains(key))
            value = settings.value(key).template value<std::decay_t<decltype(value)>>();
    });
}

HomeFiles::JsonRead readGlobalFile()
{
    return HomeFiles::readJson(platform::inHome(globalFile));
}

QString sentence(const QString& path, const QString& what)
{
    return Tr::tr("%1 已被改动：%2").arg(QFileInfo(path).fileName(), what);
}

/// What a file holds, compared with what the program uses: "COM/Port COM3 → COM7"; empty for the same.
QString changedSentence(const QString& path, const SettingsMap& used, const SettingsMap& stored)
{
    QStringList texts;
    const AuditChanges changes = SettingsStore::differences(used, stored);
    for (const AuditChange& change : changes)
        texts.append(QStringLiteral("%1 %2 → %3").arg(change.name, change.before, change.after));
    return texts.isEmpty() ? QString() : sentence(path, texts.join(Tr::tr("，")));
}

/// What the file of one of the small configurations holds now.
template <typename Config>
QString foreignChange(Config& used)
{
    if (!QFile::exists(Config::path()))
        return {};
    Config stored;
    stored.load();
    return changedSentence(Config::path(), read(used), read(stored));
}

/// The file stays away as long as it would say nothing, and untouched as long as it is right.
template <typename Config>
bool saveIfOther(Config& used, QString* error)
{
    Config stored;
    stored.load();
    return read(stored) == read(used) || used.save(error);
}

} // namespace

SettingsStore::SettingsStore(ksSysConfig& system, ksGlobalConfig& global, AccessPolicy& access, CellLimits& limits,
                             ShiftConfig& shifts)
    : m_system(system)
    , m_global(global)
    , m_access(access)
    , m_limits(limits)
    , m_shifts(shifts)
{
    m_forward.load();
}

SettingsMap SettingsStore::current() const
{
    SettingsMap settings = read(m_system);
    settings.insert(read(m_global));
    settings.insert(read(m_access));
    settings.insert(read(m_limits));
    settings.insert(read(m_shifts));
    settings.insert(read(m_forward));
    return settings;
}

QMap<QString, SettingRange> SettingsStore::ranges() const
{
    QMap<QString, SettingRange> ranges;
    const auto note = [&](const QString& key, const auto&, SettingRange range) { ranges.insert(key, range); };
    eachSetting(m_system, note);
    eachSetting(m_global, note);
    eachSetting(m_access, note);
    eachSetting(m_limits, note);
    eachSetting(m_shifts, note);
    eachSetting(m_forward, note);
    return ranges;
}

QStringList SettingsStore::foreignChanges() const
{
    QStringList sentences{foreignSystemChange(),   foreignGlobalChange(),   foreignChange(m_access),
                          foreignChange(m_limits), foreignChange(m_shifts), foreignChange(m_forward)};
    sentences.removeAll(QString());
    return sentences;
}

QString SettingsStore::foreignSystemChange() const
{
    if (!QFile::exists(m_system.filePath))
        return {};
    ksSysConfig stored;
    stored.filePath = m_system.filePath;
    stored.load();
    return changedSentence(m_system.filePath, read(m_system), read(stored));
}

QString SettingsStore::foreignGlobalChange() const
{
    const HomeFiles::JsonRead::State state = readGlobalFile().state;
    if (state == HomeFiles::JsonRead::Missing)
        return {};
    if (state == HomeFiles::JsonRead::Damaged)
        return sentence(globalFile, Tr::tr("无法读取，覆盖前会另存一份"));
    ksGlobalConfig stored;
    stored.load();
    const QString changes = changedSentence(globalFile, read(m_global), read(stored));
    if (!changes.isEmpty())
        return changes;
    for (int station = 1; station <= 2; ++station)
        stored.station(station).runModel = m_global.station(station).runModel;
    return stored.text() == m_global.text() ? QString() : sentence(globalFile, Tr::tr("标定数据与程序中的不同"));
}

QStringList SettingsStore::calibrationDoubts(const SettingsMap& settings, bool oneStation) const
{
    const bool fourPoint = settings.value(CalibrationKeys::useFourPoint).toBool();
    QStringList doubts;
    if (fourPoint == m_global.use4pointstand && m_global.spoiledKind.isEmpty())
        return doubts;
    for (int number = 1; number <= (oneStation ? 1 : 2); ++number) {
        if (settings.value(QStringLiteral("station_solution_%1").arg(number)).toString().isEmpty())
            continue;
        const StationConfig& station = m_global.station(number);
        const QString doubt = fourPoint ? fourPointDoubt(station) : station.twoPointCalibration().problem();
        if (!doubt.isEmpty())
            doubts << Tr::tr("工位%1：%2").arg(QString::number(number), doubt);
    }
    return doubts;
}

void SettingsStore::assign(const SettingsMap& settings)
{
    write(m_system, settings);
    write(m_global, settings);
    write(m_access, settings);
    write(m_limits, settings);
    write(m_shifts, settings);
    write(m_forward, settings);
}

bool SettingsStore::saveSystem(QString* error)
{
    if (m_system.save())
        return true;
    *error = Tr::tr("%1 无法写入").arg(m_system.filePath);
    return false;
}

bool SettingsStore::store(const SettingsMap& settings, QString* error)
{
    const std::function<bool()> saves[] = {[&] { return saveSystem(error); },
                                           [&] { return m_global.save(error); },
                                           [&] { return saveIfOther(m_access, error); },
                                           [&] { return saveIfOther(m_limits, error); },
                                           [&] { return saveIfOther(m_shifts, error); },
                                           [&] { return saveIfOther(m_forward, error); }};
    const SettingsMap before = current();
    const QJsonObject spoiled = std::exchange(m_global.spoiledKind, {}); // from now on the file says it
    assign(settings);
    const auto failed = std::find_if_not(std::begin(saves), std::end(saves), [](const auto& save) { return save(); });
    if (failed == std::end(saves))
        return true;
    const QString reason = *error;
    assign(before);
    m_global.spoiledKind = spoiled;
    if (!std::all_of(std::begin(saves), failed, [](const auto& save) { return save(); })) // puts back what was written
        qWarning("%s; the files hold settings that are not in use", qUtf8Printable(*error));
    *error = reason;
    return false;
}

bool SettingsStore::canReload() const
{
    return readGlobalFile().state != HomeFiles::JsonRead::Damaged;
}

void SettingsStore::reload()
{
    const QString runModels[2] = {m_global.station(1).runModel, m_global.station(2).runModel};
    m_system.load();
    m_global.load();
    m_access.load();
    m_limits.load();
    m_shifts.load();
    m_forward.load();
    for (int station = 1; station <= 2; ++station)
        m_global.station(station).runModel = runModels[station - 1];
}

AuditChanges SettingsStore::differences(const SettingsMap& before, const SettingsMap& after)
{
    AuditChanges changes;
    for (auto it = after.begin(); it != after.end(); ++it) {
        const QVariant old = before.value(it.key());
        if (old != it.value())
            changes.append({it.key(), old.toString(), it.value().toString()});
    }
    return changes;
}
