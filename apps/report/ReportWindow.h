#pragma once

#include <QMainWindow>

class QMenu;
class QPushButton;
class QToolBar;
class ResultsView;

/// The window of the report program: the results of one home, and the way to others. GUI thread.
class ReportWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ReportWindow(QWidget* parent = nullptr);
    ~ReportWindow() override;

    /// A folder of results in a home ("DBFiles") stands for its home.
    void openHome(const QString& folder);
    ResultsView& view() { return *m_view; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void retranslate();
    void listHomes();
    void askForFolder();

    ResultsView* m_view;
    QMenu* m_homes;
    QPushButton* m_open;
};
