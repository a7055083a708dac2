// The conversion flags: a bit set that the options make and the source readers copy into forms.
#pragma once

namespace grolof {

enum ConversionFlag : unsigned {
    kNumericName = 1,
    kIgnoreCase = 2,
    kIgnoreJustification = 4,
    kIgnoreSystemFields = 8, ///< accepted, and on purpose without effect
    k24x79Unprotected = 16,
    kInputBlankWhenZero = 32,
    kRedefInit = 64,
};

/// Flags of a run without options: screens are stored under their number.
inline constexpr unsigned kDefaultConversionFlags = kNumericName;

} // namespace grolof
