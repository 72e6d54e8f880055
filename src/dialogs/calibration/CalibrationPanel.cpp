#include "dialogs/calibration/CalibrationPanel.h"

#include "common/forms/InlineMessage.h"
#include "config/ksGlobalConfig.h"
#include "dialogs/calibration/CalibrationDesk.h"
#include "dialogs/calibration/CalibrationDrawing.h"
#include "dialogs/calibration/CalibrationFit.h"
#include "graphics/ImageItem.h"
#include "platform/AppHome.h"
#include "ui_CalibrationPanel.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>

namespace {

constexpr int listedEarlier = 20;

const QString doneStyle = QStringLiteral("background-color: rgb(255, 168, 55);");
const QString refusedStyle = QStringLiteral("background-color: rgb(200, 68, 55);");
const QColor markerColor(255, 0, 255);
const QColor markerSelected(0, 255, 0);

/// Gives a label the height of so many lines of Chinese, which are taller than others, whatever it shows.
void keepLines(QLabel* label, int lines)
{
    label->setText(QStringLiteral("国\n").repeated(lines).chopped(1));
    label->setMinimumHeight(label->sizeHint().height());
    label->clear();
}

} // namespace

CalibrationPanel::CalibrationPanel(int station, int factLines, CalibrationHistory::Kind kind, QWidget* parent)
    : QGroupBox(parent)
    , m_station(station)
    , m_ui(std::make_unique<Ui::CalibrationPanel>())
    , m_history(station, kind)
{
    m_ui->setupUi(this);
    m_ui->earlierButton->setMenu(new QMenu(this));
    connect(m_ui->earlierButton->menu(), &QMenu::aboutToShow, this, &CalibrationPanel::listEarlier);
    // What they say comes and goes while a marker is dragged; the picture must not jump.
    keepLines(m_ui->label_facts, factLines);
    keepLines(m_ui->label_warning, 2);
    setTone(m_ui->label_warning, Tone::Warning);
    nameForStation({this});
    nameForStation(findChildren<QWidget*>());
}

CalibrationPanel::~CalibrationPanel() = default;

StationConfig& CalibrationPanel::config() const
{
    return ksGlobalConfig::instance()->station(m_station);
}

ksImgViewer* CalibrationPanel::viewer() const
{
    return m_ui->m_viewer;
}

QVector<QPushButton*> CalibrationPanel::buttons() const
{
    return {m_ui->m_pbLoadImg, m_ui->m_pbApply, m_ui->m_pbLock};
}

// The names of station 2 end in "_2"; one that names its station anyway ends in "_1" for station 1.
void CalibrationPanel::nameForStation(const QList<QWidget*>& widgets) const
{
    for (QWidget* widget : widgets) {
        const QString name = widget->objectName();
        if (m_station == 2 && !name.isEmpty() && !name.startsWith(QLatin1String("qt_")))
            widget->setObjectName((name.endsWith(QLatin1String("_1")) ? name.chopped(2) : name) + QStringLiteral("_2"));
    }
}

void CalibrationPanel::setForm(QWidget* form)
{
    nameForStation(form->findChildren<QWidget*>());
    const auto fields = form->findChildren<QLineEdit*>();
    for (auto* field : fields) {
        connect(field, &QLineEdit::textChanged, this, &CalibrationPanel::refreshHints);
        field->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
        if (field->isReadOnly()) {
            QPalette palette; // what cannot be typed does not look as if it could
            palette.setBrush(QPalette::Base, Qt::transparent);
            field->setPalette(palette);
        }
    }
    m_ui->formPlace->addWidget(form);
}

