#include "../Bench.h"
#include "db/archive/ImageArchive.h"
#include "db/archive/SaveImgThread.h"
#include "platform/System.h"

#include <QCoreApplication>
#include <QImageWriter>
#include <QTemporaryDir>

#include <turbojpeg.h>

namespace {

constexpr int width = 2448;
constexpr int height = 2048;

/// Five megapixels with the detail and the noise of a wheel under a ring light.
QImage samplePicture(QImage::Format format)
{
    QImage image(width, height, QImage::Format_Grayscale8);
    quint32 noise = 1;
    for (int y = 0; y < height; ++y) {
        uchar* const line = image.scanLine(y);
        for (int x = 0; x < width; ++x) {
            noise = noise * 1664525U + 1013904223U;
            const int distance = ((x - 1224) * (x - 1224) + (y - 1024) * (y - 1024)) / 4096;
            line[x] = static_cast<uchar>((distance % 160) + 40 + (noise >> 28));
        }
    }
    if (format != QImage::Format_Indexed8)
        return image.convertToFormat(format);
    // As an engine hands its drawing over: gray, with some colours for the pens.
    QImage drawing(image.constBits(), width, height, image.bytesPerLine(), format);
    for (int i = 0; i < 256; ++i)
        drawing.setColor(i, i < 250 ? qRgb(i, i, i) : qRgb(0, 255, 0));
    return drawing.copy();
}

void handOver(benchmark::State& state)
{
    const QTemporaryDir home;
    ImageArchive archive(home.path());
    archive.prepare();
    const QImage image = samplePicture(QImage::Format_Grayscale8);
    Laps laps(state);
    for (auto _ : state) {
        laps.time([&] { archive.save(1, "W18", image, ImageArchive::Source); });
        while (archive.waiting() > 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// A queue as full as it may get, of pictures that each have their own memory.
void memoryOfABurst(benchmark::State& state)
{
    const QTemporaryDir home;
    const QImage image = samplePicture(QImage::Format_RGB32);
    const auto resident = [] { return static_cast<double>(platform::residentMemoryKiB()) / 1024; };
    for (auto _ : state) {
        ImageArchive archive(home.path());
        archive.prepare();
        state.counters["before_MiB"] = resident();
        while (archive.givenUp() == 0)
            archive.save(1, "W18", image.copy(), ImageArchive::Source);
        state.counters["full_MiB"] = resident();
        while (archive.waiting() > 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.counters["after_MiB"] = resident();
    }
}

void encodeAsSaved(benchmark::State& state, QImage::Format format)
{
    const QTemporaryDir folder;
    const QImage image = samplePicture(format);
    QString error;
    for (auto _ : state) {
        if (!writeImageFile(image, folder.filePath("image.jpg"), &error))
            state.SkipWithError(qPrintable(error));
    }
}

/// What the saving thread cannot do without: the library at the same quality, into memory.
void encodeByTheLibraryAlone(benchmark::State& state, QImage::Format format, TJPF order)
{
    const QImage image = samplePicture(format);
    const TJSAMP sampling = order == TJPF_GRAY ? TJSAMP_GRAY : TJSAMP_420;
    const tjhandle jpeg = tjInitCompress();
    for (auto _ : state) {
        unsigned char* bytes = nullptr;
        unsigned long size = 0;
        tjCompress2(jpeg, image.constBits(), width, image.bytesPerLine(), height, order, &bytes, &size, sampling, 75,
                    TJFLAG_ACCURATEDCT);
        tjFree(bytes);
    }
    tjDestroy(jpeg);
}

} // namespace

BENCHMARK(handOver)->Iterations(200)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(memoryOfABurst)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeAsSaved, gray, QImage::Format_Grayscale8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeByTheLibraryAlone, gray, QImage::Format_Grayscale8, TJPF_GRAY)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeAsSaved, rgb888, QImage::Format_RGB888)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeByTheLibraryAlone, rgb888, QImage::Format_RGB888, TJPF_RGB)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeAsSaved, drawing, QImage::Format_Indexed8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeAsSaved, rgb32, QImage::Format_RGB32)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeByTheLibraryAlone, rgb32, QImage::Format_RGB32, TJPF_BGRX)->Unit(benchmark::kMillisecond);
