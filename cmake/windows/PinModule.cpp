// Linked into libraries whose texts and callables others may still hold when they unload them: the code stays mapped.

#include <windows.h>

namespace {

bool pin()
{
    HMODULE self = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                              reinterpret_cast<LPCWSTR>(&pin), &self) != 0;
}

[[maybe_unused]] const bool pinned = pin();

} // namespace
