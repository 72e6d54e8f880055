#include "licence/Licence.h"

#include "Harness.h"
#include "licence/MachineCode.h"

namespace {

/// The counterpart of this key signed corpus/licence/genuine and nothing else, and is kept nowhere.
const QByteArray publicKey = R"(-----BEGIN PUBLIC KEY-----
MIIBIjANBgkqhkiG9w0BAQEFAAOCAQ8AMIIBCgKCAQEApGaOK0dYgOZ7GtMNeoja
XsEBPQZ3pxvBRIdVSngWnpMw06OD5EhV+D9XORv1Hd8TaVx4AMi3XZHWf93p7WkI
feWiCwbzD4/9lCF7fe51JfCCNvzrpOdTi+eerCYdxQ00bLjstKbWxa1YxPo7lSfE
sL0mcniUHMd/sF5OfUuE43DkH6xEqJ8xBMH3FEssuKmvhp+DVMTB0uZ5NpaCse/N
Xm+yZhB/3RHn6lRJDrLHD1ipnsogao/s37m1jeGNaw9LBdq3ssfaRBfIBd1g7DcL
sNKQzn1JdwLAuFQHrAJsznEP3M8FE/i7NHxKzQhRq6za9ISKutWKYSvOk60fh9Co
xwIDAQAB
-----END PUBLIC KEY-----
)";
const QByteArray genuine = R"(ValveCell licence 1
customer: 某某轮毂厂
machine: GFGQZ-0K9FT-N23DR-JFV0T-1EB6T
stations: 2
issued: 2026-11-21
expires: 2027-12-31
)";

} // namespace

FUZZ_TARGET(licence)
{
    static const Rsa::PublicKey key(publicKey);
    const QByteArray text = LicenceText::tidied(bytes);
    const LicenceText::Parts parts = LicenceText::split(text);
    Licence licence;
    if (LicenceText::read(parts.payload, &licence))
        fuzz::require(LicenceText::payload(licence) == parts.payload, "a licence has one text only");
    const LicenceConditions here{licence.machine, {2026, 11, 22}, 2};
    fuzz::require(!checkLicence(text, key, here).isGood() || parts.payload == genuine,
                  "no licence but the genuine one is good");
    const QString code = MachineCode::parse(QString::fromUtf8(bytes));
    fuzz::require(code.isEmpty() || MachineCode::parse(code) == code, "a mended code is one");
}
