// Splits a key without an allocation.
#pragma once

#include <corvane/foundations/FindUnit.h>
#include <corvane/sources/IConfigSource.h>

#include <atomic>
#include <memory>

namespace corvane {

/// The section and tag of a key during one operation, in reused buffers: splitting allocates only for a key
/// longer than those before, or while another operation has the spare buffers.
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

    /// Lets the source split `key`. False if it is not a key.
    bool Parse(IConfigSource& source, const wstring& key) { return source.ParseKey(key, section, tag); }

    bool HasSection() const noexcept { return !IsEmptyName(section); }
    bool HasTag() const noexcept { return !IsEmptyName(tag); }

private:
    // Never deleted: managers may be used by the destructors of static objects.
    static inline std::atomic<Buffers*> spare{nullptr};

    static Buffers* AcquireBuffers() {
        Buffers* const buffers = spare.exchange(nullptr);
        return buffers ? buffers : new Buffers;
    }

    std::unique_ptr<Buffers> m_buffers{AcquireBuffers()};

public:
    wstring& section = m_buffers->section;
    wstring& tag = m_buffers->tag;
};

} // namespace corvane