void CalibrationPanel::setWide(bool wide)
{
    m_ui->column->setDirection(wide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    m_ui->column->setStretch(0, wide ? 3 : 1);
    m_ui->column->setStretch(1, wide ? 2 : 0);
}

void CalibrationPanel::initialise()
{
    retranslateOwn();
    fillFields(config());
    recompute();
    showImage({});
    m_ui->m_viewer->setOverlays(machineOverlays(calibration(config())));
}

void CalibrationPanel::begin()
{
    const QString path = ReferenceImage::path(m_station);
    const QDateTime written = QFileInfo(path).lastModified();
    if (!m_replacing && written != m_shownSince) {
        m_shownSince = written;
        showImage(ReferenceImage::read(path));
    }
    showConfig();
}

void CalibrationPanel::showConfig()
{
    const bool locked = m_locked;
    fillFields(config());
    recompute();
    placeMarkers();
    setLocked(locked);
    m_ui->m_viewer->setOverlays(machineOverlays(calibration(config())));
    refreshHints();
}

void CalibrationPanel::showImage(const QImage& image)
{
    m_ui->m_viewer->setImage(image);
    if (!m_drawing)
        m_drawing = std::make_unique<PointDrawing>(m_ui->m_viewer->imageItem());
    placeMarkers();
    refreshHints();
}

void CalibrationPanel::placeMarkers()
{
    ksImgViewer* viewer = m_ui->m_viewer;
    const double size = ksGlobalConfig::instance()->pointCircle;
    viewer->removeAllRois();
    const QVector<Marker> all = markers();
    for (const Marker& marker : all)
        viewer->addPointRoi(fromCenter(*marker.point), markerColor, markerSelected, size, marker.name);
    viewer->showRoiHandles();
    setLocked(true);
}

QPoint CalibrationPanel::fromCenter(const QPoint& pixel) const
{
    const QSize size = m_ui->m_viewer->imageSize();
    return pixel - QPoint(size.width() / 2, size.height() / 2);
}

void CalibrationPanel::setLocked(bool locked)
{
    m_locked = locked;
    m_ui->m_viewer->lockRois(locked);
    m_ui->m_pbLock->setText(locked ? tr("解锁") : tr("上锁"));
    m_ui->m_pbLock->setIcon(
        QIcon(locked ? QStringLiteral(":/Resource/lock.png") : QStringLiteral(":/Resource/lock-open.png")));
}

void CalibrationPanel::press(const QString& name)
{
    if (name == QLatin1String("m_pbLoadImg")) {
        chooseImage();
    } else if (name == QLatin1String("m_pbApply")) {
        apply();
    } else if (name == QLatin1String("m_pbLock")) {
        setLocked(!m_locked);
        showMessage(m_locked ? tr("已上锁") : tr("已解锁"), doneStyle);
    }
}

void CalibrationPanel::moveMarker(const AwesomeRoiInfo& info, const QString& name)
{
    const QVector<Marker> all = markers();
    for (const Marker& marker : all) {
        if (marker.name != name)
            continue;
        *marker.point = {FieldNumber::truncated(info.center.x()), FieldNumber::truncated(info.center.y())};
        showPoint(name);
    }
    recompute();
    refreshHints();
}

void CalibrationPanel::showLocked()
{
    showMessage(tr("不能操作,请解锁"), refusedStyle);
}

void CalibrationPanel::chooseImage()
{
    m_chooser = new QFileDialog(this, tr("选择标定图"), platform::inHome(QStringLiteral("/DBFiles/SrcImages/")),
                                QStringLiteral("Image Files (*.png *.jpg *.bmp)"));
    m_chooser->setAttribute(Qt::WA_DeleteOnClose);
    m_chooser->setFileMode(QFileDialog::ExistingFile);
    connect(m_chooser, &QFileDialog::fileSelected, this, &CalibrationPanel::replaceReference);
    m_chooser->open();
}

void CalibrationPanel::replaceReference(const QString& chosen)
{
    if (chosen.isEmpty() || m_replacing)
        return;
    m_ui->m_pbLoadImg->setEnabled(false);
    QString target = ReferenceImage::path(m_station);
    target.replace(QLatin1Char('\\'), QLatin1Char('/'));
    m_replacing = true;
    m_background.run([target, chosen] { return ReferenceImage::replace(target, chosen); },
                     [this](const ReferenceImage::Replaced& replaced) { onReplaced(replaced); });
}

void CalibrationPanel::onReplaced(const ReferenceImage::Replaced& replaced)
{
    m_replacing = false;
    m_ui->m_pbLoadImg->setEnabled(true);
    m_shownSince = QFileInfo(ReferenceImage::path(m_station)).lastModified();
    showImage(replaced.image);
    if (!replaced.error.isEmpty())
        showMessage(tr("标定图像未保存：%1").arg(replaced.error), refusedStyle);
}

/// A field that is empty counts as 0; letters are a slip, whose 0 nobody meant.
void CalibrationPanel::apply()
{
    const QVector<QLineEdit*> fields = numberFields();
    for (const QLineEdit* field : fields) {
        bool isNumber = false;
        FieldNumber::value(field->text(), &isNumber);
        if (!isNumber && field->isModified() && !field->text().trimmed().isEmpty())
            return showMessage(tr("“%1”不是数字，没有应用").arg(field->text()), refusedStyle);
    }
    StationConfig wanted = config();
    store(wanted);
    propose(wanted, {}, tr("仍然应用"));
}

void CalibrationPanel::propose(const StationConfig& wanted, const QString& question, const QString& answer)
{
    QStringList sentences = doubts(config(), wanted);
    if (!question.isEmpty())
        sentences.prepend(question);
    if (sentences.isEmpty())
        return putIntoForce(wanted);
    const auto act = [this, wanted, restores = !question.isEmpty()] {
        putIntoForce(wanted);
        if (restores)
            showConfig();
    };
    m_ui->question->ask(sentences.join(QLatin1Char('\n')), {answer, act});
}

void CalibrationPanel::putIntoForce(const StationConfig& wanted)
{
    const auto applied =
        CalibrationDesk::putIntoForce(m_station, m_history.kind(), wanted, m_user ? m_user() : QString());
    showStored(applied.station);
    if (!applied.unsaved.isEmpty())
        showMessage(tr("参数已生效，但未能保存：%1").arg(applied.unsaved), refusedStyle);
    else if (!applied.unrecorded.isEmpty())
        showMessage(tr("参数已生效，但未留下记录：%1").arg(applied.unrecorded), refusedStyle);
    else
        showMessage(tr("参数已生效"), doneStyle);
    const QVector<QLineEdit*> fields = numberFields();
    for (QLineEdit* field : fields)
        field->setModified(false);
    m_ui->m_viewer->setOverlays(machineOverlays(calibration(config())));
    refreshHints();
    if (!applied.changes.isEmpty())
        emit calibrationApplied(applied.changes);
}

void CalibrationPanel::listEarlier()
{
    QMenu* const menu = m_ui->earlierButton->menu();
    menu->clear();
    const QVector<AppliedCalibration> earlier = m_history.read().mid(0, listedEarlier);
    for (const AppliedCalibration& applied : earlier) {
        const StationConfig wanted = m_history.restored(config(), applied.values);
        const QString text = QStringLiteral("%1  %2  %3 mm/px")
                                 .arg(applied.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), applied.user,
                                      FieldNumber::text(calibration(wanted).mmPerPixel()));
        connect(menu->addAction(text), &QAction::triggered, this, [this, text, values = applied.values] {
            propose(m_history.restored(config(), values), tr("恢复标定 %1？").arg(text), tr("恢复"));
        });
    }
    if (earlier.isEmpty())
        menu->addAction(tr("没有以前的标定"))->setEnabled(false);
}

