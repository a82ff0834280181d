// A registry of the test's own: keys below one of the user's stand for the predefined ones.
#pragma once

#include <corvane/platform/windows/WindowsPlatform.h>

#include <gtest/gtest.h>
#include <utility>

namespace corvane {

class TemporaryRegistry : public ::testing::Test {
protected:
    TemporaryRegistry() {
        for (const auto& [root, path] : {std::pair(HKEY_LOCAL_MACHINE, L"\\machine"),
                                         {HKEY_CLASSES_ROOT, L"\\machine\\Software\\Classes"},
                                         {HKEY_USERS, L"\\users"},
                                         {HKEY_CURRENT_USER, L"\\user"}}) {
            HKEY stand = nullptr;
            ::RegCreateKeyExW(HKEY_CURRENT_USER, (m_path + path).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &stand, nullptr);
            EXPECT_EQ(::RegOverridePredefKey(root, stand), 0);
            ::RegCloseKey(stand);
        }
    }
    ~TemporaryRegistry() override {
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_USERS, HKEY_CLASSES_ROOT, HKEY_LOCAL_MACHINE})
            ::RegOverridePredefKey(root, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    }

private:
    const wstring m_path = L"Software\\corvane-test-" + std::to_wstring(::GetCurrentProcessId());
};

} // namespace corvane
