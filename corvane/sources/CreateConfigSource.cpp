#include <corvane/sources/ConfigFile.h>
#include <corvane/sources/CreateConfigSource.h>

IConfigSource* CreateConfigSource(const corvane::wchar* name) {
    return name ? new ConfigFile(name) : nullptr;
}
