// The plant's collector and page: see --help.

#include "Health.h"
#include "PlantOptions.h"
#include "PlantPolicy.h"
#include "Printing.h"
#include "db/Database.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QThread>

#include <csignal>
#include <pqxx/except>
#include <unistd.h>

namespace {

enum ExitCode { Good = 0, CannotBegin = 2 };

volatile std::sig_atomic_t endRequested = 0;

void say(const QString& text)
{
    QTextStream(stdout) << text << '\n';
}

int cannotBegin(const QString& error)
{
    QTextStream(stderr) << "valvecell-plant: " << error << '\n';
    return CannotBegin;
}

int settle(const PlantOptions& options, Database& database)
{
    if (!options.shifts.isEmpty())
        PlantPolicy::setShifts(database, options.shifts);
    if (!options.keep.isEmpty())
        PlantPolicy::setRetention(database, options.keep);
    if (!options.addUser.isEmpty()) {
        if (isatty(STDIN_FILENO))
            QTextStream(stderr) << "Password: " << Qt::flush;
        Accounts::add(database, options.addUser, QTextStream(stdin).readLine(), options.admin);
    }
    return Good;
}

/// Waits for a database that is not there yet, as after a power cut, unless somebody waits for the program itself.
void bringUp(Database& database, bool patient)
{
    while (true) {
        try {
            return database.bringUp();
        } catch (const pqxx::failure&) {
            const DatabaseError error = databaseError();
            if (!patient || endRequested || error.fault == DatabaseFault::Refused)
                throw;
            qWarning("database: %s", qUtf8Printable(error.text));
        }
        database.drop();
        QThread::sleep(1);
    }
}

int serve(const PlantOptions& options)
{
    Health health;
    PageServer page(options.page, health);
    QString error;
    if (!page.start(&error))
        return cannotBegin(error);
    Collector collector(options.collector, health);
    collector.start();
    say(QStringLiteral("The page is at %1://%2:%3")
            .arg(QLatin1String(options.page.certificate.empty() ? "http" : "https"),
                 QString::fromStdString(options.page.address))
            .arg(page.port()));
    while (!endRequested)
        QThread::msleep(100);
    const bool stored = collector.stop();
    page.stop();
    if (!stored)
        std::_Exit(Good); // the broker must not take for stored what was not
    return Good;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (Printing::version("valvecell-plant"))
        return Good;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.contains(QStringLiteral("--help"))) {
        say(PlantOptions::help());
        return Good;
    }
    PlantOptions options;
    QString error;
    if (!options.parse(arguments, &error))
        return cannotBegin(error);
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { endRequested = 1; });
    try {
        Database database(options.page.database);
        const bool settles = !options.shifts.isEmpty() || !options.keep.isEmpty() || !options.addUser.isEmpty();
        bringUp(database, !settles);
        if (settles)
            return settle(options, database);
    } catch (const std::exception& failure) {
        return cannotBegin(QString::fromUtf8(failure.what()).trimmed());
    }
    return serve(options);
}
