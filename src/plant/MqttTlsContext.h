#pragma once

#include "plant/MqttOptions.h"

#include <memory>

using SSL_CTX = struct ssl_ctx_st;

/// What OpenSSL needs for connections to one host: TLS 1.2 or later, the host's name checked against its certificate.
class MqttTlsContext
{
public:
    /// Nothing when a file cannot be used; `error` says which, and why.
    static std::unique_ptr<MqttTlsContext> make(const MqttTls& tls, const QString& host, QString* error);
    ~MqttTlsContext();

    MqttTlsContext(const MqttTlsContext&) = delete;
    MqttTlsContext& operator=(const MqttTlsContext&) = delete;

    SSL_CTX* context() const { return m_context; }
    /// Why the broker's certificate was not accepted; empty when it was, or never came. On the connection's thread.
    const QString& refusal() const { return m_refusal; }

private:
    MqttTlsContext() = default;

    bool load(const MqttTls& tls, QString* error);
    bool loadOwn(const MqttTls& tls, QString* error);

    SSL_CTX* m_context = nullptr;
    QString m_refusal;
};
