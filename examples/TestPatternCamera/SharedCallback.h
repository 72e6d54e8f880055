#pragma once

#include <functional>
#include <memory>
#include <mutex>

/// A callback that one thread may replace while others call it. A call that runs while it is replaced finishes; nothing
/// is locked during a call, so that a callback may itself call the module.
template <typename... Arguments>
class SharedCallback
{
public:
    using Function = std::function<void(const Arguments&...)>;

    /// An empty function makes the calls do nothing.
    void set(Function function)
    {
        auto next = std::make_shared<const Function>(std::move(function));
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_function.swap(next);
    }

    void operator()(const Arguments&... arguments) const
    {
        const auto function = current();
        if (function && *function)
            (*function)(arguments...);
    }

private:
    std::shared_ptr<const Function> current() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_function;
    }

    mutable std::mutex m_mutex; // protects m_function
    std::shared_ptr<const Function> m_function;
};
