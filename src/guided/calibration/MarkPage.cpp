#include "common/Background.h"
#include "common/forms/NumberField.h"
#include "guided/calibration/CalibrationPages.h"
#include "guided/calibration/CalibrationPicture.h"
#include "guided/stepper/Loupe.h"
#include "guided/vision/PointSnap.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace {
constexpr int fewestInRow = 3;
constexpr int mostInRow = 60;
} // namespace

MarkPage::MarkPage(CalibrationDraft& draft, CalibrationPicture& picture)
    : CalibrationPage(draft, picture)
    , m_background(std::make_unique<Background>(Background::AtEnd::Abandon))
{
    auto* rows = new QVBoxLayout(this);
    m_methodCaption = addCaption(rows);
    m_method = new QComboBox(this);
    m_method->setObjectName(QStringLiteral("methodBox"));
    m_method->addItems({QString(), QString(), QString()});
    rows->addWidget(m_method);
    m_table = new QTableWidget(4, 2, this);
    m_table->setObjectName(QStringLiteral("pixelTable"));
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->verticalHeader()->setDefaultSectionSize(40);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setTabKeyNavigation(false);
    m_table->setFixedHeight(4 * 36 + 28);
    rows->addWidget(m_table);
    m_snap = new QPushButton(this);
    m_snap->setObjectName(QStringLiteral("snapButton"));
    m_snap->setAutoDefault(false);
    rows->addWidget(m_snap);
    auto* size = new QGridLayout;
    m_columnsCaption = new QLabel(this);
    m_rowsCaption = new QLabel(this);
    m_columns = new NumberField(this);
    m_columns->setObjectName(QStringLiteral("columnsEdit"));
    m_rows = new NumberField(this);
    m_rows->setObjectName(QStringLiteral("rowsEdit"));
    for (NumberField* field : {m_columns, m_rows}) {
        field->setMinimum(fewestInRow);
        field->setMaximum(mostInRow);
    }
    size->addWidget(m_columnsCaption, 0, 0);
    size->addWidget(m_columns, 0, 1);
    size->addWidget(m_rowsCaption, 1, 0);
    size->addWidget(m_rows, 1, 1);
    rows->addLayout(size);
    m_find = new QPushButton(this);
    m_find->setObjectName(QStringLiteral("findButton"));
    m_find->setAutoDefault(false);
    rows->addWidget(m_find);
    m_found = addCaption(rows);
    m_found->setObjectName(QStringLiteral("foundLabel"));
    rows->addWidget(picture.loupe(), 0, Qt::AlignHCenter);
    rows->addStretch(1);
    connect(m_method, qOverload<int>(&QComboBox::activated), this, &MarkPage::chooseMethod);
    connect(m_table, &QTableWidget::currentCellChanged, this, [this](int row) { m_marker = std::max(0, row); });
    connect(m_table, &QTableWidget::cellChanged, this, &MarkPage::takeTyped);
    connect(m_snap, &QPushButton::clicked, this, [this] {
        move(m_marker, m_picture.snapped(m_draft.pixels[m_marker]).point);
        showPoints();
    });
    connect(m_find, &QPushButton::clicked, this, &MarkPage::findBoard);
    connect(&m_picture, &CalibrationPicture::clicked, this, &MarkPage::place);
    connect(&m_picture, &CalibrationPicture::markerMoved, this, &MarkPage::move);
}

MarkPage::~MarkPage() = default;

QString MarkPage::hint() const
{
    if (m_draft.method == CalibrationDraft::Method::Points)
        return tr("依次点击 %1 个点：点击会吸附到孔中心、角点或边缘；标记可以拖动，也可以用方向键微调（Shift 10 像素，"
                  "Ctrl 0.1 像素）。")
            .arg(m_draft.markers());
    return tr("数一数一行和一列有多少个点（棋盘格数内角点），找到后图上显示首点和 X 方向。");
}

QString MarkPage::problem() const
{
    return m_searching ? tr("正在查找标定板…") : m_draft.markerProblem();
}

void MarkPage::enter()
{
    m_marker = 0;
    m_searched = false;
    m_method->setCurrentIndex(int(m_draft.method));
    m_columns->setValue(m_draft.board.columns);
    m_rows->setValue(m_draft.board.rows);
    showValues();
    if (m_draft.method != CalibrationDraft::Method::Points && m_draft.found.isEmpty())
        findBoard();
}

void MarkPage::leave()
{
    m_picture.setSnapping(false);
}

void MarkPage::chooseMethod(int method)
{
    m_draft.method = CalibrationDraft::Method(method);
    m_draft.found.clear();
    m_searched = false;
    showValues();
    if (m_draft.method != CalibrationDraft::Method::Points)
        findBoard();
    emit changed();
}

