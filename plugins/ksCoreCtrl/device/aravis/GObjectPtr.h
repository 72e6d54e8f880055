#pragma once

#include <glib-object.h>
#include <memory>

struct GObjectRelease
{
    void operator()(void* object) const { g_object_unref(object); }
};
/// Owns one reference.
template <typename Type>
using GObjectPtr = std::unique_ptr<Type, GObjectRelease>;

/// Receives the error of a call, and frees it.
class GErrorHolder
{
public:
    GErrorHolder() = default;
    ~GErrorHolder() { g_clear_error(&m_error); }
    GErrorHolder(const GErrorHolder&) = delete;
    GErrorHolder& operator=(const GErrorHolder&) = delete;

    /// For one call; what the call before left is gone.
    GError** operator&()
    {
        g_clear_error(&m_error);
        return &m_error;
    }
    explicit operator bool() const { return m_error; }
    const GError* operator->() const { return m_error; }
    const GError* get() const { return m_error; }

private:
    GError* m_error = nullptr;
};
