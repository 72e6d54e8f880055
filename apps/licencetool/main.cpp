// Makes keys, issues licences and checks them; for the vendor of the program.

#include "Printing.h"
#include "licence/Licence.h"
#include "licence/MachineCode.h"
#include "platform/MachineIdentity.h"

#include <valvecell/HomeFiles.h>

#include <QCommandLineParser>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace {

/// The commands of the issuing tool: keygen, identity, issue, verify, and help.
enum ExitCode {
    Good = 0,
    Failed = 1, ///< a file cannot be read or written, or a key is none
    BadArguments = 2,
    Refused = 3,   ///< verify: the licence does not count
    NoIdentity = 4 ///< this machine states nothing that a licence could be bound to
};

struct Outcome
{
    ExitCode code = Good;
    QString text;          ///< for the standard output when `code` is Good or Refused, else for the standard error
    QJsonObject json = {}; ///< the same for scripts, then
};

const char usage[] =
    R"(licencetool keygen --out DIR
    makes a key pair: DIR/private.pem, which signs and is to be kept secret, and DIR/public.pem, which
    goes into the program (cmake -DVALVECELL_LICENCE_KEY=DIR/public.pem); a pair that is there stays

licencetool identity
    prints the code of this machine, as the registration dialog of the program shows it

licencetool issue --key PRIVATE.pem --machine CODE --customer NAME [options]
    issues a licence and prints it
    --machine CODE     the code that the customer tells; "this" for this machine
    --customer NAME    whom it is for
    --stations N       how many stations may run (2)
    --expires DAY      last day on which it counts, as 2027-12-31, or "never" (a year from today)
    --issued DAY       day of issue (today); before it, the licence does not count
    --out FILE         writes it to a file instead

licencetool verify --key PUBLIC.pem FILE [--machine CODE] [--stations N] [--date DAY]
    tells what is in a licence, and whether it counts on that machine (this), for so many stations (1), on
    that day (today)

licencetool --version
    prints the version

Each command takes --json, which prints one JSON object instead: keygen "private" and "public" (files), identity
"machine", issue "licence" (its text) or "file", verify "counts", "refusal" (one of "", "missing", "not_a_licence",
"altered", "other_machine", "not_yet", "expired", "too_few_stations"), "reason" and, as far as it can be read,
"customer", "machine", "stations", "issued", "expires" (a day or null); after a failure "error" and "code".

Exit code: 0 done, or the licence counts; 1 a file or a key is of no use; 2 wrong arguments; 3 the licence
does not count; 4 this machine states no identity.)";

/// In the order of LicenceRefusal.
const char* const refusals[] = {"counts",
                                "the file is empty",
                                "this is no licence",
                                "altered, or signed with another key",
                                "for another machine",
                                "issued after that day",
                                "expired",
                                "for fewer stations"};

const char* const refusalNames[] = {"",        "missing", "not_a_licence",   "altered", "other_machine",
                                    "not_yet", "expired", "too_few_stations"};

/// Where a machine is to say who it is, and how it is made to.
const char noIdentity[] = "this machine states no identity, so that no licence can be bound to it. On Linux "
                          "/etc/machine-id is empty or missing: \"systemd-machine-id-setup\" as root makes one; on "
                          "Windows the board's maker entered none.";

bool lacksIdentity(const QString& typedMachine)
{
    return typedMachine == QLatin1String("this") && platform::machineIdentity().isEmpty();
}

Outcome bad(const QString& text)
{
    return {BadArguments, text + QStringLiteral(" (see --help)")};
}

QString optionText(const QCommandLineParser& parser, const char* name)
{
    return parser.value(QLatin1String(name));
}

/// Parses options by name, each with a value, and so many files; an error text is left in `error`.
bool parse(QCommandLineParser& parser, const QStringList& arguments, const QStringList& names, int files,
           QString* error)
{
    for (const QString& name : names)
        parser.addOption(QCommandLineOption(name, QString(), QStringLiteral("value")));
    if (!parser.parse(arguments)) // the command stands where the program's name does
        *error = parser.errorText();
    else if (parser.positionalArguments().size() != files)
        *error = QStringLiteral("%1: %2 file(s) expected").arg(arguments.first()).arg(files);
    return error->isEmpty();
}

/// One byte more than any licence has, so that a larger file is noticed and none fills the memory.
bool readFile(const QString& path, QByteArray* content, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    *content = file.read(LicenceText::maxBytes + 1);
    return true;
}

QString codeOf(const QString& typed)
{
    return typed == QLatin1String("this") ? MachineCode::of(platform::machineIdentity()) : MachineCode::parse(typed);
}

/// A day as typed; the fallback for nothing; not valid for what is none.
QDate dayOf(const QString& typed, const QDate& fallback)
{
    return typed.isEmpty() ? fallback : QDate::fromString(typed, Qt::ISODate);
}

