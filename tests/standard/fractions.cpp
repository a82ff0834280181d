// Fractions as text. Not every standard library has the conversions: built once more with another one, where
// there is one.
#include <corvane/comfort/ValueText.h>

#include <cmath>
#include <cstdio>

using Fraction = corvane::ValueText<double>;

int main() {
    constexpr double most = std::numeric_limits<double>::max();
    static const std::pair<const char*, std::optional<double>> rows[] = {
        {"0.5", 0.5}, {"-1e3", -1000.0},  {"5.", 5.0},
        {".5", 0.5},  {"5e-324", 5e-324}, {"1.7976931348623157e308", most},
        {"", {}},     {"0,5", {}},        {"nan", {}},
        {"-inf", {}}, {"1e999", {}},      {"1e-999", {}},
        {"+1", {}},   {" 1", {}},         {"1 ", {}},
        {"0x7", {}},  {"1e", {}},         {"1.2.3", {}},
        {"-", {}},    {"1-2", {}}};
    int failures = 0;
    for (const auto& [text, value] : rows)
        if (Fraction::FromText(text) != value)
            failures += std::printf("'%s' is read as another value\n", text);
    for (const double number : {0.1, 1.0 / 3, -0.0, 1e21, 123456.7, most, 5e-324, HUGE_VAL, std::nan("")})
        if (Fraction::FromText(Fraction::ToText(number)) !=
            (std::isfinite(number) ? std::optional(number) : std::nullopt))
            failures += std::printf("%a becomes another number, or one at all\n", number);
    if (Fraction::ToText(0.1) != "0.1" || corvane::ValueText<float>::ToText(0.1F) != "0.1")
        failures += std::printf("0.1 is not written in its shortest form\n");
    return failures == 0 ? 0 : 1;
}
