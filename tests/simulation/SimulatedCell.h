#pragma once

#include "config/CellLimits.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "support/FakeCameras.h"
#include "support/FakeEngine.h"
#include "support/FakePort.h"
#include "support/ManualScheduler.h"
#include "support/TempHome.h"
#include "workflow/CZdCtrl.h"
#include "workflow/Cell.h"

struct FakeModules : IModules
{
    QString start(const CameraCallbacks& callbacks) override
    {
        cameras.deliver = callbacks.image;
        cameras.end = callbacks.capture;
        cameras.notify = callbacks.notification;
        return {};
    }
    void stop() override { cameras.stop(); }
    ISerialPort* createSerialPort() override { return port = new FakePort; }
    IUserCtrl* createUserCtrl() override { return nullptr; }
    ICoreCtrl* coreCtrl() const override { return &cameras; }
    IEngine* engine() const override { return &inspection; }
    IDesigner* designer() const override { return nullptr; }
    QVector<ModuleInfo> report() const override { return {}; }

    mutable FakeCameras cameras;
    mutable FakeEngine inspection;
    FakePort* port = nullptr; ///< the cell's
};

/// A whole cell in this process, without a window, on a clock that the test moves: two stations, "工位1" and "工位2",
/// each with the models "五辐" (PLC index 1) and "钢圈" (2), online.
class SimulatedCell
{
public:
    explicit SimulatedCell(bool threads = false)
    {
        scheduler.threads = threads;
        const QByteArray table = R"([{"Name": "五辐", "PlcIndex": 1}, {"Name": "钢圈", "PlcIndex": 2}])";
        home.write("/user/plcIndex.json", "{\"工位1\": " + table + ", \"工位2\": " + table + "}");
        for (int n : {1, 2}) {
            StationConfig& station = config.station(n);
            station.camKey = QStringLiteral("cam%1").arg(n);
            station.solution = QStringLiteral("工位%1").arg(n);
            station.runModel = QStringLiteral("五辐");
        }
        config.onlineMode = config.useClearProtect = true;
        config.trigerFilter = 0;
        auto made = std::make_unique<FakeModules>();
        modules = made.get();
        cell = std::make_unique<Cell>(Cell::Ground{home.path(), settings, config, limits, nullptr, scheduler},
                                      std::move(made));
        QObject::connect(cell.get(), &Cell::sgShowLog, [this](int station, const QString& line) {
            panel << QStringLiteral("%1|%2").arg(station).arg(line.mid(line.indexOf(QLatin1Char(':'), 9) + 1));
        });
    }

    /// The start-up up to its last step, and that one.
    void startUp()
    {
        cell->loadModules();
        cell->openSerialPort([this](const SComFrame& frame) { cell->receive(frame); });
        cell->prepareImageFolders();
        cell->openResultDatabase();
        cell->createAutoTrigger();
        cell->createController();
        cell->connectStations();
        cell->selectRunModels();
        cell->startStatusTick();
        cell->enableStations();
    }
    void open()
    {
        cell->openRoad();
        scheduler.settle();
    }

    void send(int command, int word0, int word1 = 0)
    {
        modules->port->receive(command, word0, word1);
        scheduler.settle();
    }
    /// An image of a station's camera, as the camera's thread delivers it.
    void deliver(int station, const QImage& image = QImage(8, 8, QImage::Format_Grayscale8))
    {
        FakeCameras& cameras = modules->cameras;
        const QString key = QStringLiteral("cam%1").arg(station);
        const quint64 number = cameras.numbered ? cameras.numbers.value(cameras.asked.lastIndexOf(key)) : 0;
        std::thread([&] { number > 0 ? cameras.end({key, number, image, {}}) : cameras.deliver(key, image); }).join();
        scheduler.settle();
    }
    /// The engine's answer to its oldest task.
    void answer(double angle, const QPointF& centre = {100, 50})
    {
        const FakeEngine::Task task = modules->inspection.tasks.front();
        QVariantMap result = FakeEngine::found(task.image, centre, angle);
        result[ResultKeys::originImage] = task.image;
        result[ResultKeys::solutionName] = task.solution;
        result[ResultKeys::taskName] = task.model;
        modules->inspection.answer(result);
        scheduler.settle();
    }
    /// Commands sent, without the heartbeats.
    QByteArray replies() const { return modules->port->commands().replace("C", ""); }

    TempHome home;
    ManualScheduler scheduler;
    ksSysConfig settings;
    ksGlobalConfig config;
    CellLimits limits;
    FakeModules* modules = nullptr; ///< the cell's
    std::unique_ptr<Cell> cell;
    QStringList panel; ///< station and line, without its time
};
