// The content of a file in memory.
#pragma once

#include <corvane/platform/LargeBlocks.h>

#include <string_view>
#include <vector>

namespace corvane::os {

/// The bytes of a file; a large one is in large pages. New bytes are left uninitialized, because clearing
/// them would take as long as reading the file.
class FileText {
public:
    char* Data() noexcept { return m_bytes.data(); }
    std::size_t Size() const noexcept { return m_bytes.size(); }
    std::size_t Capacity() const noexcept { return m_bytes.capacity(); }
    std::string_view View() const noexcept { return {m_bytes.data(), m_bytes.size()}; }

    /// Keeps the existing bytes up to `size`; added bytes are uninitialized. Throws only std::bad_alloc, with
    /// nothing changed.
    void Resize(std::size_t size) {
        m_bytes.reserve(platform::BlockSize(size));
        m_bytes.resize(size);
    }

private:
    std::vector<char, platform::LargeBlockAllocator<char>> m_bytes;
};

} // namespace corvane::os
