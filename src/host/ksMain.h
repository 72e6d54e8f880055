#pragma once

#include "host/CMainWin.h"
#include "host/LoopWatch.h"

#include <valvecell/IMainWidget.h>

/// The object that the host process holds: it is the main window's life.
class ksMain : public IMainWidget
{
    Q_OBJECT

public:
    ksMain();
    ~ksMain() override;

    void showMaximized() override;
    /// Why the start-up could not go on; empty when it did. With a problem there is nothing to show.
    QString problem() const { return m_window.problem(); }

protected:
    bool eventFilter(QObject* window, QEvent* event) override;

private:
    const LoopWatch m_loop;
    CMainWin m_window;
};
