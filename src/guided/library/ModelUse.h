#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>

class PartReader;
struct PartFilter;

/// How a model did in the parts that were recorded.
struct ModelUse
{
    qint64 last = 0;    ///< number of its last part's row; 0 for none
    QDateTime lastSeen; ///< local
    int found = 0;
    int judged = 0; ///< found or not found; refused triggers say nothing of the model

    /// 0 to 100; negative while nothing was judged.
    double yield() const { return judged > 0 ? 100.0 * found / judged : -1; }

    /// By model name. On the reader's thread; it holds the columns of all parts of the filter for a moment.
    static QHash<QString, ModelUse> read(PartReader& reader, const PartFilter& filter);
};
