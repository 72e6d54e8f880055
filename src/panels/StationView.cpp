#include "panels/StationView.h"

#include "ui_StationView.h"
#include "workflow/DayCounts.h"
#include "workflow/ResultHandler.h"

#include <QEvent>
#include <QGridLayout>
#include <QTime>

namespace {

constexpr int overdueMs = 1500; ///< an answer takes some tens of milliseconds; a reading this old is not of this part
constexpr int leastAngleHeight = 76; ///< pixels: digits that are read from two metres
const QString noValue = QStringLiteral("—");

} // namespace

StationView::StationView(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::StationView>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    m_ui->viewer->setContextMenuPolicy(Qt::CustomContextMenu);
    m_ui->tipTile->setGrounded(true);
    m_ui->angleTile->setMaximumDigits(110);
    for (ReadoutTile* tile : {m_ui->xTile, m_ui->yTile})
        tile->setMaximumDigits(34);
    for (ReadoutTile* tile :
         {m_ui->tipTile, m_ui->timeTile, m_ui->foundTile, m_ui->notFoundTile, m_ui->refusedTile, m_ui->yieldTile})
        tile->setMaximumDigits(24);
    m_overdue.setSingleShot(true);
    m_overdue.setInterval(overdueMs);
    connect(&m_overdue, &QTimer::timeout, this, [this] { show(Waiting); });
    m_ui->timeTile->setValue(noValue, ReadoutTile::Faint);
    for (ReadoutTile* tile : {m_ui->foundTile, m_ui->yieldTile})
        connect(tile, &ReadoutTile::clicked, this, [this] { emit partsWanted(false); });
    for (ReadoutTile* tile : {m_ui->notFoundTile, m_ui->refusedTile})
        connect(tile, &ReadoutTile::clicked, this, [this] { emit partsWanted(true); });
    show(Idle);
    setCount({});
    setWide(false);
}

StationView::~StationView() = default;

ksImgViewer* StationView::viewer() const
{
    return m_ui->viewer;
}

void StationView::setStation(int number)
{
    m_number = number;
    retranslate();
}

