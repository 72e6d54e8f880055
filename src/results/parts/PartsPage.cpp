#include "results/parts/PartsPage.h"

#include "common/forms/DialogForm.h"
#include "common/forms/InlineMessage.h"
#include "db/PartTable.h"
#include "results/ViewState.h"
#include "results/data/ReviewStore.h"
#include "results/export/forms/ExportBar.h"
#include "results/export/forms/ExportMenus.h"
#include "results/parts/PartDetail.h"
#include "results/parts/PartFilterBar.h"
#include "results/parts/PartPictures.h"
#include "results/parts/PartTableModel.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QTableView>
#include <QVBoxLayout>

#include <utility>

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

/// A later version with other columns does not take them for its own.
const QString columnsName = QStringLiteral("Parts/Columns%1").arg(PartTableModel::ColumnCount);
const QString sidesName = QStringLiteral("Parts/Sides");

void setUpStrip(QTableView* view, PartPictures* pictures)
{
    view->setModel(pictures);
    view->setItemDelegate(new PartPictureDelegate(view));
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setShowGrid(false);
    view->horizontalHeader()->hide();
    view->verticalHeader()->hide();
    const QSize cell = PartPictureDelegate::sizeFor(view);
    view->horizontalHeader()->setDefaultSectionSize(cell.width());
    view->verticalHeader()->setDefaultSectionSize(cell.height());
    view->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void setUpTable(QTableView* view)
{
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setAlternatingRowColors(true);
    view->setSortingEnabled(true);
    view->setWordWrap(false);
    view->verticalHeader()->hide();
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
    , m_pictures(new PartPictures(*m_table, this))
    , m_views(new QStackedWidget(this))
    , m_view(new QTableView(this))
    , m_strip(new QTableView(this))
    , m_nothing(new QLabel(this))
    , m_count(new QLabel(this))
    , m_exports(new ExportBar(this))
    , m_asPictures(new QPushButton(this))
    , m_detail(new PartDetail(this))
    , m_sides(new QSplitter(this))
    , m_models(Background::AtEnd::Wait)
    , m_reviews(Background::AtEnd::Finish)
{
    m_view->setModel(m_table);
    m_view->setObjectName(QStringLiteral("partTable"));
    m_strip->setObjectName(QStringLiteral("partPictures"));
    setUpTable(m_view);
    setUpStrip(m_strip, m_pictures);
    build();
    retranslate();
    offerExports();
    connect(m_filter, &PartFilterBar::changed, this, [this] {
        m_chosen = std::exchange(m_wanted, -1);
        take();
    });
    connect(m_table, &PagedTableBase::refreshed, this, &PartsPage::onRefreshed);
    connect(m_table, &PagedTableBase::searched, this, &PartsPage::onSearched);
    connect(m_table, &PagedTableBase::counted, this, &PartsPage::onCounted);
    connect(m_table, &PagedTableBase::loaded, this, &PartsPage::showChosen);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &PartsPage::showChosen);
    connect(m_strip->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& place) {
        if (const int part = m_pictures->partAt(place); part >= 0)
            m_view->selectRow(part);
    });
    connect(m_asPictures, &QAbstractButton::toggled, this, [this](bool on) {
        m_views->setCurrentWidget(on ? m_strip : m_view);
        choose(m_view->currentIndex().row());
    });
    connect(m_detail, &PartDetail::designerWanted, this, &PartsPage::designerWanted);
    connect(m_detail, &PartDetail::reviewed, this, &PartsPage::store);
}

/// What is being noted is stored while the page can still do it.
PartsPage::~PartsPage()
{
    delete m_detail;
}

void PartsPage::build()
{
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->setWordWrap(true);
    m_asPictures->setCheckable(true);
    for (QWidget* view :
         {static_cast<QWidget*>(m_view), static_cast<QWidget*>(m_strip), static_cast<QWidget*>(m_nothing)})
        m_views->addWidget(view);
    auto* left = new QWidget(this);
    auto* foot = new QHBoxLayout;
    foot->addWidget(m_count, 1);
    foot->addWidget(m_asPictures);
    auto* table = new QVBoxLayout(left);
    table->setContentsMargins(0, 0, 0, 0);
    table->addWidget(m_views, 1);
    table->addLayout(foot);
    table->addWidget(m_exports);
    m_sides->addWidget(left);
    m_sides->addWidget(m_detail);
    m_sides->setStretchFactor(0, 3);
    m_sides->setStretchFactor(1, 2);
    m_sides->setChildrenCollapsible(false);
    auto* column = new QVBoxLayout(this);
    column->addWidget(m_filter);
    column->addWidget(m_message);
    column->addWidget(m_sides, 1);
    m_message->sayOrHide(Tone::Plain, {});
    DialogForm::prepareFields(this);
    m_strip->viewport()->installEventFilter(this);
    for (QTableView* view : {m_view, m_strip})
        view->installEventFilter(this);
}

void PartsPage::setHome(const QString& home)
{
    keepLayout();
    m_home = home;
    m_chosen = -1;
    m_table->setHome(home);
    m_pictures->setHome(home);
    m_detail->setHome(home);
    restoreLayout();
}

