#pragma once

#include "Contract.h"

#include <valvecell/ICoreCtrl.h>

#include <QStringList>

#include <atomic>

/// How long an image may take.
constexpr int imageMs = 3000;

/// What the cameras' threads call, and what they must not.
class CoreInbox
{
public:
    explicit CoreInbox(Subject& subject);

    /// A core control that is up; null when it does not come up.
    static std::unique_ptr<ICoreCtrl> started(Subject& subject, QStringList* keys);
    /// Stops it, after which the inbox is to stay as it is, and deletes it.
    static void end(Subject& subject, std::unique_ptr<ICoreCtrl>& core, CoreInbox* inbox = nullptr);

    void connectTo(ICoreCtrl& core, const QStringList& keys);
    /// From now on no callback may come.
    void end();

    Contract::Arrivals images;
    Contract::Pictures pictures;
    std::atomic<int> notes{0};

private:
    void arrived(const QString& key, const QImage& image);

    Subject& m_subject;
    Contract::Arrivals m_notes;
    QStringList m_keys;
};
