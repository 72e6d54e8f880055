#pragma once

#include "licence/RsaKey.h"

#include <QByteArray>
#include <QDate>
#include <QString>

/// What a licence grants, and to whom.
struct Licence
{
    QString customer;
    QString machine;  ///< code of the one machine that it is for, see MachineCode
    int stations = 0; ///< how many stations may run
    QDate issued;
    QDate expires; ///< the last day on which it counts; not valid: it never ends
};

/// The text of a licence file:
///
///     ValveCell licence 1
///     customer: 某某轮毂厂
///     machine: 7QK2M-3ZD9P-0AB4C-XY81T-5EFGH
///     stations: 2
///     issued: 2026-11-21
///     expires: 2027-12-31
///     signature:
///     (base64, 64 characters a line)
///
/// UTF-8, lines end in a line feed, and nothing follows the last character of the signature. What is signed are the
/// bytes above "signature:". There is exactly one text for a licence and a signature; so no byte can be altered
/// without notice. Any thread.
namespace LicenceText {

constexpr int maxBytes = 16 * 1024;
constexpr int maxStations = 99;
constexpr int maxCustomerLength = 100;

/// What is wrong with a licence that is to be issued; empty when nothing is.
QString problem(const Licence& licence);

/// The bytes that are signed.
QByteArray payload(const Licence& licence);
/// The licence of such bytes; false when they are not exactly as payload() writes them.
bool read(const QByteArray& payload, Licence* licence);

/// The whole text.
QByteArray sealed(const QByteArray& payload, const QByteArray& signature);

struct Parts
{
    bool isLicence = false; ///< it looks like one, whoever wrote it
    QByteArray payload;
    QByteArray signature; ///< empty when it is not written as sealed() writes it
};
Parts split(const QByteArray& text);

/// The text without what a way through mails and editors adds: a byte order mark, blanks and lines around it, and
/// carriage returns.
QByteArray tidied(const QByteArray& pasted);

} // namespace LicenceText

/// Why a licence does not count; in the order of the check, which returns the first that applies.
enum class LicenceRefusal {
    None,         ///< it counts
    Missing,      ///< there is none
    NotALicence,  ///< the text is something else
    Altered,      ///< the signature is not that of this text, made with the right key
    OtherMachine, ///< it is bound to another machine
    NotYet,       ///< issued after today: the machine's clock is wrong
    Expired,
    TooFewStations ///< the cell runs more than it grants
};

/// What a licence has to fit.
struct LicenceConditions
{
    QString machine; ///< the code of this machine; empty when it has none, and then no licence is its
    QDate today;
    int stations = 1; ///< that the cell runs
};

struct LicenceVerdict
{
    LicenceRefusal refusal = LicenceRefusal::Missing;
    Licence licence; ///< what it says; empty for what is not a genuine licence

    bool isGood() const { return refusal == LicenceRefusal::None; }
};

/// Judges the exact bytes of a licence. Nothing in a text that is not genuine is taken for true or handed on. Takes
/// less than a millisecond. Any thread.
LicenceVerdict checkLicence(const QByteArray& text, const Rsa::PublicKey& key, const LicenceConditions& conditions);
