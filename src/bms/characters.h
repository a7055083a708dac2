// Character classes of the map source, by the current locale.
#pragma once

#include <cctype>

namespace grolof {

inline bool IsSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}
inline bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}
inline bool IsAlphanumeric(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

} // namespace grolof
