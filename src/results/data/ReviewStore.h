#pragma once

#include <QCoreApplication>
#include <QString>

/// What people noted of parts: marks and comments, in "DBFiles/reviews.db" beside the results, which only the cell
/// writes. Several programs may write it in turn. Any thread; each call opens and closes the file.
class ReviewStore
{
    Q_DECLARE_TR_FUNCTIONS(ReviewStore)

public:
    struct Review
    {
        qint64 uid = 0;
        qint64 wall = 0; ///< see PartTable
        bool marked = false;
        QString comment;
        QString user; ///< who noted it
    };

    static constexpr int maxComment = 2000; ///< characters

    /// Takes the place of what was noted of that part; an empty review takes it away. Returns why it could not be
    /// stored, as a sentence; empty when it was.
    static QString store(const QString& home, const Review& review);
};