bool isNever(const QString& typed)
{
    return typed == QLatin1String("never");
}

QString described(const Licence& licence)
{
    const QString end = licence.expires.isValid() ? licence.expires.toString(Qt::ISODate) : QStringLiteral("never");
    return QStringLiteral("customer: %1\nmachine: %2\nstations: %3\nissued: %4\nexpires: %5\n")
        .arg(licence.customer, licence.machine)
        .arg(licence.stations)
        .arg(licence.issued.toString(Qt::ISODate), end);
}

/// Writes a file that is nobody else's to read, from its first byte on.
bool writeSecret(const QString& path, const QByteArray& content, QString* error)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
                         file.write(content) == content.size() && file.commit();
    if (!written)
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
    return written;
}

/// The private key of a file, which is made when it is missing; not valid on failure, with the reason.
Rsa::PrivateKey readOrMake(const QString& path, QString* error)
{
    QByteArray pem;
    const bool isNew = !QFile::exists(path);
    if (!isNew && !readFile(path, &pem, error))
        return Rsa::PrivateKey(QByteArray());
    const Rsa::PrivateKey key = isNew ? Rsa::PrivateKey::generate() : Rsa::PrivateKey(pem);
    if (!key.isValid())
        *error = QStringLiteral("%1: no private key").arg(path);
    return !isNew || writeSecret(path, key.pem(), error) ? key : Rsa::PrivateKey(QByteArray());
}

/// An existing private key is kept: a new one would void every licence that was issued with it.
Outcome keygen(const QStringList& arguments)
{
    QCommandLineParser parser;
    QString error;
    if (!parse(parser, arguments, {QStringLiteral("out")}, 0, &error))
        return bad(error);
    if (optionText(parser, "out").isEmpty())
        return bad(QStringLiteral("keygen: --out is missing"));
    const QDir folder(optionText(parser, "out"));
    const QString secret = folder.filePath(QStringLiteral("private.pem"));
    const QString open = folder.filePath(QStringLiteral("public.pem"));
    const Rsa::PrivateKey key = readOrMake(secret, &error);
    if (!key.isValid() || !HomeFiles::writeFile(open, key.publicPem(), &error))
        return {Failed, error};
    return {Good, QStringLiteral("%1\n%2").arg(secret, open), {{"private", secret}, {"public", open}}};
}

Outcome identity(const QStringList& arguments)
{
    QCommandLineParser parser;
    QString error;
    if (!parse(parser, arguments, {}, 0, &error))
        return bad(error);
    const QString code = codeOf(QStringLiteral("this"));
    return code.isEmpty() ? Outcome{NoIdentity, QString::fromLatin1(noIdentity)}
                          : Outcome{Good, code, {{"machine", code}}};
}

/// Reads what is to be licensed; a text in `error` says what is wrong with it.
Licence readLicence(const QCommandLineParser& parser, QString* error)
{
    Licence licence;
    licence.customer = optionText(parser, "customer");
    licence.machine = codeOf(optionText(parser, "machine"));
    licence.stations = parser.isSet(QStringLiteral("stations")) ? optionText(parser, "stations").toInt() : 2;
    licence.issued = dayOf(optionText(parser, "issued"), QDate::currentDate());
    const QString end = optionText(parser, "expires");
    licence.expires = isNever(end) ? QDate() : dayOf(end, licence.issued.addYears(1));
    if (licence.machine.isEmpty())
        *error = QStringLiteral("--machine: \"%1\" is no machine code").arg(optionText(parser, "machine"));
    else if (!isNever(end) && !licence.expires.isValid())
        *error = QStringLiteral("--expires: \"%1\" is no day").arg(end);
    else
        *error = LicenceText::problem(licence);
    return licence;
}

Outcome issue(const QStringList& arguments)
{
    QCommandLineParser parser;
    QString error;
    const QStringList names{QStringLiteral("key"),      QStringLiteral("machine"), QStringLiteral("customer"),
                            QStringLiteral("stations"), QStringLiteral("expires"), QStringLiteral("issued"),
                            QStringLiteral("out")};
    if (!parse(parser, arguments, names, 0, &error))
        return bad(error);
    if (lacksIdentity(optionText(parser, "machine")))
        return {NoIdentity, QString::fromLatin1(noIdentity)};
    const Licence licence = readLicence(parser, &error);
    if (!error.isEmpty())
        return bad(QStringLiteral("issue: ") + error);
    QByteArray pem;
    if (!readFile(optionText(parser, "key"), &pem, &error))
        return {Failed, error};
    const QByteArray payload = LicenceText::payload(licence);
    const QByteArray signature = Rsa::PrivateKey(pem).sign(payload);
    if (signature.isEmpty())
        return {Failed, QStringLiteral("%1: no private key").arg(optionText(parser, "key"))};
    const QByteArray text = LicenceText::sealed(payload, signature);
    const QString out = optionText(parser, "out");
    if (out.isEmpty())
        return {Good, QString::fromUtf8(text), {{"licence", QString::fromUtf8(text)}}};
    return HomeFiles::writeFile(out, text, &error) ? Outcome{Good, out, {{"file", out}}} : Outcome{Failed, error};
}

