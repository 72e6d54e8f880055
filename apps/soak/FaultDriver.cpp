#include "FaultDriver.h"

#include <QDateTime>

#include <algorithm>

namespace {

constexpr int shortestMs = 500;
constexpr int longestMs = 5000;
/// What a full disk did not take has been tried again by then.
constexpr qint64 retriedMs = 5000;
const QString fullDisk = QStringLiteral("disk");

} // namespace

FaultDriver::FaultDriver(QStringList names, quint64 seed, const Faults::Ground& ground)
    : m_names(std::move(names))
    , m_ground(ground)
    , m_random(seed)
{
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &FaultDriver::next);
}

FaultDriver::~FaultDriver()
{
    stop();
}

/// The generator's numbers are the same everywhere; the library's distributions are not.
int FaultDriver::random(int low, int high)
{
    return low + static_cast<int>(m_random() % static_cast<quint64>(high - low + 1));
}

void FaultDriver::start(int meanPauseMs)
{
    m_meanPauseMs = meanPauseMs;
    if (!m_names.isEmpty())
        m_next.start(random(m_meanPauseMs / 2, m_meanPauseMs));
}

void FaultDriver::stop()
{
    m_next.stop();
    while (!m_active.empty())
        end(m_active.front().fault->name());
}

/// What lasts already does not begin once more.
void FaultDriver::next()
{
    m_next.start(random(m_meanPauseMs / 2, m_meanPauseMs * 3 / 2));
    const QString name = m_names[random(0, m_names.size() - 1)];
    if (!lasts(name))
        begin(name);
}

void FaultDriver::begin(const QString& name)
{
    const int ms = random(shortestMs, longestMs);
    if (name == QLatin1String("kill") || name == QLatin1String("cut")) {
        ++m_counts[name];
        name == QLatin1String("kill") ? emit killWanted() : emit cutWanted(ms);
        return;
    }
    Active active{Faults::make(name, m_ground), QDateTime::currentMSecsSinceEpoch()};
    if (!active.fault->begin())
        return emit happened(name + QStringLiteral(" could not be brought about"));
    ++m_counts[name];
    emit happened(QStringLiteral("%1 for %2 ms").arg(name).arg(ms));
    if (active.fault->losesImages())
        emit imagesLost();
    m_active.push_back(std::move(active));
    QTimer::singleShot(ms, this, [this, name] { end(name); });
}

void FaultDriver::end(const QString& name)
{
    const auto own = std::find_if(m_active.begin(), m_active.end(),
                                  [&name](const Active& active) { return active.fault->name() == name; });
    if (own == m_active.end())
        return;
    own->fault->end();
    const FaultTime time{own->beginMs, QDateTime::currentMSecsSinceEpoch()};
    if (own->fault->losesPictures())
        m_pictureFaults.append(time);
    if (name == fullDisk)
        m_lastFullDisk = time;
    m_active.erase(own);
}

const FaultDriver::Active* FaultDriver::active(const QString& name) const
{
    for (const Active& active : m_active)
        if (active.fault->name() == name)
            return &active;
    return nullptr;
}

std::optional<qint64> FaultDriver::diskFullSinceMs() const
{
    if (const Active* full = active(fullDisk))
        return full->beginMs;
    const bool justOver = m_lastFullDisk.endMs + retriedMs > QDateTime::currentMSecsSinceEpoch();
    return justOver ? std::optional(m_lastFullDisk.beginMs) : std::nullopt;
}

bool FaultDriver::movesPictures() const
{
    return lasts(QStringLiteral("archive"));
}
