// Splits a key without an allocation.
#pragma once

#include <corvane/foundations/FindUnit.h>
#include <corvane/foundations/ThreadLock.h>
#include <corvane/sources/IConfigSource.h>

#include <memory>
#include <utility>

namespace corvane {

/// The section and tag of a key during one operation, in reused buffers: splitting allocates only for a key
/// longer than those before, or inside another operation.
class KeyParts {
    struct Buffers {
        wstring section;
        wstring tag;
    };

public:
    /// The thread must hold `lock`, that of the managers, as long as the object lives.
    explicit KeyParts(const ThreadLock& lock) CORVANE_REQUIRES(lock) {
        static_cast<void>(lock);
        section.clear();
        tag.clear();
    }
    KeyParts(const KeyParts&) = delete;
    KeyParts& operator=(const KeyParts&) = delete;
    ~KeyParts() {
        constexpr std::size_t largestKept = 4096; // units
        if (section.capacity() + tag.capacity() <= largestKept)
            m_buffers.reset(std::exchange(spare, m_buffers.release()));
    }

    /// Lets the source split `key`. False if it is not a key.
    bool Parse(IConfigSource& source, const wstring& key) { return source.ParseKey(key, section, tag); }

    bool HasSection() const noexcept { return !IsEmptyName(section); }
    bool HasTag() const noexcept { return !IsEmptyName(tag); }

private:
    // Never deleted: managers may be used by the destructors of static objects.
    static inline Buffers* spare = nullptr;

    static Buffers* AcquireBuffers() {
        Buffers* const buffers = std::exchange(spare, nullptr);
        return buffers ? buffers : new Buffers;
    }

    std::unique_ptr<Buffers> m_buffers{AcquireBuffers()};

public:
    wstring& section = m_buffers->section;
    wstring& tag = m_buffers->tag;
};

} // namespace corvane
