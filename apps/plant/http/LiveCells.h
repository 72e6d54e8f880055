#pragma once

#include "db/Database.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

class Health;

/// Cells as they change, for all pages that are open: the database is asked three times a second which did, so that
/// what other collectors store counts as well, and storing waits for no listener.
class LiveCells
{
public:
    LiveCells(std::string database, Health& health);
    ~LiveCells();

    void stop();

    /// Waits for events after number `*last`, at most a second, and sets that; each is one server-sent event. False
    /// when all has ended. Any thread.
    bool wait(quint64* last, std::string* events);
    quint64 newest() const;

private:
    void run();
    /// One look at the database.
    void look();
    void publish(const char* name, const std::string& json);
    void publishHealth();

    Database m_database;
    Health& m_health;
    std::string m_healthSent;           // these three of the thread
    std::map<int, std::string> m_known; // when each cell was seen to change; 0: what was kept aside
    bool m_fresh = true;                // nothing is known yet

    mutable std::mutex m_mutex; // protects the following
    std::condition_variable m_changed;
    std::map<quint64, std::string> m_events; // the newest some
    quint64 m_newest = 0;
    bool m_ending = false;
    std::thread m_thread;
};
