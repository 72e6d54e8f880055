#include "http/PageServer.h"

#include "db/Database.h"
#include "http/LiveCells.h"
#include "http/PageJson.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>

#include <httplib.h>
#include <pqxx/pqxx>

namespace {

constexpr const char* cookieName = "valvecell";
constexpr size_t threads = 96;
constexpr int mostLive = 64;
constexpr const char* json = "application/json; charset=utf-8";

std::string typeOf(const QString& file)
{
    const QString ending = QFileInfo(file).suffix();
    return ending == QLatin1String("js")     ? "text/javascript; charset=utf-8"
           : ending == QLatin1String("css")  ? "text/css; charset=utf-8"
           : ending == QLatin1String("svg")  ? "image/svg+xml"
           : ending == QLatin1String("html") ? "text/html; charset=utf-8"
                                             : "application/octet-stream";
}

std::string tokenOf(const httplib::Request& request)
{
    const std::string cookies = request.get_header_value("Cookie");
    const std::string name = std::string(cookieName) + '=';
    for (size_t begin = 0; begin < cookies.size();) {
        const size_t end = std::min(cookies.find("; ", begin), cookies.size());
        if (cookies.compare(begin, name.size(), name) == 0)
            return cookies.substr(begin + name.size(), end - begin - name.size());
        begin = end + 2;
    }
    return {};
}

void answerError(httplib::Response& response, int status, const char* word, const QString& text = {})
{
    response.status = status;
    const QJsonObject object{{"error", QLatin1String(word)}, {"text", text}};
    response.set_content(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString(), json);
}

/// "#1" is what the first pair of brackets of the pattern took, else the name of a parameter; none: null.
std::optional<std::string> valueOf(const httplib::Request& request, const char* parameter)
{
    if (parameter[0] == '#')
        return request.matches[static_cast<size_t>(parameter[1] - '0')].str();
    const std::string value = request.get_param_value(parameter);
    return value.empty() ? std::nullopt : std::make_optional(value);
}

bool isThisMachine(const std::string& address)
{
    return address.rfind("127.", 0) == 0 || address == "::1";
}

} // namespace

/// Databases that are lent to requests.
struct PageServer::Pool
{
    using Lent = std::unique_ptr<Database, std::function<void(Database*)>>;

    explicit Pool(std::string databaseAddress)
        : address(std::move(databaseAddress))
    {
    }
    Lent lend()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        std::unique_ptr<Database> database;
        if (idle.empty())
            database = std::make_unique<Database>(address);
        else {
            database = std::move(idle.back());
            idle.pop_back();
        }
        return Lent(database.release(), [this](Database* returned) {
            const std::lock_guard<std::mutex> back(mutex);
            idle.emplace_back(returned);
            if (idle.size() > 8)
                idle.erase(idle.begin());
        });
    }

    const std::string address;
    std::mutex mutex; // protects idle
    std::vector<std::unique_ptr<Database>> idle;
};

PageServer::PageServer(Options options, Health& health)
    : m_options(std::move(options))
    , m_health(health)
    , m_pool(std::make_unique<Pool>(m_options.database))
    , m_live(std::make_unique<LiveCells>(m_options.database, health))
{
    if (m_options.certificate.empty())
        m_server = std::make_unique<httplib::Server>();
    else
        m_server = std::make_unique<httplib::SSLServer>(m_options.certificate.c_str(), m_options.key.c_str());
    m_server->new_task_queue = [] { return new httplib::ThreadPool(threads); };
    m_server->set_payload_max_length(64 * 1024);
    m_server->set_keep_alive_timeout(5);
    m_server->set_read_timeout(10);
    m_server->set_default_headers(
        {{"Content-Security-Policy", "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
                                     "connect-src 'self'; form-action 'self'; base-uri 'none'; frame-ancestors 'none'"},
         {"X-Content-Type-Options", "nosniff"},
         {"Referrer-Policy", "no-referrer"},
         {"X-Frame-Options", "DENY"}});
    addStatic();
    addLogIn();
    addQueries();
    addPictures();
    addLive();
    addMetrics();
}

PageServer::~PageServer()
{
    stop();
}

bool PageServer::start(QString* error)
{
    if (!m_server->is_valid()) {
        *error =
            QStringLiteral("%1: certificate or key cannot be used").arg(QString::fromStdString(m_options.certificate));
        return false;
    }
    m_port = m_options.port == 0 ? m_server->bind_to_any_port(m_options.address.c_str())
             : m_server->bind_to_port(m_options.address.c_str(), m_options.port) ? m_options.port
                                                                                 : -1;
    if (m_port < 0) {
        *error = QStringLiteral("%1:%2 cannot be had: another program listens there, or it is not this machine's")
                     .arg(QString::fromStdString(m_options.address))
                     .arg(m_options.port);
        return false;
    }
    m_thread = std::thread([this] { m_server->listen_after_bind(); });
    return true;
}

