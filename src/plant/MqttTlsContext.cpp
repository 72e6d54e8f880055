#include "plant/MqttTlsContext.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace {

QString sayTls(const char* text)
{
    return QCoreApplication::translate("Plant", text);
}

/// OpenSSL's first reason, which is the root of those that follow.
QString reasonOf()
{
    const unsigned long code = ERR_get_error();
    ERR_clear_error();
    const char* const reason = ERR_reason_error_string(code);
    return reason ? QString::fromLatin1(reason) : QStringLiteral("?");
}

bool fileFails(QString* error, const char* what, const QString& file)
{
    *error = sayTls(what).arg(QDir::toNativeSeparators(file), reasonOf());
    return false;
}

/// The certificate's name, and until when it is good.
QString describe(X509* certificate)
{
    char name[256] = {};
    X509_NAME_oneline(X509_get_subject_name(certificate), name, sizeof name);
    tm end = {};
    if (!ASN1_TIME_to_tm(X509_get0_notAfter(certificate), &end))
        return QString::fromLatin1(name);
    return sayTls(QT_TRANSLATE_NOOP("Plant", "%1，有效期至 %2"))
        .arg(QString::fromLatin1(name), QDate(end.tm_year + 1900, end.tm_mon + 1, end.tm_mday).toString(Qt::ISODate));
}

/// Null when the file cannot be read.
X509* certificateIn(const QString& file)
{
    BIO* const input = BIO_new_file(QFile::encodeName(file).constData(), "r");
    X509* const certificate = input ? PEM_read_bio_X509(input, nullptr, nullptr, nullptr) : nullptr;
    BIO_free(input);
    return certificate;
}

} // namespace

MqttTlsContext::~MqttTlsContext()
{
    SSL_CTX_free(m_context);
}

std::unique_ptr<MqttTlsContext> MqttTlsContext::make(const MqttTls& tls, const QString& host, QString* error)
{
    std::unique_ptr<MqttTlsContext> made(new MqttTlsContext);
    ERR_clear_error();
    made->m_context = SSL_CTX_new(TLS_client_method());
    SSL_CTX_set_min_proto_version(made->m_context, TLS1_2_VERSION);
    SSL_CTX_set_app_data(made->m_context, made.get());
    SSL_CTX_set_verify(made->m_context, SSL_VERIFY_PEER, [](int ok, X509_STORE_CTX* store) {
        auto* const ssl = static_cast<SSL*>(X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
        auto* const self = static_cast<MqttTlsContext*>(SSL_CTX_get_app_data(SSL_get_SSL_CTX(ssl)));
        X509* const certificate = X509_STORE_CTX_get_current_cert(store);
        if (!ok && self->m_refusal.isEmpty())
            self->m_refusal =
                QStringLiteral("%1（%2）")
                    .arg(QString::fromLatin1(X509_verify_cert_error_string(X509_STORE_CTX_get_error(store))),
                         certificate ? describe(certificate) : QString());
        return ok;
    });
    X509_VERIFY_PARAM* const rules = SSL_CTX_get0_param(made->m_context);
    const QByteArray name = host.toUtf8();
    if (X509_VERIFY_PARAM_set1_ip_asc(rules, name.constData()) != 1)
        X509_VERIFY_PARAM_set1_host(rules, name.constData(), std::size_t(name.size()));
    ERR_clear_error();
    if (!made->load(tls, error))
        return nullptr;
    return made;
}

bool MqttTlsContext::load(const MqttTls& tls, QString* error)
{
    if (tls.authorities.isEmpty())
        SSL_CTX_set_default_verify_paths(m_context);
    else if (SSL_CTX_load_verify_locations(m_context, QFile::encodeName(tls.authorities).constData(), nullptr) != 1)
        return fileFails(error, QT_TRANSLATE_NOOP("Plant", "无法使用 CA 证书文件 %1：%2"), tls.authorities);
    return tls.certificate.isEmpty() || loadOwn(tls, error);
}

bool MqttTlsContext::loadOwn(const MqttTls& tls, QString* error)
{
    if (SSL_CTX_use_certificate_chain_file(m_context, QFile::encodeName(tls.certificate).constData()) != 1)
        return fileFails(error, QT_TRANSLATE_NOOP("Plant", "无法使用客户端证书文件 %1：%2"), tls.certificate);
    if (SSL_CTX_use_PrivateKey_file(m_context, QFile::encodeName(tls.key).constData(), SSL_FILETYPE_PEM) != 1)
        return fileFails(error, QT_TRANSLATE_NOOP("Plant", "无法使用私钥文件 %1，它须为无口令的 PEM 并与证书相符：%2"),
                         tls.key);
    X509* const own = certificateIn(tls.certificate);
    const bool expired = own && X509_cmp_current_time(X509_get0_notAfter(own)) < 0;
    if (expired)
        *error = sayTls(QT_TRANSLATE_NOOP("Plant", "客户端证书 %1 已过期（%2）；请换新证书，或校正本机时钟"))
                     .arg(QDir::toNativeSeparators(tls.certificate), describe(own));
    X509_free(own);
    return !expired;
}
