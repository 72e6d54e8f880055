#pragma once

#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

class ksImgViewer;
struct DayCount;
struct StationReading;

namespace Ui {
class StationView;
}

/// One station on the screen: its model, its picture, its last reading and its day. GUI thread.
class StationView : public QWidget
{
    Q_OBJECT

public:
    explicit StationView(QWidget* parent = nullptr);
    ~StationView() override;

    ksImgViewer* viewer() const;

    void setStation(int number);
    /// Puts the reading beside the picture, where the view has the window for itself, or below it.
    void setWide(bool wide);
    void setModelLabel(const QString& richText);
    /// In place of the model label: the PLC's index means no model; below 1 it was cleared on purpose.
    void setNoModel(int plcIndex);
    /// The model of the part in the picture.
    void setCaption(const QString& model);
    void setReading(const StationReading& reading);
    void setCount(const DayCount& count);
    void hideReading();

    /// A trigger was taken at this moment; the last reading goes when no other follows soon.
    void triggered();
    /// A trigger was refused at this moment.
    void refused();

signals:
    /// The day's parts of this station: all of them, or those that were not found or refused.
    void partsWanted(bool failuresOnly);

protected:
    void changeEvent(QEvent* event) override;

private:
    enum State { Idle, Waiting, Found, NotFound, Refused };

    void retranslate();
    void show(State state);
    void showTip();
    void showModel();
    void showCaption();
    void stampTime();

    std::unique_ptr<Ui::StationView> m_ui;
    int m_number = 0;
    QString m_label;                ///< the model label as it was set
    std::optional<int> m_deadIndex; ///< the index that means no model; the label stands for none meanwhile
    QString m_caption;
    QString m_tip; ///< the engine's
    State m_state = Idle;
    QTimer m_overdue;
};
