#pragma once

#include "config/ksSysConfig.h"
#include "dialogs/DialogDriver.h"
#include "host/CMainWin.h"
#include "support/Table.h"
#include "support/TempHome.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

/// Presses a button of every message box that comes up, and keeps what the boxes said.
class BoxPresser : public QObject
{
public:
    explicit BoxPresser(QMessageBox::StandardButton button, bool print = false)
    {
        connect(&m_poll, &QTimer::timeout, this, [this, button, print] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || !box->button(button))
                return;
            said << box->windowTitle() + QLatin1Char('|') + box->text() + QLatin1Char('|') +
                        box->button(button)->text();
            if (print)
                std::puts(qUtf8Printable(said.last()));
            box->button(button)->click();
        });
        m_poll.start(5);
    }

    QStringList said;

private:
    QTimer m_poll;
};

inline void writeCameras(const TempHome& home, int count)
{
    QStringList cameras;
    for (int i = 1; i <= count; ++i) {
        home.write(QStringLiteral("/images/%1/none.txt").arg(i), "no image");
        cameras << QStringLiteral(R"({"key": "cam%1", "type": 100, "folder": "images/%1"})").arg(i);
    }
    home.write("/user/camera.json", "{\"cameras\": [" + cameras.join(',').toUtf8() + "]}");
}

inline void writeSolutions(const TempHome& home, const QStringList& names)
{
    for (const QString& name : names)
        home.write("/user/solutions/" + name + "/solution.json", "{\"name\": \"" + name.toUtf8() + "\"}");
}

/// A home for one or two stations, whose solutions are "工位1" and "工位2".
inline void writeStations(const TempHome& home, int count)
{
    QStringList names;
    QStringList keys;
    for (int i = 1; i <= count; ++i) {
        names << QStringLiteral("工位%1").arg(i);
        keys << QStringLiteral(R"("station_solution_%1": "工位%1", "station_camkey_%1": "cam%1")").arg(i);
    }
    writeCameras(home, count);
    writeSolutions(home, names);
    home.write("/user/globalConfig.json", "{" + keys.join(',').toUtf8() + "}");
}

/// The window, with the box about its missing port put away.
inline std::unique_ptr<CMainWin> startWindow()
{
    auto window = std::make_unique<CMainWin>();
    qDeleteAll(window->findChildren<QMessageBox*>());
    return window;
}

/// The program in a home of its own, operated by its actions.
struct Program
{
    TempHome home;
    std::unique_ptr<CMainWin> window;

    void start()
    {
        writeStations(home, 2);
        window = startWindow();
        window->show();
    }
    void act(const char* action) const { window->findChild<QAction*>(action)->trigger(); }

    /// The dialog of that class, if it is open: in a window, or as a page, which may be behind another.
    template <typename Dialog = QDialog>
    Dialog* open(const char* className) const
    {
        const auto all = QApplication::allWidgets();
        for (QWidget* widget : all) {
            if (!widget->isHidden() && widget->inherits(className))
                return static_cast<Dialog*>(widget);
        }
        return nullptr;
    }
    /// By the dialog that is open.
    void createAdministrator() const
    {
        const QPointer<QDialog> first = open("NewUserDialog");
        QVERIFY(first);
        const DialogDriver driver(*first);
        driver.act({"nameEdit=boss", "passwordEdit=correct horse", "againEdit=correct horse"});
        first->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
        QTRY_VERIFY(!first || !first->isVisible());
    }
    bool isBannerShown() const { return window->findChild<QWidget*>("registerBanner")->isVisible(); }
};