void PageServer::stop()
{
    m_live->stop();
    m_server->stop();
    if (m_thread.joinable())
        m_thread.join();
}

void PageServer::addStatic()
{
    QDirIterator files(QStringLiteral(":/page"), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const std::string content = file.readAll().toStdString();
        const std::string tag = '"' +
                                QCryptographicHash::hash(QByteArray::fromStdString(content), QCryptographicHash::Md5)
                                    .toHex()
                                    .toStdString() +
                                '"';
        const QString name = file.fileName().mid(7);
        const std::string path = name == QLatin1String("index.html") ? "/" : '/' + name.toStdString();
        m_server->Get(path, [content, tag, type = typeOf(name)](const Request& request, Response& response) {
            response.set_header("ETag", tag);
            response.set_header("Cache-Control", "no-cache");
            if (request.get_header_value("If-None-Match") == tag)
                response.status = 304;
            else
                response.set_content(content, type);
        });
    }
}

bool PageServer::mayPass(Database& database, const Request& request, Response& response, bool adminOnly)
{
    const std::optional<Accounts::Account> account = Accounts::whoIs(database, tokenOf(request));
    if (account && (account->isAdmin || !adminOnly))
        return true;
    answerError(response, account ? 403 : 401, account ? "role" : "login");
    return false;
}

template <typename Answer>
void PageServer::get(const char* pattern, Answer answer, bool adminOnly)
{
    m_server->Get(pattern, [this, answer, adminOnly](const Request& request, Response& response) {
        response.set_header("Cache-Control", "no-store");
        const Pool::Lent database = m_pool->lend();
        try {
            if (mayPass(*database, request, response, adminOnly))
                answer(*database, request, response);
        } catch (const std::exception&) {
            const DatabaseError error = databaseError();
            const bool refused = error.fault == DatabaseFault::Refused;
            if (!refused)
                database->drop();
            answerError(response, refused ? 400 : 503, refused ? "question" : "database", error.text);
        }
    });
}

void PageServer::addLogIn()
{
    m_server->Post("/api/login", [this](const Request& request, Response& response) {
        const QJsonObject given = QJsonDocument::fromJson(QByteArray::fromStdString(request.body)).object();
        const Pool::Lent database = m_pool->lend();
        std::string token;
        try {
            switch (m_accounts.logIn(*database, given["name"].toString(), given["password"].toString(),
                                     request.remote_addr, &token)) {
            case Accounts::Answer::TooManyAttempts:
                return answerError(response, 429, "attempts");
            case Accounts::Answer::Wrong:
                return answerError(response, 401, "password");
            case Accounts::Answer::Welcome:
                break;
            }
        } catch (const std::exception&) {
            database->drop();
            return answerError(response, 503, "database", databaseError().text);
        }
        response.set_header("Set-Cookie", std::string(cookieName) + '=' + token +
                                              "; HttpOnly; SameSite=Strict; Path=/; Max-Age=" +
                                              std::to_string(Accounts::sessionHours * 3600) +
                                              (m_options.certificate.empty() ? "" : "; Secure"));
        response.set_content("{}", json);
    });
    m_server->Post("/api/logout", [this](const Request& request, Response& response) {
        const Pool::Lent database = m_pool->lend();
        try {
            Accounts::logOut(*database, tokenOf(request));
        } catch (const std::exception&) {
            database->drop();
        }
        response.set_header("Set-Cookie", std::string(cookieName) + "=; HttpOnly; SameSite=Strict; Path=/; Max-Age=0");
        response.set_content("{}", json);
    });
    get("/api/me", [this](Database& database, const Request& request, Response& response) {
        const std::optional<Accounts::Account> account = Accounts::whoIs(database, tokenOf(request));
        pqxx::nontransaction work(database.connection());
        QJsonArray shifts;
        for (const auto& row : work.exec("SELECT to_char(begins, 'HH24:MI') FROM shift ORDER BY number"))
            shifts.append(QString::fromUtf8(row[0].c_str()));
        const QJsonObject me{
            {"name", QString::fromStdString(account->name)},
            {"admin", account->isAdmin},
            {"shifts", shifts},
            {"health", QJsonDocument::fromJson(QByteArray::fromStdString(PageJson::health(m_health))).object()}};
        response.set_content(QJsonDocument(me).toJson(QJsonDocument::Compact).toStdString(), json);
    });
}

