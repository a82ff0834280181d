// Takes the place of the header that brings in the real operations: the same ones, to be defined by the test.
#pragma once

#include <corvane/platform/posix/PosixPlatform.h>
