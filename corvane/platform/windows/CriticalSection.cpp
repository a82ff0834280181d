#include <corvane/detail/CriticalSection.h>
#include <corvane/platform/windows/WindowsPlatform.h>

namespace corvane {
namespace {

using Section = platform::CRITICAL_SECTION;

static_assert(sizeof Section::memory == sizeof(::CRITICAL_SECTION) &&
              alignof(Section) >= alignof(::CRITICAL_SECTION));
static_assert(sizeof Section::once == sizeof(::INIT_ONCE) && alignof(Section) >= alignof(::INIT_ONCE));

::CRITICAL_SECTION* Real(Section* section) noexcept {
    return reinterpret_cast<::CRITICAL_SECTION*>(section->memory);
}

::INIT_ONCE* Once(Section* section) noexcept {
    return reinterpret_cast<::INIT_ONCE*>(&section->once);
}

::BOOL CALLBACK Make(::INIT_ONCE*, void* section, void**) {
    ::InitializeCriticalSection(Real(static_cast<Section*>(section)));
    return TRUE;
}

} // namespace

void platform::EnterCriticalSection(Section* section) noexcept {
    ::InitOnceExecuteOnce(Once(section), Make, section, nullptr);
    ::EnterCriticalSection(Real(section));
}

void platform::LeaveCriticalSection(Section* section) noexcept {
    ::LeaveCriticalSection(Real(section));
}

void platform::DeleteCriticalSection(Section* section) noexcept {
    ::BOOL pending = FALSE;
    if (!::InitOnceBeginInitialize(Once(section), INIT_ONCE_CHECK_ONLY, &pending, nullptr))
        return; // never entered
    ::DeleteCriticalSection(Real(section));
    ::InitOnceInitialize(Once(section));
}

} // namespace corvane
