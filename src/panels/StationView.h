#pragma once

#include "panels/StationTally.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class ksImgViewer;

namespace Ui {
class StationView;
}

/// One station on the screen: the lamp of its last part, its picture, its reading, its last parts, its shift and its
/// day. What is not of the last trigger is greyed and says so. GUI thread.
class StationView : public QWidget
{
    Q_OBJECT

public:
    explicit StationView(QWidget* parent = nullptr);
    ~StationView() override;

    ksImgViewer* viewer() const;

    void setStation(int number);
    /// Below which the archived pictures lie.
    void setHome(const QString& home);
    void setModelLabel(const QString& richText);
    /// In place of the model label: the PLC's index means no model; below 1 it was cleared on purpose.
    void setNoModel(int plcIndex);
    void setCount(const DayCount& count);
    void setTally(const StationTally& tally);
    void hideReading();

    /// A trigger was taken at this moment.
    void triggered();
    /// The picture of a part, before its part or after.
    void setImage(const QImage& image);
    /// The model of the part in the picture.
    void setCaption(const QString& model);
    /// A part has ended; `test`: a test's.
    void setPart(const PartRow& part, bool test);
    /// Whether the picture is of the part that ended last.
    bool hasPictureOfPart() const { return m_pictureIsNew; }

    QSize sizeHint() const override { return {620, 560}; }
    QSize minimumSizeHint() const override { return {440, 370}; }

signals:
    /// The day's parts of this station: all of them, or those that were not found or refused.
    void partsWanted(bool failuresOnly);
    /// The part of that moment, see PartTable.
    void partWanted(qint64 wall);
    void shiftResetWanted();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    enum State { Idle, Pending, Overdue, Ended };

    void connectParts();
    void arrange();
    void retranslate();
    void enter(State state);
    void showBand();
    void showDigits();
    void showModel();
    void showStamp();
    void showTally();

    std::unique_ptr<Ui::StationView> m_ui;
    int m_number = 0;
    bool m_readingShown = true;
    double m_aspect = 1.2;
    QString m_label;                ///< the model label as it was set
    std::optional<int> m_deadIndex; ///< the index that means no model; the label stands for none meanwhile
    StationTally m_tally;
    PartRow m_part; ///< that ended last
    bool m_test = false;
    State m_state = Idle;
    QTime m_triggered;
    int m_open = 0; ///< triggers without an end
    bool m_pictureIsNew = false;
    bool m_pictureCame = false; ///< since the last end
    QTime m_pictureTime;
    QString m_pictureModel;
    QTimer m_late;
    QTimer m_overdue;
};
