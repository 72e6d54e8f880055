#pragma once

#include "common/Background.h"

#include <QDate>
#include <QWidget>

class ExportBar;
class InlineMessage;
class LogTableModel;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTableView;
class QTimer;

/// The system log with its audit lines: days, kind, text and user; the chosen line in full, with old and new value of a
/// change; on request the newest lines as they come.
class LogPage : public QWidget
{
    Q_OBJECT

public:
    explicit LogPage(QWidget* parent = nullptr);
    ~LogPage() override;

    void setHome(const QString& home);
    void refresh();
    ExportBar& exports() { return *m_exports; }
    /// Goes to the text filter.
    void find();

signals:
    /// The parts around that moment, local.
    void partsWanted(const QDateTime& from, const QDateTime& to);

protected:
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    enum Kind { AllKinds, Faults, Changes, Informations };

    void build();
    void retranslate();
    void showChosen();
    void onRefreshed(int lines, const QString& error, bool frozen);
    void showNothing(int lines);
    void setLive(bool on);
    void lookForNew();
    void followDays();
    void keepColumns() const;

    LogTableModel* m_table;
    InlineMessage* m_message;
    QDateEdit* m_from;
    QDateEdit* m_to;
    QComboBox* m_kind;
    QLineEdit* m_text;
    QLineEdit* m_user;
    QCheckBox* m_live;
    QTableView* m_view;
    QPlainTextEdit* m_line;
    QPushButton* m_parts;
    QLabel* m_count;
    ExportBar* m_exports;
    QTimer* m_settled;
    QTimer* m_next; ///< while the newest lines are shown as they come
    QString m_home;
    int m_lines = 0;
    bool m_failed = false;
    QDate m_today = QDate::currentDate(); ///< at the last reading
    bool m_frozen = false;
    qint64 m_newest = -1; ///< line, when the last refresh of a live page began
    qint64 m_chosen = -1; ///< the line that stays chosen when the table is read anew
    Background m_looking;
};
