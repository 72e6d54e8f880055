#pragma once

#include <QFrame>
#include <QVector>

class QAction;
class QHBoxLayout;
class QLabel;
class QToolButton;

/// The pages of a workspace, one button each, the title of the one that is open, and the way back. GUI thread.
class PageBar : public QFrame
{
    Q_OBJECT

public:
    explicit PageBar(QWidget* parent = nullptr);

    void addAction(int room, QAction* action);
    /// Shows the buttons of that room, and marks the one whose page is open (its action's name).
    void show(int room, const QString& current);
    void setTitle(const QString& title);
    /// Whether there is something to go back from.
    void setBack(bool possible);

signals:
    void backWanted();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    struct Entry
    {
        int room;
        QString action;
        QToolButton* button;
    };

    void retranslate();
    /// Whole or not at all: the marked button says it, too.
    void showTitle();

    QHBoxLayout* m_row;
    QLabel* m_title;
    QToolButton* m_back;
    QAction* m_goBack;
    QVector<Entry> m_entries;
};
