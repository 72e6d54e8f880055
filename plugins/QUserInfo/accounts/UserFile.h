#pragma once

#include "accounts/Account.h"

#include <QJsonObject>

/// Turns accounts into the content of users.json and back.
namespace UserFile {

QJsonObject toJson(const QVector<Account>& accounts);

/// The accounts of a file's content. False when any of it is not as toJson() writes it, and when it names no
/// administrator or a user twice; `error` then holds the place, such as "users[1].role", and `accounts` is untouched.
bool fromJson(const QJsonObject& file, QVector<Account>* accounts, QString* error);

/// The word of a role in the file.
QString roleWord(Role role);

/// Whether somebody in the list may manage the others.
bool hasAdministrator(const QVector<Account>& accounts);

/// The place of a name in the list; -1 when it is not there.
int indexOf(const QVector<Account>& accounts, const QString& name);

} // namespace UserFile
