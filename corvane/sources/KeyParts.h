// The two halves of a key, split without an allocation.
#pragma once

#include <corvane/foundations/FindUnit.h>
#include <corvane/sources/IConfigSource.h>

#include <atomic>
#include <memory>

namespace corvane {

/// Holds a key's section and tag for one operation, in buffers that the next one uses again: splitting
/// allocates only for a key longer than those before it, or while another operation has the spare buffers.
class KeyParts {
    struct Buffers {
        wstring section;
        wstring tag;
    };

public:
    KeyParts() {
        section.clear();
        tag.clear();
    }
    KeyParts(const KeyParts&) = delete;
    KeyParts& operator=(const KeyParts&) = delete;
    ~KeyParts() {
        constexpr std::size_t largestKept = 4096; // units
        if (section.capacity() + tag.capacity() <= largestKept)
            m_buffers.reset(spare.exchange(m_buffers.release()));
    }

    /// Has the source split `key`. False if it is no key.
    bool Parse(IConfigSource& source, const wstring& key) { return source.ParseKey(key, section, tag); }

    bool HasSection() const noexcept { return !IsEmptyName(section); }
    bool HasTag() const noexcept { return !IsEmptyName(tag); }

private:
    // Never deleted: managers may be used by the destructors of static objects.
    static inline std::atomic<Buffers*> spare{nullptr};

    static Buffers* TakeBuffers() {
        Buffers* const buffers = spare.exchange(nullptr);
        return buffers ? buffers : new Buffers;
    }

    std::unique_ptr<Buffers> m_buffers{TakeBuffers()};

public:
    wstring& section = m_buffers->section;
    wstring& tag = m_buffers->tag;
};

} // namespace corvane
