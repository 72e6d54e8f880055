#include "graphics/BandRenderer.h"

#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int kBandRows = 32;
constexpr int kRowsWorthHelp = 128;

class Job
{
public:
    Job(const QSize& size, const RenderBand& render)
        : m_size(size)
        , m_render(render)
        , m_bands(static_cast<std::size_t>((size.height() + kBandRows - 1) / kBandRows))
    {
    }

    /// From the bottom up, towards the owner.
    void help()
    {
        for (int i = count() - 1; i >= 0; --i)
            renderIfFree(i);
    }

    void finish(const DrawBand& draw)
    {
        std::vector<int> late;
        for (int i = 0; i < count(); ++i) {
            renderIfFree(i);
            if (!drawIfDone(i, draw))
                late.push_back(i);
        }
        for (const int i : late) {
            if (drawIfDone(i, draw))
                continue;
            QImage image = rendered(i);
            draw(image, i * kBandRows);
        }
    }

private:
    enum State { Free, Taken, Done };
    struct Band
    {
        std::atomic<int> state{Free};
        QImage image; ///< whoever took the band writes it; read when done
    };

    int count() const { return static_cast<int>(m_bands.size()); }

    QImage rendered(int i) const
    {
        const int top = i * kBandRows;
        QImage image(m_size.width(), std::min(kBandRows, m_size.height() - top), QImage::Format_RGB32);
        m_render(image, top);
        return image;
    }

    void renderIfFree(int i)
    {
        int free = Free;
        if (!m_bands[i].state.compare_exchange_strong(free, Taken))
            return;
        m_bands[i].image = rendered(i);
        m_bands[i].state.store(Done, std::memory_order_release);
    }

    bool drawIfDone(int i, const DrawBand& draw)
    {
        if (m_bands[i].state.load(std::memory_order_acquire) != Done)
            return false;
        draw(m_bands[i].image, i * kBandRows);
        m_bands[i].image = QImage(); // its memory serves the next one
        return true;
    }

    const QSize m_size;
    const RenderBand m_render;
    std::vector<Band> m_bands;
};

QThreadPool& helpers()
{
    static QThreadPool pool;
    pool.setMaxThreadCount(std::min(3, std::max(1, QThread::idealThreadCount() - 1)));
    return pool;
}

} // namespace

void renderInBands(const QSize& size, const RenderBand& render, const DrawBand& draw)
{
    const auto job = std::make_shared<Job>(size, render);
    const bool helped = size.height() >= kRowsWorthHelp && QThread::idealThreadCount() > 1;
    for (int i = 0; helped && i < helpers().maxThreadCount(); ++i) {
        QRunnable* helper = QRunnable::create([job] { job->help(); });
        if (!helpers().tryStart(helper))
            delete helper;
    }
    job->finish(draw);
}
