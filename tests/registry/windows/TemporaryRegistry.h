// A registry of the test's own: keys below one of the user's stand for the predefined ones.
#pragma once

#include <corvane/platform/windows/WindowsPlatform.h>

#include <array>
#include <gtest/gtest.h>

namespace corvane {

class TemporaryRegistry : public ::testing::Test {
protected:
    TemporaryRegistry() {
        const Place places[] = {{HKEY_LOCAL_MACHINE, L"\\machine"},
                                {HKEY_CLASSES_ROOT, L"\\machine\\Software\\Classes"},
                                {HKEY_USERS, L"\\users"},
                                {HKEY_CURRENT_USER, L"\\user"}};
        for (const Place& place : places) {
            HKEY stand = nullptr;
            const auto path = m_path + place.path;
            EXPECT_EQ(::RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                        nullptr, &stand, nullptr),
                      0);
            EXPECT_EQ(::RegOverridePredefKey(place.root, stand), 0);
            ::RegCloseKey(stand);
        }
    }
    ~TemporaryRegistry() override {
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_USERS, HKEY_CLASSES_ROOT, HKEY_LOCAL_MACHINE})
            ::RegOverridePredefKey(root, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    }

private:
    struct Place {
        HKEY root;
        const wchar* path;
    };
    const wstring m_path = L"Software\\corvane-test-" + std::to_wstring(::GetCurrentProcessId());
};

} // namespace corvane
