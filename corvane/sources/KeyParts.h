// The two halves of a key, split without an allocation.
#pragma once

#include <corvane/sources/IConfigSource.h>

#include <atomic>

namespace corvane {

/// Holds a key's section and tag for one operation, in text buffers that are lent from one operation to the
/// next: splitting allocates only for a key longer than those before it, or while another operation has them.
class KeyParts {
public:
    KeyParts() : KeyParts(TheSpare()) {}
    KeyParts(const KeyParts&) = delete;
    KeyParts& operator=(const KeyParts&) = delete;
    ~KeyParts() {
        if (m_lender)
            GiveBack();
    }

    /// Has the source split `key`. False if it is no key.
    bool Parse(IConfigSource& source, const wstring& key) { return source.ParseKey(key, section, tag); }

private:
    struct Spare {
        std::atomic<bool> lent{false};
        wstring section;
        wstring tag;
    };

    // Never destroyed: managers may be used by the destructors of static objects.
    static Spare& TheSpare() {
        static Spare& spare = *new Spare;
        return spare;
    }

    explicit KeyParts(Spare& spare) noexcept
        : m_lender(spare.lent.exchange(true, std::memory_order_acquire) ? nullptr : &spare),
          section(m_lender ? spare.section : m_section), tag(m_lender ? spare.tag : m_tag) {
        section.clear();
        tag.clear();
    }

    void GiveBack() noexcept {
        constexpr std::size_t largestKept = 4096; // units
        if (section.capacity() + tag.capacity() > largestKept) {
            section = wstring();
            tag = wstring();
        }
        m_lender->lent.store(false, std::memory_order_release);
    }

    Spare* m_lender;
    wstring m_section; // in use if there is no lender
    wstring m_tag;

public:
    wstring& section;
    wstring& tag;
};

} // namespace corvane
