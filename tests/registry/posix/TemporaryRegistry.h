// A registry of the test's own, in a temporary folder.
#pragma once

#include <corvane/platform/posix/RegistryFolders.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace corvane {

class TemporaryRegistry : public ::testing::Test {
public:
    TemporaryRegistry(const TemporaryRegistry&) = delete;
    TemporaryRegistry& operator=(const TemporaryRegistry&) = delete;

protected:
    TemporaryRegistry() {
        std::string pattern = (std::filesystem::temp_directory_path() / "corvane-registry-XXXXXX").string();
        m_folder = ::mkdtemp(pattern.data());
        EXPECT_TRUE(SetRegistryFolders(m_folder / "user", m_folder / "machine"));
    }
    ~TemporaryRegistry() override {
        SetRegistryFolders("", "");
        std::filesystem::remove_all(m_folder);
    }

    std::filesystem::path User() const { return m_folder / "user" / "HKEY_CURRENT_USER"; }
    std::filesystem::path Machine() const { return m_folder / "machine" / "HKEY_LOCAL_MACHINE"; }

    static std::string Read(const std::filesystem::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    static void Write(const std::filesystem::path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

    std::filesystem::path m_folder;
};

} // namespace corvane
