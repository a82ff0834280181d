// UTF-8 forms of wide text for the platform's narrow operations.
#pragma once

#include <corvane/foundations/FindUnit.h>
#include <corvane/foundations/ScopedResource.h>
#include <corvane/foundations/StringUtility.h>
#include <corvane/foundations/Utf.h>

struct QUtilStringFreeA {
    void operator()(char* text) const noexcept {
        if (text)
            string_freeA(text);
    }
};

/// A UTF-8 text during one operation, or null.
class NarrowString : public Quillon::ScopedResource<char*, QUtilStringFreeA, Quillon::NoOp<char*>> {
public:
    NarrowString() : ScopedResource(nullptr) {}

    /// Converts `text`. On failure returns false and stays null.
    bool Convert(const corvane::wchar* text) {
        char* utf8 = nullptr;
        if (stringCnv_wcsToUTF8Alloc(text, &utf8) != 0)
            return false;
        Attach(utf8);
        return true;
    }

    /// The same for a name; stays null for an empty one.
    bool ConvertName(const corvane::wstring& name) {
        return corvane::IsEmptyName(name) || Convert(name.c_str());
    }
};

/// The UTF-8 form of a name, up to its first NUL, during one read; null for an empty name. Names of ordinary
/// length need no allocation.
class NarrowName {
public:
    // cppcheck-suppress uninitMemberVar ; the text is there before anything points to it
    NarrowName() = default;
    NarrowName(const NarrowName&) = delete;
    NarrowName& operator=(const NarrowName&) = delete;
    ~NarrowName() = default;

    /// Converts `name`. On failure returns false and stays null.
    bool Convert(corvane::wstring_view name) {
        if (name.empty() || name.front() == 0)
            return true;
        if (name.size() > inlineUnits) {
            const bool converted = m_long.Convert(corvane::wstring(name).c_str());
            m_text = m_long.Get();
            return converted;
        }
        const std::size_t size = corvane::utf::ToUtf8(name, m_inline);
        if (size != name.size() && corvane::utf::HasLoneSurrogate(corvane::UpToNul(name)))
            return false;
        m_inline[size] = '\0';
        m_text = m_inline;
        return true;
    }

    const char* Get() const noexcept { return m_text; }

private:
    static constexpr std::size_t inlineUnits = 64;

    const char* m_text = nullptr;
    char m_inline[inlineUnits * 3 + 1];
    NarrowString m_long;
};
