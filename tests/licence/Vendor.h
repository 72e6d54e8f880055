#pragma once

#include "licence/Licence.h"
#include "licence/MachineCode.h"
#include "licence/RsaKey.h"

/// Whoever sells the program: has a key, and issues licences for the machine of the test.
class Vendor
{
public:
    QByteArray publicKey() const { return m_key.publicPem(); }
    static QString machine() { return MachineCode::of("the test's machine"); }
    static QDate today() { return {2026, 11, 21}; }

    /// Good in the year after today, for two stations.
    static Licence licence()
    {
        return {QStringLiteral("某某轮毂厂 (二号线)"), machine(), 2, today(), today().addYears(1)};
    }

    QByteArray issue(const Licence& licence = Vendor::licence()) const
    {
        const QByteArray payload = LicenceText::payload(licence);
        return LicenceText::sealed(payload, m_key.sign(payload));
    }

private:
    const Rsa::PrivateKey m_key = Rsa::PrivateKey::generate();
};
