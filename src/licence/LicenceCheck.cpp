#include "licence/LicenceCheck.h"

namespace {

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
