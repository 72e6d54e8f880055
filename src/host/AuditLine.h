#pragma once

#include "common/AuditChange.h"

/// Writes one line into the system log: who changed what from what to what. An empty `user` is nobody. Any thread.
void logAudit(const AuditChange& change, const QString& user);
