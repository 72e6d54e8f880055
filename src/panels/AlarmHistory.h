#pragma once

#include <QDialog>
#include <QPointer>

class AlarmBook;
class QTableWidget;

/// The alarms of the cell since its start, with their begin and end, newest first; those that last come before. It
/// follows the book while it is open. GUI thread.
class AlarmHistory : public QDialog
{
    Q_OBJECT

public:
    /// The book may go before the dialog.
    explicit AlarmHistory(AlarmBook& book, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void refresh();
    void retranslate();

    QPointer<AlarmBook> m_book;
    QTableWidget* m_table;
};
