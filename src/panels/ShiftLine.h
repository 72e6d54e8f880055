#pragma once

#include <QWidget>

class ElidedLabel;
class QPushButton;
class StationTally;

/// Which shift is counted and since when, and the button that sets its counts back. GUI thread.
class ShiftLine : public QWidget
{
    Q_OBJECT

public:
    explicit ShiftLine(QWidget* parent = nullptr);

    /// Takes what it shows from the tally now.
    void setTally(const StationTally& tally);
    QString text() const;

signals:
    void resetWanted();

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();

    ElidedLabel* m_text;
    QPushButton* m_reset;
};
