#pragma once

#include "Health.h"

#include <QString>

#include <memory>
#include <string>

namespace pqxx {
class connection_base;
}

/// A connection to the plant's database, opened when it is first needed and again after it broke. One thread.
class Database
{
public:
    /// `address`: as libpq has it, "host=/run/postgresql dbname=valvecell" or "postgresql://…".
    explicit Database(std::string address);
    ~Database();

    /// Throws pqxx::broken_connection when there is none.
    pqxx::connection_base& connection();
    /// The next connection() opens it anew.
    void drop();

    /// Makes the tables of this version, or brings those of an older one up to it; several programs may do so at once.
    /// Throws std::runtime_error with a sentence for the user when the tables are of a later version, or on failure.
    void bringUp();

private:
    const std::string m_address;
    /// The library's connection under its own type: it has no virtual destructor.
    struct Line;
    std::unique_ptr<Line> m_line;
};

/// What an error of the database means to whoever wanted to store.
enum class DatabaseFault {
    Passing, ///< the same may go well later: connection, memory, disk, two transactions in each other's way
    Refused  ///< it never will
};

struct DatabaseError
{
    DatabaseFault fault = DatabaseFault::Passing;
    std::string code; ///< of five letters, as the database has them; empty: no connection
    QString text;

    bool isDiskFull() const { return code == "53100"; }
    /// As the page tells it: the disk is full, or the database is away.
    Health::Trouble trouble() const
    {
        return {isDiskFull() ? QStringLiteral("diskFull") : QStringLiteral("away"), text};
    }
};

/// Of the exception that is being handled.
DatabaseError databaseError();
