#include <corvane/detail/CaseFolding.h>
#include <corvane/foundations/Utf.h>
#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/registry/KeyName.h>

#include <algorithm>
#include <charconv>
#include <cstring>

namespace corvane::os {
namespace {

constexpr std::size_t longestPart = 240; // in bytes
constexpr std::size_t weightOfUnit = 3;
constexpr std::size_t weightOfSurrogate = 6;
constexpr std::string_view continuation = "%+";

bool IsSurrogate(wchar unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

// The number of code units of the first character: two for a well-formed surrogate pair.
std::size_t CharacterLength(wstring_view text) noexcept {
    const bool isPair =
        text.size() > 1 && text[0] >= 0xD800 && text[0] <= 0xDBFF && text[1] >= 0xDC00 && text[1] <= 0xDFFF;
    return isPair ? 2 : 1;
}

bool MustBeEscaped(wchar unit) noexcept {
    return unit < 0x20 || unit == 0x7F ||
           (unit < 0x7F && std::strchr("%/\\:*?\"<>|", static_cast<int>(unit)));
}

void AppendHex(std::string& text, unsigned value, int digits) {
    static constexpr char digit[] = "0123456789ABCDEF";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += digit[value >> shift & 0xF];
}

// Decodes the escape at the beginning of `text` and removes it.
bool ConsumeEscape(std::string_view& text, wchar& unit) noexcept {
    const bool isSurrogate = text.size() > 1 && text[1] == 'u';
    const std::size_t digitsAt = isSurrogate ? 2 : 1;
    const std::size_t end = digitsAt + (isSurrogate ? 4 : 2);
    if (text.size() < end)
        return false;
    std::uint16_t value = 0;
    const auto result = std::from_chars(text.data() + digitsAt, text.data() + end, value, 16);
    unit = static_cast<wchar>(value);
    const bool isWhole = result.ptr == text.data() + end;
    text.remove_prefix(end);
    return isWhole;
}

} // namespace

std::vector<NamePart> PartsOf(wstring_view keyName) {
    std::vector<NamePart> parts(1);
    if (keyName.size() * weightOfSurrogate <= longestPart) { // most names
        parts[0].text = keyName;
        return parts;
    }
    std::size_t size = 0;
    while (!keyName.empty()) {
        const std::size_t units = CharacterLength(keyName);
        const std::size_t weight = IsSurrogate(keyName[0]) ? weightOfSurrogate : weightOfUnit;
        if (size + weight > longestPart) {
            parts.back().isLast = false;
            parts.emplace_back();
            size = 0;
        }
        size += weight;
        parts.back().text += keyName.substr(0, units);
        keyName.remove_prefix(units);
    }
    return parts;
}

int CompareKeyNames(wstring_view a, wstring_view b) noexcept {
    const auto lower = [](wchar unit) {
        constexpr wchar unknown = 0xFFFD; // different names must never map to the same folder
        const wchar folded = FoldForHash(unit);
        return folded == unknown ? unit : folded;
    };
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (const int difference = lower(a[i]) - lower(b[i]))
            return difference;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

std::string FolderNameOf(const NamePart& part) {
    std::string folderName;
    for (wstring_view rest = part.text; !rest.empty();) {
        const std::size_t units = CharacterLength(rest);
        if (MustBeEscaped(rest[0]) || (rest[0] == '.' && folderName.empty())) {
            folderName += '%';
            AppendHex(folderName, rest[0], 2);
        } else if (units == 1 && IsSurrogate(rest[0])) {
            folderName += "%u";
            AppendHex(folderName, rest[0], 4);
        } else if (rest[0] < 0x80) {
            folderName += static_cast<char>(rest[0]);
        } else {
            folderName += ToUtf8(rest.substr(0, units));
        }
        rest.remove_prefix(units);
    }
    return part.isLast ? folderName : folderName.append(continuation);
}

bool ParseFolderName(std::string_view folderName, NamePart& part) {
    std::string_view rest = folderName;
    part.text.clear();
    part.isLast = rest.size() < continuation.size() || rest.substr(rest.size() - 2) != continuation;
    if (!part.isLast)
        rest.remove_suffix(continuation.size());
    while (!rest.empty()) {
        if (wchar unit = 0; rest.front() == '%') {
            if (!ConsumeEscape(rest, unit))
                return false;
            part.text += unit;
        } else {
            const std::size_t plain = std::min(rest.find('%'), rest.size());
            part.text += ToWide(rest.substr(0, plain));
            rest.remove_prefix(plain);
        }
    }
    // Ill-formed UTF-8 and needless escapes do not round-trip; refusing them keeps one folder per key.
    return !part.text.empty() && FolderNameOf(part) == folderName;
}

} // namespace corvane::os
