#include "FileText.h"

#include "Failure.h"

#include <corvane/config.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

namespace {

Failure Failed(const char* what, const std::string& file) {
    return {Refused, what + (" '" + file + "' (") + std::generic_category().message(errno) + ")"};
}

} // namespace

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::filesystem::path ToPath(const std::string& name) {
    return corvane::ToWide(name);
}

std::string ReadText(const std::string& file) {
    errno = 0;
    std::ifstream stream(ToPath(file), std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(stream), {});
    if (!stream)
        throw Failed("cannot read", file);
    return text;
}

void WriteText(const std::string& file, const std::string& text, bool append) {
    errno = 0;
    std::ofstream stream(ToPath(file), std::ios::binary | (append ? std::ios::app : std::ios::trunc));
    if (!stream.write(text.data(), static_cast<std::streamsize>(text.size())).flush())
        throw Failed("cannot write", file);
}

std::vector<HeaderName> FindHeaders(const std::string& text) {
    static const std::string byteOrderMark = "\xEF\xBB\xBF";
    std::vector<HeaderName> headers;
    std::size_t begin = text.compare(0, 3, byteOrderMark) == 0 ? 3 : 0;
    for (std::size_t end = 0; begin < text.size(); begin = end + 1) {
        end = std::min(text.find_first_of("\r\n", begin), text.size());
        const std::size_t open = text.find_first_not_of(blanks, begin);
        if (open >= end || text[open] != '[')
            continue;
        const std::size_t close = text.rfind(']', end - 1);
        if (close < open)
            continue;
        const std::size_t first = std::min(text.find_first_not_of(blanks, open + 1), close);
        const std::size_t last = text.find_last_not_of(blanks, close - 1);
        headers.push_back({first, first < close ? last + 1 - first : 0});
    }
    return headers;
}
