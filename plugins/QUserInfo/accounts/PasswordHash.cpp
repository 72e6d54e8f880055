#include "accounts/PasswordHash.h"

#include <QRegularExpression>

#include <sodium.h>

namespace {

/// The bytes of a password, wiped when done with. Composed, so that it does not matter how an accent was typed.
class PasswordBytes
{
public:
    explicit PasswordBytes(const QString& password)
        : m_bytes(password.normalized(QString::NormalizationForm_C).toUtf8())
    {
    }
    ~PasswordBytes() { sodium_memzero(m_bytes.data(), size_t(m_bytes.size())); }
    Q_DISABLE_COPY(PasswordBytes)

    const char* data() const { return m_bytes.constData(); }
    unsigned long long size() const { return static_cast<unsigned long long>(m_bytes.size()); }

private:
    QByteArray m_bytes;
};

} // namespace

QByteArray PasswordHash::make(const QString& password)
{
    if (sodium_init() < 0)
        return {};
    const PasswordBytes bytes(password);
    char hash[crypto_pwhash_STRBYTES] = {};
    const bool made = crypto_pwhash_str_alg(hash, bytes.data(), bytes.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                                            crypto_pwhash_MEMLIMIT_INTERACTIVE, crypto_pwhash_ALG_ARGON2ID13) == 0;
    return made ? QByteArray(hash) : QByteArray();
}

bool PasswordHash::matches(const QByteArray& hash, const QString& password)
{
    if (sodium_init() < 0 || hash.size() >= int(crypto_pwhash_STRBYTES))
        return false;
    const PasswordBytes bytes(password);
    return crypto_pwhash_str_verify(hash.constData(), bytes.data(), bytes.size()) == 0;
}

bool PasswordHash::isWellFormed(const QByteArray& hash)
{
    static const QRegularExpression form(
        QStringLiteral(R"(\A\$argon2id\$v=19\$m=(\d{1,7}),t=(\d{1,2}),p=1\$[A-Za-z0-9+/]{22}\$[A-Za-z0-9+/]{43}\z)"));
    const auto match = form.match(QString::fromLatin1(hash));
    constexpr int maxKiB = 1024 * 1024;
    return match.hasMatch() && match.capturedRef(1).toInt() <= maxKiB && match.capturedRef(2).toInt() <= 16;
}
