#pragma once

#include "support/TempHome.h"

#include <QApplication>
#include <QMessageBox>
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
            if (!box)
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
