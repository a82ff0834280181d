#include <corvane/registry/RegistryKey.h>
#include <corvane/registry/ScratchBuffer.h>
#include <corvane/registry/registry.h>

#include <algorithm>

using namespace corvane::platform;

namespace corvane {
namespace {

constexpr std::size_t endLength = 2; // the two NULs

// A list of names that grows with each of them.
class NameBlock {
public:
    explicit NameBlock(wchar delimiter) noexcept : m_delimiter(delimiter) {}

    /// False if out of memory; the names collected so far are then dropped.
    bool Append(wstring_view name) noexcept {
        const std::size_t begin = m_block ? m_length + 1 : 0;
        void* const grown = std::realloc(m_block.get(), (begin + name.size() + endLength) * sizeof(wchar));
        if (!grown) {
            m_block.reset();
            return false;
        }
        static_cast<void>(m_block.release());
        m_block.reset(static_cast<wchar*>(grown));
        if (begin > 0)
            m_block[m_length] = m_delimiter;
        std::copy(name.begin(), name.end(), m_block.get() + begin);
        m_length = begin + name.size();
        return true;
    }

    /// The finished block, now owned by the caller; null without any name.
    wchar* Finish() noexcept {
        if (m_block)
            std::fill_n(m_block.get() + m_length, endLength, wchar());
        return m_block.release();
    }

private:
    ScratchBuffer<wchar> m_block;
    std::size_t m_length = 0;
    wchar m_delimiter;
};

} // namespace
} // namespace corvane

using namespace corvane;

wchar* registry_loadSubSectionNames(void* key, const wchar* subKey, wchar delimiter,
                                    corvane::ulong flags) noexcept {
    const RegistryKey opened = OpenForReading(KeyAddress::Of(key, subKey), flags);
    if (!opened)
        return nullptr;
    corvane::ulong count = 0;
    corvane::ulong longestName = 0;
    corvane::ulong valueCount = 0;
    if (platform::RegQueryInfoKeyW(opened.get(), nullptr, nullptr, nullptr, &count, &longestName, nullptr,
                                   &valueCount, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS ||
        count == 0)
        return nullptr;
    const std::size_t nameSize = std::size_t{longestName} + 1;
    const ScratchBuffer<wchar> name = AllocateScratch<wchar>(nameSize);
    if (!name)
        return nullptr;
    NameBlock block(delimiter);
    for (corvane::ulong index = 0; index < count; ++index) {
        auto length = static_cast<corvane::ulong>(nameSize);
        name[0] = 0;
        if (platform::RegEnumKeyExW(opened.get(), index, name.get(), &length, nullptr, nullptr, nullptr,
                                    nullptr) != ERROR_SUCCESS ||
            length == 0)
            continue;
        if (!block.Append(wstring_view(name.get(), length)))
            return nullptr;
    }
    return block.Finish();
}
