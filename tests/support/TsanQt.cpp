#include <QFutureInterface>
#include <QRunnable>
#include <QThread>

#include <dlfcn.h>
#include <functional>
#include <sanitizer/tsan_interface.h>

// Qt as it is installed is not built for the thread sanitizer, which therefore does not see how a queued call, a pool,
// a lock or the end of a thread of Qt orders what two threads do. Linked into a test, this takes the place of those few
// of Qt's functions that our code hands things over with, and says so. What Qt does within itself stays unseen and is
// left out by scripts/tsan.supp.

namespace {

char handedOver; // stands for all that was emitted, posted, given to a pool, or done by a thread that ended

/// Qt's own function of the name that the calling one has taken.
template <typename Function>
Function real(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// What a pool runs.
class Ordered : public QRunnable
{
public:
    explicit Ordered(QRunnable* work)
        : m_work(work)
    {
    }
    void run() override
    {
        __tsan_acquire(&handedOver);
        const bool owned = m_work->autoDelete();
        m_work->run();
        if (owned)
            delete m_work;
        __tsan_release(&handedOver);
    }

private:
    QRunnable* m_work;
};

/// A call to a thread. Whichever of the two threads lets go of it last deletes it.
class OrderedCall : public QtPrivate::QSlotObjectBase
{
public:
    explicit OrderedCall(QSlotObjectBase* call)
        : QSlotObjectBase(&act)
        , m_call(call)
    {
        __tsan_release(this);
    }

private:
    static void act(int what, QSlotObjectBase* self, QObject* receiver, void** values, bool*)
    {
        auto* const ordered = static_cast<OrderedCall*>(self);
        __tsan_acquire(self);
        if (what == Call)
            ordered->m_call->call(receiver, values);
        __tsan_release(self);
        if (what == Destroy) {
            ordered->m_call->destroyIfLastRef();
            delete ordered;
        }
    }

    QSlotObjectBase* const m_call;
};

std::function<void()> inOrder(const std::function<void()>& work)
{
    return [work] {
        __tsan_acquire(&handedOver);
        work();
        __tsan_release(&handedOver);
    };
}

void releaseAtEnd(void* thread)
{
    auto* const ending = static_cast<QThread*>(thread);
    QObject::connect(
        ending, &QThread::finished, ending, [] { __tsan_release(&handedOver); }, Qt::DirectConnection);
}

/// Every event of every thread comes by before it is delivered.
const bool watched = QInternal::registerCallback(QInternal::EventNotifyCallback, [](void**) {
    __tsan_acquire(&handedOver);
    return false;
});

} // namespace

// Under the names that the linker knows: Qt's headers have declared these functions already. Aligned, for a pointer to
// a member that is odd would mean a virtual one.
#define QT_FUNCTION(Return, name, parameters, arguments, before, after)                                                \
    extern "C" Q_DECL_EXPORT __attribute__((aligned(16))) Return name parameters                                       \
    {                                                                                                                  \
        static const auto function = real<Return(*) parameters>(#name);                                                \
        before;                                                                                                        \
        struct After                                                                                                   \
        {                                                                                                              \
            void* self;                                                                                                \
            ~After() { after; }                                                                                        \
        } const done{self};                                                                                            \
        return function arguments;                                                                                     \
    }
#define RELEASE(token) __tsan_release(token)
#define ACQUIRE(token) __tsan_acquire(token)

QT_FUNCTION(void, _ZN11QMetaObject8activateEP7QObjectPKS_iPPv, (void* self, void* meta, int index, void** values),
            (self, meta, index, values), RELEASE(&handedOver), )
QT_FUNCTION(bool, _ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv,
            (void* self, QtPrivate::QSlotObjectBase* slot, int type, void* result), (self, ordered, type, result),
            auto* const ordered = new OrderedCall(slot);
            , )
QT_FUNCTION(void, _ZN16QCoreApplication9postEventEP7QObjectP6QEventi, (void* self, void* event, int priority),
            (self, event, priority), RELEASE(&handedOver), )
QT_FUNCTION(void, _ZN7QObject11deleteLaterEv, (void* self), (self), RELEASE(&handedOver), )

QT_FUNCTION(void, _ZN6QMutex4lockEv, (void* self), (self), , ACQUIRE(self))
QT_FUNCTION(bool, _ZN6QMutex7tryLockEi, (void* self, int ms), (self, ms), , ACQUIRE(self))
QT_FUNCTION(void, _ZN6QMutex6unlockEv, (void* self), (self), RELEASE(self), )
QT_FUNCTION(void, _ZN10QSemaphore7acquireEi, (void* self, int count), (self, count), , ACQUIRE(self))
QT_FUNCTION(bool, _ZN10QSemaphore10tryAcquireEi, (void* self, int count), (self, count), , ACQUIRE(self))
QT_FUNCTION(bool, _ZN10QSemaphore10tryAcquireEii, (void* self, int count, int ms), (self, count, ms), , ACQUIRE(self))
QT_FUNCTION(void, _ZN10QSemaphore7releaseEi, (void* self, int count), (self, count), RELEASE(self), )

QT_FUNCTION(bool, _ZN7QThread4waitEm, (void* self, unsigned long ms), (self, ms), , ACQUIRE(&handedOver))
QT_FUNCTION(bool, _ZN7QThread4waitE14QDeadlineTimer, (void* self, QDeadlineTimer until), (self, until), ,
            ACQUIRE(&handedOver))
// Before anybody else hears of the end, and may look at what the thread has done.
QT_FUNCTION(void, _ZN7QThreadC2EP7QObject, (void* self, QObject* parent), (self, parent), , releaseAtEnd(self))
QT_FUNCTION(void, _ZN7QThreadC1EP7QObject, (void* self, QObject* parent), (self, parent), , releaseAtEnd(self))
QT_FUNCTION(void, _ZN11QThreadPool5startEP9QRunnablei, (void* self, QRunnable* work, int priority),
            (self, ordered, priority), QRunnable* const ordered = new Ordered(work);
            RELEASE(&handedOver), )
QT_FUNCTION(void, _ZN11QThreadPool5startESt8functionIFvvEEi,
            (void* self, const std::function<void()>* work, int priority), (self, &ordered, priority),
            const std::function<void()> ordered = inOrder(*work);
            RELEASE(&handedOver), )
QT_FUNCTION(bool, _ZN11QThreadPool11waitForDoneEi, (void* self, int ms), (self, ms), , ACQUIRE(&handedOver))
QT_FUNCTION(void, _ZN11QThreadPoolD1Ev, (void* self), (self), , ACQUIRE(&handedOver))
QT_FUNCTION(void, _ZN20QFutureInterfaceBase14reportFinishedEv, (void* self), (self), RELEASE(&handedOver), )
QT_FUNCTION(void, _ZN20QFutureInterfaceBase15waitForFinishedEv, (void* self), (self), , ACQUIRE(&handedOver))
