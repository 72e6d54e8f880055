#pragma once

#include "shell/Workspaces.h"

#include <QScrollArea>

/// The place of one page: it is as large as the room, and scrolls where the page needs more. GUI thread.
class PageHolder : public QScrollArea
{
    Q_OBJECT

public:
    /// The widget stays its owner's; it is not shown yet.
    PageHolder(QWidget* page, Workspaces::Room room, const QString& action, QWidget* parent);
    ~PageHolder() override;

    Workspaces::Room room() const { return m_room; }
    /// The action that opens it.
    const QString& action() const { return m_action; }

    /// Shows the page, and gives it the keyboard.
    void present();

signals:
    /// The page was hidden by itself or its owner, or is gone.
    void left();
    /// The owner showed it.
    void entered();
    void titleChanged();

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit();

    const Workspaces::Room m_room;
    const QString m_action;
};
