#pragma once

#include <QWidget>

class ElidedLabel;
class QDateTime;
class QLabel;
class QPushButton;

/// One alarm in a row: since when, what is wrong, what helps, and the button to the place where. GUI thread.
class AlarmRow : public QWidget
{
    Q_OBJECT

public:
    explicit AlarmRow(QWidget* parent = nullptr);

    /// `action` opens the place of that name; both are empty where there is none.
    void show(const QDateTime& since, const QString& cause, const QString& remedy, const QString& action,
              const QString& place);

signals:
    void actionWanted(const QString& action);

private:
    QLabel* m_time;
    ElidedLabel* m_cause;
    ElidedLabel* m_remedy;
    QPushButton* m_place;
    QString m_action;
};
