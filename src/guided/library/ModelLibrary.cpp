#include "guided/library/ModelLibrary.h"

#include "common/FingerSize.h"
#include "common/ImageFile.h"
#include "common/forms/DialogForm.h"
#include "common/forms/InlineMessage.h"
#include "config/ksGlobalConfig.h"
#include "guided/library/LibraryTable.h"
#include "results/data/PartReader.h"
#include "workflow/ModelManager.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QShowEvent>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

namespace {

const QSize thumbnailBox(80, 60);

} // namespace

ModelLibrary::ModelLibrary(const Parts& parts, QWidget* parent)
    : QWidget(parent)
    , m_parts(parts)
    , m_actions(parts.models, parts.engine)
    , m_table(new LibraryTable(this))
    , m_sorted(new QSortFilterProxyModel(this))
    , m_caption(new QLabel(this))
    , m_search(new QLineEdit(this))
    , m_count(new QLabel(this))
    , m_view(new QTableView(this))
    , m_message(new InlineMessage(this))
    , m_teach(new QPushButton(this))
    , m_copy{new QPushButton(this), new QPushButton(this)}
    , m_manage(new QPushButton(this))
    , m_refresh(new QPushButton(this))
{
    m_sorted->setSourceModel(m_table);
    m_sorted->setSortRole(LibraryTable::sortRole);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setSortLocaleAware(true);
    m_sorted->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setFilterKeyColumn(LibraryTable::Name);
    build();
    connectAll();
    retranslate();
    listModels();
}

void ModelLibrary::build()
{
    m_search->setObjectName(QStringLiteral("searchEdit"));
    m_search->setClearButtonEnabled(true);
    m_caption->setBuddy(m_search);
    m_count->setObjectName(QStringLiteral("countLabel"));
    m_message->setObjectName(QStringLiteral("message"));
    m_teach->setObjectName(QStringLiteral("teachButton"));
    m_copy[0]->setObjectName(QStringLiteral("copyTo1Button"));
    m_copy[1]->setObjectName(QStringLiteral("copyTo2Button"));
    m_manage->setObjectName(QStringLiteral("manageButton"));
    m_refresh->setObjectName(QStringLiteral("refreshButton"));
    m_view->setObjectName(QStringLiteral("libraryView"));
    m_view->setModel(m_sorted);
    m_view->setSortingEnabled(true);
    m_view->sortByColumn(LibraryTable::Name, Qt::AscendingOrder);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setTabKeyNavigation(false);
    m_view->setIconSize(thumbnailBox);
    m_view->setWordWrap(false);
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(thumbnailBox.height() + 6);
    m_view->horizontalHeader()->setSectionResizeMode(LibraryTable::Name, QHeaderView::Stretch);
    const int widths[] = {thumbnailBox.width() + 12, 0, 100, 100, 88, 88, 160, 160};
    for (int column = 0; column < LibraryTable::Columns; ++column)
        m_view->setColumnWidth(column, widths[column]);
    auto* top = new QHBoxLayout;
    top->addWidget(m_caption);
    top->addWidget(m_search, 1);
    top->addWidget(m_count);
    top->addWidget(m_refresh);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* button : {m_teach, m_copy[0], m_copy[1]})
        buttons->addWidget(button);
    buttons->addStretch(1);
    buttons->addWidget(m_manage);
    auto* rows = new QVBoxLayout(this);
    rows->addLayout(top);
    rows->addWidget(m_view, 1);
    rows->addWidget(m_message);
    rows->addLayout(buttons);
    for (QPushButton* button : {m_teach, m_copy[0], m_copy[1], m_manage, m_refresh}) {
        button->setAutoDefault(false);
        button->setMinimumHeight(fingerSize);
    }
    m_search->setMinimumHeight(fingerSize);
}

void ModelLibrary::connectAll()
{
    connect(&m_parts.models, &ModelManager::changed, this, &ModelLibrary::listModels);
    connect(&m_parts.models, &ModelManager::currentChanged, this, &ModelLibrary::listModels);
    connect(m_search, &QLineEdit::textChanged, m_sorted, &QSortFilterProxyModel::setFilterFixedString);
    connect(m_search, &QLineEdit::textChanged, this, &ModelLibrary::showChosen);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &ModelLibrary::showChosen);
    connect(m_view, &QTableView::doubleClicked, this, [this] { emit teachingWanted(chosen()); });
    connect(m_table, &LibraryTable::pictureWanted, this, &ModelLibrary::readPicture);
    connect(m_teach, &QPushButton::clicked, this, [this] { emit teachingWanted(chosen()); });
    connect(m_copy[0], &QPushButton::clicked, this, [this] { copyTo(1); });
    connect(m_copy[1], &QPushButton::clicked, this, [this] { copyTo(2); });
    connect(m_manage, &QPushButton::clicked, this, &ModelLibrary::managerWanted);
    connect(m_refresh, &QPushButton::clicked, this, &ModelLibrary::refresh);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, m_search, [this] { m_search->setFocus(); });
    connect(new QShortcut(Qt::Key_F5, this), &QShortcut::activated, this, &ModelLibrary::refresh);
}

