// The two halves of a key, split without an allocation.
#pragma once

#include <corvane/sources/IConfigSource.h>

#include <atomic>
#include <memory>

namespace corvane {

/// Holds a key's section and tag for one operation, in text buffers that are lent from one operation to the
/// next: splitting allocates only for a key longer than those before it, or while another operation has them.
class KeyParts {
public:
    KeyParts();
    KeyParts(const KeyParts&) = delete;
    KeyParts& operator=(const KeyParts&) = delete;
    ~KeyParts();

    /// Has the source split `key`. False if it is no key.
    bool Parse(IConfigSource& source, const wstring& key) { return source.ParseKey(key, section, tag); }

private:
    struct Buffers {
        wstring section;
        wstring tag;
    };

    static std::atomic<Buffers*> spare;

    std::unique_ptr<Buffers> m_buffers;

public:
    wstring& section;
    wstring& tag;
};

} // namespace corvane