void MarkPage::showValues()
{
    const bool byHand = m_draft.method == CalibrationDraft::Method::Points;
    m_table->setVisible(byHand);
    m_snap->setVisible(byHand);
    m_found->setVisible(!byHand);
    m_picture.loupe()->setVisible(byHand);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_columnsCaption, m_columns, m_rowsCaption, m_rows, m_find})
        widget->setVisible(!byHand);
    m_filling = true;
    for (int i = 0; i < 4; ++i) {
        m_table->setRowHidden(i, i >= m_draft.markers());
        m_table->setItem(i, 0, new QTableWidgetItem(QString::number(m_draft.pixels[i].x(), 'f', 2)));
        m_table->setItem(i, 1, new QTableWidgetItem(QString::number(m_draft.pixels[i].y(), 'f', 2)));
    }
    m_filling = false;
    choose(m_marker);
    m_picture.setSnapping(byHand && isVisible());
    showPoints();
    retranslate();
}

void MarkPage::choose(int marker)
{
    m_marker = marker;
    m_table->selectRow(marker);
}

/// A click puts the chosen marker there, and the next one's turn comes.
void MarkPage::place(const QPointF& point)
{
    if (!isVisible() || m_draft.method != CalibrationDraft::Method::Points)
        return;
    const int marker = m_marker;
    move(marker, point);
    showPoints();
    choose((marker + 1) % m_draft.markers());
}

void MarkPage::move(int marker, const QPointF& point)
{
    if (!isVisible() || m_draft.method != CalibrationDraft::Method::Points || marker < 0 || marker >= 4)
        return;
    m_draft.pixels[marker] = point;
    m_filling = true;
    m_table->item(marker, 0)->setText(QString::number(point.x(), 'f', 2));
    m_table->item(marker, 1)->setText(QString::number(point.y(), 'f', 2));
    m_filling = false;
    emit changed();
}

void MarkPage::takeTyped()
{
    if (m_filling)
        return;
    for (int i = 0; i < m_draft.markers(); ++i) {
        bool good[2] = {};
        const QPointF typed(m_table->item(i, 0)->text().toDouble(&good[0]),
                            m_table->item(i, 1)->text().toDouble(&good[1]));
        if (good[0] && good[1])
            m_draft.pixels[i] = typed;
    }
    showValues();
    emit changed();
}

void MarkPage::findBoard()
{
    if (m_searching || !m_columns->problem().isEmpty() || !m_rows->problem().isEmpty())
        return;
    m_draft.board.kind = m_draft.method == CalibrationDraft::Method::Circles ? CalibrationBoard::Kind::Circles
                                                                             : CalibrationBoard::Kind::Chessboard;
    m_draft.board.columns = m_columns->value();
    m_draft.board.rows = m_rows->value();
    m_draft.found.clear();
    m_searching = true;
    m_background->run([board = m_draft.board, gray = m_picture.gray()] { return board.find(gray); },
                      [this, size = m_draft.picture.size(), method = m_draft.method](const QVector<QPointF>& points) {
                          onFound(method == m_draft.method ? points : QVector<QPointF>(), size);
                      });
    retranslate();
    emit changed();
}

void MarkPage::onFound(const QVector<QPointF>& points, const QSize& picture)
{
    m_searching = false;
    m_searched = true;
    if (picture == m_draft.picture.size() && m_draft.method != CalibrationDraft::Method::Points)
        m_draft.found = points;
    if (isVisible())
        showPoints();
    retranslate();
    emit changed();
}

void MarkPage::retranslate()
{
    m_methodCaption->setText(tr("标定方法"));
    m_method->setItemText(0, m_draft.fourPoint ? tr("四个已知点") : tr("两个已知点"));
    m_method->setItemText(1, tr("棋盘格标定板"));
    m_method->setItemText(2, tr("圆点（圆环）标定板"));
    m_table->setHorizontalHeaderLabels({tr("X（像素）"), tr("Y（像素）")});
    m_table->setVerticalHeaderLabels(
        {QStringLiteral("P1"), QStringLiteral("P2"), QStringLiteral("P3"), QStringLiteral("P4")});
    m_snap->setText(tr("吸附选中的点(&A)"));
    m_columnsCaption->setText(tr("每行点数"));
    m_rowsCaption->setText(tr("行数"));
    m_find->setText(tr("重新查找(&F)"));
    m_find->setEnabled(!m_searching);
    const bool byHand = m_draft.method == CalibrationDraft::Method::Points;
    if (byHand || m_searching)
        m_found->setText({});
    else if (!m_draft.found.isEmpty())
        m_found->setText(tr("找到 %1 个点").arg(m_draft.found.size()));
    else
        m_found->setText(m_searched ? tr("没有找到：整块标定板都要在图像中，行数和每行点数要对，光照要均匀")
                                    : QString());
}
