#include "../Bench.h"
#include "CameraEvents.h"
#include "CameraFactory.h"
#include "CameraFile.h"
#include "device/aravis/GObjectPtr.h"
#include "sim/GigeSim.h"

#include <QGuiApplication>

#include <arv.h>
#include <condition_variable>

/// From the software trigger to the image, 5 million pixels from a simulated network camera: by the bare library up to
/// its buffer, and through all of the program's own camera code up to its callback. Both use the same camera, one after
/// the other, so that their difference is what the program adds.
namespace {

constexpr QSize sensor(2448, 2048);
constexpr const char* cameraAddress = "127.0.0.9";

void bareLibrary(benchmark::State& state)
{
    GErrorHolder error;
    GObjectPtr<ArvCamera> camera(arv_camera_new(cameraAddress, &error));
    if (!camera)
        return state.SkipWithError("the camera cannot be opened");
    arv_camera_set_trigger(camera.get(), "Software", nullptr);
    arv_camera_set_exposure_time(camera.get(), 1000, nullptr);
    GObjectPtr<ArvStream> stream(arv_camera_create_stream(camera.get(), nullptr, nullptr, nullptr));
    const auto payload = arv_camera_get_payload(camera.get(), nullptr);
    for (int i = 0; i < 6; ++i)
        arv_stream_push_buffer(stream.get(), arv_buffer_new_allocate(payload));
    arv_camera_start_acquisition(camera.get(), nullptr);
    Laps laps(state);
    for (auto _ : state) {
        ArvBuffer* buffer = nullptr;
        laps.time([&] {
            arv_camera_software_trigger(camera.get(), nullptr);
            buffer = arv_stream_timeout_pop_buffer(stream.get(), 2'000'000);
        });
        if (!buffer || arv_buffer_get_status(buffer) != ARV_BUFFER_STATUS_SUCCESS)
            state.SkipWithError("no whole image");
        if (buffer)
            arv_stream_push_buffer(stream.get(), buffer);
    }
    arv_camera_stop_acquisition(camera.get(), nullptr);
}

void wholeCamera(benchmark::State& state)
{
    CameraEvents events;
    std::mutex mutex;
    std::condition_variable arrived;
    bool done = false, good = false;
    events.setCaptureCallback([&](const ICameraCapture::Outcome& outcome) {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            good = !outcome.image.isNull();
            done = true;
        }
        arrived.notify_one();
    });
    const auto camera = makeCamera({QStringLiteral("cam"),
                                    int(CameraType::Gige),
                                    {{QStringLiteral("device"), QString::fromLatin1(cameraAddress)},
                                     {QStringLiteral("exposure_ms"), 1.0},
                                     {QStringLiteral("timeout_ms"), 2000}}},
                                   events);
    camera->open();
    const auto capture = [&] {
        camera->trigger(1);
        std::unique_lock<std::mutex> lock(mutex);
        arrived.wait(lock, [&] { return done; });
        done = false;
    };
    for (int tries = 0; tries < 50 && !good; ++tries) // until the bare library's control is over
        capture();
    Laps laps(state);
    for (auto _ : state) {
        laps.time(capture);
        if (!good)
            state.SkipWithError("no whole image");
    }
    camera->close();
}

} // namespace

BENCHMARK(bareLibrary)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(100);
BENCHMARK(wholeCamera)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(100);

int main(int argc, char** argv)
{
    QImage image(sensor, QImage::Format_Grayscale8);
    image.fill(Qt::gray);
    GigeSim sim({QHostAddress(QString::fromLatin1(cameraAddress)), "BENCH", {}, sensor, 1000},
                [&image](quint64) { return image; });
    QString error;
    if (!sim.start(&error))
        qFatal("%s", qPrintable(error));
    return runBenchmarks<QGuiApplication>(argc, argv);
}
