// Keeps a value in the cache only, so that it survives a reload and never reaches the file: cache-only FILE
#include <corvane/config.h>

#include <iostream>

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "expected: cache-only FILE\n";
        return 2;
    }
    const corvane::wstring file = corvane::ToWide(arguments[1]);
    const corvane::wstring token = CORVANE_TEXT("_$CACHE$_:SessionToken");
    constexpr bool cacheOnly = true;
    ConfigManager manager;
    if (manager.Update(file.c_str(), 0) != 0 || manager.SetValue(token, CORVANE_TEXT("4711"), cacheOnly) != 0)
        return 1;

    constexpr int always = -1;
    if (manager.Update(file.c_str(), always) != 0)
        return 1;
    corvane::wstring value;
    manager.GetValue(token, value, CORVANE_TEXT("(lost)"));
    std::cout << "after a reload, the session token is " << corvane::ToUtf8(value) << '\n';
    return value == CORVANE_TEXT("4711") ? 0 : 1;
}
