#include "dialogs/settings/SettingsStore.h"

#include "config/AccessPolicy.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "platform/AppHome.h"

#include <valvecell/HomeFiles.h>

#include <QCoreApplication>

#include <algorithm>
#include <functional>

namespace {

const QString kGlobalFile = QStringLiteral("/user/globalConfig.json");

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(SettingsStore)
};

template <typename Visit>
void visitSystem(ksSysConfig& system, Visit visit)
{
    visit(QStringLiteral("language/select"), system.language);
    visit(QStringLiteral("COM/Port"), system.comPort);
    visit(QStringLiteral("COM/Baute"), system.baudRate);
    visit(QStringLiteral("CheckThread/days"), system.cleanDays);
    visit(QStringLiteral("CheckThread/days_dir"), system.cleanDirDays);
    visit(QStringLiteral("CheckThread/spacesize"), system.minFreeSpace);
    visit(QStringLiteral("CheckThread/Enable_RltImg"), system.cleanRltImages);
    visit(QStringLiteral("CheckThread/Enable_SrcImg"), system.cleanSrcImages);
    visit(QStringLiteral("TrigDetector/FilterTime"), system.filterTime);
    for (int i = 0; i < 2; ++i) {
        visit(QStringLiteral("Image/SrcImgSave_st%1").arg(i + 1), system.saveSrcImage[i]);
        visit(QStringLiteral("Image/RltImgSave_st%1").arg(i + 1), system.saveRltImage[i]);
    }
}

template <typename Visit>
void visitGlobal(ksGlobalConfig& global, Visit visit)
{
    for (int station = 1; station <= 2; ++station) {
        visit(QStringLiteral("station_camkey_%1").arg(station), global.station(station).camKey);
        visit(QStringLiteral("station_solution_%1").arg(station), global.station(station).solution);
    }
    visit(QStringLiteral("use_clear_protect"), global.useClearProtect);
    visit(QStringLiteral("onlineMode"), global.onlineMode);
    visit(QStringLiteral("trigerFilter"), global.trigerFilter);
    visit(QStringLiteral("use4pointstand"), global.use4pointstand);
}

template <typename Visit>
void visitAccess(AccessPolicy& access, Visit visit)
{
    visit(QStringLiteral("engineer_only"), access.engineerOnly);
}

struct Reader
{
    SettingsMap& settings;
    template <typename Field>
    void operator()(const QString& key, const Field& field) const
    {
        settings.insert(key, QVariant(field));
    }
};

struct Writer
{
    const SettingsMap& settings;
    template <typename Field>
    void operator()(const QString& key, Field& field) const
    {
        if (settings.contains(key))
            field = settings.value(key).template value<Field>();
    }
};

SettingsMap read(ksSysConfig& system)
{
    SettingsMap settings;
    visitSystem(system, Reader{settings});
    return settings;
}

SettingsMap read(ksGlobalConfig& global)
{
    SettingsMap settings;
    visitGlobal(global, Reader{settings});
    return settings;
}

SettingsMap read(AccessPolicy& access)
{
    SettingsMap settings;
    visitAccess(access, Reader{settings});
    return settings;
}

/// What `file` holds, compared with what the program uses: "COM/Port COM3 → COM7".
QString listed(const AuditChanges& changes)
{
    QStringList texts;
    for (const AuditChange& change : changes)
        texts.append(QStringLiteral("%1 %2 → %3").arg(change.name, change.before, change.after));
    return texts.join(Tr::tr("，"));
}

HomeFiles::JsonRead readGlobalFile()
{
    return HomeFiles::readJson(platform::inHome(kGlobalFile));
}

QString sentence(const QString& path, const QString& what)
{
    return Tr::tr("%1 已被改动：%2").arg(QFileInfo(path).fileName(), what);
}

} // namespace

SettingsStore::SettingsStore(ksSysConfig& system, ksGlobalConfig& global, AccessPolicy& access)
    : m_system(system)
    , m_global(global)
    , m_access(access)
{
}

SettingsMap SettingsStore::current() const
{
    SettingsMap settings = read(m_system);
    settings.insert(read(m_global));
    settings.insert(read(m_access));
    return settings;
}

QStringList SettingsStore::foreignChanges() const
{
    QStringList sentences{foreignSystemChange(), foreignGlobalChange(), foreignAccessChange()};
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
    const AuditChanges changes = differences(read(m_system), read(stored));
    return changes.isEmpty() ? QString() : sentence(m_system.filePath, listed(changes));
}

QString SettingsStore::foreignGlobalChange() const
{
    const HomeFiles::JsonRead::State state = readGlobalFile().state;
    if (state == HomeFiles::JsonRead::Missing)
        return {};
    if (state == HomeFiles::JsonRead::Damaged)
        return sentence(kGlobalFile, Tr::tr("无法读取，覆盖前会另存一份"));
    ksGlobalConfig stored;
    stored.load();
    const AuditChanges changes = differences(read(m_global), read(stored));
    if (!changes.isEmpty())
        return sentence(kGlobalFile, listed(changes));
    for (int station = 1; station <= 2; ++station)
        stored.station(station).runModel = m_global.station(station).runModel;
    return stored.text() == m_global.text() ? QString() : sentence(kGlobalFile, Tr::tr("标定数据与程序中的不同"));
}

QString SettingsStore::foreignAccessChange() const
{
    if (!QFile::exists(AccessPolicy::path()))
        return {};
    AccessPolicy stored;
    stored.load();
    const AuditChanges changes = differences(read(m_access), read(stored));
    return changes.isEmpty() ? QString() : sentence(AccessPolicy::path(), listed(changes));
}

void SettingsStore::assign(const SettingsMap& settings)
{
    visitSystem(m_system, Writer{settings});
    visitGlobal(m_global, Writer{settings});
    visitAccess(m_access, Writer{settings});
}

bool SettingsStore::saveSystem(QString* error)
{
    if (m_system.save())
        return true;
    *error = Tr::tr("%1 无法写入").arg(m_system.filePath);
    return false;
}

/// The file stays away as long as nothing is restricted, and untouched as long as it is right.
bool SettingsStore::saveAccess(QString* error)
{
    AccessPolicy stored;
    stored.load();
    return stored.engineerOnly == m_access.engineerOnly || m_access.save(error);
}

bool SettingsStore::store(const SettingsMap& settings, QString* error)
{
    const std::function<bool()> saves[] = {[&] { return saveSystem(error); }, [&] { return m_global.save(error); },
                                           [&] { return saveAccess(error); }};
    const SettingsMap before = current();
    assign(settings);
    const auto failed = std::find_if_not(std::begin(saves), std::end(saves), [](const auto& save) { return save(); });
    if (failed == std::end(saves))
        return true;
    const QString reason = *error;
    assign(before);
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
