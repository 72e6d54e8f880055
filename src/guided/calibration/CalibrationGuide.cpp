#include "guided/calibration/CalibrationGuide.h"

#include "common/ImageFile.h"
#include "config/IniFile.h"
#include "config/ksGlobalConfig.h"
#include "dialogs/calibration/CalibrationDesk.h"
#include "dialogs/calibration/CalibrationFit.h"
#include "dialogs/calibration/ReferenceImage.h"
#include "guided/calibration/CalibrationPages.h"
#include "guided/calibration/CalibrationPicture.h"
#include "guided/stepper/PictureDesk.h"
#include "results/data/PartReader.h"

#include <QMenu>
#include <QPushButton>

#include <algorithm>

namespace {

constexpr int listedCalibrations = 20;
const QString boardFile = QStringLiteral("/user/board.ini");

} // namespace

CalibrationGuide::CalibrationGuide(const Parts& parts, QWidget* parent)
    : GuideDialog(parent)
    , m_parts(parts)
    , m_picture(new CalibrationPicture(this))
    , m_desk(new PictureDesk(parts.core, this))
{
    setCompanion(m_picture);
    m_earlier = addButton(QStringLiteral("earlierButton"));
    m_earlier->setMenu(new QMenu(this));
    connect(m_earlier->menu(), &QMenu::aboutToShow, this, &CalibrationGuide::listEarlier);
    readBoard();
    addPages();
    connect(m_desk, &PictureDesk::taken, this,
            [this](const QImage& picture, const QString& name) { takePicture(picture, name, true); });
    begin();
    beginStation(1);
}

CalibrationGuide::~CalibrationGuide() = default;

void CalibrationGuide::addPages()
{
    m_picturePage = new PicturePage(m_draft, *m_picture, *m_desk);
    m_comparePage = new ComparePage(m_draft, *m_picture, [this] {
        StationConfig wanted = m_draft.applied(station());
        return ComparePage::Pair{m_parts.config.calibration(m_station),
                                 m_draft.fourPoint ? wanted.fourPointCalibration() : wanted.twoPointCalibration()};
    });
    for (GuidePage* page : std::initializer_list<GuidePage*>{m_picturePage, new MarkPage(m_draft, *m_picture),
                                                             new RealPage(m_draft, *m_picture),
                                                             new ResidualPage(m_draft, *m_picture), m_comparePage})
        addPage(page);
    connect(m_picturePage, &PicturePage::stationChosen, this, &CalibrationGuide::beginStation);
    connect(m_picturePage, &PicturePage::captureWanted, this, [this] { m_desk->capture(station().camKey); });
    connect(m_picturePage, &PicturePage::referenceWanted, this, &CalibrationGuide::readReference);
    connect(m_picturePage, &PicturePage::fileWanted, this, [this] { m_desk->askFile(m_parts.home); });
}

StationConfig& CalibrationGuide::station() const
{
    return m_parts.config.station(m_station);
}

CalibrationHistory CalibrationGuide::history() const
{
    return {m_station, m_draft.fourPoint ? CalibrationHistory::Kind::FourPoint : CalibrationHistory::Kind::TwoPoint};
}

void CalibrationGuide::setOneStation(bool one)
{
    m_oneStation = one;
    beginStation(one ? 1 : m_station);
}

void CalibrationGuide::beginStation(int station)
{
    m_station = station;
    m_draft.picture = {};
    m_draft.begin(this->station(), m_parts.config.use4pointstand);
    m_picture->setPicture({});
    m_picturePage->setStation(station, m_oneStation, this->station().camKey,
                              m_desk->canCapture(this->station().camKey));
    m_comparePage->setLastPart({}, {});
    goTo(0);
    showState();
    readReference();
    readLastPart();
}

void CalibrationGuide::takePicture(const QImage& picture, const QString& name, bool isNew)
{
    m_draft.picture = picture;
    m_draft.source = name;
    m_draft.isNew = isNew;
    m_draft.found.clear();
    m_picture->setPicture(picture);
    if (step() > 0)
        goTo(0);
    page(0)->enter();
    emit page(0)->changed();
}

void CalibrationGuide::readReference()
{
    const QString path = ReferenceImage::path(m_station);
    m_background.run([path] { return ReferenceImage::read(path); },
                     [this, wish = m_desk->wish()](const QImage& picture) {
                         if (!picture.isNull() && m_desk->stillWanted(wish) && step() == 0)
                             takePicture(picture, tr("现有的标定图像"), false);
                     });
}

