#pragma once

#include "results/data/PartFilter.h"
#include "results/data/Shifts.h"

#include <QWidget>

class QAbstractButton;
class QBoxLayout;
class QComboBox;
class QDateTimeEdit;
class QLineEdit;
class QTimer;
class QToolButton;

/// Which parts a page shows: time, station, model, outcome, text.
class PartFilterBar : public QWidget
{
    Q_OBJECT

public:
    explicit PartFilterBar(QWidget* parent = nullptr);

    enum Period { Today, Yesterday, ThisShift, LastShift, Week, Month, All, Own };

    /// Its period counts from the present moment.
    PartFilter filter() const;
    void setFilter(Period period, int station, bool found, bool notFound, bool refused);
    void setTimes(const QDateTime& from, const QDateTime& to);
    /// They may change what is in sight.
    void setShifts(const Shifts& shifts);
    /// Goes to the text.
    void find();
    /// Keeps the one that is chosen.
    void setModels(const QStringList& models);
    /// What is wrong with it, as a sentence; empty when nothing is.
    QString problem() const;

    /// As narrow as its wider half.
    QSize minimumSizeHint() const override;

signals:
    /// Some time after the last of several changes.
    void changed();

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void retranslate();
    void showPeriod();
    /// As much time before (-1) or after (1) what is chosen: a day, a shift, or what it is.
    void step(int direction);
    bool endsNow() const;
    void showSpan(qint64 begin, qint64 end);
    void arrange();

    Shifts m_shifts;
    QBoxLayout* m_rows;
    QWidget* m_where; ///< time, station, model
    QWidget* m_what;  ///< outcome, mark, text
    QToolButton* m_earlier;
    QComboBox* m_period;
    QToolButton* m_later;
    QDateTimeEdit* m_from;
    QDateTimeEdit* m_to;
    QComboBox* m_station;
    QComboBox* m_model;
    QAbstractButton* m_outcomes[3]; ///< by PartOutcome
    QAbstractButton* m_marked;
    QLineEdit* m_text;
    QTimer* m_settled;
};
