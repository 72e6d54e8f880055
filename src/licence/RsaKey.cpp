#include "licence/RsaKey.h"

#include <functional>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

namespace {

constexpr int newKeyBits = 3072;
constexpr int leastBits = 2048;

using Context = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;
using KeyContext = std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)>;
using Bio = std::unique_ptr<BIO, decltype(&BIO_free_all)>;

Bio reader(const QByteArray& pem)
{
    return {BIO_new_mem_buf(pem.constData(), pem.size()), &BIO_free_all};
}

/// An encrypted key is refused instead of asking for its password on some terminal.
int noPassword(char*, int, int, void*)
{
    return -1;
}

/// Shares the key; null when it is none that signatures are made with here.
Rsa::Handle owned(EVP_PKEY* key)
{
    Rsa::Handle handle(key, &EVP_PKEY_free);
    const bool fit = key && EVP_PKEY_base_id(key) == EVP_PKEY_RSA && EVP_PKEY_bits(key) >= leastBits;
    return fit ? handle : nullptr;
}

QByteArray written(const std::function<int(BIO*)>& write)
{
    const Bio bio(BIO_new(BIO_s_mem()), &BIO_free_all);
    char* text = nullptr;
    if (!bio || write(bio.get()) != 1)
        return {};
    const long size = BIO_get_mem_data(bio.get(), &text);
    return {text, int(size)};
}

bool usePss(EVP_PKEY_CTX* context)
{
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PSS_PADDING) == 1 &&
           EVP_PKEY_CTX_set_rsa_pss_saltlen(context, RSA_PSS_SALTLEN_DIGEST) == 1 &&
           EVP_PKEY_CTX_set_rsa_mgf1_md(context, EVP_sha256()) == 1;
}

const uchar* bytes(const QByteArray& data)
{
    return reinterpret_cast<const uchar*>(data.constData());
}

} // namespace

namespace Rsa {

PublicKey::PublicKey(const QByteArray& pem)
    : m_key(owned(PEM_read_bio_PUBKEY(reader(pem).get(), nullptr, noPassword, nullptr)))
{
}

bool PublicKey::verifies(const QByteArray& message, const QByteArray& signature) const
{
    const Context context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    EVP_PKEY_CTX* padding = nullptr; // belongs to the context
    return m_key && context && EVP_DigestVerifyInit(context.get(), &padding, EVP_sha256(), nullptr, m_key.get()) == 1 &&
           usePss(padding) &&
           EVP_DigestVerify(context.get(), bytes(signature), size_t(signature.size()), bytes(message),
                            size_t(message.size())) == 1;
}

PrivateKey::PrivateKey(const QByteArray& pem)
    : m_key(owned(PEM_read_bio_PrivateKey(reader(pem).get(), nullptr, noPassword, nullptr)))
{
}

PrivateKey::PrivateKey(Handle key)
    : m_key(std::move(key))
{
}

PrivateKey PrivateKey::generate()
{
    const KeyContext context(EVP_PKEY_CTX_new_id(EVP_PKEY_RSA, nullptr), &EVP_PKEY_CTX_free);
    EVP_PKEY* key = nullptr;
    const bool made = context && EVP_PKEY_keygen_init(context.get()) == 1 &&
                      EVP_PKEY_CTX_set_rsa_keygen_bits(context.get(), newKeyBits) == 1 &&
                      EVP_PKEY_keygen(context.get(), &key) == 1;
    return PrivateKey(made ? owned(key) : nullptr);
}

QByteArray PrivateKey::pem() const
{
    return written([this](BIO* bio) {
        return PEM_write_bio_PKCS8PrivateKey(bio, m_key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
}

QByteArray PrivateKey::publicPem() const
{
    return written([this](BIO* bio) { return PEM_write_bio_PUBKEY(bio, m_key.get()); });
}

QByteArray PrivateKey::sign(const QByteArray& message) const
{
    const Context context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    EVP_PKEY_CTX* padding = nullptr; // belongs to the context
    if (!m_key || !context || EVP_DigestSignInit(context.get(), &padding, EVP_sha256(), nullptr, m_key.get()) != 1 ||
        !usePss(padding))
        return {};
    QByteArray signature(EVP_PKEY_size(m_key.get()), '\0');
    auto size = size_t(signature.size());
    if (EVP_DigestSign(context.get(), reinterpret_cast<uchar*>(signature.data()), &size, bytes(message),
                       size_t(message.size())) != 1)
        return {};
    return signature.left(int(size));
}

} // namespace Rsa
