#include "common/forms/NumberField.h"
#include "db/SqlText.h"
#include "guided/stepper/PictureDesk.h"
#include "guided/teaching/TeachingPages.h"
#include "workflow/ModelManager.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int largestIndex = 32767;
}

NamePage::NamePage(TeachingDraft& draft, const ModelManager& models, PictureDesk& desk)
    : m_draft(draft)
    , m_models(models)
    , m_nameCaption(new QLabel(this))
    , m_name(new QLineEdit(this))
    , m_indexCaption(new QLabel(this))
    , m_index(new NumberField(this))
    , m_stationCaption(new QLabel(this))
    , m_stations(new QComboBox(this))
    , m_capture(new QPushButton(this))
    , m_archive(new QPushButton(this))
    , m_file(new QPushButton(this))
    , m_source(new QLabel(this))
{
    m_name->setObjectName(QStringLiteral("nameEdit"));
    m_name->setMaxLength(SqlText::maxNameLength);
    m_index->setObjectName(QStringLiteral("indexEdit"));
    m_index->setMinimum(1);
    m_index->setMaximum(largestIndex);
    m_stations->setObjectName(QStringLiteral("stationBox"));
    m_stations->addItems({QString(), QString()});
    m_capture->setObjectName(QStringLiteral("captureButton"));
    m_archive->setObjectName(QStringLiteral("archiveButton"));
    m_file->setObjectName(QStringLiteral("fileButton"));
    m_source->setWordWrap(true);
    auto* rows = new QVBoxLayout(this);
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_nameCaption, m_name, m_indexCaption, m_index, m_stationCaption, m_stations,
                                         m_capture, m_archive, m_file, m_source})
        rows->addWidget(widget);
    rows->addStretch(1);
    for (QPushButton* button : {m_capture, m_archive, m_file})
        button->setAutoDefault(false);
    connect(m_name, &QLineEdit::textEdited, this, &NamePage::take);
    connect(m_index, &QLineEdit::textEdited, this, &NamePage::take);
    connect(m_capture, &QPushButton::clicked, this, &NamePage::captureWanted);
    connect(m_archive, &QPushButton::clicked, this, &NamePage::archiveWanted);
    connect(m_file, &QPushButton::clicked, this, &NamePage::fileWanted);
    connect(m_stations, qOverload<int>(&QComboBox::activated), this, [this](int i) {
        m_draft.station = i + 1;
        emit stationChosen(i + 1);
    });
    connect(&desk, &PictureDesk::failed, this, [this](const QString& reason) {
        m_failure = reason;
        emit changed();
    });
    connect(&desk, &PictureDesk::taken, this, [this] { m_failure.clear(); });
}

void NamePage::begin(bool canCapture, bool onlyOne)
{
    m_failure.clear();
    m_name->setText(m_draft.name);
    m_index->setValue(m_draft.index);
    m_stations->setCurrentIndex(m_draft.station - 1);
    m_stations->setVisible(!onlyOne);
    m_stationCaption->setVisible(!onlyOne);
    setCanCapture(canCapture);
    m_name->setFocus();
    m_name->selectAll();
    emit changed();
}

void NamePage::setCanCapture(bool canCapture)
{
    m_canCapture = canCapture;
    m_capture->setEnabled(canCapture);
    m_capture->setToolTip(canCapture ? QString() : tr("此工位没有可以取像的相机"));
}

QString NamePage::hint() const
{
    return tr("输入型号名称和 PLC 索引，把轮毂放到相机下拍照；也可以用归档中最新的图像或图像文件。");
}

bool NamePage::isKnown() const
{
    return m_models.contains(m_draft.name);
}

QString NamePage::problem() const
{
    QString reason;
    if (!isKnown() && !m_models.isNewName(m_draft.name, &reason))
        return reason;
    if (!m_index->problem().isEmpty())
        return tr("PLC索引：%1").arg(m_index->problem());
    if (!m_models.isFreeIndex(m_draft.index, m_draft.name, &reason))
        return reason;
    if (m_draft.picture.isNull())
        return m_failure.isEmpty() ? tr("还没有图像") : m_failure;
    return {};
}

QString NamePage::warning() const
{
    if (isKnown())
        return tr("型号“%1”已经存在：保存时用新的参数代替它原来的参数").arg(m_draft.name);
    return m_failure;
}

void NamePage::enter()
{
    retranslate();
}

void NamePage::take()
{
    m_draft.name = m_name->text();
    m_draft.index = m_index->value();
    emit changed();
}

void NamePage::retranslate()
{
    m_nameCaption->setText(tr("型号名称"));
    m_indexCaption->setText(tr("PLC 索引"));
    m_stationCaption->setText(tr("图像来自"));
    for (int i = 0; i < 2; ++i)
        m_stations->setItemText(i, tr("工位%1").arg(i + 1));
    m_capture->setText(tr("拍照(&S)"));
    m_archive->setText(tr("归档中最新的图像(&L)"));
    m_file->setText(tr("图像文件(&F)…"));
    m_source->setText(m_draft.picture.isNull() ? QString() : tr("图像：%1").arg(m_draft.source));
}
