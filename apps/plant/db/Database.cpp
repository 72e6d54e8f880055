#include "db/Database.h"

#include <QCryptographicHash>
#include <QFile>

#include <pqxx/pqxx>

/// The texts lie in a static library.
static void loadTexts()
{
    Q_INIT_RESOURCE(plant);
}

namespace {

constexpr int schemaVersion = 1;

std::string resource(const char* name)
{
    QFile file(QStringLiteral(":/sql/%1.sql").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(std::string("no text of ") + name);
    return file.readAll().toStdString();
}

void readVersion(pqxx::transaction_base& work, int* version, std::string* logic)
{
    work.exec("CREATE TABLE IF NOT EXISTS public.plant_version (version integer NOT NULL, logic text NOT NULL)");
    const pqxx::result rows = work.exec("SELECT version, logic FROM public.plant_version");
    *version = rows.empty() ? 0 : rows[0][0].as<int>();
    *logic = rows.empty() ? std::string() : rows[0][1].as<std::string>();
}

void migrate(pqxx::transaction_base& work)
{
    int version = 0;
    std::string logic;
    readVersion(work, &version, &logic);
    if (version > schemaVersion)
        throw std::runtime_error("the database is of version " + std::to_string(version) + ", this program knows " +
                                 std::to_string(schemaVersion) + ": please install the newer program here, too");
    for (int next = version + 1; next <= schemaVersion; ++next)
        work.exec(resource(std::to_string(next).c_str()));
    const std::string text = resource("store") + resource("views") + resource("page");
    const std::string digest =
        QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha256).toHex().toStdString();
    if (version == schemaVersion && logic == digest)
        return;
    work.exec("SET search_path TO plant");
    work.exec(text);
    work.exec("DELETE FROM public.plant_version");
    work.exec_params("INSERT INTO public.plant_version VALUES ($1, $2)", schemaVersion, digest);
}

bool isPassing(const std::string& code)
{
    for (const char* kind : {"08", "25", "40", "53", "55", "57", "58", "XX"})
        if (code.compare(0, 2, kind) == 0)
            return true;
    return code.empty();
}

} // namespace

struct Database::Line
{
    pqxx::connection connection;
};

Database::Database(std::string address)
    : m_address(std::move(address))
{
    loadTexts();
}

Database::~Database() = default;

pqxx::connection_base& Database::connection()
{
    if (m_line && m_line->connection.is_open())
        return m_line->connection;
    m_line.reset();
    std::unique_ptr<Line> line(new Line{pqxx::connection{m_address}});
    pqxx::nontransaction(line->connection).exec("SET search_path TO plant; SET timezone TO 'UTC'");
    m_line = std::move(line);
    return m_line->connection;
}

void Database::drop()
{
    m_line.reset();
}

void Database::bringUp()
{
    pqxx::work work(connection());
    work.exec("SET LOCAL client_min_messages TO warning");
    work.exec("SELECT pg_advisory_xact_lock(7200)");
    migrate(work);
    work.commit();
    drop();
}

DatabaseError databaseError()
{
    try {
        throw;
    } catch (const pqxx::sql_error& error) {
        const std::string code = error.sqlstate();
        const QString text = QString::fromUtf8(error.what()).section(QLatin1Char('\n'), 0, 0);
        return {isPassing(code) ? DatabaseFault::Passing : DatabaseFault::Refused, code, text};
    } catch (const std::exception& error) {
        return {DatabaseFault::Passing, {}, QString::fromUtf8(error.what()).section(QLatin1Char('\n'), 0, 0)};
    }
}
