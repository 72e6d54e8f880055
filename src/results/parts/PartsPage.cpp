#include "results/parts/PartsPage.h"

#include "common/forms/InlineMessage.h"
#include "results/data/ReviewStore.h"
#include "results/export/forms/ExportBar.h"
#include "results/export/forms/ExportMenus.h"
#include "results/parts/PartDetail.h"
#include "results/parts/PartFilterBar.h"
#include "results/parts/PartTableModel.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QSplitter>
#include <QTableView>
#include <QVBoxLayout>

namespace {

/// Shown at first; the others by the header's menu.
const int hiddenAtFirst[] = {PartTableModel::PlcIndex, PartTableModel::ImageMs, PartTableModel::ResultMs,
                             PartTableModel::User, PartTableModel::Calibration};

void letColumnsBeChosen(QTableView* view)
{
    QHeaderView* header = view->horizontalHeader();
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(header, &QWidget::customContextMenuRequested, view, [view, header](const QPoint& at) {
        QMenu menu;
        for (int column = 1; column < view->model()->columnCount(); ++column) {
            QAction* action = menu.addAction(view->model()->headerData(column, Qt::Horizontal).toString());
            action->setCheckable(true);
            action->setChecked(!view->isColumnHidden(column));
            QObject::connect(action, &QAction::toggled, view,
                             [view, column](bool on) { view->setColumnHidden(column, !on); });
        }
        menu.exec(header->mapToGlobal(at));
    });
}

void setUpTable(QTableView* view)
{
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setAlternatingRowColors(true);
    view->setSortingEnabled(true);
    view->setWordWrap(false);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 12);
    QHeaderView* header = view->horizontalHeader();
    header->setSortIndicator(PartTableModel::Time, Qt::DescendingOrder);
    header->setHighlightSections(false);
    const QFontMetrics metrics = view->fontMetrics();
    const auto width = [&](int column, const char* widest) {
        view->setColumnWidth(column, metrics.horizontalAdvance(QString::fromUtf8(widest)) + 24);
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
        view->hideColumn(column);
    letColumnsBeChosen(view);
}

} // namespace

PartsPage::PartsPage(QWidget* parent)
    : QWidget(parent)
    , m_filter(new PartFilterBar(this))
    , m_message(new InlineMessage(this))
    , m_table(new PartTableModel(this))
    , m_view(new QTableView(this))
    , m_count(new QLabel(this))
    , m_exports(new ExportBar(this))
    , m_detail(new PartDetail(this))
    , m_models(Background::AtEnd::Wait)
    , m_reviews(Background::AtEnd::Finish)
{
    m_view->setModel(m_table);
    setUpTable(m_view);
    auto* left = new QWidget(this);
    auto* table = new QVBoxLayout(left);
    table->setContentsMargins(0, 0, 0, 0);
    table->addWidget(m_view, 1);
    table->addWidget(m_count);
    table->addWidget(m_exports);
    auto* sides = new QSplitter(this);
    sides->addWidget(left);
    sides->addWidget(m_detail);
    sides->setStretchFactor(0, 3);
    sides->setStretchFactor(1, 2);
    sides->setChildrenCollapsible(false);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_filter);
    column->addWidget(m_message);
    column->addWidget(sides, 1);
    m_message->sayOrHide(Tone::Plain, {});

    offerExports();
    connect(m_filter, &PartFilterBar::changed, this, &PartsPage::take);
    connect(m_table, &PagedTableBase::refreshed, this, &PartsPage::onRefreshed);
    connect(m_table, &PagedTableBase::loaded, this, &PartsPage::showChosen);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &PartsPage::showChosen);
    connect(m_detail, &PartDetail::designerWanted, this, &PartsPage::designerWanted);
    connect(m_detail, &PartDetail::reviewed, this, &PartsPage::store);
}

void PartsPage::setHome(const QString& home)
{
    m_home = home;
    m_table->setHome(home);
    m_detail->setHome(home);
    refresh();
}

void PartsPage::setShifts(const Shifts& shifts)
{
    m_shifts = shifts;
    m_filter->setShifts(shifts);
}

/// The columns as they are ordered and shown.
void PartsPage::offerExports()
{
    ExportMenus::addParts(m_exports, [this] {
        ExportMenus::Parts shown;
        shown.table.home = m_home;
        shown.table.filter = m_table->filter();
        shown.table.by = m_table->sortColumn();
        shown.table.order = m_table->sortOrder();
        shown.shifts = m_shifts;
        const QHeaderView* header = m_view->horizontalHeader();
        for (int i = 0; i < header->count(); ++i) {
            if (!header->isSectionHidden(header->logicalIndex(i)))
                shown.table.columns.append(header->logicalIndex(i));
        }
        return shown;
    });
}

void PartsPage::setDesigner(bool there)
{
    m_detail->setDesigner(there);
}

void PartsPage::refresh()
{
    take();
    const auto read = [home = m_home] {
        PartReader reader(home);
        return reader.open() ? reader.models() : QStringList();
    };
    m_models.run(read, [this](const QStringList& models) { m_filter->setModels(models); });
}

void PartsPage::take()
{
    const QString problem = m_filter->problem();
    m_message->sayOrHide(Tone::Warning, problem);
    if (!problem.isEmpty() || m_home.isEmpty())
        return;
    m_table->setFilter(m_filter->filter());
    m_table->refresh();
}

void PartsPage::onRefreshed(int parts, const QString& error)
{
    m_parts = parts;
    m_message->sayOrHide(Tone::Error, error);
    m_count->setText(tr("%1 个工件").arg(QLocale().toString(parts)));
    if (parts > 0)
        m_view->selectRow(0);
    showChosen();
}

void PartsPage::showChosen()
{
    const PartRow* part = m_table->rowAt(m_view->currentIndex().row());
    m_detail->show(part ? std::optional(*part) : std::nullopt);
}

void PartsPage::showFailures(int station)
{
    m_filter->setFilter(PartFilterBar::Today, station, false, true, true);
}

void PartsPage::showTimes(const QDateTime& from, const QDateTime& to)
{
    m_filter->setFilter(PartFilterBar::Own, 0, true, true, true);
    m_filter->setTimes(from, to);
}

PartFilter PartsPage::filter() const
{
    return m_table->filter();
}

/// The part alone, around which the table shows its minute.
void PartsPage::showPart(qint64 uid)
{
    const auto read = [home = m_home, uid] {
        PartReader reader(home);
        return reader.open() ? reader.row(uid) : std::nullopt;
    };
    m_models.run(read, [this](const std::optional<PartRow>& part) {
        if (part)
            m_detail->show(part);
    });
}

void PartsPage::store(qint64 uid, qint64 wall, bool marked, const QString& comment)
{
    m_table->setReview(uid, marked, comment);
    const ReviewStore::Review review{uid, wall, marked, comment, m_user ? m_user() : QString()};
    m_reviews.run([home = m_home, review] { return ReviewStore::store(home, review); },
                  [this](const QString& error) { m_message->sayOrHide(Tone::Error, error); });
}

void PartsPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        m_count->setText(tr("%1 个工件").arg(QLocale().toString(m_parts)));
}
