#include <corvane/manager/TagMap.h>

namespace corvane {

void TagMap::Assign(const Tag& tag) {
    const std::uint32_t index = Find(tag.name);
    if (index == none)
        m_names.Add(tag.name, tag.value, tag.cacheOnly);
    else
        m_names.Assign(index, tag.value, tag.cacheOnly);
}

bool TagMap::Erase(wstring_view name) noexcept {
    const std::uint32_t index = Find(name);
    if (index == none)
        return false;
    m_names.Remove(index);
    return true;
}

} // namespace corvane
