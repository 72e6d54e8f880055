#pragma once

#include <functional>
#include <memory>

/// Carries work from any thread to the one on which the mailbox was made. What arrives after the mailbox is gone is
/// dropped, so an object keeps one as a member and hands out slots: whoever holds a slot may outlive the object.
class Mailbox
{
public:
    using Work = std::function<void()>;

    /// The posting end. Copies share one mailbox; any thread.
    class Slot
    {
    public:
        /// Runs `work` later on the mailbox's thread, in the order of the posts.
        void post(Work work) const;

    private:
        friend class Mailbox;
        struct State;
        std::shared_ptr<State> m_state;
    };

    Mailbox();
    /// On the mailbox's thread. Nothing posted runs afterwards, also when a posted work destroys the mailbox.
    ~Mailbox();

    Mailbox(const Mailbox&) = delete;
    Mailbox& operator=(const Mailbox&) = delete;

    Slot slot() const { return m_slot; }

private:
    class Receiver;

    Slot m_slot;
    std::unique_ptr<Receiver> m_receiver;
};