void PageServer::addQuery(const char* pattern, const char* query, std::vector<const char*> parameters)
{
    get(pattern, [query, parameters](Database& database, const Request& request, Response& response) {
        std::vector<std::optional<std::string>> values;
        std::vector<const char*> given;
        for (const char* parameter : parameters)
            values.push_back(valueOf(request, parameter));
        for (const std::optional<std::string>& value : values)
            given.push_back(value ? value->c_str() : nullptr);
        pqxx::nontransaction work(database.connection());
        const pqxx::result rows = work.exec_params(query, pqxx::prepare::make_dynamic_params(given));
        response.set_content(rows[0][0].as<std::string>(), json);
    });
}

void PageServer::addQueries()
{
    addQuery("/api/cells", "SELECT page_cells(NULL)", {});
    addQuery(R"(/api/cells/(\d+)/hours)", "SELECT page_hours($1, $2)", {"#1", "day"});
    addQuery(R"(/api/cells/(\d+)/month)", "SELECT page_month($1, $2)", {"#1", "month"});
    addQuery(R"(/api/cells/(\d+)/parts)",
             "SELECT page_parts($1, coalesce($2::timestamptz, 'infinity'), $3, coalesce($4::boolean, false), 50)",
             {"#1", "before", "outcome", "pictures"});
    addQuery(R"(/api/cells/(\d+)/log)", "SELECT page_log($1, coalesce($2::timestamptz, 'infinity'), 100)",
             {"#1", "before"});
    addQuery("/api/compare", "SELECT page_compare($1, $2, $3)", {"by", "from", "to"});
    addQuery("/api/drift", "SELECT page_drift($1, $2)", {"from", "to"});
    addQuery("/api/shift", "SELECT page_shift($1, $2, $3)", {"cell", "day", "shift"});
    addQuery("/api/faults", "SELECT page_faults()", {});
}

void PageServer::addPictures()
{
    get(R"(/api/pictures/(\d+)/(\d+))", [](Database& database, const Request& request, Response& response) {
        pqxx::nontransaction work(database.connection());
        const pqxx::result rows = work.exec_params("SELECT jpeg FROM picture WHERE source = $1 AND row = $2 LIMIT 1",
                                                   request.matches[1].str(), request.matches[2].str());
        if (rows.empty())
            return answerError(response, 404, "picture");
        const pqxx::binarystring jpeg(rows[0][0]);
        response.headers.erase("Cache-Control");
        response.set_header("Cache-Control", "private, max-age=86400, immutable");
        response.set_content(jpeg.get(), jpeg.size(), "image/jpeg");
    });
    get(R"(/api/aside/(\d+))",
        [](Database& database, const Request& request, Response& response) {
            pqxx::nontransaction work(database.connection());
            const pqxx::result rows =
                work.exec_params("SELECT payload FROM aside WHERE id = $1", request.matches[1].str());
            if (rows.empty())
                return answerError(response, 404, "aside");
            const pqxx::binarystring payload(rows[0][0]);
            response.set_header("Content-Disposition", "attachment; filename=\"payload.bin\"");
            response.set_content(payload.get(), payload.size(), "application/octet-stream");
        },
        true);
}

void PageServer::addLive()
{
    const auto open = std::make_shared<std::atomic<int>>(0);
    get("/api/live", [this, open](Database&, const Request&, Response& response) {
        if (open->fetch_add(1) >= mostLive) {
            open->fetch_sub(1);
            return answerError(response, 503, "busy");
        }
        const auto last = std::make_shared<quint64>(m_live->newest());
        response.set_chunked_content_provider(
            "text/event-stream",
            [this, last](size_t, httplib::DataSink& sink) {
                std::string events;
                if (!m_live->wait(last.get(), &events))
                    return false;
                if (events.empty())
                    events = ": \n\n"; // so that a page that is gone is noticed
                return sink.write(events.data(), events.size());
            },
            [open](bool) { open->fetch_sub(1); });
    });
}

void PageServer::addMetrics()
{
    m_server->Get("/metrics", [this](const Request& request, Response& response) {
        const std::string allowed = ',' + m_options.metricsFrom + ',';
        if (!isThisMachine(request.remote_addr) && allowed.find(',' + request.remote_addr + ',') == std::string::npos)
            return answerError(response, 403, "address");
        const Pool::Lent database = m_pool->lend();
        const QMap<QString, Health::Trouble> troubles = m_health.troubles();
        std::string text = "# TYPE valvecell_up gauge\n";
        for (const char* part : {"broker", "database"})
            text += std::string("valvecell_up{part=\"") + part + "\"} " +
                    (troubles.contains(QLatin1String(part)) ? "0\n" : "1\n");
        try {
            pqxx::nontransaction work(database->connection());
            text += work.exec("SELECT page_metrics()")[0][0].as<std::string>();
        } catch (const std::exception&) {
            database->drop();
        }
        response.set_content(text, "text/plain; version=0.0.4; charset=utf-8");
    });
}
