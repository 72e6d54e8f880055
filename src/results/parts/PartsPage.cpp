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
#include "results/parts/PartTableModel.h"
#include "results/parts/PartViews.h"

#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include <utility>

namespace {

const QString sidesName = QStringLiteral("Parts/Sides");

} // namespace

PartsPage::PartsPage(QWidget* parent)
    : QWidget(parent)
    , m_filter(new PartFilterBar(this))
    , m_message(new InlineMessage(this))
    , m_table(new PartTableModel(this))
    , m_views(new PartViews(*m_table, this))
    , m_count(new QLabel(this))
    , m_exports(new ExportBar(this))
    , m_asPictures(new QPushButton(this))
    , m_detail(new PartDetail(this))
    , m_sides(new QSplitter(this))
    , m_models(Background::AtEnd::Wait)
    , m_looking(Background::AtEnd::Wait)
    , m_reviews(Background::AtEnd::Finish)
{
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
    connect(m_views, &PartViews::partChosen, this, &PartsPage::showChosen);
    connect(m_views, &PartViews::entered, m_detail, &PartDetail::comment);
    connect(m_asPictures, &QAbstractButton::toggled, m_views, &PartViews::setAsPictures);
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
    m_asPictures->setCheckable(true);
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
}

void PartsPage::setHome(const QString& home)
{
    keepLayout();
    m_home = home;
    m_chosen = -1;
    m_table->setHome(home);
    m_detail->setHome(home);
    m_views->setHome(home);
    m_sides->restoreState(ViewState::load(m_home, sidesName));
}

void PartsPage::keepLayout() const
{
    m_views->keepColumns();
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

void PartsPage::offerExports()
{
    ExportMenus::addParts(m_exports, [this] {
        ExportMenus::Parts shown;
        shown.table.home = m_home;
        shown.table.filter = m_table->filter();
        shown.table.by = m_table->sortColumn();
        shown.table.order = m_table->sortOrder();
        shown.shifts = m_shifts;
        shown.table.columns = m_views->columns();
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
        return reader.open() ? std::optional(reader.models()) : std::nullopt;
    };
    m_models.clear();
    m_models.run(read, [this](const std::optional<QStringList>& models) {
        if (models) // otherwise the chosen one stays
            m_filter->setModels(*models);
    });
}

void PartsPage::follow()
{
    if (m_views->isAtNewest())
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
    if (!error.isEmpty())
        m_count->clear();
    if (error.isEmpty() && frozen)
        m_message->sayOrHide(Tone::Plain, tr("该文件夹不能写入，只能查看"));
    else
        m_message->sayOrHide(Tone::Error, error);
    m_views->setWhyNone(error.isEmpty() ? nothingText() : QString());
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
    m_views->showParts(parts > 0);
    int at = m_chosen < 0 && parts > 0 ? 0 : -1;
    for (int row = 0; at < 0 && m_table->rowAt(row); ++row)
        at = m_table->rowAt(row)->uid == m_chosen ? row : -1;
    if (at >= 0)
        m_views->choose(at);
    if (parts == 0)
        m_detail->show(std::nullopt);
}

/// What is found turns up by and by.
void PartsPage::onSearched(int percent)
{
    const QString text = tr("正在查找更早的工件：已查 %1%").arg(percent);
    m_count->setText(text);
    if (m_table->rowCount() == 0)
        m_views->setWhyNone(text);
    else if (m_parts == 0)
        showViews(m_table->rowCount());
}

void PartsPage::onCounted(int parts)
{
    if (parts > 0 && m_parts == 0)
        showViews(parts);
    if (parts == 0 && m_table->rowCount() == 0 && !m_views->whyNone().isEmpty())
        m_views->setWhyNone(nothingText());
    m_parts = parts;
    m_counted = true;
    showCount();
}

void PartsPage::showCount()
{
    m_count->setText(tr("%1 个工件").arg(QLocale().toString(m_parts)));
}

void PartsPage::showChosen()
{
    const PartRow* part = m_table->rowAt(m_views->chosen());
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

void PartsPage::showPart(qint64 uid)
{
    const auto read = [home = m_home, uid] {
        PartReader reader(home);
        return reader.open() ? reader.row(uid) : std::nullopt;
    };
    m_looking.run(read, [this](const std::optional<PartRow>& part) {
        if (part)
            showAround(0, part->wall, part);
    });
}

void PartsPage::showPartAt(int station, qint64 wall)
{
    const auto read = [home = m_home, station, wall] {
        PartReader reader(home);
        return reader.open() ? reader.partAt(station, wall) : std::nullopt;
    };
    m_looking.run(read, [this, station, wall](const std::optional<PartRow>& part) { showAround(station, wall, part); });
}

/// Chosen when the table comes; one that stands too far down in it is shown beside it all the same.
void PartsPage::showAround(int station, qint64 wall, const std::optional<PartRow>& part)
{
    constexpr int aroundSeconds = 60;
    const QDateTime time = PartTable::timeOf(wall);
    m_wanted = part ? part->uid : -1;
    m_filter->setFilter(PartFilterBar::Own, station, true, true, true);
    m_filter->setTimes(time.addSecs(-aroundSeconds), time.addSecs(aroundSeconds));
    if (part)
        m_detail->show(part);
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
