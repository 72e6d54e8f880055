#include "panels/StationView.h"

#include "common/LookColors.h"
#include "panels/PartWords.h"
#include "panels/StationPlan.h"
#include "ui_StationView.h"
#include "workflow/PlcFrames.h"

#include <QEvent>
#include <QGraphicsScene>
#include <QTime>

#include <utility>

namespace {

constexpr int lateMs = 250; ///< an answer takes some tens of milliseconds; until then nothing flickers
constexpr int overdueMs = 1500;
const QString noValue = QStringLiteral("—");
const QString clockForm = QStringLiteral("hh:mm:ss");
const QString red = QStringLiteral("#ff0000");
const QString grey = QStringLiteral("#808080");

QString yieldText(const DayCount& count)
{
    const double yield = count.yield();
    return yield < 0 ? noValue : QString::number(yield, 'f', 1) + QStringLiteral(" %");
}

} // namespace

StationView::StationView(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::StationView>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    m_ui->stamp->setParent(m_ui->viewer);
    m_ui->viewer->setContextMenuPolicy(Qt::CustomContextMenu);
    m_ui->angleTile->setWidest(QStringLiteral("000.000°"));
    m_ui->angleTile->setMaximumDigits(110);
    for (ReadoutTile* tile : {m_ui->xTile, m_ui->yTile}) {
        tile->setWidest(QStringLiteral("-00000.000"));
        tile->setMaximumDigits(60);
    }
    for (ReadoutTile* tile : {m_ui->foundTile, m_ui->notFoundTile, m_ui->refusedTile, m_ui->yieldTile})
        tile->setMaximumDigits(40);
    for (auto [timer, ms] : {std::pair(&m_late, lateMs), std::pair(&m_overdue, overdueMs)}) {
        timer->setSingleShot(true);
        timer->setInterval(ms);
    }
    connectParts();
    enter(Idle);
    setCount({});
    setTally({});
}

StationView::~StationView() = default;

void StationView::connectParts()
{
    connect(&m_late, &QTimer::timeout, this, [this] { enter(Pending); });
    connect(&m_overdue, &QTimer::timeout, this, [this] {
        m_open = 0;
        enter(Overdue);
    });
    for (ReadoutTile* tile : {m_ui->foundTile, m_ui->yieldTile})
        connect(tile, &ReadoutTile::clicked, this, [this] { emit partsWanted(false); });
    for (ReadoutTile* tile : {m_ui->notFoundTile, m_ui->refusedTile})
        connect(tile, &ReadoutTile::clicked, this, [this] { emit partsWanted(true); });
    connect(m_ui->strip, &OutcomeStrip::partWanted, this, &StationView::partWanted);
    connect(m_ui->failures, &FailurePictures::partWanted, this, &StationView::partWanted);
    connect(m_ui->shift, &ShiftLine::resetWanted, this, &StationView::shiftResetWanted);
}

ksImgViewer* StationView::viewer() const
{
    return m_ui->viewer;
}

void StationView::setStation(int number)
{
    m_number = number;
    retranslate();
}

void StationView::setHome(const QString& home)
{
    m_ui->failures->setHome(home);
}

void StationView::setModelLabel(const QString& richText)
{
    m_label = richText;
    m_deadIndex.reset();
    showModel();
}

void StationView::setNoModel(int plcIndex)
{
    m_deadIndex = plcIndex;
    showModel();
}

/// Red where the index is wrong, grey where the PLC cleared it.
void StationView::showModel()
{
    if (m_deadIndex) {
        const bool cleared = *m_deadIndex < 1;
        const QString text = cleared ? tr("未选择型号") : tr("PLC索引%1没有型号").arg(*m_deadIndex);
        m_ui->modelLabel->setText(
            QStringLiteral("<h4><span style='color:%1;'>%2</span></h4>").arg(cleared ? grey : red, text));
        return;
    }
    QString text = m_label;
    text.replace(QLatin1String("< /"), QLatin1String("</")); // the label's own form is odd
    m_ui->modelLabel->setText(text.replace(QStringLiteral("当前检测型号"), tr("当前检测型号")));
}

