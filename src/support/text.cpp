#include "support/text.h"

#include <algorithm>
#include <cstdlib>

namespace grolof {

int TextCompareNoCase(std::string_view a, std::string_view b) {
    return TextCompareNoCaseN(a, b, std::max(a.size(), b.size()));
}

int TextCompareNoCaseN(std::string_view a, std::string_view b, std::size_t n) {
    const auto at = [](std::string_view text, std::size_t i) {
        return i < text.size() ? UpperOf(text[i]) : 0;
    };
    for (std::size_t i = 0; i < n; ++i) {
        const int left = at(a, i);
        const int right = at(b, i);
        if (left != right || left == 0)
            return left - right;
    }
    return 0;
}

namespace {

template <class Convert>
void ConvertFirst(std::string& text, int n, Convert convert) {
    const auto count = n < 0 ? text.size() : std::min(text.size(), static_cast<std::size_t>(n));
    for (std::size_t i = 0; i < count; ++i)
        text[i] = static_cast<char>(convert(static_cast<unsigned char>(text[i])));
}

} // namespace

void TextToUpper(std::string& text, int n) {
    ConvertFirst(text, n, [](int c) { return std::toupper(c); });
}

void TextToLower(std::string& text, int n) {
    ConvertFirst(text, n, [](int c) { return std::tolower(c); });
}

int NumberOf(const std::string& text) {
    static_assert(sizeof(long) == 8, "out-of-range numbers wrap from a 64-bit value");
    return static_cast<int>(std::strtol(text.c_str(), nullptr, 10));
}

} // namespace grolof
