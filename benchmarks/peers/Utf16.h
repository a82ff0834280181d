// UTF-8 to UTF-16 and back for the peers: for well-formed text alone, as the workload writes it.
#pragma once

#include <string>
#include <string_view>

namespace peers {

inline void AppendUtf16(std::u16string& out, std::string_view in) {
    out.reserve(out.size() + in.size());
    for (std::size_t i = 0; i < in.size();) {
        const auto lead = static_cast<unsigned char>(in[i++]);
        const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t code = more ? lead & (0x3FU >> more) : lead;
        for (int k = 0; k < more; ++k)
            code = code << 6 | (static_cast<unsigned char>(in[i++]) & 0x3FU);
        if (code >= 0x10000) {
            out += static_cast<char16_t>(0xD7C0 + (code >> 10));
            code = 0xDC00 | (code & 0x3FF);
        }
        out += static_cast<char16_t>(code);
    }
}

inline std::u16string ToUtf16(std::string_view in) {
    std::u16string out;
    AppendUtf16(out, in);
    return out;
}

inline std::string ToUtf8(const std::string& in) {
    return in;
}

inline std::string ToUtf8(const std::u16string& in) {
    static constexpr unsigned lead[] = {0, 0xC0, 0xE0, 0xF0};
    std::string out;
    for (std::size_t i = 0; i < in.size(); ++i) {
        char32_t code = in[i];
        if (code >= 0xD800 && code < 0xDC00)
            code = ((code - 0xD7C0) << 10) + (in[++i] & 0x3FFU);
        const int more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
        out += static_cast<char>(lead[more] | code >> (6 * more));
        for (int k = more - 1; k >= 0; --k)
            out += static_cast<char>(0x80 | ((code >> (6 * k)) & 0x3F));
    }
    return out;
}

} // namespace peers
