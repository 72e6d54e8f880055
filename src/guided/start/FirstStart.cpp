#include "guided/start/FirstStart.h"

#include "common/FingerSize.h"
#include "config/IniFile.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "guided/start/StartPages.h"
#include "workflow/ModelManager.h"

#include <valvecell/ICoreCtrl.h>

#include <QCheckBox>
#include <QEvent>
#include <QGuiApplication>
#include <QLayout>

namespace {

const QString choiceFile = QStringLiteral("/user/assistant.ini");
const QString neverKey = QStringLiteral("Assistant/Never");

} // namespace

FirstStart::FirstStart(const Parts& parts, QWidget* parent)
    : GuideDialog(parent)
    , m_parts(parts)
    , m_never(new QCheckBox(this))
{
    addPages();
    m_never->setObjectName(QStringLiteral("neverBox"));
    m_never->setMinimumHeight(fingerSize);
    m_never->setChecked(IniFile(parts.home + choiceFile).settings().value(neverKey, false).toBool());
    layout()->addWidget(m_never);
    connect(m_never, &QCheckBox::toggled, this, [this](bool never) {
        IniFile file(m_parts.home + choiceFile);
        file.settings().setValue(neverKey, never);
        file.commit();
    });
    begin();
    resize(820, 620);
}

void FirstStart::addPages()
{
    auto* language = new LanguagePage(m_parts.settings, m_parts.languages);
    auto* cameras = new CamerasPage(m_parts.core, m_parts.config);
    auto* port = new PortPage(m_parts.port, m_parts.settings, m_parts.scheduler);
    auto* model = new ToolPage([this] {
        const int count = m_parts.models ? m_parts.models->modelCount() : 0;
        return ToolPage::Texts{tr("型号"), tr("示教第一个型号：给它名称和 PLC 索引，拍一张照，引擎提出参数。"),
                               tr("引导示教(&T)…"), count > 0 ? tr("已有 %1 个型号").arg(count) : tr("还没有型号")};
    });
    auto* calibration = new ToolPage([this] {
        QStringList lines;
        for (int station = 1; station <= 2; ++station)
            lines << tr("工位%1：%2").arg(station).arg(calibrationState(station));
        return ToolPage::Texts{tr("标定"), tr("没有标定，X/Y 没有意义；角度不需要标定。"), tr("引导标定(&G)…"),
                               lines.join(QLatin1Char('\n'))};
    });
    for (StartPage* page : std::initializer_list<StartPage*>{language, cameras, port, model, calibration}) {
        addPage(page);
        connect(page, &StartPage::settingsApplied, this, &FirstStart::settingsApplied);
    }
    connect(cameras, &CamerasPage::camerasWanted, this, [this] { emit actionWanted(QStringLiteral("actionCamera")); });
    connect(model, &ToolPage::toolWanted, this, &FirstStart::teachingWanted);
    connect(calibration, &ToolPage::toolWanted, this, &FirstStart::calibrationWanted);
}

/// A scale of 1 is what a station has before anybody calibrated it.
QString FirstStart::calibrationState(int station) const
{
    const QString problem = m_parts.config.calibration(station).problem();
    if (!problem.isEmpty())
        return problem;
    const bool untouched = !m_parts.config.use4pointstand && m_parts.config.station(station).twoPoint.scale == 1.0;
    return untouched ? tr("还没有标定") : tr("标定有效");
}

/// What the window that a step led to has changed.
void FirstStart::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        page(step())->retranslate();
    GuideDialog::changeEvent(event);
}

bool FirstStart::isAttended()
{
    const QString screen = QGuiApplication::platformName();
    return screen != QLatin1String("offscreen") && screen != QLatin1String("minimal");
}

bool FirstStart::isWanted(const Parts& parts)
{
    const bool lacks =
        !parts.core || parts.core->cameraKeys().isEmpty() || !parts.models || parts.models->modelCount() == 0;
    return lacks && !IniFile(parts.home + choiceFile).settings().value(neverKey, false).toBool();
}

void FirstStart::retranslate()
{
    m_never->setText(tr("启动时不再显示此向导"));
}
