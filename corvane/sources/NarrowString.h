// Wide text handed to the narrow operations of the platform.
#pragma once

#include <corvane/foundations/ScopedResource.h>
#include <corvane/foundations/StringUtility.h>

struct QUtilStringFreeA {
    void operator()(char* text) const noexcept {
        if (text)
            string_freeA(text);
    }
};

/// A UTF-8 text for the length of one operation, or null.
class NarrowString : public Quillon::ScopedResource<char*, QUtilStringFreeA, Quillon::NoOp<char*>> {
public:
    NarrowString() : ScopedResource(nullptr) {}

    /// Takes the UTF-8 form of `text`. False when it cannot be made, and null then stays.
    bool Convert(const corvane::wchar* text) {
        char* utf8 = nullptr;
        if (stringCnv_wcsToUTF8Alloc(text, &utf8) != 0)
            return false;
        Attach(utf8);
        return true;
    }

    /// The same for a name, of which an empty one stays null.
    bool ConvertName(const corvane::wstring& name) { return name.empty() || Convert(name.c_str()); }
};
