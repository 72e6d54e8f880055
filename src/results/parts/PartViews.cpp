#include "results/parts/PartViews.h"

#include "results/ViewState.h"
#include "results/parts/PartPictures.h"
#include "results/parts/PartTableModel.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>

namespace {

/// Shown at first; the others by the header's menu.
const int hiddenAtFirst[] = {PartTableModel::PlcIndex, PartTableModel::ImageMs, PartTableModel::ResultMs,
                             PartTableModel::User, PartTableModel::Calibration};

/// A later version with other columns does not take them for its own.
const QString columnsName = QStringLiteral("Parts/Columns%1").arg(PartTableModel::ColumnCount);

} // namespace

PartViews::PartViews(PartTableModel& table, QWidget* parent)
    : QStackedWidget(parent)
    , m_parts(table)
    , m_pictures(new PartPictures(table, this))
    , m_table(new QTableView(this))
    , m_strip(new QTableView(this))
    , m_nothing(new QLabel(this))
{
    setUpTable();
    setUpStrip();
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->setWordWrap(true);
    for (QWidget* view :
         {static_cast<QWidget*>(m_table), static_cast<QWidget*>(m_strip), static_cast<QWidget*>(m_nothing)})
        addWidget(view);
    for (QTableView* view : {m_table, m_strip})
        view->installEventFilter(this);
    m_strip->viewport()->installEventFilter(this);
    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &PartViews::partChosen);
    connect(m_strip->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& place) {
        if (const int part = m_pictures->partAt(place); part >= 0)
            m_table->selectRow(part);
    });
}

void PartViews::setUpTable()
{
    m_table->setModel(&m_parts);
    m_table->setObjectName(QStringLiteral("partTable"));
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setAlternatingRowColors(true);
    m_table->setSortingEnabled(true);
    m_table->setWordWrap(false);
    const QFontMetrics metrics = m_table->fontMetrics();
    m_table->verticalHeader()->hide();
    QHeaderView* header = m_table->horizontalHeader();
    header->setSortIndicator(PartTableModel::Time, Qt::DescendingOrder);
    header->setHighlightSections(false);
    const auto width = [&](int column, const char* widest) {
        m_table->setColumnWidth(column, metrics.horizontalAdvance(QString::fromUtf8(widest)) + 24);
    };
    width(PartTableModel::Mark, "标记");
    width(PartTableModel::Time, "2026-00-00 00:00:00.000");
    width(PartTableModel::Station, "Station 0");
    width(PartTableModel::Outcome, "Not found");
    width(PartTableModel::Reason, "相机1没有图像，检测超时");
    for (const int column : {PartTableModel::Angle, PartTableModel::X, PartTableModel::Y})
        width(column, "-0000.000");
    for (const int column :
         {PartTableModel::Score, PartTableModel::ImageMs, PartTableModel::ResultMs, PartTableModel::ReplyMs})
        width(column, "Result ms");
    for (const int column : hiddenAtFirst)
        m_table->hideColumn(column);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this, &PartViews::offerColumns);
}

void PartViews::setUpStrip()
{
    m_strip->setModel(m_pictures);
    m_strip->setObjectName(QStringLiteral("partPictures"));
    m_strip->setItemDelegate(new PartPictureDelegate(m_strip));
    m_strip->setSelectionMode(QAbstractItemView::SingleSelection);
    m_strip->setShowGrid(false);
    m_strip->horizontalHeader()->hide();
    m_strip->verticalHeader()->hide();
    const QSize cell = PartPictureDelegate::sizeFor(m_strip);
    m_strip->horizontalHeader()->setDefaultSectionSize(cell.width());
    m_strip->verticalHeader()->setDefaultSectionSize(cell.height());
    m_strip->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_strip->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void PartViews::offerColumns(const QPoint& at)
{
    QMenu menu;
    for (int column = 1; column < m_parts.columnCount(); ++column) {
        QAction* action = menu.addAction(m_parts.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
        action->setCheckable(true);
        action->setChecked(!m_table->isColumnHidden(column));
        connect(action, &QAction::toggled, this, [this, column](bool on) { m_table->setColumnHidden(column, !on); });
    }
    menu.exec(m_table->horizontalHeader()->mapToGlobal(at));
}

void PartViews::setHome(const QString& home)
{
    m_home = home;
    m_pictures->setHome(home);
    m_table->horizontalHeader()->restoreState(ViewState::load(home, columnsName));
    m_table->horizontalHeader()->setSortIndicator(PartTableModel::Time, Qt::DescendingOrder);
}

void PartViews::keepColumns() const
{
    ViewState::keep(m_home, columnsName, m_table->horizontalHeader()->saveState());
}

QVector<int> PartViews::columns() const
{
    QVector<int> shown;
    const QHeaderView* header = m_table->horizontalHeader();
    for (int i = 0; i < header->count(); ++i) {
        if (!header->isSectionHidden(header->logicalIndex(i)))
            shown.append(header->logicalIndex(i));
    }
    return shown;
}

void PartViews::setAsPictures(bool on)
{
    m_asPictures = on;
    if (currentWidget() != m_nothing)
        showParts(true);
    choose(chosen());
}

void PartViews::showParts(bool any)
{
    setCurrentWidget(!any ? static_cast<QWidget*>(m_nothing) : m_asPictures ? m_strip : m_table);
}

void PartViews::setWhyNone(const QString& text)
{
    m_nothing->setText(text);
}

QString PartViews::whyNone() const
{
    return m_nothing->text();
}

int PartViews::chosen() const
{
    return m_table->currentIndex().row();
}

void PartViews::choose(int part)
{
    if (part < 0)
        return;
    m_table->selectRow(part);
    m_strip->setCurrentIndex(m_pictures->placeOf(part));
    emit partChosen();
}

bool PartViews::isAtNewest() const
{
    return m_table->verticalScrollBar()->value() == 0 && m_strip->verticalScrollBar()->value() == 0;
}

/// As many small pictures abreast as there is room for.
bool PartViews::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_strip->viewport() && event->type() == QEvent::Resize)
        m_pictures->setAbreast(m_strip->viewport()->width() / PartPictureDelegate::sizeFor(m_strip).width());
    const bool view = watched == m_table || watched == m_strip;
    if (view && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            emit entered();
            return true;
        }
    }
    return QStackedWidget::eventFilter(watched, event);
}
