#pragma once

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