void StationView::setWide(bool wide)
{
    delete m_ui->reading->layout();
    auto* const grid = new QGridLayout(m_ui->reading);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(6);
    const auto place = [grid](QWidget* tile, const QRect& cells) {
        grid->addWidget(tile, cells.y(), cells.x(), cells.height(), cells.width());
    };
    // Below the picture: a row of large digits, the tip, a row of the day. Beside it: a column.
    place(m_ui->angleTile, wide ? QRect(0, 0, 10, 1) : QRect(0, 0, 4, 1));
    place(m_ui->xTile, wide ? QRect(0, 1, 5, 1) : QRect(4, 0, 3, 1));
    place(m_ui->yTile, wide ? QRect(5, 1, 5, 1) : QRect(7, 0, 3, 1));
    place(m_ui->tipTile, wide ? QRect(0, 2, 10, 1) : QRect(0, 1, 10, 1));
    place(m_ui->timeTile, wide ? QRect(0, 3, 10, 1) : QRect(0, 2, 2, 1));
    place(m_ui->foundTile, wide ? QRect(0, 4, 5, 1) : QRect(2, 2, 2, 1));
    place(m_ui->notFoundTile, wide ? QRect(5, 4, 5, 1) : QRect(4, 2, 2, 1));
    place(m_ui->refusedTile, wide ? QRect(0, 5, 5, 1) : QRect(6, 2, 2, 1));
    place(m_ui->yieldTile, wide ? QRect(5, 5, 5, 1) : QRect(8, 2, 2, 1));
    for (int column = 0; column < 10; ++column)
        grid->setColumnStretch(column, 1);
    const int rows = wide ? 6 : 3;
    for (int row = 0; row < rows; ++row)
        grid->setRowStretch(row, row == 0 ? 5 : 3);
    m_ui->angleTile->setMinimumHeight(leastAngleHeight);
    m_ui->body->setDirection(wide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    m_ui->body->setStretch(0, wide ? 5 : 2);
    m_ui->body->setStretch(1, wide ? 2 : 1);
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

void StationView::setCaption(const QString& model)
{
    m_caption = model;
    showCaption();
}

void StationView::showCaption()
{
    m_ui->captionLabel->setText(m_caption.isEmpty() ? QString() : tr("图像型号：%1").arg(m_caption));
}

/// Red where the index is wrong, grey where the PLC cleared it.
void StationView::showModel()
{
    if (m_deadIndex) {
        const bool cleared = *m_deadIndex < 1;
        const QString text = cleared ? tr("未选择型号") : tr("PLC索引%1没有型号").arg(*m_deadIndex);
        m_ui->modelLabel->setText(QStringLiteral("<h4><span style='color:%1;'>%2</span></h4>")
                                      .arg(cleared ? QStringLiteral("#808080") : QStringLiteral("#ff0000"), text));
        return;
    }
    QString text = m_label;
    text.replace(QLatin1String("< /"), QLatin1String("</")); // the label's own form is odd
    m_ui->modelLabel->setText(text.replace(QStringLiteral("当前检测型号"), tr("当前检测型号")));
}

void StationView::setReading(const StationReading& reading)
{
    m_overdue.stop();
    m_tip = reading.test ? tr("测试：%1").arg(reading.tip.trimmed()) : reading.tip.trimmed();
    m_ui->angleTile->setValue(reading.found ? plc::cutText(reading.angle) + QStringLiteral("°") : noValue,
                              reading.found ? ReadoutTile::Good : ReadoutTile::Bad);
    m_ui->xTile->setValue(reading.found ? plc::cutText(reading.x) : noValue);
    m_ui->yTile->setValue(reading.found ? plc::cutText(reading.y) : noValue);
    show(reading.found ? Found : NotFound);
}

void StationView::setCount(const DayCount& count)
{
    m_ui->foundTile->setValue(QString::number(count.found));
    m_ui->notFoundTile->setValue(QString::number(count.notFound),
                                 count.notFound > 0 ? ReadoutTile::Bad : ReadoutTile::Plain);
    m_ui->refusedTile->setValue(QString::number(count.refused),
                                count.refused > 0 ? ReadoutTile::Caution : ReadoutTile::Plain);
    const double yield = count.yield();
    m_ui->yieldTile->setValue(yield < 0 ? noValue : QString::number(yield, 'f', 1) + QStringLiteral(" %"));
}

void StationView::hideReading()
{
    m_ui->reading->hide();
}

void StationView::stampTime()
{
    m_ui->timeTile->setValue(QTime::currentTime().toString(QStringLiteral("hh:mm:ss")));
}

void StationView::triggered()
{
    stampTime();
    m_overdue.start();
}

void StationView::refused()
{
    stampTime();
    show(Refused);
}

/// The digits of a part that is gone go with it: nobody may take them for those of the part in the station.
void StationView::show(State state)
{
    m_state = state;
    if (state != Found && state != NotFound) {
        for (ReadoutTile* tile : {m_ui->angleTile, m_ui->xTile, m_ui->yTile})
            tile->setValue(noValue, ReadoutTile::Faint);
    }
    showTip();
}

void StationView::showTip()
{
    switch (m_state) {
    case Idle:
        return m_ui->tipTile->setValue(tr("等待触发"), ReadoutTile::Faint);
    case Waiting:
        return m_ui->tipTile->setValue(tr("已触发，没有结果"), ReadoutTile::Caution);
    case Found:
        return m_ui->tipTile->setValue(m_tip.isEmpty() ? tr("已找到") : m_tip, ReadoutTile::Good);
    case NotFound:
        return m_ui->tipTile->setValue(m_tip.isEmpty() ? tr("未找到") : m_tip, ReadoutTile::Bad);
    case Refused:
        return m_ui->tipTile->setValue(tr("型号无效，触发被拒绝"), ReadoutTile::Caution);
    }
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
    showCaption();
    showTip();
}

void StationView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
