// Colour, where somebody looks.
#pragma once

#include <string>

enum class Paint { section, tag, removed, added };

/// `text` in colour if standard output is a terminal that shows it and NO_COLOR is unset or empty; otherwise
/// as it is.
std::string Painted(Paint paint, const std::string& text);
