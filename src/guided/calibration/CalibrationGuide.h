#pragma once

#include "common/AuditChange.h"
#include "common/Background.h"
#include "dialogs/calibration/CalibrationHistory.h"
#include "guided/calibration/CalibrationDraft.h"
#include "guided/stepper/GuideDialog.h"

#include <functional>

class CalibrationPicture;
class ComparePage;
class ICoreCtrl;
class PictureDesk;
class PicturePage;
class QMenu;
class ksGlobalConfig;

/// Leads through the calibration of a station: picture, markers, real coordinates, residuals, before and after. What is
/// applied is the kind of calibration that is in force, stored as the calibration dialogs store it; every one applied
/// before can be taken back. GUI thread.
class CalibrationGuide : public GuideDialog
{
    Q_OBJECT

public:
    struct Parts
    {
        ksGlobalConfig& config;
        ICoreCtrl* core = nullptr; ///< may be null: then there are only files
        QString home;              ///< where the records of the parts lie
        std::function<QString()> user;
    };

    explicit CalibrationGuide(const Parts& parts, QWidget* parent = nullptr);
    ~CalibrationGuide() override;

    /// The form for a cell with one station.
    void setOneStation(bool one);
    /// Starts over with a station, and its reference picture.
    void beginStation(int station);

signals:
    /// A calibration holds other values; names are keys of the configuration.
    void calibrationApplied(const AuditChanges& changes);

protected:
    QString finishText() const override { return tr("应用(&Y)"); }
    QString windowText() const override { return tr("引导标定"); }
    void finish() override;
    void retranslate() override;

private:
    struct LastPart
    {
        QString name;
        std::optional<QPointF> pixel;
    };

    void addPages();
    void takePicture(const QImage& picture, const QString& name, bool isNew);
    void readReference();
    void readBoard();
    void keepBoard() const;
    void readLastPart();
    void listEarlier();
    void putIntoForce(const StationConfig& wanted, const QString& done);
    void showState();
    /// Stores the picture as the station's reference, so that the calibration dialogs show it too.
    void keepPicture();
    CalibrationHistory history() const;
    StationConfig& station() const;

    const Parts m_parts;
    CalibrationDraft m_draft;
    CalibrationPicture* m_picture;
    PictureDesk* m_desk;
    PicturePage* m_picturePage = nullptr;
    ComparePage* m_comparePage = nullptr;
    QPushButton* m_earlier;
    int m_station = 1;
    bool m_oneStation = false;
    Background m_background{Background::AtEnd::Finish};
};
