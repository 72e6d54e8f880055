#pragma once

#include <QString>

#include <optional>

/// The name and the password for a broker, from a file of two lines that nobody but its owner may read.
struct BrokerLogin
{
    QString user;
    QString password;

    /// Nothing when it cannot be read, is not of that form, or others may read it: `error` says which, and what to do.
    static std::optional<BrokerLogin> read(const QString& file, QString* error);
};
