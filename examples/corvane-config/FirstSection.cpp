#include "FirstSection.h"

#include "Failure.h"
#include "FileText.h"
#include "System.h"

namespace {

// UTF-16, with a byte-order mark or NULs, is no text to the library.
bool LacksSection(const std::string& text) {
    const bool isUtf16 = text.compare(0, 2, "\xFF\xFE") == 0 || text.compare(0, 2, "\xFE\xFF") == 0;
    return !isUtf16 && text.find('\0') == std::string::npos && FindHeaders(text).empty();
}

bool MakeMissing(const std::string& path) {
    const std::error_code error = MakePrivateFile(path);
    if (error && error != std::errc::file_exists)
        throw Failure(Refused, "cannot create '" + path + "' (" + error.message() + ")");
    return !error;
}

} // namespace

FirstSection::FirstSection(const std::string& path, const std::string& section, bool create)
    : m_path(path), m_created(create && MakeMissing(path)) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(ToPath(path), ignored))
        return;
    const std::string text = ReadText(path);
    if (!LacksSection(text))
        return;
    const std::string lineEnd = text.find("\r\n") == std::string::npos ? "\n" : "\r\n";
    const bool endsMidLine = !text.empty() && text.back() != '\n';
    const std::string header = (endsMidLine ? lineEnd : "") + "[" + section + "]" + lineEnd;
    m_sizeBefore = text.size();
    m_sizeAfter = text.size() + header.size();
    try {
        WriteText(path, header, true);
    } catch (...) {
        Undo();
        throw;
    }
}

FirstSection::~FirstSection() {
    if (!m_keep && m_sizeAfter > 0)
        Undo();
}

// Does nothing if another program has changed the file since.
void FirstSection::Undo() {
    std::error_code ignored;
    const std::filesystem::path file = ToPath(m_path);
    const std::uintmax_t size = std::filesystem::file_size(file, ignored);
    if (size < m_sizeBefore || size > m_sizeAfter)
        return;
    if (m_created)
        std::filesystem::remove(file, ignored);
    else
        std::filesystem::resize_file(file, m_sizeBefore, ignored);
}
