// The whole public interface of corvane.
#pragma once

#include <corvane/foundations/ApplicationConfigManager.h>
#include <corvane/foundations/NativeLogging.h>
#include <corvane/foundations/Version.h>
#include <corvane/manager/ConfigManager.h>
#include <corvane/platform/RegistryFolders.h>
#include <corvane/registry/registry.h>
#include <corvane/sources/IConfigSource.h>
