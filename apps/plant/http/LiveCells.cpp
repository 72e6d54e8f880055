#include "http/LiveCells.h"

#include "Health.h"
#include "http/PageJson.h"

#include <pqxx/pqxx>

namespace {

constexpr auto pace = std::chrono::milliseconds(300);
constexpr size_t mostEvents = 64;

} // namespace

LiveCells::LiveCells(std::string database, Health& health)
    : m_database(std::move(database))
    , m_health(health)
    , m_thread(&LiveCells::run, this)
{
}

LiveCells::~LiveCells()
{
    stop();
    m_thread.join();
}

void LiveCells::stop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
}

quint64 LiveCells::newest() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_newest;
}

bool LiveCells::wait(quint64* last, std::string* events)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_changed.wait_for(lock, std::chrono::seconds(1), [&] { return m_ending || m_newest > *last; });
    events->clear();
    for (auto event = m_events.upper_bound(*last); event != m_events.end(); ++event)
        *events += event->second;
    *last = m_newest;
    return !m_ending;
}

void LiveCells::run()
{
    const auto ending = [this] {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, pace, [this] { return m_ending; });
    };
    while (!ending()) {
        publishHealth();
        try {
            look();
        } catch (const std::exception& error) {
            qWarning("page: %s", error.what());
            m_database.drop();
            m_fresh = true;
        }
    }
}

void LiveCells::look()
{
    pqxx::nontransaction work(m_database.connection());
    std::string cells;
    bool aside = false;
    for (const auto& row : work.exec("SELECT * FROM page_changes() WHERE changed IS NOT NULL")) {
        const int id = row[0].as<int>();
        std::string& known = m_known[id];
        if (known == row[1].c_str())
            continue;
        known = row[1].c_str();
        aside = aside || id == 0;
        if (id != 0)
            cells += (cells.empty() ? "{" : ",") + std::to_string(id);
    }
    if (m_fresh)
        publish("reload", "{}");
    else if (!cells.empty())
        publish("cells", work.exec_params("SELECT page_cells($1)", cells + '}')[0][0].as<std::string>());
    if (aside && !m_fresh)
        publish("aside", "{}");
    m_fresh = false;
}

void LiveCells::publishHealth()
{
    const std::string json = PageJson::health(m_health);
    if (json != m_healthSent)
        publish("health", json);
    m_healthSent = json;
}

void LiveCells::publish(const char* name, const std::string& json)
{
    std::string event = std::string("event: ") + name + '\n';
    size_t begin = 0;
    for (size_t end = 0; end != std::string::npos; begin = end + 1) { // a line break of the JSON would end the event
        end = json.find('\n', begin);
        event += "data: " + json.substr(begin, end - begin) + '\n';
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_events[++m_newest] = event + '\n';
        if (m_events.size() > mostEvents)
            m_events.erase(m_events.begin());
    }
    m_changed.notify_all();
}
