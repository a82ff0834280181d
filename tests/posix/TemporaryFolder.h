#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <string_view>

namespace corvane::test {

/// A folder of the test's own, gone with everything in it at the end of the scope.
class TemporaryFolder {
public:
    TemporaryFolder() : m_path((std::filesystem::temp_directory_path() / "corvane-XXXXXX").string()) {
        if (!::mkdtemp(m_path.data()))
            throw std::runtime_error("no temporary folder");
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::string Path(std::string_view name) const { return m_path + '/' + std::string(name); }

    /// Writes the file in place and gives its path.
    std::string Write(std::string_view name, std::string_view content) const {
        std::ofstream(Path(name), std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
        return Path(name);
    }

private:
    std::string m_path;
};

} // namespace corvane::test
