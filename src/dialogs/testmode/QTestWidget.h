#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class QTestWidget;
}

/// Runs the cell without a PLC: repeated triggers, or one picture of a station. It only emits what is wanted; the
/// window triggers. GUI thread.
class QTestWidget : public QDialog
{
    Q_OBJECT

public:
    static constexpr int defaultIntervalMs = 1000;

    explicit QTestWidget(QWidget* parent = nullptr);
    ~QTestWidget() override;

    /// Milliseconds between two triggers, as shown from now on; nothing is emitted.
    void setInterval(int ms);

    /// Hides what belongs to station 2.
    void setOneStation(bool one);

    bool isRunning() const { return m_running; }

public slots:
    /// Whether the triggers run, as the window knows it.
    void setRunning(bool running);
    /// Closing ends the test: no cell goes on triggering itself unseen.
    void done(int result) override;

signals:
    /// One of TestMode.
    void sgTestMode(int mode);
    /// Another interval is wanted; comes before the start that uses it.
    void intervalChanged(int ms);

protected:
    void changeEvent(QEvent* event) override;

private:
    void connectAll();
    void judge();
    /// Emits the typed interval, if it is right and another than the one emitted last.
    void takeInterval();
    void start();
    void stop();

    std::unique_ptr<Ui::QTestWidget> m_ui;
    int m_intervalMs = defaultIntervalMs;
    bool m_running = false;
};