QString ModelLibrary::solution(int station) const
{
    return m_parts.config.station(station).solution;
}

void ModelLibrary::refresh()
{
    listModels();
    readUses();
}

void ModelLibrary::listModels()
{
    const QString before = chosen();
    const ModelManager& models = m_parts.models;
    const PlcIndexTable::StationTable tables[] = {m_parts.indices.table(solution(1)),
                                                  m_parts.indices.table(solution(2))};
    QVector<LibraryTable::Row> rows;
    for (int i = 0; i < models.modelCount(); ++i) {
        LibraryTable::Row row;
        row.name = models.modelName(i);
        row.current = models.isCurrent(i);
        const SolutionParameters known = m_actions.engine().parameters(row.name);
        for (int s = 0; s < 2; ++s) {
            row.taught[s] = known.value(solution(s + 1)).value(QStringLiteral("taught")).toBool();
            row.index[s] = tables[s].value(row.name);
        }
        rows.append(row);
    }
    m_table->setRows(rows);
    for (int i = 0; i < m_sorted->rowCount(); ++i) {
        if (m_sorted->index(i, LibraryTable::Name).data().toString() == before)
            m_view->selectRow(i);
    }
    showChosen();
}

void ModelLibrary::readUses()
{
    m_background.clear();
    const auto read = [home = m_parts.home] {
        PartFilter filter;
        filter.from = QDateTime::currentDateTime().addDays(-days);
        PartReader reader(home);
        return reader.open() ? ModelUse::read(reader, filter) : QHash<QString, ModelUse>();
    };
    m_background.run(read, [this](const QHash<QString, ModelUse>& uses) { m_table->setUses(uses); });
}

void ModelLibrary::readPicture(const QString& model, qint64 part)
{
    m_table->setPicture(model, {}); // asked for once
    const auto read = [home = m_parts.home, part] {
        PartReader reader(home);
        const auto row = reader.open() ? reader.row(part) : std::optional<PartRow>();
        return row && !row->picture().isEmpty() ? ImageFile::readScaled(home + row->picture(), thumbnailBox) : QImage();
    };
    m_background.run(read, [this, model](const QImage& picture) {
        if (!picture.isNull())
            m_table->setPicture(model, picture);
    });
}

QString ModelLibrary::chosen() const
{
    const QModelIndexList rows = m_view->selectionModel()->selectedRows(LibraryTable::Name);
    return rows.isEmpty() ? QString() : rows.first().data().toString();
}

void ModelLibrary::showChosen()
{
    const QString name = chosen();
    const SolutionParameters known = m_actions.engine().parameters(name);
    const bool twoStations = !solution(1).isEmpty() && !solution(2).isEmpty() && solution(1) != solution(2);
    for (int s = 0; s < 2; ++s)
        m_copy[s]->setEnabled(twoStations && known.contains(solution(2 - s)));
    m_teach->setText(name.isEmpty() ? tr("引导示教(&T)…") : tr("重新示教“%1”(&T)…").arg(name));
    m_count->setText(tr("%1 / %2 个型号").arg(m_sorted->rowCount()).arg(m_table->rowCount()));
    m_message->clear();
}

void ModelLibrary::copyTo(int station)
{
    const QString name = chosen();
    const QVariantMap parameters = m_actions.engine().parameters(name).value(solution(3 - station));
    const ModelEntry entry = m_actions.entry(name);
    QString error;
    if (parameters.isEmpty() || entry.name.isEmpty())
        return;
    if (!m_actions.teach(entry, {{solution(station), parameters}}, &error))
        return m_message->say(Tone::Error, tr("未能复制“%1”：%2").arg(name, error));
    listModels();
    m_message->say(Tone::Plain, tr("“%1”的参数已复制到工位%2；孔的示例图像不随之复制").arg(name).arg(station));
    emit modelsChanged(m_actions.takeAudit());
}

void ModelLibrary::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        refresh();
    QWidget::showEvent(event);
}

void ModelLibrary::retranslate()
{
    m_caption->setText(tr("查找(&F)"));
    m_search->setPlaceholderText(tr("型号名称的一部分"));
    m_search->setAccessibleName(tr("查找型号"));
    m_copy[0]->setText(tr("2 → 1 复制(&1)"));
    m_copy[0]->setToolTip(tr("把工位2的参数复制到工位1"));
    m_copy[1]->setText(tr("1 → 2 复制(&2)"));
    m_copy[1]->setToolTip(tr("把工位1的参数复制到工位2"));
    m_manage->setText(tr("型号管理(&M)…"));
    m_refresh->setText(tr("刷新(&R)"));
    m_refresh->setToolTip(tr("最近 %1 天的记录，F5").arg(days));
    m_table->refreshTexts();
    showChosen();
}

void ModelLibrary::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

ModelLibraryDialog::ModelLibraryDialog(const ModelLibrary::Parts& parts, QWidget* parent)
    : QDialog(parent)
    , m_library(new ModelLibrary(parts, this))
{
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins({});
    rows->addWidget(m_library);
    setWindowTitle(tr("型号库"));
    resize(1000, 680);
}

void ModelLibraryDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        setWindowTitle(tr("型号库"));
    QDialog::changeEvent(event);
}