void StationView::setCount(const DayCount& count)
{
    m_ui->foundTile->setValue(QString::number(count.found));
    m_ui->notFoundTile->setValue(QString::number(count.notFound),
                                 count.notFound > 0 ? ReadoutTile::Bad : ReadoutTile::Plain);
    m_ui->refusedTile->setValue(QString::number(count.refused),
                                count.refused > 0 ? ReadoutTile::Caution : ReadoutTile::Plain);
    m_ui->yieldTile->setValue(yieldText(count));
}

void StationView::setTally(const StationTally& tally)
{
    m_tally = tally;
    showTally();
}

/// The picture that is shown is at hand for the failure that it belongs to.
void StationView::showTally()
{
    const QVector<PartRow>& failures = m_tally.failures();
    if (m_pictureIsNew && !failures.isEmpty() && failures.last().wall == m_part.wall)
        m_ui->failures->keepPicture(m_part, m_ui->viewer->image());
    m_ui->failures->setParts(failures);
    m_ui->strip->setParts(m_tally.recent());
    m_ui->shift->setTally(m_tally);
    const DayCount shift = m_tally.shiftCount();
    const std::pair<ReadoutTile*, QString> feet[] = {{m_ui->foundTile, QString::number(shift.found)},
                                                     {m_ui->notFoundTile, QString::number(shift.notFound)},
                                                     {m_ui->refusedTile, QString::number(shift.refused)},
                                                     {m_ui->yieldTile, yieldText(shift)}};
    for (const auto& [tile, value] : feet)
        tile->setFoot(tr("本班 %1").arg(value));
    m_ui->hours->setHours(m_tally.hours());
}

void StationView::hideReading()
{
    m_readingShown = false;
    arrange();
}

void StationView::triggered()
{
    m_triggered = QTime::currentTime();
    m_pictureCame = false;
    ++m_open;
    m_late.start();
    m_overdue.start();
}

/// Of two triggers in hand the first picture is not the last one's.
void StationView::setImage(const QImage& image)
{
    m_ui->viewer->setImage(image);
    m_ui->viewer->scene()->setBackgroundBrush(lookColors().card); // the picture's place ends within a pixel
    m_pictureTime = QTime::currentTime();
    m_pictureCame = true;
    m_pictureIsNew = m_pictureIsNew || m_open == 0;
    if (image.height() > 0 && m_aspect != double(image.width()) / image.height()) {
        m_aspect = double(image.width()) / image.height();
        arrange();
    }
    if (m_open == 0)
        showStamp();
}

void StationView::setCaption(const QString& model)
{
    m_pictureModel = model;
}

void StationView::setPart(const PartRow& part, bool test)
{
    m_part = part;
    m_test = test;
    const bool refused = part.part.outcome == PartOutcome::Refused;
    if (!refused)
        m_open = qMax(0, m_open - 1);
    m_pictureIsNew = std::exchange(m_pictureCame, false) && !refused;
    if (m_open > 0) // of another part than that in the station
        return enter(Ended);
    m_late.stop();
    m_overdue.stop();
    enter(Ended);
}

void StationView::enter(State state)
{
    m_state = state;
    if (state == Pending || state == Overdue)
        m_pictureIsNew = false;
    showBand();
    showDigits();
    showStamp();
}

