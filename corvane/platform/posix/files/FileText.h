// What a file holds, in memory.
#pragma once

#include <corvane/platform/LargeBlocks.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

namespace corvane::posix {

/// The bytes of a file, of a large one in large pages. They are not cleared before they are filled: that
/// would take as long as reading them.
class FileText {
public:
    FileText() = default;
    FileText(const FileText&) = delete;
    FileText(FileText&& other) noexcept { Swap(other); }
    FileText& operator=(const FileText&) = delete;
    FileText& operator=(FileText&& other) noexcept {
        FileText moved(std::move(other));
        Swap(moved);
        return *this;
    }
    ~FileText() {
        if (m_bytes)
            platform::GiveBlockBack(m_bytes, m_room);
    }

    char* Data() noexcept { return m_bytes; }
    std::size_t Size() const noexcept { return m_size; }
    std::size_t Room() const noexcept { return m_room; }
    std::string_view View() const noexcept { return {m_bytes, m_size}; }

    /// Keeps what is there, as far as it goes; what comes to it may hold anything. Throws only for lack of
    /// memory, with nothing changed.
    void Resize(std::size_t size) {
        if (size > m_room)
            MoveTo(platform::BlockSize(size));
        m_size = size;
    }

private:
    void MoveTo(std::size_t room) {
        FileText larger;
        larger.m_bytes = static_cast<char*>(platform::TakeBlock(room));
        larger.m_room = room;
        if (m_size > 0)
            std::memcpy(larger.m_bytes, m_bytes, m_size);
        Swap(larger);
    }

    void Swap(FileText& other) noexcept {
        std::swap(m_bytes, other.m_bytes);
        std::swap(m_size, other.m_size);
        std::swap(m_room, other.m_room);
    }

    char* m_bytes = nullptr;
    std::size_t m_size = 0;
    std::size_t m_room = 0;
};

} // namespace corvane::posix
