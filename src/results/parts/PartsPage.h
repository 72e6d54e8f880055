#pragma once

#include "common/Background.h"
#include "results/data/Shifts.h"

#include <QWidget>

#include <functional>

class ExportBar;
class InlineMessage;
class PartDetail;
class PartFilterBar;
class PartTableModel;
class QLabel;
class QTableView;
struct PartFilter;

/// The recorded parts: which, as a table, and the chosen one with its picture.
class PartsPage : public QWidget
{
    Q_OBJECT

public:
    explicit PartsPage(QWidget* parent = nullptr);

    /// Reads the parts of that home from now on, and its models.
    void setHome(const QString& home);
    void setShifts(const Shifts& shifts);
    /// Who notes something of a part.
    void setUser(std::function<QString()> user) { m_user = std::move(user); }
    void setDesigner(bool there);
    void refresh();

    /// Today's parts of a station (0: both) that were not found or refused.
    void showFailures(int station);
    void showTimes(const QDateTime& from, const QDateTime& to);
    void showPart(qint64 uid);
    PartFilter filter() const;
    PartTableModel& table() { return *m_table; }
    ExportBar& exports() { return *m_exports; }

signals:
    void designerWanted(const QString& picture, const QString& model, int station);

protected:
    void changeEvent(QEvent* event) override;

private:
    void take();
    void offerExports();
    void showChosen();
    void onRefreshed(int parts, const QString& error);
    void store(qint64 uid, qint64 wall, bool marked, const QString& comment);

    QString m_home;
    std::function<QString()> m_user;
    PartFilterBar* m_filter;
    InlineMessage* m_message;
    PartTableModel* m_table;
    QTableView* m_view;
    QLabel* m_count;
    ExportBar* m_exports;
    Shifts m_shifts;
    PartDetail* m_detail;
    int m_parts = 0;
    Background m_models;
    Background m_reviews; ///< written also when the page is closed
};
