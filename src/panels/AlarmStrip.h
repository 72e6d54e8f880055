#pragma once

#include <QPointer>
#include <QWidget>

#include <memory>

class AlarmBook;

namespace Ui {
class AlarmStrip;
}

/// A quiet strip with the alarms of the cell: the newest three with their times and counts, and how many more there
/// are. Nothing of it keeps production waiting. Hidden while there is none. GUI thread.
class AlarmStrip : public QWidget
{
    Q_OBJECT

public:
    explicit AlarmStrip(QWidget* parent = nullptr);
    ~AlarmStrip() override;

    /// The book whose alarms are shown; may go before the strip.
    void setBook(AlarmBook* book);

protected:
    void changeEvent(QEvent* event) override;

private:
    void refresh();
    void setKnown(bool known);

    std::unique_ptr<Ui::AlarmStrip> m_ui;
    QPointer<AlarmBook> m_book;
};
