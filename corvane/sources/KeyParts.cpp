#include <corvane/sources/KeyParts.h>

namespace corvane {

// A plain pointer, never freed: managers may be used by the destructors of static objects.
std::atomic<KeyParts::Buffers*> KeyParts::spare{nullptr};

KeyParts::KeyParts()
    : m_buffers(spare.exchange(nullptr, std::memory_order_acquire)),
      section((m_buffers ? m_buffers : m_buffers = std::make_unique<Buffers>())->section),
      tag(m_buffers->tag) {
    section.clear();
    tag.clear();
}

KeyParts::~KeyParts() {
    constexpr std::size_t largestKept = 4096; // units
    if (section.capacity() + tag.capacity() <= largestKept)
        m_buffers.reset(spare.exchange(m_buffers.release(), std::memory_order_acq_rel));
}

} // namespace corvane
