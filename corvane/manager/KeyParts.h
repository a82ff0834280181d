// The two halves of a key, split without an allocation.
#pragma once

#include <corvane/sources/IConfigSource.h>

namespace corvane {

/// Holds a key's section and tag for one operation of a manager, in text buffers that are lent from one
/// operation to the next, so that splitting allocates only for a key longer than those before it. To be made
/// and ended with the managers' lock held; an operation inside another one simply finds nothing to borrow.
class KeyParts {
public:
    KeyParts() noexcept;
    KeyParts(const KeyParts&) = delete;
    KeyParts& operator=(const KeyParts&) = delete;
    ~KeyParts();

    /// Has the source split `key`. False if it is no key.
    bool Parse(IConfigSource& source, const wstring& key) { return source.ParseKey(key, section, tag); }

    wstring section;
    wstring tag;
};

} // namespace corvane
