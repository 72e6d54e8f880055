#include "results/parts/PartDetail.h"

#include "common/ImageFile.h"
#include "common/forms/DialogForm.h"
#include "results/data/ReviewStore.h"
#include "results/parts/PartTexts.h"
#include "viewer/ksImgViewer.h"

#include <QCheckBox>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int noteMs = 800;
constexpr int commentLines = 3;
constexpr int valueLines = 8;

QString rowOf(const QString& caption, const QString& value)
{
    return value.isEmpty() ? QString()
                           : QStringLiteral("<tr><td style='padding-right:10px'>%1</td><td><b>%2</b></td></tr>")
                                 .arg(caption.toHtmlEscaped(), value.toHtmlEscaped());
}

} // namespace

PartDetail::PartDetail(QWidget* parent)
    : QWidget(parent)
    , m_viewer(new ksImgViewer(this))
    , m_said(new QLabel(this))
    , m_values(new QLabel(this))
    , m_source(new QCheckBox(this))
    , m_designer(new QPushButton(this))
    , m_mark(new QCheckBox(this))
    , m_comment(new QPlainTextEdit(this))
    , m_settled(new QTimer(this))
    , m_reading(Background::AtEnd::Abandon)
{
    auto* picture = new QWidget(this);
    auto* stack = new QStackedLayout(picture);
    stack->addWidget(m_said);
    stack->addWidget(m_viewer);
    picture->setMinimumSize(280, 200);
    m_said->setAlignment(Qt::AlignCenter);
    m_said->setWordWrap(true);
    m_values->setTextFormat(Qt::RichText);
    m_values->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_values->setWordWrap(true);
    auto* values = new QScrollArea(this);
    values->setWidget(m_values);
    values->setWidgetResizable(true);
    values->setFrameShape(QFrame::NoFrame);
    values->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    values->setFixedHeight(m_values->fontMetrics().lineSpacing() * valueLines);
    m_values->setAlignment(Qt::AlignTop);
    m_comment->setFixedHeight(m_comment->fontMetrics().lineSpacing() * commentLines + 14);
    m_comment->setTabChangesFocus(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_source);
    buttons->addWidget(m_mark);
    buttons->addStretch();
    buttons->addWidget(m_designer);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(picture, 1);
    column->addLayout(buttons);
    column->addWidget(values);
    column->addWidget(m_comment);
    m_designer->hide();
    m_settled->setSingleShot(true);
    m_settled->setInterval(noteMs);
    DialogForm::prepareFields(this);
    retranslate();
    show(std::nullopt);

    connect(m_source, &QAbstractButton::toggled, this, &PartDetail::showPicture);
    connect(m_settled, &QTimer::timeout, this, &PartDetail::note);
    connect(m_mark, &QAbstractButton::clicked, this, [this] {
        m_changed = true;
        note();
    });
    connect(m_comment, &QPlainTextEdit::textChanged, this, [this] {
        m_changed = true;
        m_settled->start();
    });
    connect(m_designer, &QAbstractButton::clicked, this,
            [this] { emit designerWanted(this->picture(true), m_part->part.model, m_part->part.station); });
}

PartDetail::~PartDetail()
{
    note();
}

void PartDetail::comment()
{
    m_comment->setFocus();
}

void PartDetail::setHome(const QString& home)
{
    show(std::nullopt);
    m_home = home;
}

void PartDetail::setDesigner(bool there)
{
    m_designer->setVisible(there);
}

QString PartDetail::picture(bool source) const
{
    const QString& below = source ? m_part->part.sourceImage : m_part->resultImage;
    return below.isEmpty() ? QString() : m_home + below;
}

/// Reading the table anew takes nothing away from under a hand that writes.
void PartDetail::show(const std::optional<PartRow>& part)
{
    if (part && m_part && part->uid == m_part->uid && part->wall == m_part->wall &&
        (m_changed || (part->marked == m_part->marked && part->comment == m_part->comment)))
        return;
    note();
    m_part = part;
    for (QWidget* each :
         {static_cast<QWidget*>(m_source), static_cast<QWidget*>(m_mark), static_cast<QWidget*>(m_comment)})
        each->setEnabled(part.has_value());
    m_designer->setEnabled(part && !part->part.sourceImage.isEmpty());
    {
        const QSignalBlocker quiet(m_comment);
        m_mark->setChecked(part && part->marked);
        m_comment->setPlainText(part ? part->comment : QString());
    }
    if (part && part->resultImage.isEmpty() != part->part.sourceImage.isEmpty()) {
        const QSignalBlocker quiet(m_source);
        m_source->setChecked(part->resultImage.isEmpty());
    }
    retranslate();
    showPicture();
}

/// The last one asked for is shown, whatever the order in which they come.
void PartDetail::showPicture()
{
    const int number = ++m_pictures;
    auto* stack = static_cast<QStackedLayout*>(m_said->parentWidget()->layout());
    const auto say = [this, stack](const QString& text) {
        m_said->setText(text);
        stack->setCurrentWidget(m_said);
    };
    if (!m_part)
        return say(tr("选择一个工件查看图像"));
    const QString path = picture(m_source->isChecked());
    if (path.isEmpty())
        return say(tr("没有保存图像"));
    m_reading.clear();
    m_reading.run([path] { return QFileInfo::exists(path) ? ImageFile::read(path) : ImageFile(); },
                  [this, number, stack, say](const ImageFile& file) {
                      if (number != m_pictures)
                          return;
                      if (file.image.isNull())
                          return say(file.path.isEmpty() ? tr("图像已被清理") : file.problem());
                      m_viewer->setImage(file.image);
                      stack->setCurrentWidget(m_viewer);
                  });
}

void PartDetail::note()
{
    m_settled->stop();
    if (!m_part || !std::exchange(m_changed, false))
        return;
    m_part->marked = m_mark->isChecked();
    m_part->comment = m_comment->toPlainText().left(ReviewStore::maxComment);
    emit reviewed(m_part->uid, m_part->wall, m_part->marked, m_part->comment);
}

void PartDetail::retranslate()
{
    m_source->setText(tr("相机原图"));
    m_mark->setText(tr("标记"));
    m_designer->setText(tr("在设计器中打开"));
    m_designer->setToolTip(m_part && m_part->part.sourceImage.isEmpty()
                               ? tr("没有保存相机原图：请在系统设置中打开该工位的“原始图像”")
                               : tr("用该型号现在的参数重新检测相机原图"));
    m_comment->setPlaceholderText(tr("备注"));
    if (!m_part)
        return m_values->clear();
    const PartRecord& part = m_part->part;
    const QString values =
        rowOf(tr("时间"), PartTexts::time(m_part->wall)) +
        rowOf(tr("工位和型号"), PartTexts::station(part.station) + QStringLiteral("  ") + part.model) +
        rowOf(tr("结果"), PartTexts::outcome(part.outcome)) + rowOf(tr("原因"), PartTexts::reason(*m_part)) +
        rowOf(tr("角度, X, Y"), QStringLiteral("%1°  %2  %3")
                                    .arg(PartTexts::sent(part.angle), PartTexts::sent(part.x, m_part->placed),
                                         PartTexts::sent(part.y, m_part->placed))) +
        rowOf(tr("依据"), QString(m_part->evidence).replace(QLatin1Char(';'), QStringLiteral("; ")));
    m_values->setText(QStringLiteral("<table>%1</table>").arg(values));
}

void PartDetail::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
