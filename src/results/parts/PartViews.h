#pragma once

#include <QStackedWidget>
#include <QVector>

class PartPictures;
class PartTableModel;
class QLabel;
class QTableView;

/// The parts of a table as rows or as small pictures, or why there are none; both have the same part chosen. The
/// header's menu chooses the columns, which are kept for each home.
class PartViews : public QStackedWidget
{
    Q_OBJECT

public:
    /// `table` outlives it.
    explicit PartViews(PartTableModel& table, QWidget* parent = nullptr);

    /// With the columns as they were kept there.
    void setHome(const QString& home);
    void keepColumns() const;
    /// By their numbers, as they are ordered and shown.
    QVector<int> columns() const;

    void setAsPictures(bool on);
    /// The parts if there are any, otherwise why there are none.
    void showParts(bool any);
    void setWhyNone(const QString& text);
    QString whyNone() const;

    /// A row of the table; -1 when none is chosen.
    int chosen() const;
    void choose(int part);
    /// Nobody has scrolled back to read.
    bool isAtNewest() const;

signals:
    void partChosen();
    /// Enter on a part.
    void entered();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setUpTable();
    void setUpStrip();
    void offerColumns(const QPoint& at);

    PartTableModel& m_parts;
    PartPictures* m_pictures;
    QTableView* m_table;
    QTableView* m_strip;
    QLabel* m_nothing;
    QString m_home;
    bool m_asPictures = false;
};
