#include "PlantOptions.h"

#include "plant/BrokerLogin.h"

#include <QCommandLineParser>
#include <QSysInfo>

namespace {

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(
        "Collects what the cells of a plant publish at an MQTT broker into a PostgreSQL database, and serves the page "
        "that shows it. Several of them, each with an --instance of its own, divide the work and take over from each "
        "other.");
    parser.addOptions(
        {{"help", "Shows this text."},
         {"version", "Shows the version."},
         {"database", "The database, as libpq has it.", "ADDRESS", "dbname=valvecell"},
         {"broker", "Host and port of the broker.", "HOST[:PORT]", "localhost:1883"},
         {"broker-login", "File of two lines, name and password, that others may not read.", "FILE"},
         {"broker-tls", "TLS, with the authorities of that PEM file, or \"system\" for the system's.", "FILE"},
         {"broker-certificate", "This program's certificate for the broker, PEM.", "FILE"},
         {"broker-key", "Its key.", "FILE"},
         {"group", "Only this group's cells.", "NAME", "+"},
         {"instance", "Name of this collector among several.", "NAME", QSysInfo::machineHostName()},
         {"intakes", "Connections that store side by side.", "N", "6"},
         {"listen", "Where the page is served.", "ADDRESS:PORT", "127.0.0.1:8090"},
         {"certificate", "Serves the page over HTTPS with this PEM certificate.", "FILE"},
         {"key", "Its key.", "FILE"},
         {"metrics-from", "Addresses that may read /metrics besides this machine, by commas.", "LIST"},
         {"add-user", "Makes an account, or gives it a new password; the password is read from the input.", "NAME"},
         {"role", "Of that account: viewer, or admin, who also sees what was kept aside.", "ROLE", "viewer"},
         {"shifts", "Sets the times at which shifts begin, full or half hours: \"06:00, 14:00, 22:00\".", "TIMES"},
         {"keep", "Sets for how many months rows are kept: \"part=24,log_row=24,picture=3,part_slot=120,aside=3\".",
          "POLICY"}});
}

/// "host:port", the latter as given if missing.
bool splitAddress(const QString& text, QString* host, int* port)
{
    const int colon = text.lastIndexOf(QLatin1Char(':'));
    *host = colon < 0 ? text : text.left(colon);
    bool good = true;
    if (colon >= 0)
        *port = text.mid(colon + 1).toInt(&good);
    return good && !host->isEmpty() && *port >= 0 && *port < 65536;
}

} // namespace

bool PlantOptions::parse(const QStringList& arguments, QString* error)
{
    QCommandLineParser parser;
    describe(parser);
    const auto refuse = [error](const QString& text) {
        *error = text;
        return false;
    };
    if (!parser.parse(QStringList{QStringLiteral("valvecell-plant")} + arguments))
        return refuse(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("what is %1?").arg(parser.positionalArguments().join(' ')));
    MqttOptions& broker = collector.broker;
    const QString tls = parser.value("broker-tls");
    int port = tls.isEmpty() ? 1883 : 8883;
    if (!splitAddress(parser.value("broker"), &broker.host, &port))
        return refuse(QStringLiteral("--broker %1: HOST:PORT is needed").arg(parser.value("broker")));
    broker.port = static_cast<quint16>(port);
    if (parser.isSet("broker-login")) {
        const std::optional<BrokerLogin> login = BrokerLogin::read(parser.value("broker-login"), error);
        if (!login)
            return false;
        broker.user = login->user;
        broker.password = login->password;
    }
    broker.tls = {!tls.isEmpty(), tls == QLatin1String("system") ? QString() : tls, parser.value("broker-certificate"),
                  parser.value("broker-key")};
    broker.clientId = QStringLiteral("valvecell-plant-") + parser.value("instance");
    broker.sessionSeconds = 24 * 3600;
    collector.group = parser.value("group");
    collector.database = page.database = parser.value("database").toStdString();
    collector.intakes = parser.value("intakes").toInt();
    if (collector.intakes < 1 || collector.intakes > 32)
        return refuse(QStringLiteral("--intakes %1: 1 to 32").arg(parser.value("intakes")));
    QString address;
    page.port = 8090;
    if (!splitAddress(parser.value("listen"), &address, &page.port))
        return refuse(QStringLiteral("--listen %1: ADDRESS:PORT is needed").arg(parser.value("listen")));
    page.address = address.toStdString();
    page.certificate = parser.value("certificate").toStdString();
    page.key = parser.value("key").toStdString();
    page.metricsFrom = parser.value("metrics-from").toStdString();
    if (page.certificate.empty() != page.key.empty())
        return refuse(QStringLiteral("--certificate and --key belong together"));
    addUser = parser.value("add-user");
    admin = parser.value("role") == QLatin1String("admin");
    if (!admin && parser.value("role") != QLatin1String("viewer"))
        return refuse(QStringLiteral("--role %1: viewer or admin").arg(parser.value("role")));
    shifts = parser.value("shifts");
    keep = parser.value("keep");
    return true;
}

QString PlantOptions::help()
{
    QCommandLineParser parser;
    describe(parser);
    return parser.helpText();
}
