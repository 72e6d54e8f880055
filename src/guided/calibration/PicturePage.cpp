#include "guided/calibration/CalibrationPages.h"
#include "guided/calibration/CalibrationPicture.h"
#include "guided/stepper/PictureDesk.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

PicturePage::PicturePage(CalibrationDraft& draft, CalibrationPicture& picture, PictureDesk& desk)
    : CalibrationPage(draft, picture)
{
    auto* rows = new QVBoxLayout(this);
    m_stationCaption = addCaption(rows);
    m_stations = new QComboBox(this);
    m_stations->setObjectName(QStringLiteral("stationBox"));
    m_stations->addItems({QString(), QString()});
    rows->addWidget(m_stations);
    const auto add = [&](const char* name) {
        auto* button = new QPushButton(this);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        rows->addWidget(button);
        return button;
    };
    m_capture = add("captureButton");
    m_file = add("fileButton");
    m_reference = add("referenceButton");
    m_source = addCaption(rows);
    m_source->setObjectName(QStringLiteral("sourceLabel"));
    rows->addStretch(1);
    connect(m_stations, qOverload<int>(&QComboBox::activated), this, [this](int i) { emit stationChosen(i + 1); });
    connect(m_capture, &QPushButton::clicked, this, &PicturePage::captureWanted);
    connect(m_file, &QPushButton::clicked, this, &PicturePage::fileWanted);
    connect(m_reference, &QPushButton::clicked, this, &PicturePage::referenceWanted);
    connect(&desk, &PictureDesk::failed, this, [this](const QString& reason) {
        m_failure = reason;
        emit changed();
    });
    connect(&desk, &PictureDesk::taken, this, [this] { m_failure.clear(); });
}

void PicturePage::setStation(int station, bool onlyOne, const QString& cameraKey, bool canCapture)
{
    m_failure.clear();
    m_camera = cameraKey;
    m_canCapture = canCapture;
    m_stations->setCurrentIndex(station - 1);
    m_stations->setVisible(!onlyOne);
    m_stationCaption->setVisible(!onlyOne);
    retranslate();
}

QString PicturePage::hint() const
{
    return tr("让标定板或有已知点的零件静止在相机下，拍照；也可以用图像文件或现有的标定图像。");
}

QString PicturePage::problem() const
{
    if (!m_failure.isEmpty() && m_draft.picture.isNull())
        return m_failure;
    return m_draft.picture.isNull() ? tr("还没有图像") : QString();
}

void PicturePage::enter()
{
    m_picture.setSnapping(false);
    showPoints();
    retranslate();
}

void PicturePage::retranslate()
{
    m_stationCaption->setText(tr("工位"));
    for (int i = 0; i < 2; ++i)
        m_stations->setItemText(i, tr("工位%1").arg(i + 1));
    m_capture->setText(tr("拍照(&S)"));
    m_capture->setEnabled(m_canCapture);
    m_capture->setToolTip(m_canCapture ? m_camera : tr("此工位没有可以取像的相机"));
    m_file->setText(tr("图像文件(&F)…"));
    m_reference->setText(tr("现有的标定图像(&R)"));
    if (!m_failure.isEmpty())
        m_source->setText(m_failure);
    else if (!m_draft.picture.isNull())
        m_source->setText(tr("图像：%1，%2 × %3 像素")
                              .arg(m_draft.source)
                              .arg(m_draft.picture.width())
                              .arg(m_draft.picture.height()));
    else
        m_source->setText({});
}
