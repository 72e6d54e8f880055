#include "host/LicenceDesk.h"

#include "config/ksGlobalConfig.h"
#include "config/ksGlobalData.h"
#include "db/log/LogLine.h"
#include "dialogs/registration/LicenceTexts.h"
#include "dialogs/registration/QCryptokeyUI.h"
#include "licence/MachineCode.h"
#include "platform/AppHome.h"
#include "platform/MachineIdentity.h"

#include <QIcon>

#include <algorithm>

namespace {

constexpr int daysOfNotice = 30;

int stationsInUse()
{
    const auto& stations = ksGlobalConfig::instance()->stations;
    const auto used = std::count_if(stations.begin(), stations.end(),
                                    [](const StationConfig& station) { return !station.camKey.isEmpty(); });
    return qMax(1, int(used));
}

Registration::Setting setting()
{
    Registration::Setting setting;
    setting.file = platform::inHome(QStringLiteral("/user/licence.lic"));
    setting.publicKey = builtInLicenceKey();
    setting.stations = stationsInUse;
    return setting;
}

bool endsSoon(const Licence& licence)
{
    return licence.expires.isValid() && QDate::currentDate().daysTo(licence.expires) < daysOfNotice;
}

} // namespace

LicenceDesk::LicenceDesk(QWidget* window)
    : m_window(window)
    , m_registration(setting())
    , m_dialog(std::make_unique<QCryptokeyUI>(m_registration))
{
}

LicenceDesk::~LicenceDesk() = default;

void LicenceDesk::checkDaily()
{
    if (QDate::currentDate() == m_checkedOn)
        return;
    if (!m_checkedOn.isValid() && !isVendorLicenceKey())
        SystemLog::information(tr("本程序使用构建时自动生成的授权密钥，不是供应商的密钥"));
    m_checkedOn = QDate::currentDate();
    m_machine.run([] { return MachineCode::of(platform::machineIdentity()); },
                  [this](const QString& code) {
                      m_registration.setMachine(code);
                      m_dialog->showMachine();
                      judge();
                  });
}

void LicenceDesk::judge()
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime seen = m_registration.noteTime(now);
    if (seen.isValid())
        SystemLog::warning(tr("系统时间被调回：上次是%1，现在是%2")
                               .arg(seen.toLocalTime().toString(Qt::ISODate), now.toString(Qt::ISODate)));
    const LicenceVerdict verdict = m_registration.present();
    if (verdict.isGood() && endsSoon(verdict.licence))
        SystemLog::warning(tr("授权即将到期：%1").arg(LicenceTexts::content(verdict.licence)));
    else if (!verdict.isGood() && verdict.refusal != LicenceRefusal::Missing)
        SystemLog::warning(tr("授权无效：%1").arg(LicenceTexts::refusal(verdict)));
    emit judged(verdict.isGood());
}

void LicenceDesk::openDialog()
{
    m_dialog->setRegistered(ksGlobalData::instance()->registered);
    if (!m_dialog->isVisible())
        m_dialog->setParent(m_window, Qt::Dialog | Qt::WindowCloseButtonHint);
    m_dialog->setWindowTitle(QCryptokeyUI::tr("注册"));
    m_dialog->setWindowIcon(QIcon(QStringLiteral(":/vantor/Resource/app.png")));
    m_dialog->setWindowModality(Qt::ApplicationModal);
    m_dialog->setAttribute(Qt::WA_ShowModal);
    m_dialog->show();
}
