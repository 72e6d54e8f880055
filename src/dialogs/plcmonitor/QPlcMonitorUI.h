#pragma once

#include "common/Background.h"
#include "dialogs/plcmonitor/SeenFrame.h"

#include <QDialog>
#include <QPointer>
#include <QTimer>
#include <QVector>

#include <memory>

class FrameList;
class PlcLink;

namespace Ui {
class QPlcMonitorUI;
}

/// Shows the frames that program and PLC exchange while it is open. It only notes a frame as it passes, and shows what
/// it noted a few times a second; closed, it does not listen at all. GUI thread.
class QPlcMonitorUI : public QDialog
{
    Q_OBJECT

public:
    /// The link may go before the dialog.
    explicit QPlcMonitorUI(const PlcLink& link, QWidget* parent = nullptr);
    ~QPlcMonitorUI() override;

public slots:
    /// Writes the shown frames to a CSV file; reports in the dialog how it went.
    void saveTo(const QString& path);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void connectAll();
    void listCommands();
    void layOutColumns();
    void note(const SComFrame& frame, bool received);
    void showNoted();
    void filter();
    void clearFrames();
    void count();
    void askFile();
    void onSaved(const QString& path, const QString& error);

    std::unique_ptr<Ui::QPlcMonitorUI> m_ui;
    const QPointer<const PlcLink> m_link;
    FrameList* m_frames;
    QMetaObject::Connection m_listening;
    QVector<SeenFrame> m_noted; ///< not shown yet; bounded like the list itself
    QTimer m_refresh;
    bool m_saving = false;
    Background m_background{Background::AtEnd::Finish};
};
