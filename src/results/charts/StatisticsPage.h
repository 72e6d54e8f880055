#pragma once

#include "common/Background.h"
#include "results/charts/Charts.h"

#include <QWidget>

#include <atomic>

class ExportBar;
class InlineMessage;
class PartFilterBar;
class QComboBox;
class QLabel;
class QLineEdit;
class ResultPlot;

/// Charts of the recorded parts. Reading and computing go on a thread; a new choice ends what the last one began.
class StatisticsPage : public QWidget
{
    Q_OBJECT

public:
    explicit StatisticsPage(QWidget* parent = nullptr);
    ~StatisticsPage() override;

    void setHome(const QString& home);
    void setShifts(const Shifts& shifts);
    void refresh();
    /// Goes to the text filter.
    void find();
    void choose(Charts::Kind kind);
    ResultPlot& plot() { return *m_plot; }
    ExportBar& exports() { return *m_exports; }

signals:
    void partsWanted(const QDateTime& from, const QDateTime& to);
    void partWanted(qint64 uid);
    void shown();

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Read;
    void retranslate();
    void ask();
    void take(const Read& read);
    void draw();
    void onPlacePicked(const QPointF& place);
    void loadTolerance();
    void storeTolerance();
    Statistics::Tolerance tolerance() const;

    QString m_home;
    Shifts m_shifts;
    PartFilterBar* m_filter;
    QComboBox* m_kind;
    QComboBox* m_value;
    QComboBox* m_span;
    QLabel* m_limits;
    QLineEdit* m_least;
    QLineEdit* m_most;
    InlineMessage* m_message;
    ResultPlot* m_plot;
    ResultPlot* m_lower; ///< below it, of kinds with two charts
    QLabel* m_summary;
    ExportBar* m_exports;
    Charts::Answer m_answer;
    QVector<LogRow> m_marks;
    Statistics::Tally m_tally;
    bool m_reading = false;
    bool m_failed = false; ///< nothing is known of the parts
    int m_number = 0;
    std::shared_ptr<std::atomic<bool>> m_goOn; ///< of the reading in hand
    Background m_background;
};
