#pragma once

#include <QHash>
#include <QIcon>
#include <QPointer>
#include <QWidget>

#include <functional>

class PageBar;
class PageHolder;
class QAction;
class QHBoxLayout;
class QStackedWidget;
class WorkspaceRail;

/// The middle of the operator's window: a column of workspaces, and in each its pages, every one in its place. A page
/// is any widget. One that is a dialog keeps its behaviour: when it closes, by Esc, by its buttons or by its owner,
/// the page before it is there again. Pages larger than the room scroll. GUI thread.
class Workspaces : public QWidget
{
    Q_OBJECT

public:
    enum Room { Run, Results, Models, Calibration, System, Help };
    Q_ENUM(Room)

    /// A page with an action of its own.
    struct Page
    {
        QString name; ///< object name of its action, by which it is opened from everywhere
        Room room;
        std::function<QString()> title; ///< in the present language
        QIcon icon;
        bool engineers;                 ///< for engineers alone, where the plant wants that
        std::function<QWidget*()> make; ///< on its first use; the page belongs to the workspaces then
    };

    explicit Workspaces(QWidget* parent = nullptr);
    ~Workspaces() override;

    /// The page of Room::Run, which is always there.
    void setRun(QWidget* page);

    /// The button of an action that somebody else acts upon; it opens its page by open().
    void addAction(Room room, QAction* action);
    /// One at the foot of the column of workspaces.
    void addTool(QAction* action);
    /// A page with a button of its own in its room; its action is a child of the window.
    void addPage(const Page& page);

    /// Shows the widget, which stays its owner's, as the page of that action, in its room; a dialog is shown, too.
    void open(QWidget* widget, const QString& action);
    /// Shows the page that addPage() announced; false when there is none of that name.
    bool openPage(const QString& name);
    /// Whether that page is for engineers alone.
    bool isForEngineers(const QString& name) const;
    /// Shows the widget beside the page of Room::Run, while it is not hidden; it stays its owner's.
    void openTool(QWidget* widget);

    /// Greys an action and says why; it can still be triggered, by whoever wants to log in then.
    void setLocked(const QString& action, bool locked);
    /// The same for all pages that addPage() announced for engineers.
    void lockEngineers(bool locked);

    Room room() const { return m_room; }
    /// The widget on the screen, or null.
    QWidget* page() const;

public slots:
    /// The room's page that was open last, or its first one that is not locked.
    void openRoom(Workspaces::Room room);
    /// Closes the page on the screen, if it is none of Room::Run.
    void goBack();

signals:
    /// An action is wanted by the name of it: of a room that has no page open.
    void actionWanted(const QString& action);
    void locksChanged();
    void roomChanged(Workspaces::Room room);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    PageHolder* holderOf(QWidget* widget, const QString& action);
    Room roomOf(const QString& action) const;
    void show(PageHolder* holder);
    void leave(PageHolder* holder);
    void arrangeTool();
    void showTitle();
    void retranslate();

    struct Doors
    {
        QAction* action = nullptr;
        QStringList pages; ///< names of the actions of its pages, the first one first
    };

    WorkspaceRail* m_rail;
    PageBar* m_bar;
    QStackedWidget* m_stack;
    PageHolder* m_run = nullptr;
    PageHolder* m_tool = nullptr;
    QHBoxLayout* m_runPlace = nullptr; ///< the page of Room::Run, and what is beside it
    QVector<Doors> m_doors;            ///< by room
    QHash<QString, QAction*> m_actions;
    QHash<QString, Page> m_pages;
    QHash<QString, QPointer<QWidget>> m_made;
    QVector<QPointer<PageHolder>> m_way; ///< the pages that were open, the last one last
    Room m_room = Run;
};
