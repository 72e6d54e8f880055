#pragma once

#include <QPointer>
#include <QVector>
#include <QWidget>

#include <memory>

class AlarmBook;
class AlarmRow;
struct Alarm;

namespace Ui {
class AlarmStrip;
}

/// A quiet strip with the alarms of the cell: the newest three (in a low window fewer) with their times and counts,
/// what helps and where, how many more there are, and the way to the list of all. Nothing of it keeps production
/// waiting. Hidden while there is none. GUI thread.
class AlarmStrip : public QWidget
{
    Q_OBJECT

public:
    explicit AlarmStrip(QWidget* parent = nullptr);
    ~AlarmStrip() override;

    /// The book whose alarms are shown; may go before the strip.
    void setBook(AlarmBook* book);

    /// What is wrong and what helps, in a sentence each.
    static QString sentence(const Alarm& alarm);
    static QString remedy(const Alarm& alarm);

    /// Shows the newest alone, where others need the room.
    void setFolded(bool folded);

signals:
    /// The page that helps with an alarm, or that of all, is wanted, by the name of the window's action.
    void actionWanted(const QString& action);

protected:
    void changeEvent(QEvent* event) override;

private:
    void refresh();
    void setKnown(bool known);

    std::unique_ptr<Ui::AlarmStrip> m_ui;
    QPointer<AlarmBook> m_book;
    QVector<AlarmRow*> m_rows;
    bool m_folded = false;
};