/// What was answered leads back to the pixel, as long as the calibration is the one by which it was answered.
void CalibrationGuide::readLastPart()
{
    const Calibration own = m_parts.config.calibration(m_station);
    const auto read = [home = m_parts.home, station = m_station, own] {
        PartFilter filter;
        filter.station = station;
        filter.notFound = false;
        filter.refused = false;
        PartReader reader(home);
        if (!own.problem().isEmpty() || !reader.open())
            return LastPart{};
        const QVector<PartRow> rows = reader.rows(filter, PartReader::Time, Qt::DescendingOrder, 1, 0);
        if (rows.isEmpty() || !rows[0].placed || rows[0].part.calibration != own.version())
            return LastPart{};
        return LastPart{rows[0].part.model, own.toPixel({rows[0].part.x, rows[0].part.y})};
    };
    m_background.run(read, [this, of = m_station](const LastPart& part) {
        if (of == m_station)
            m_comparePage->setLastPart(part.name, part.pixel);
    });
}

void CalibrationGuide::readBoard()
{
    IniFile file(m_parts.home + boardFile);
    const QSettings& kept = file.settings();
    CalibrationBoard& board = m_draft.board;
    board.columns = kept.value(QStringLiteral("Board/Columns"), board.columns).toInt();
    board.rows = kept.value(QStringLiteral("Board/Rows"), board.rows).toInt();
    board.pitch = kept.value(QStringLiteral("Board/Pitch"), board.pitch).toDouble();
    m_draft.yUpwards = kept.value(QStringLiteral("Board/YUpwards"), false).toBool();
    const int method = kept.value(QStringLiteral("Board/Method"), 0).toInt();
    m_draft.method = CalibrationDraft::Method(std::clamp(method, 0, 2));
}

/// The next calibration is mostly made with the same board.
void CalibrationGuide::keepBoard() const
{
    IniFile file(m_parts.home + boardFile);
    file.settings().setValue(QStringLiteral("Board/Columns"), m_draft.board.columns);
    file.settings().setValue(QStringLiteral("Board/Rows"), m_draft.board.rows);
    file.settings().setValue(QStringLiteral("Board/Pitch"), m_draft.board.pitch);
    file.settings().setValue(QStringLiteral("Board/YUpwards"), m_draft.yUpwards);
    file.settings().setValue(QStringLiteral("Board/Method"), int(m_draft.method));
    file.commit();
}

void CalibrationGuide::finish()
{
    keepBoard();
    putIntoForce(m_draft.applied(station()), tr("参数已生效"));
    keepPicture();
}

void CalibrationGuide::putIntoForce(const StationConfig& wanted, const QString& done)
{
    const auto applied =
        CalibrationDesk::putIntoForce(m_station, history().kind(), wanted, m_parts.user ? m_parts.user() : QString());
    showState();
    m_comparePage->refresh();
    if (!applied.changes.isEmpty())
        emit calibrationApplied(applied.changes);
    if (!applied.unsaved.isEmpty())
        say(Tone::Error, tr("参数已生效，但未能保存：%1").arg(applied.unsaved));
    else if (!applied.unrecorded.isEmpty())
        say(Tone::Error, tr("参数已生效，但未留下记录：%1").arg(applied.unrecorded));
    else
        say(Tone::Plain, done);
}

void CalibrationGuide::keepPicture()
{
    if (!m_draft.isNew)
        return;
    m_draft.isNew = false;
    const auto write = [path = ReferenceImage::path(m_station), picture = m_draft.picture] {
        QString error;
        ImageFile::write(picture, QString(path).replace(QLatin1Char('\\'), QLatin1Char('/')), "jpg", &error);
        return error;
    };
    m_background.run(write, [this](const QString& error) {
        if (!error.isEmpty())
            say(Tone::Error, tr("参数已生效，但标定图像未保存：%1").arg(error));
    });
}

void CalibrationGuide::listEarlier()
{
    QMenu* const menu = m_earlier->menu();
    menu->clear();
    const CalibrationHistory own = history();
    const QVector<AppliedCalibration> earlier = own.read().mid(0, listedCalibrations);
    const QJsonObject now = own.valuesOf(station());
    for (const AppliedCalibration& each : earlier) {
        const StationConfig wanted = own.restored(station(), each.values);
        const Calibration made = m_draft.fourPoint ? wanted.fourPointCalibration() : wanted.twoPointCalibration();
        const QString text = QStringLiteral("%1  %2  %3 mm/px")
                                 .arg(each.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), each.user,
                                      FieldNumber::text(made.mmPerPixel()));
        QAction* action = menu->addAction(each.values == now ? text + tr("（现在）") : text);
        action->setEnabled(each.values != now);
        connect(action, &QAction::triggered, this, [this, text, values = each.values] {
            putIntoForce(history().restored(station(), values), tr("已恢复标定 %1").arg(text));
        });
    }
    if (earlier.isEmpty())
        menu->addAction(tr("没有以前的标定"))->setEnabled(false);
}

void CalibrationGuide::showState()
{
    const QString problem = m_parts.config.calibration(m_station).problem();
    setState(problem.isEmpty() ? Tone::Plain : Tone::Warning,
             problem.isEmpty() ? tr("工位%1：标定生效中").arg(m_station) : tr("工位%1：标定未生效").arg(m_station));
    setToolTip(problem);
}

void CalibrationGuide::retranslate()
{
    m_earlier->setText(tr("以前的标定(&E)"));
    showState();
}
