#pragma once

#include "common/Background.h"
#include "results/data/Shifts.h"

#include <QWidget>

#include <functional>
#include <optional>

class ExportBar;
class InlineMessage;
class PartDetail;
class PartFilterBar;
class PartTableModel;
class PartViews;
class QAbstractButton;
class QLabel;
class QSplitter;
struct PartFilter;
struct PartRow;

/// The recorded parts: which, as a table or as small pictures, and the chosen one with its picture. Enter goes from a
/// part to its comment.
class PartsPage : public QWidget
{
    Q_OBJECT

public:
    explicit PartsPage(QWidget* parent = nullptr);
    ~PartsPage() override;

    /// The parts of that home from the next refresh() on.
    void setHome(const QString& home);
    void setShifts(const Shifts& shifts);
    /// Who notes something of a part.
    void setUser(std::function<QString()> user) { m_user = std::move(user); }
    void setDesigner(bool there);
    void refresh();
    /// The same from time to time, unless somebody has scrolled back to read.
    void follow();
    /// Goes to the text filter.
    void find();

    /// Today's parts of a station (0: both): all, or those that were not found or refused, as small pictures.
    void showDay(int station, bool failuresOnly);
    void showFailures(int station) { showDay(station, true); }
    void showTimes(const QDateTime& from, const QDateTime& to);
    /// That part, chosen among those of its minutes.
    void showPart(qint64 uid);
    /// The part of a station at that moment, likewise.
    void showPartAt(int station, qint64 wall);
    PartFilter filter() const;
    PartTableModel& table() { return *m_table; }
    ExportBar& exports() { return *m_exports; }

signals:
    void designerWanted(const QString& picture, const QString& model, int station);

protected:
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void build();
    void retranslate();
    void take();
    void offerExports();
    void showChosen();
    void onRefreshed(int parts, const QString& error, bool frozen);
    void onSearched(int percent);
    void onCounted(int parts);
    void showViews(int parts);
    static QString nothingText();
    void showCount();
    void showAround(int station, qint64 wall, const std::optional<PartRow>& part);
    void store(qint64 uid, qint64 wall, bool marked, const QString& comment);
    void keepLayout() const;

    QString m_home;
    std::function<QString()> m_user;
    PartFilterBar* m_filter;
    InlineMessage* m_message;
    PartTableModel* m_table;
    PartViews* m_views;
    QLabel* m_count;
    ExportBar* m_exports;
    Shifts m_shifts;
    QAbstractButton* m_asPictures;
    PartDetail* m_detail;
    QSplitter* m_sides;
    int m_parts = 0;
    bool m_counted = true;
    qint64 m_wanted = -1; ///< the part that is chosen with the next filter
    qint64 m_chosen = -1; ///< the part that stays chosen when the table is read anew
    Background m_models;
    Background m_looking;
    Background m_reviews; ///< written also when the page is closed
};