void PartsPage::restoreLayout()
{
    m_view->horizontalHeader()->restoreState(ViewState::load(m_home, columnsName));
    m_view->horizontalHeader()->setSortIndicator(PartTableModel::Time, Qt::DescendingOrder);
    m_sides->restoreState(ViewState::load(m_home, sidesName));
}

void PartsPage::keepLayout() const
{
    ViewState::keep(m_home, columnsName, m_view->horizontalHeader()->saveState());
    ViewState::keep(m_home, sidesName, m_sides->saveState());
}

void PartsPage::hideEvent(QHideEvent* event)
{
    keepLayout();
    QWidget::hideEvent(event);
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

void PartsPage::find()
{
    m_filter->find();
}

void PartsPage::refresh()
{
    take();
    const auto read = [home = m_home] {
        PartReader reader(home);
        return reader.open() ? reader.models() : QStringList();
    };
    m_models.clear();
    m_models.run(read, [this](const QStringList& models) { m_filter->setModels(models); });
}

void PartsPage::follow()
{
    if (m_view->verticalScrollBar()->value() == 0 && m_strip->verticalScrollBar()->value() == 0)
        take();
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

/// A part that somebody looks at stays; otherwise the newest is shown.
void PartsPage::onRefreshed(int parts, const QString& error, bool frozen)
{
    m_counted = false;
    if (error.isEmpty() && frozen)
        m_message->sayOrHide(Tone::Plain, tr("该文件夹不能写入，只能查看"));
    else
        m_message->sayOrHide(Tone::Error, error);
    m_nothing->setText(error.isEmpty() ? nothingText() : QString());
    showViews(parts);
}

QString PartsPage::nothingText()
{
    return tr("没有符合条件的工件。\n请选择更长的时间，或放宽工位、型号、结果和文字条件。");
}

void PartsPage::showViews(int parts)
{
    m_parts = parts;
    m_asPictures->setEnabled(parts > 0);
    m_views->setCurrentWidget(parts == 0                  ? static_cast<QWidget*>(m_nothing)
                              : m_asPictures->isChecked() ? m_strip
                                                          : m_view);
    int at = m_chosen < 0 && parts > 0 ? 0 : -1;
    for (int row = 0; at < 0 && m_table->rowAt(row); ++row)
        at = m_table->rowAt(row)->uid == m_chosen ? row : -1;
    if (at >= 0)
        choose(at);
    if (parts == 0)
        m_detail->show(std::nullopt);
}

/// What is found turns up by and by.
void PartsPage::onSearched(int percent)
{
    const QString text = tr("正在查找更早的工件：已查 %1%").arg(percent);
    m_count->setText(text);
    if (m_table->rowCount() == 0)
        m_nothing->setText(text);
    else if (m_parts == 0)
        showViews(m_table->rowCount());
}

void PartsPage::onCounted(int parts)
{
    if (parts > 0 && m_parts == 0)
        showViews(parts);
    if (parts == 0 && m_table->rowCount() == 0 && !m_nothing->text().isEmpty())
        m_nothing->setText(nothingText());
    m_parts = parts;
    m_counted = true;
    showCount();
}

void PartsPage::showCount()
{
    m_count->setText(tr("%1 个工件").arg(QLocale().toString(m_parts)));
}

void PartsPage::choose(int part)
{
    if (part < 0)
        return;
    m_view->selectRow(part);
    m_strip->setCurrentIndex(m_pictures->placeOf(part));
    showChosen();
}

void PartsPage::showChosen()
{
    const PartRow* part = m_table->rowAt(m_view->currentIndex().row());
    if (!part)
        return;
    m_chosen = part->uid;
    m_detail->show(*part);
}

void PartsPage::showDay(int station, bool failuresOnly)
{
    m_filter->setFilter(PartFilterBar::Today, station, !failuresOnly, true, true);
    m_asPictures->setChecked(failuresOnly);
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

/// Chosen when the table comes; one that stands too far down in it is shown beside it all the same.
void PartsPage::showPartAt(int station, qint64 wall)
{
    const auto read = [home = m_home, station, wall] {
        PartReader reader(home);
        return reader.open() ? reader.partAt(station, wall) : std::nullopt;
    };
    m_models.run(read, [this, station, wall](const std::optional<PartRow>& part) {
        constexpr int aroundSeconds = 60;
        const QDateTime time = PartTable::timeOf(wall);
        m_wanted = part ? part->uid : -1;
        m_filter->setFilter(PartFilterBar::Own, station, true, true, true);
        m_filter->setTimes(time.addSecs(-aroundSeconds), time.addSecs(aroundSeconds));
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

void PartsPage::retranslate()
{
    m_asPictures->setText(tr("小图"));
    m_asPictures->setToolTip(tr("以小图代替表格"));
    showCount();
}

void PartsPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    retranslate();
    if (m_parts == 0)
        take();
}

/// As many small pictures abreast as there is room for; Enter leads from a part to its comment.
bool PartsPage::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_strip->viewport() && event->type() == QEvent::Resize)
        m_pictures->setAbreast(m_strip->viewport()->width() / PartPictureDelegate::sizeFor(m_strip).width());
    const bool view = watched == m_view || watched == m_strip;
    if (view && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_detail->comment();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
