// The packed date stamp and its text in COPY book headers.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>

namespace grolof {

/// Packed local date and time.
///
///   byte 0  years since 1970
///   byte 1  low 4 bits: month 1-12
///   byte 2  low 5 bits: day 1-31; high 3 bits: day of the week, 0 = Sunday
///   byte 3  low 5 bits: hour
///   byte 4  low 6 bits: minute
///   byte 5  low 6 bits: second
///   byte 6  low 7 bits: hundredths of the second
///   byte 7  0
using DateStamp = std::array<std::uint8_t, 8>;

/// Month abbreviations by month number 1 to 12; index 0 is unused.
inline constexpr std::array<const char*, 13> MonthAbbrev = {
    "", "JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

/// Fills the stamp from the current local time; returns the seconds of that time.
std::time_t DateStampNow(DateStamp& stamp);

/// A stamp taken apart again.
struct DateParts {
    int Day, Month, Year, Hour, Minute, Second; ///< Month 1-12, Year in full
};

/// Takes a stamp apart.
DateParts DatePartsOf(const DateStamp& stamp);

} // namespace grolof
