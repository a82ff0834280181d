#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>

#include <cstring>

namespace corvane {

using namespace platform;

namespace {
char registryModule; // its address is the module's handle
}

HMODULE platform::GetModuleHandleW(const wchar* name) noexcept {
    if (name && platform::_wcsicmp(name, u"Advapi32.dll") == 0)
        return reinterpret_cast<HMODULE>(&registryModule);
    SetLastError(ERROR_MOD_NOT_FOUND);
    return nullptr;
}

FARPROC platform::GetProcAddress(HMODULE module, const char* name) noexcept {
    if (module == reinterpret_cast<HMODULE>(&registryModule) && name &&
        std::strcmp(name, "RegDeleteKeyExW") == 0)
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&platform::RegDeleteKeyExW));
    SetLastError(ERROR_PROC_NOT_FOUND);
    return nullptr;
}

} // namespace corvane
