// What a file holds, in memory.
#pragma once

#include <corvane/platform/LargeBlocks.h>

#include <string_view>
#include <vector>

namespace corvane::posix {

/// The bytes of a file, of a large one in large pages. They are not cleared before they are filled: that
/// would take as long as reading them.
class FileText {
public:
    char* Data() noexcept { return m_bytes.data(); }
    std::size_t Size() const noexcept { return m_bytes.size(); }
    std::size_t Capacity() const noexcept { return m_bytes.capacity(); }
    std::string_view View() const noexcept { return {m_bytes.data(), m_bytes.size()}; }

    /// Keeps what is there, as far as it goes; what is added may hold anything. Throws only for lack of
    /// memory, with nothing changed.
    void Resize(std::size_t size) {
        m_bytes.reserve(platform::BlockSize(size));
        m_bytes.resize(size);
    }

private:
    std::vector<char, platform::LargeBlockAllocator<char>> m_bytes;
};

} // namespace corvane::posix
