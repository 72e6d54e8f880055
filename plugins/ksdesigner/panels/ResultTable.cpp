#include "ResultTable.h"

#include "common/TaskResult.h"
#include "common/forms/InlineMessage.h"
#include "ui_ResultTable.h"

namespace {

const QString none = QStringLiteral("—");

QString number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

QString point(const QPointF& point)
{
    return QStringLiteral("%1, %2").arg(number(point.x(), 2), number(point.y(), 2));
}

} // namespace

ResultTable::ResultTable(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::ResultTable>())
{
    m_ui->setupUi(this);
    for (QLabel* caption : {m_ui->angleCaption, m_ui->centerCaption, m_ui->hubCaption, m_ui->scoreCaption,
                            m_ui->edgeCaption, m_ui->timeCaption})
        caption->setForegroundRole(QPalette::PlaceholderText);
    clear();
}

ResultTable::~ResultTable() = default;

void ResultTable::clear()
{
    m_ui->verdict->hide();
    for (QLabel* value : {m_ui->angle, m_ui->center, m_ui->hub, m_ui->score, m_ui->edge, m_ui->time})
        value->setText(none);
}

void ResultTable::setBusy()
{
    clear();
    setVerdict(tr("正在运行…"), {lookColors().faint, lookColors().card});
}

void ResultTable::setVerdict(const QString& text, const LookColors::Sign& sign)
{
    m_ui->verdict->setText(text);
    m_ui->verdict->setVisible(!text.isEmpty());
    setGround(m_ui->verdict, sign);
}

void ResultTable::setResult(const TaskResult& result)
{
    clear();
    if (!result.hasAlgoResult) {
        setVerdict(tr("任务未能运行：方案或型号不存在"), lookColors().bad);
        return;
    }
    const QString tip = result.tip.isEmpty() ? (result.found ? tr("已找到气门孔") : tr("未找到气门孔")) : result.tip;
    setVerdict(result.found ? tip : tr("%1（错误码 %2）").arg(tip).arg(result.error),
               result.found ? lookColors().good : lookColors().bad);
    setNumbers(result);
}

void ResultTable::setNumbers(const TaskResult& result)
{
    m_ui->time->setText(tr("%1 ms").arg(number(result.taskTime, 1)));
    if (result.score > 0 || result.found)
        m_ui->score->setText(tr("%1（次高 %2）").arg(number(result.score, 3), number(result.runnerUpScore, 3)));
    if (result.hubRadius > 0)
        m_ui->hub->setText(tr("%1，半径 %2 px").arg(point(result.hubCenter), number(result.hubRadius, 1)));
    if (!result.found)
        return;
    m_ui->angle->setText(QStringLiteral("%1°").arg(number(result.angle, 3)));
    m_ui->center->setText(tr("%1 px").arg(point(result.center)));
    if (result.edgePoints > 0)
        m_ui->edge->setText(tr("%1 点，残差 %2 px").arg(result.edgePoints).arg(number(result.residual, 2)));
}
