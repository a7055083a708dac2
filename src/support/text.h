// Text comparison and case conversion. Texts are bytes; letter classes are those of the
// current locale.
#pragma once

#include <cctype>
#include <string>
#include <string_view>

namespace grolof {

/// Upper-case form of one byte in the current locale.
inline int UpperOf(char c) {
    return std::toupper(static_cast<unsigned char>(c));
}

inline bool IsSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}
inline bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}
inline bool IsAlphanumeric(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

/// True when a text begins with a digit.
inline bool BeginsWithDigit(std::string_view text) {
    return !text.empty() && IsDigit(text.front());
}

/// Compares two texts without regard to case: 0 when equal, otherwise the difference of the
/// upper-case forms of the first differing characters (the end of a text counts as 0).
int TextCompareNoCase(std::string_view a, std::string_view b);

/// As TextCompareNoCase, over at most the first n characters; n = 0 gives 0.
int TextCompareNoCaseN(std::string_view a, std::string_view b, std::size_t n);

/// Converts the first n characters to upper case in place; n below 0 means the whole text.
void TextToUpper(std::string& text, int n = -1);

/// Converts the first n characters to lower case in place; n below 0 means the whole text.
void TextToLower(std::string& text, int n = -1);

/// Value of the digits (after white space and one sign) at the start of a text, as a 32-bit
/// number: what exceeds 32 bits wraps, what exceeds 63 bits is clamped first. 0 without digits.
int NumberOf(const std::string& text);

/// True when a text begins with a character above the blank in the signed character order: a
/// control character, a blank and any byte of 128 and above are not, nor is an empty text.
inline bool BeginsAboveBlank(std::string_view text) {
    return !text.empty() && static_cast<signed char>(text.front()) > ' ';
}

} // namespace grolof
