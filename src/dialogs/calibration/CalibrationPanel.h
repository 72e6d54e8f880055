#pragma once

#include "common/AuditChange.h"
#include "common/Background.h"
#include "config/StationConfig.h"
#include "dialogs/calibration/CalibrationHistory.h"
#include "dialogs/calibration/ReferenceImage.h"

#include <QDateTime>
#include <QGroupBox>
#include <QPointer>
#include <QVector>

#include <functional>
#include <memory>

class PointDrawing;
class QFileDialog;
class QLineEdit;
class QPushButton;
class ksImgViewer;
struct AwesomeRoiInfo;

namespace Ui {
class CalibrationPanel;
}

/// One station in a calibration dialog: the reference image with its markers, the fields of the kind of calibration,
/// and the buttons. What the two kinds of calibration share. GUI thread.
class CalibrationPanel : public QGroupBox
{
    Q_OBJECT

public:
    ~CalibrationPanel() override;

    /// Fills fields and markers from the configuration, locked; without the reference image.
    void initialise();

    /// The dialog opens: fields and markers as stored, whatever was left in them, and the reference image, read when
    /// its file changed since.
    void begin();

    void setUser(const std::function<QString()>& user) { m_user = user; }

    /// Puts the fields beside the image instead of below it.
    void setWide(bool wide);

    ksImgViewer* viewer() const;
    QVector<QPushButton*> buttons() const;

    /// Acts on one of the panel's buttons; `name` is its object name without the station's ending.
    void press(const QString& name);
    /// A marker was dragged; other names than the panel's own only refresh what is computed.
    void moveMarker(const AwesomeRoiInfo& info, const QString& name);
    void showLocked();
    void clearMessage();

    /// Deletes the station's reference image and puts a chosen one in its place, on another thread; shows it when done.
    void replaceReference(const QString& chosen);

signals:
    void messageShown(bool failure);
    /// The calibration holds other values; names are keys of the configuration.
    void calibrationApplied(const AuditChanges& changes);

protected:
    struct Marker
    {
        QString name;
        QPoint* point; ///< where the panel keeps it, image pixels
    };

    /// What the operator should know about the values as they stand.
    struct Hints
    {
        QStringList facts;
        QStringList warnings;
    };

    /// \param factLines how many lines the facts of the hints take at most, in any language
    CalibrationPanel(int station, int factLines, CalibrationHistory::Kind kind, QWidget* parent);

    virtual QVector<Marker> markers() = 0;
    virtual void fillFields(const StationConfig& config) = 0;
    /// A marker's point changed; shows it.
    virtual void showPoint(const QString& name) = 0;
    /// Computes and shows what follows from the points.
    virtual void recompute() {}
    /// The fields that take numbers.
    virtual QVector<QLineEdit*> numberFields() const = 0;
    /// Puts what was changed in fields and markers into `config`, and nothing else.
    virtual void store(StationConfig& config) = 0;
    /// Shows what became of what was stored.
    virtual void showStored(const StationConfig& config) = 0;
    /// What has to be asked before `wanted` takes the place of `stored`, a sentence each.
    virtual QStringList doubts(const StationConfig& stored, const StationConfig& wanted) const = 0;
    virtual Hints hints() = 0;
    /// The stored calibration; that of nothing while there is none.
    virtual Calibration calibration(const StationConfig& config) const = 0;
    /// Draws what joins the markers.
    virtual void draw(PointDrawing& drawing) = 0;
    virtual void retranslate() {}

    /// Puts a form's widgets under the image; their object names get the station's ending.
    void setForm(QWidget* form);
    /// Names of the markers that lie outside the image, as a warning; empty when there are none.
    QString outsideWarning();
    /// A warning for each field whose text is no number; such fields are marked.
    QStringList numberWarnings() const;
    /// A pixel's place relative to the image's centre, where its marker is put.
    QPoint fromCenter(const QPoint& pixel) const;
    /// Shows anew what follows from fields and markers.
    void refreshHints();

    int station() const { return m_station; }
    StationConfig& config() const;

    void changeEvent(QEvent* event) override;

private:
    void nameForStation(const QList<QWidget*>& widgets) const;
    void showImage(const QImage& image);
    void showConfig();
    void placeMarkers();
    void setLocked(bool locked);
    void chooseImage();
    void apply();
    /// Asks when something speaks against it, and puts `wanted` into force.
    void propose(const StationConfig& wanted, const QString& question, const QString& answer);
    void putIntoForce(const StationConfig& wanted);
    void listEarlier();
    void onReplaced(const ReferenceImage::Replaced& replaced);
    void showMessage(const QString& text, const QString& style);
    void retranslateOwn();

    int m_station;
    std::unique_ptr<Ui::CalibrationPanel> m_ui;
    std::unique_ptr<PointDrawing> m_drawing;
    CalibrationHistory m_history;
    std::function<QString()> m_user;
    bool m_locked = true;
    QDateTime m_shownSince; ///< when the file of the shown image was written
    QPointer<QFileDialog> m_chooser;
    bool m_replacing = false;
    Background m_background{Background::AtEnd::Finish};
};
