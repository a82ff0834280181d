// What the completions of the shells offer; they ask with `corvane-config --complete WORD ...`.
#pragma once

#include "CommandLine.h"

/// Prints what the last word can become, after the others: a candidate per line, and after a tab what it is.
/// A line without a candidate asks for the names of files.
ExitCode PrintCompletions(const Arguments& words);
