// A folder of the test's own, and files that are written and read whole.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace corvane::test {

namespace fs = std::filesystem;

inline void WriteFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

inline std::string Bytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Gone with everything in it at the end of the scope.
class TemporaryFolder {
public:
    TemporaryFolder() { fs::create_directory(m_path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }

    const fs::path& Path() const { return m_path; }
    std::string Path(const std::string& name) const { return m_path.string() + '/' + name; }

    /// Writes the file in place and gives its path.
    std::string Write(const std::string& name, const std::string& content) const {
        WriteFile(Path(name), content);
        return Path(name);
    }

private:
    fs::path m_path = fs::temp_directory_path() / ("corvane-" + std::to_string(std::random_device()()));
};

} // namespace corvane::test
