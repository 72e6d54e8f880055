#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct evp_pkey_st;

/// RSA signatures: RSASSA-PSS with SHA-256, MGF1 with SHA-256 and a salt of 32 bytes (RFC 8017). Keys are PEM texts, as
/// the common tools write them. Keys of less than 2048 bits are refused. Any thread, one at a time for each key.
namespace Rsa {

using Handle = std::shared_ptr<evp_pkey_st>;

/// What signatures are checked with.
class PublicKey
{
public:
    /// A key that verifies nothing.
    PublicKey() = default;
    /// From a PEM text ("BEGIN PUBLIC KEY"); from anything else, a key that verifies nothing.
    explicit PublicKey(const QByteArray& pem);

    bool isValid() const { return m_key != nullptr; }
    bool verifies(const QByteArray& message, const QByteArray& signature) const;

private:
    Handle m_key;
};

/// What signatures are made with.
class PrivateKey
{
public:
    /// From an unencrypted PEM text ("BEGIN PRIVATE KEY"); from anything else, a key that is not valid.
    explicit PrivateKey(const QByteArray& pem);

    /// A new key of 3072 bits; takes up to some seconds.
    static PrivateKey generate();

    bool isValid() const { return m_key != nullptr; }
    QByteArray pem() const;
    QByteArray publicPem() const;
    /// Empty on failure.
    QByteArray sign(const QByteArray& message) const;

private:
    explicit PrivateKey(Handle key);

    Handle m_key;
};

} // namespace Rsa