void CalibrationPanel::showMessage(const QString& text, const QString& style)
{
    QLabel* label = m_ui->label_status;
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideMiddle, label->width() - 2 * label->margin()));
    label->setToolTip(text);
    label->setStyleSheet(style);
    emit messageShown(style == refusedStyle);
}

void CalibrationPanel::clearMessage()
{
    m_ui->label_status->setText(QString());
    m_ui->label_status->setToolTip(QString());
    m_ui->label_status->setStyleSheet(QString());
}

QString CalibrationPanel::outsideWarning()
{
    const QRect image(QPoint(), m_ui->m_viewer->imageSize());
    QStringList outside;
    const QVector<Marker> all = markers();
    for (const Marker& marker : all) {
        if (!image.isEmpty() && !image.contains(*marker.point))
            outside << marker.name;
    }
    return outside.isEmpty() ? QString() : tr("%1 在图像之外").arg(outside.join(QStringLiteral(", ")));
}

QStringList CalibrationPanel::numberWarnings() const
{
    QStringList warnings;
    const QVector<QLineEdit*> fields = numberFields();
    for (QLineEdit* field : fields) {
        bool isNumber = false;
        FieldNumber::value(field->text(), &isNumber);
        setTone(field, isNumber ? Tone::Plain : Tone::Warning);
        if (!isNumber)
            warnings << (field->text().trimmed().isEmpty() ? tr("“%1”不是数字，按 0 计算")
                                                           : tr("“%1”不是数字，不能应用"))
                            .arg(field->text());
    }
    return warnings;
}

void CalibrationPanel::refreshHints()
{
    m_ui->question->dismiss(); // its answer was about other values
    const Hints shown = hints();
    m_ui->label_facts->setText(shown.facts.join(QLatin1Char('\n')));
    m_ui->label_warning->setText(shown.warnings.isEmpty() ? QString()
                                                          : QStringLiteral("⚠ ") + shown.warnings.join(tr("；")));
    if (m_drawing)
        draw(*m_drawing);
}

void CalibrationPanel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        retranslateOwn();
        retranslate();
        refreshHints();
    }
    QGroupBox::changeEvent(event);
}

void CalibrationPanel::retranslateOwn()
{
    setTitle(tr("工位%1相机视场标定").arg(m_station));
    m_ui->m_pbLock->setText(m_locked ? tr("解锁") : tr("上锁"));
}
