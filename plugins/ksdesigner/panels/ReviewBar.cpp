#include "ReviewBar.h"

#include "common/ImageFile.h"
#include "ui_ReviewBar.h"

#include <QAction>

namespace {

constexpr double reach = 4; // hole radii shown to each side, as in an example

/// The surroundings of the place, as large as an example's, or as a twentieth of the wheel where the hole's size is not
/// known.
QImage surroundings(const QImage& image, const TaskResult& result)
{
    const double radius = result.holeRadius > 0 ? result.holeRadius : qMax(4.0, result.hubRadius / 40);
    const double half = reach * radius;
    return image.copy(QRectF(result.hole.x() - half, result.hole.y() - half, 2 * half, 2 * half).toRect());
}

} // namespace

ReviewBar::ReviewBar(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::ReviewBar>())
{
    m_ui->setupUi(this);
    m_hole = new QAction(tr("这是气门孔"), this);
    m_hole->setShortcut(Qt::Key_Y);
    m_rejected = new QAction(tr("这不是气门孔"), this);
    m_rejected->setShortcut(Qt::Key_N);
    for (QAction* answer : answers())
        answer->setShortcutContext(Qt::WidgetShortcut);
    connect(m_ui->holeButton, &QPushButton::clicked, m_hole, &QAction::trigger);
    connect(m_ui->rejectButton, &QPushButton::clicked, m_rejected, &QAction::trigger);
    connect(m_hole, &QAction::triggered, this, [this] { emit judged(IModelExamples::Kind::Hole); });
    connect(m_rejected, &QAction::triggered, this, [this] { emit judged(IModelExamples::Kind::Rejected); });
    clear();
}

ReviewBar::~ReviewBar() = default;

void ReviewBar::clear()
{
    setRow({});
}

void ReviewBar::setTeachable(bool teachable)
{
    m_teachable = teachable;
    updateState();
}

void ReviewBar::setRow(const BatchRow& row)
{
    m_row = row;
    m_background.clear();
    m_ui->picture->clear();
    if (row.judged().found)
        m_background.run([path = row.path] { return ImageFile::read(path); },
                         [this](const ImageFile& file) { showPlace(file); });
    updateState();
}

void ReviewBar::showPlace(const ImageFile& file)
{
    if (file.path != m_row.path || file.image.isNull())
        return;
    const QImage place = surroundings(file.image, m_row.judged());
    m_ui->picture->setPixmap(
        QPixmap::fromImage(place.scaled(m_ui->picture->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void ReviewBar::updateState()
{
    const bool found = m_row.judged().found;
    for (QAction* answer : answers())
        answer->setEnabled(found && m_teachable);
    m_ui->holeButton->setEnabled(m_hole->isEnabled());
    m_ui->rejectButton->setEnabled(m_rejected->isEnabled());
    m_ui->text->setText(!m_teachable           ? tr("内置型号不能学习示例，请先新建或复制型号。")
                        : m_row.path.isEmpty() ? tr("选择一行，核对找到的位置。确认后加入型号的示例。")
                        : found                ? m_row.name
                                : tr("这张图像没有找到孔。双击打开后，在图像上右击孔的位置。"));
}
