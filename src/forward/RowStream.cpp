#include "forward/RowStream.h"

#include <algorithm>

namespace {

constexpr std::size_t mostAsked = 64; // who asks for more repeats it

} // namespace

RowStream::RowStream(std::unique_ptr<RowSource> source, QString name, ForwardState::Stream state)
    : m_source(std::move(source))
    , m_name(std::move(name))
    , m_state(std::move(state))
    , m_sent(m_state.row)
{
}

bool RowStream::look()
{
    if (!m_source->look())
        return false;
    m_first = m_source->first();
    m_last = m_source->last();
    const QString time = m_source->timeOf(m_state.row);
    const bool other = m_last < m_state.seen || m_last < m_state.row || (!time.isEmpty() && time != m_state.time);
    m_state.seen = m_last;
    if (!m_state.epoch.isEmpty() && !other)
        return false;
    begin();
    return true;
}

/// What was recorded before forwarding was first switched on is not sent by itself. Of a database that took the place
/// of another (a restored one, or a fresh one), what was there when the last row went is known to the plant.
void RowStream::begin()
{
    m_state.row = m_state.epoch.isEmpty() ? m_last : m_source->lastUntil(m_state.time);
    m_state.epoch = ForwardState::freshId();
    m_state.time = m_source->timeOf(m_state.row);
    m_asked.clear();
    rewind();
}

RowBatch RowStream::filled(RowBatch batch) const
{
    batch.epoch = m_state.epoch;
    return batch;
}

RowBatch RowStream::next()
{
    return filled(m_source->read(m_sent, m_last));
}

void RowStream::sent(quint64 number, qint64 upTo)
{
    m_underWay.push_back({number, upTo, false});
    m_sent = upTo;
}

bool RowStream::taken(quint64 number)
{
    const auto found = std::find_if(m_underWay.begin(), m_underWay.end(),
                                    [number](const Sent& sent) { return sent.number == number; });
    if (found == m_underWay.end())
        return false;
    found->taken = true;
    const qint64 before = m_state.row;
    while (!m_underWay.empty() && m_underWay.front().taken) {
        m_state.row = m_underWay.front().upTo;
        m_underWay.pop_front();
    }
    if (m_state.row == before)
        return false;
    if (const QString time = m_source->timeOf(m_state.row); !time.isEmpty())
        m_state.time = time;
    return true;
}

void RowStream::rewind()
{
    m_underWay.clear();
    m_sent = m_state.row;
}

void RowStream::ask(const ResendRequest& request)
{
    if (request.stream == m_name && request.epoch == m_state.epoch && m_asked.size() < mostAsked &&
        request.after < qMin(request.upTo, m_state.row))
        m_asked.push_back(request);
}

/// What was not sent yet comes by itself.
RowBatch RowStream::nextAsked()
{
    ResendRequest& request = m_asked.front();
    const qint64 upTo = qMin(request.upTo, m_state.row);
    const RowBatch batch = filled(m_source->read(request.after, upTo));
    if (batch.upTo >= upTo || batch.upTo == request.after)
        m_asked.pop_front();
    else
        request.after = batch.upTo;
    return batch;
}
