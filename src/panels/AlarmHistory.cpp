#include "panels/AlarmHistory.h"

#include "common/forms/DialogForm.h"
#include "panels/AlarmStrip.h"
#include "workflow/AlarmBook.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {

QString text(const QDateTime& time)
{
    return time.isValid() ? time.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")) : QStringLiteral("—");
}

} // namespace

AlarmHistory::AlarmHistory(AlarmBook& book, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowCloseButtonHint)
    , m_book(&book)
    , m_table(new QTableWidget(0, 4))
{
    m_table->setObjectName(QStringLiteral("table"));
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setWordWrap(false);
    m_table->verticalHeader()->hide();
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    (new QVBoxLayout(this))->addWidget(m_table);
    resize(1000, 420);
    DialogForm::prepare(this);
    connect(&book, &AlarmBook::changed, this, [this] {
        if (isVisible())
            refresh();
    });
    retranslate();
}

void AlarmHistory::refresh()
{
    if (!m_book)
        return;
    const QVector<Alarm> alarms = m_book->alarms() + m_book->history();
    m_table->setRowCount(alarms.size());
    for (int row = 0; row < alarms.size(); ++row) {
        const Alarm& alarm = alarms[row];
        const QStringList texts{text(alarm.since), text(alarm.until), AlarmStrip::sentence(alarm),
                                AlarmStrip::remedy(alarm)};
        for (int column = 0; column < texts.size(); ++column) {
            auto* const item = new QTableWidgetItem(texts[column]);
            item->setToolTip(texts[column]);
            m_table->setItem(row, column, item);
        }
    }
}

void AlarmHistory::retranslate()
{
    setWindowTitle(tr("报警记录"));
    m_table->setHorizontalHeaderLabels({tr("开始"), tr("结束"), tr("报警"), tr("处理方法")});
    refresh();
}

void AlarmHistory::showEvent(QShowEvent* event)
{
    refresh();
    QDialog::showEvent(event);
}

void AlarmHistory::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