/// What a licence is verified against; without a machine when an option makes no sense.
LicenceConditions readConditions(const QCommandLineParser& parser)
{
    const QString machine = optionText(parser, "machine");
    LicenceConditions conditions;
    conditions.today = dayOf(optionText(parser, "date"), QDate::currentDate());
    if (parser.isSet(QStringLiteral("stations")))
        conditions.stations = optionText(parser, "stations").toInt();
    if (conditions.today.isValid() && conditions.stations >= 1)
        conditions.machine = codeOf(machine.isEmpty() ? QStringLiteral("this") : machine);
    return conditions;
}

QJsonObject verdictJson(const LicenceVerdict& verdict)
{
    QJsonObject json{{"counts", verdict.isGood()},
                     {"refusal", refusalNames[int(verdict.refusal)]},
                     {"reason", refusals[int(verdict.refusal)]}};
    const Licence& licence = verdict.licence;
    if (licence.machine.isEmpty())
        return json;
    const bool ends = licence.expires.isValid();
    json["customer"] = licence.customer;
    json["machine"] = licence.machine;
    json["stations"] = licence.stations;
    json["issued"] = licence.issued.toString(Qt::ISODate);
    json["expires"] = ends ? QJsonValue(licence.expires.toString(Qt::ISODate)) : QJsonValue();
    return json;
}

/// What the licence says is shown even when it is refused, as far as it can be read.
Outcome verify(const QStringList& arguments)
{
    QCommandLineParser parser;
    QString error;
    const QStringList names{QStringLiteral("key"), QStringLiteral("machine"), QStringLiteral("stations"),
                            QStringLiteral("date")};
    if (!parse(parser, arguments, names, 1, &error))
        return bad(error);
    if (lacksIdentity(parser.isSet(QStringLiteral("machine")) ? optionText(parser, "machine") : QStringLiteral("this")))
        return {NoIdentity, QString::fromLatin1(noIdentity)};
    const LicenceConditions conditions = readConditions(parser);
    if (conditions.machine.isEmpty())
        return bad(QStringLiteral("verify: --machine, --date or --stations makes no sense"));
    QByteArray pem;
    QByteArray text;
    if (!readFile(optionText(parser, "key"), &pem, &error) ||
        !readFile(parser.positionalArguments().first(), &text, &error))
        return {Failed, error};
    const Rsa::PublicKey key(pem);
    if (!key.isValid())
        return {Failed, QStringLiteral("%1: no public key").arg(optionText(parser, "key"))};
    const LicenceVerdict verdict = checkLicence(LicenceText::tidied(text), key, conditions);
    const QString answer = QString::fromLatin1(refusals[int(verdict.refusal)]);
    const QString content = verdict.licence.machine.isEmpty() ? QString() : described(verdict.licence);
    return {verdict.isGood() ? Good : Refused, content + answer, verdictJson(verdict)};
}

/// Runs one command; the program's name is not among the arguments.
Outcome runCommand(const QStringList& arguments)
{
    const QString command = arguments.value(0);
    const bool help = arguments.contains(QStringLiteral("--help")) || arguments.contains(QStringLiteral("-h"));
    if (help || command == QLatin1String("help"))
        return {Good, QString::fromLatin1(usage)};
    using Run = Outcome (*)(const QStringList&);
    static const QPair<const char*, Run> commands[] = {
        {"keygen", keygen}, {"identity", identity}, {"issue", issue}, {"verify", verify}};
    for (const auto& [name, run] : commands) {
        if (command == QLatin1String(name))
            return run(arguments);
    }
    return bad(command.isEmpty() ? QStringLiteral("which command?")
                                 : QStringLiteral("there is no command \"%1\"").arg(command));
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    if (Printing::version("licencetool"))
        return Good;
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool json = arguments.removeAll(QStringLiteral("--json")) > 0;
    const Outcome outcome = runCommand(arguments);
    const bool answered = outcome.code == Good || outcome.code == Refused;
    if (json) {
        const QJsonObject object =
            answered ? outcome.json : QJsonObject{{"error", outcome.text}, {"code", int(outcome.code)}};
        std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
        return outcome.code;
    }
    std::fprintf(answered ? stdout : stderr, "%s%s\n", answered ? "" : "licencetool: ", qUtf8Printable(outcome.text));
    return outcome.code;
}