/// Digits of a part that is not in the station any more are grey; of one that is long gone, or was not placed, nobody
/// may take them for anything.
void StationView::showDigits()
{
    const bool placed = m_part.placed && (m_state == Ended || m_state == Pending);
    const bool present = m_state == Ended;
    m_ui->angleTile->setValue(placed ? plc::cutText(m_part.part.angle) + QStringLiteral("°") : noValue,
                              placed && present                                        ? ReadoutTile::Good
                              : present && m_part.part.outcome != PartOutcome::Refused ? ReadoutTile::Bad
                                                                                       : ReadoutTile::Faint);
    for (const auto& [tile, value] : {std::pair(m_ui->xTile, m_part.part.x), std::pair(m_ui->yTile, m_part.part.y)})
        tile->setValue(placed ? plc::cutText(value) : noValue,
                       placed && present ? ReadoutTile::Plain : ReadoutTile::Faint);
}

void StationView::showBand()
{
    OutcomeBand::Content band;
    switch (m_state) {
    case Idle:
        band.word = tr("等待触发");
        break;
    case Pending:
    case Overdue:
        band.word = m_state == Pending ? tr("等待结果") : tr("已触发，没有结果");
        band.part = tr("触发 %1").arg(m_triggered.toString(clockForm));
        break;
    case Ended:
        band.lamp = lampOf(m_part.part.outcome);
        band.part = PartWords::timeAndModel(m_part);
        band.sent = m_test ? tr("未发送") : PartWords::sent(m_part);
        if (m_part.part.outcome == PartOutcome::Found)
            band.word = m_part.tip.isEmpty() ? tr("已找到") : m_part.tip;
        else
            band.word = m_part.part.outcome == PartOutcome::Refused ? tr("拒绝触发") : tr("未找到");
        if (m_test)
            band.word = tr("测试：%1").arg(band.word);
        band.test = m_test;
    }
    m_ui->band->setContent(band);
}

void StationView::showStamp()
{
    const bool stale = m_pictureTime.isValid() && !m_pictureIsNew;
    m_ui->stamp->setVisible(stale);
    if (stale)
        m_ui->stamp->setText(tr("上一件 %1  %2").arg(m_pictureTime.toString(clockForm), m_pictureModel));
}

void StationView::arrange()
{
    const QRect room = rect().adjusted(10, 6, -10, -8);
    const QSize name = m_ui->stationLabel->sizeHint();
    const StationPlan::Header header{qMax(name.height(), m_ui->modelLabel->sizeHint().height()), name.width()};
    const StationPlan plan =
        m_readingShown ? StationPlan::of(room, m_aspect, header) : StationPlan::ofPicture(room, m_aspect, header);
    const std::pair<QWidget*, const QRect&> places[] = {
        {m_ui->stationLabel, plan.station},
        {m_ui->modelLabel, plan.model},
        {m_ui->band, plan.band},
        {m_ui->viewer, plan.picture},
        {m_ui->strip, plan.strip},
        {m_ui->angleTile, plan.angle},
        {m_ui->xTile, plan.x},
        {m_ui->yTile, plan.y},
        {m_ui->failures, plan.failures},
        {m_ui->foundTile, plan.found},
        {m_ui->notFoundTile, plan.notFound},
        {m_ui->refusedTile, plan.refused},
        {m_ui->yieldTile, plan.yield},
        {m_ui->shift, plan.shift},
        {m_ui->hours, plan.hours},
    };
    for (const auto& [widget, place] : places) {
        widget->setVisible(!place.isEmpty());
        widget->setGeometry(place);
    }
    m_ui->stamp->setGeometry(m_ui->viewer->rect());
}

void StationView::retranslate()
{
    m_ui->retranslateUi(this);
    m_ui->stationLabel->setText(tr("工位%1").arg(m_number));
    for (ReadoutTile* tile : {m_ui->foundTile, m_ui->yieldTile})
        tile->setLeadsOn(true, tr("点击查看今天的工件"));
    for (ReadoutTile* tile : {m_ui->notFoundTile, m_ui->refusedTile})
        tile->setLeadsOn(true, tr("点击查看今天未找到和拒绝的工件"));
    showModel();
    showBand();
    showStamp();
    showTally();
    arrange();
}

void StationView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        arrange();
}

void StationView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}
