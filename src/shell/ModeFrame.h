#pragma once

#include <QWidget>

class QLabel;
class StateBar;

/// A coloured frame around the whole window, and the word for it in a band, while the cell is in test or in offline
/// mode. It lies over the window and takes no mouse. GUI thread.
class ModeFrame : public QWidget
{
    Q_OBJECT

public:
    /// All are the window's own and live as long; the band is hidden in plain operation.
    ModeFrame(QWidget* window, const StateBar& state, QLabel& band);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void follow();
    void cover();

    const StateBar& m_state;
    QLabel& m_band;
};
