#include "licence/Licence.h"

#include "licence/MachineCode.h"

#include <algorithm>

namespace {

const QByteArray head = "ValveCell licence 1\n";
const QByteArray signatureMark = "signature:\n";
const QByteArray never = "never";
constexpr int lineLength = 64;

QByteArray wrapped(const QByteArray& base64)
{
    QByteArray lines;
    for (int i = 0; i < base64.size(); i += lineLength)
        lines += (i > 0 ? "\n" : "") + base64.mid(i, lineLength);
    return lines;
}

QByteArray dayText(const QDate& day)
{
    return day.isValid() ? day.toString(Qt::ISODate).toLatin1() : never;
}

bool isPrintable(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.isPrint() || c.isSurrogate(); });
}

/// Takes lines of the form "name: value" off a text, one after the other.
class LineReader
{
public:
    explicit LineReader(QByteArray text)
        : m_rest(std::move(text))
    {
    }

    QByteArray value(const QByteArray& name)
    {
        const int end = m_rest.indexOf('\n');
        const QByteArray line = m_rest.left(end);
        m_rest.remove(0, end + 1);
        const QByteArray start = name + ": ";
        return end > 0 && line.startsWith(start) ? line.mid(start.size()) : QByteArray();
    }

private:
    QByteArray m_rest;
};

LicenceRefusal refusalOf(const Licence& licence, const LicenceConditions& conditions)
{
    if (conditions.machine.isEmpty() || licence.machine != conditions.machine)
        return LicenceRefusal::OtherMachine;
    // A day's grace for an issuer in another time zone.
    if (licence.issued > conditions.today.addDays(1))
        return LicenceRefusal::NotYet;
    if (licence.expires.isValid() && licence.expires < conditions.today)
        return LicenceRefusal::Expired;
    return licence.stations < conditions.stations ? LicenceRefusal::TooFewStations : LicenceRefusal::None;
}

} // namespace

namespace LicenceText {

QString problem(const Licence& licence)
{
    const QString customer = licence.customer;
    if (customer.isEmpty() || customer != customer.trimmed() || customer.size() > maxCustomerLength ||
        !isPrintable(customer))
        return QStringLiteral("the customer has to be 1 to %1 printable characters").arg(maxCustomerLength);
    if (licence.machine.isEmpty() || MachineCode::parse(licence.machine) != licence.machine)
        return QStringLiteral("\"%1\" is no machine code").arg(licence.machine);
    if (licence.stations < 1 || licence.stations > maxStations)
        return QStringLiteral("the number of stations has to be 1 to %1").arg(maxStations);
    if (!licence.issued.isValid() || (licence.expires.isValid() && licence.expires < licence.issued))
        return QStringLiteral("the licence has to be issued before it expires");
    return {};
}

QByteArray payload(const Licence& licence)
{
    return head + "customer: " + licence.customer.toUtf8() + "\nmachine: " + licence.machine.toUtf8() +
           "\nstations: " + QByteArray::number(licence.stations) + "\nissued: " + dayText(licence.issued) +
           "\nexpires: " + dayText(licence.expires) + '\n';
}

bool read(const QByteArray& payload, Licence* licence)
{
    LineReader lines(payload.mid(head.size()));
    Licence found;
    found.customer = QString::fromUtf8(lines.value("customer"));
    found.machine = QString::fromUtf8(lines.value("machine"));
    found.stations = lines.value("stations").toInt();
    found.issued = QDate::fromString(QString::fromLatin1(lines.value("issued")), Qt::ISODate);
    found.expires = QDate::fromString(QString::fromLatin1(lines.value("expires")), Qt::ISODate);
    if (LicenceText::payload(found) != payload || !problem(found).isEmpty())
        return false;
    *licence = found;
    return true;
}

QByteArray sealed(const QByteArray& payload, const QByteArray& signature)
{
    return payload + signatureMark + wrapped(signature.toBase64());
}

Parts split(const QByteArray& text)
{
    const int mark = text.indexOf('\n' + signatureMark);
    if (text.size() > maxBytes || !text.startsWith(head) || mark < 0)
        return {};
    const QByteArray written = text.mid(mark + 1 + signatureMark.size());
    const QByteArray signature = QByteArray::fromBase64(written);
    const bool canonical = wrapped(signature.toBase64()) == written;
    return {true, text.left(mark + 1), canonical ? signature : QByteArray()};
}

QByteArray tidied(const QByteArray& pasted)
{
    QByteArray text = pasted;
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    return text.replace("\r\n", "\n").trimmed();
}

} // namespace LicenceText

LicenceVerdict checkLicence(const QByteArray& text, const Rsa::PublicKey& key, const LicenceConditions& conditions)
{
    LicenceVerdict verdict;
    if (text.isEmpty())
        return verdict;
    const LicenceText::Parts parts = LicenceText::split(text);
    if (!parts.isLicence)
        verdict.refusal = LicenceRefusal::NotALicence;
    else if (!key.verifies(parts.payload, parts.signature) || !LicenceText::read(parts.payload, &verdict.licence))
        verdict.refusal = LicenceRefusal::Altered;
    else
        verdict.refusal = refusalOf(verdict.licence, conditions);
    return verdict;
}
