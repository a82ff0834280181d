#include <corvane/manager/MemoryPool.h>
#include <corvane/platform/LargeBlocks.h>

#include <algorithm>

namespace corvane {
namespace {

constexpr std::size_t leastBlock = 4096;

} // namespace

MemoryPool::~MemoryPool() {
    for (const Block& block : m_blocks)
        platform::GiveBlockBack(block.memory, block.size);
}

void* MemoryPool::Take(std::size_t bytes) {
    constexpr std::size_t alignment = 8;
    bytes = (bytes + alignment - 1) / alignment * alignment;
    if (bytes > m_room)
        AddBlock(bytes);
    void* const piece = m_free;
    m_free += bytes;
    m_room -= bytes;
    return piece;
}

// As much as there is already, so that there are few blocks, and in the end one large page after the other.
void MemoryPool::AddBlock(std::size_t least) {
    const std::size_t ordinary = std::clamp(m_total, leastBlock, platform::worthLargePage);
    const std::size_t size = platform::BlockSize(std::max(least, ordinary));
    m_blocks.reserve(m_blocks.size() + 1);
    m_free = static_cast<char*>(platform::TakeBlock(size));
    m_room = size;
    m_total += size;
    m_blocks.push_back({m_free, size});
}

} // namespace corvane
