#pragma once

#include "http/Accounts.h"

#include <memory>
#include <thread>
#include <vector>

class Database;
class Health;
class LiveCells;

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

/// The page and what it reads, over HTTP or HTTPS. Reading only, but for the log-in.
class PageServer
{
public:
    struct Options
    {
        std::string address = "127.0.0.1";
        int port = 8090;         ///< 0: any that is free
        std::string certificate; ///< PEM files; both empty: HTTP
        std::string key;
        std::string metricsFrom; ///< addresses that may read /metrics besides this machine's own, by commas
        std::string database;
    };

    PageServer(Options options, Health& health);
    ~PageServer();

    /// False when the address cannot be had; `error` says why.
    bool start(QString* error);
    void stop();
    int port() const { return m_port; }

private:
    using Request = httplib::Request;
    using Response = httplib::Response;
    struct Pool;

    void addStatic();
    void addLogIn();
    void addQueries();
    void addPictures();
    void addLive();
    void addMetrics();
    /// A route for whoever is logged in; `answer` is called with a database of its own, and may throw.
    template <typename Answer>
    void get(const char* pattern, Answer answer, bool adminOnly = false);
    /// A route that answers what a query returns, JSON in one field, with parameters out of the request.
    void addQuery(const char* pattern, const char* query, std::vector<const char*> parameters);
    bool mayPass(Database& database, const Request& request, Response& response, bool adminOnly);

    const Options m_options;
    Health& m_health;
    Accounts m_accounts;
    std::unique_ptr<Pool> m_pool;
    std::unique_ptr<LiveCells> m_live;
    std::unique_ptr<httplib::Server> m_server;
    std::thread m_thread;
    int m_port = 0;
};
