#pragma once

#include <atomic>
#include <mutex>

/// Base of the process-wide singletons. `instance()` may be called from any thread; the object is made at the first
/// call and lives until the process ends.
template <typename T>
class ks_singleton_base
{
public:
    static T* instance()
    {
        T* object = s_instance.load(std::memory_order_acquire);
        if (!object) {
            const std::lock_guard<std::mutex> lock(s_mutex);
            object = s_instance.load(std::memory_order_relaxed);
            if (!object) {
                object = new T;
                s_instance.store(object, std::memory_order_release);
            }
        }
        return object;
    }

protected:
    ks_singleton_base() = default;
    ~ks_singleton_base() = default;

private:
    static inline std::atomic<T*> s_instance{nullptr};
    static inline std::mutex s_mutex;
};
