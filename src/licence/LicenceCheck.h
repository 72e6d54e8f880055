#pragma once

#include "licence/Licence.h"
#include "licence/RsaKey.h"

/// Why a licence does not count; in the order of the check, which tells the first that applies.
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

/// Judges the exact bytes of a licence. Nothing in a text that is not genuine is believed or handed on. Takes less than
/// a millisecond. Any thread.
LicenceVerdict checkLicence(const QByteArray& text, const Rsa::PublicKey& key, const LicenceConditions& conditions);
