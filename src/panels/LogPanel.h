#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <memory>

namespace Ui {
class LogPanel;
}

/// A station's log lines, newest at the end, coloured by their kind; old ones fall off. Lines that come in quick
/// succession are shown together, so that a line costs the caller next to nothing. GUI thread.
class LogPanel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int maxLines = 2000;

    explicit LogPanel(QWidget* parent = nullptr);
    ~LogPanel() override;

    void setStation(int number);
    void append(const QString& line);

    /// The lines that are kept and that the filter lets through, oldest first.
    QStringList shownLines() const;

public slots:
    /// The selected lines, or all that are shown, to the clipboard.
    void copy() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    bool isShown(const QString& line) const;
    /// Those of the newest `count` lines that the filter lets through.
    QStringList shownOf(size_t count) const;
    void showPending();
    void showAll();
    void retranslate();

    std::unique_ptr<Ui::LogPanel> m_ui;
    int m_number = 0;
    std::deque<QString> m_lines;
    bool m_follows = true; ///< the end of the lines is on the screen, and stays there
    size_t m_pending = 0;  ///< of the newest lines, that are not shown yet
    QTimer m_flush;
    QTimer m_filter; ///< waits for the end of typing
};
