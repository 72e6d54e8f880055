#pragma once

#include "modules/ModuleReport.h"

#include <QDialog>
#include <QTimer>
#include <QVector>

#include <functional>
#include <memory>

class ISerialPort;
class QLabel;
class ksSysConfig;

namespace Ui {
class QDeviceManagerUI;
}

/// The modules of the program, each with its file, version and what keeps it from working, and the state of the serial
/// line. Shows the present state once a second while it is visible. GUI thread.
class QDeviceManagerUI : public QDialog
{
    Q_OBJECT

public:
    /// What the dialog asks for each time; the port may be null.
    struct Source
    {
        std::function<QVector<ModuleInfo>()> modules;
        std::function<ISerialPort*()> port;
    };

    /// `config` outlives the dialog.
    QDeviceManagerUI(Source source, const ksSysConfig& config, QWidget* parent = nullptr);
    ~QDeviceManagerUI() override;

    /// All that is shown, as lines of text to hand on.
    QString text() const;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void refresh();
    void showModules();
    void showLine();
    void showStatus(const struct SerialStatus& status);
    void copy();
    QVector<QPair<QLabel*, QLabel*>> facts() const;

    std::unique_ptr<Ui::QDeviceManagerUI> m_ui;
    const Source m_source;
    const ksSysConfig& m_config;
    QTimer m_tick;
};
