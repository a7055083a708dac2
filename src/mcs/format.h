// The MCS format: one screen as the run-time screen handler loads it (a `.t3z` file).
//
// A file is a header of 48 bytes and a stream of items, nothing else. Numbers of two bytes are
// signed and stand high byte first.
//
//   HEADER
//   offset
//    0  2  buffer size: the data lengths of all ordinary fields, each rounded up to 4
//    2  2  0
//    4  2  total data length: the data lengths of all ordinary fields
//    6  2  input data length: those of the fields that are not protected
//    8  1  rows of the form
//    9  1  columns of the form
//   10  2  number of ordinary fields
//   12  8  group, blank-padded
//   20  8  form name, blank-padded
//   28  1  0xC1
//   29  1  form flags (McsFormFlag)
//   30  1  0x3A
//   31  1  1
//   32  2  row and column of the initial cursor, 0 and 0 for none
//   34  2  total data length again
//   36  2  0
//   38  2  length of the item stream
//   40  4  default display code, four times
//   44  2  row and column of the first unprotected ordinary field, 0 and 0 for none
//   46  1  0xFF
//   47  1  0
//
//   ITEMS paint the screen from the top left to the bottom right. The first byte, B0, tells
//   their kind:
//
//   11gggggg                skip: g columns further (1 to 63)
//   10gggggg x x x          four-byte item: g columns further; readers know it, no writer does
//   0nnnnnnn B1 B2 ...      item of length or count n
//
//   B1 = p t z c kkkk       c set: control item; kkkk: type. For an ordinary field p: protected,
//                           t: tab stop, z: zero display
//   B2 = m i - n dddd       m: set modified, i: initial text follows, n: numeric zero flag,
//                           dddd: display code
//
//   Control items, by B1 & 0x1F (McsControl):
//   13  constant text       n characters follow; n columns further
//   14  line item           ends a row, which is shown 1 + n times; then column 1
//   15  repeat item         the B2 bytes in front of it are played n more times (B2: 4 to 254)
//   10  system value of unknown kind: a fourth byte follows when n is not 0; n columns further
//   1F  n + 3 bytes, 19 when n is 0; readers know it, no writer does
//   other  system value, n columns wide, three bytes
//
//   Ordinary fields (control bit clear), n columns wide, by type (McsField):
//   1, 2, 4-11              three bytes, and n of initial text when B2 says so
//   12  edited numeric      B3 (edit flags and decimals), B4 (digit positions), the picture (n
//                           bytes), and n of initial text when B2 says so
//   3   continuation        three bytes: its n belongs to the field that the next item is (part
//                           of); readers know it, no writer does
//   other                   three bytes
//
// Readers expand repeat items first and cut the result into rows at the line items.
#pragma once

#include <cstddef>
#include <cstdint>

namespace grolof {

/// Bytes of the header, and with it the file offset of the item stream.
inline constexpr std::size_t kMcsHeaderSize = 48;

/// Bytes of the area in which a format is built, header included.
inline constexpr std::size_t kMcsBufferSize = 5120;

/// Header offsets.
enum McsHeader : std::size_t {
    kMcsBufferLength = 0,
    kMcsDataLength = 4,
    kMcsInputLength = 6,
    kMcsRows = 8,
    kMcsColumns = 9,
    kMcsFieldCount = 10,
    kMcsGroup = 12,
    kMcsName = 20,
    kMcsMark = 28,
    kMcsFormFlags = 29,
    kMcsColon = 30,
    kMcsOne = 31,
    kMcsCursorRow = 32,
    kMcsCursorColumn = 33,
    kMcsDataLengthAgain = 34,
    kMcsReserved = 36,
    kMcsStreamLength = 38,
    kMcsDisplay = 40,
    kMcsFirstRow = 44,
    kMcsFirstColumn = 45,
    kMcsEndMark = 46,
    kMcsEndZero = 47,
};

/// Widths and fixed contents of header members.
inline constexpr std::size_t kMcsNameWidth = 8;
inline constexpr std::size_t kMcsDisplayCount = 4;
inline constexpr std::uint8_t kMcsMarkByte = 0xC1;
inline constexpr std::uint8_t kMcsColonByte = 0x3A;
inline constexpr std::uint8_t kMcsOneByte = 1;
inline constexpr std::uint8_t kMcsEndMarkByte = 0xFF;

/// Form flags at kMcsFormFlags.
enum McsFormFlag : std::uint8_t {
    kMcsJustify = 0x80, ///< the form does not ignore justification
    kMcsBms = 0x10,     ///< the form is a BMS map
};

/// Kinds of item by the top bits of B0, and what the other bits hold.
inline constexpr std::uint8_t kMcsSkip = 0xC0;
inline constexpr std::uint8_t kMcsKindMask = 0xC0;
inline constexpr std::uint8_t kMcsColumnsMask = 0x3F;
inline constexpr std::uint8_t kMcsCountMask = 0x7F;

/// The longest skip, and the most further times a row or run is repeated.
inline constexpr int kMcsLongestSkip = 63;
inline constexpr int kMcsMostRepeats = 127;

/// Lengths of repeated runs, in bytes.
inline constexpr std::size_t kMcsShortestRun = 4;
inline constexpr std::size_t kMcsLongestRun = 254;

/// Bits of B1.
enum McsB1 : std::uint8_t {
    kMcsProtected = 0x80,
    kMcsTabStop = 0x40,
    kMcsZeroDisplay = 0x20,
    kMcsControl = 0x10,
    kMcsTypeMask = 0x0F,
    kMcsControlMask = 0x1F, ///< type and control bit
};

/// Bits of B2.
enum McsB2 : std::uint8_t {
    kMcsSetModified = 0x80,
    kMcsInitialText = 0x40,
    kMcsNumericZero = 0x10,
    kMcsDisplayMask = 0x0F,
};

/// Control items, as B1 & kMcsControlMask. Other values with the control bit are system values.
enum McsControl : std::uint8_t {
    kMcsUnknownSystemValue = 0x10,
    kMcsConstantText = 0x13,
    kMcsLine = 0x14,
    kMcsRepeat = 0x15,
    kMcsTableItem = 0x1F, ///< only ever read
};

/// Types of system values.
enum McsSystemType : std::uint8_t {
    kMcsUnknownType = 0,
    kMcsDate7To8 = 6,
    kMcsDate5To6 = 7,
    kMcsTime = 8,
    kMcsPid = 10,
    kMcsFormIdentity = 11, ///< name or number
    kMcsTransactionCode = 12,
    kMcsDate1To4 = 13,
};

/// Width of a PID on the screen.
inline constexpr std::uint8_t kMcsPidWidth = 4;

/// Display codes.
enum McsDisplay : std::uint8_t {
    kMcsSuppressed = 1,
    kMcsNormal = 2,
    kMcsLow = 3,
    kMcsBlinking = 4,
    kMcsReverse = 5,
};

/// B1 of a constant text as it is written: protected.
inline constexpr std::uint8_t kMcsHeadingB1 = +kMcsProtected | +kMcsConstantText;

/// Length of a table item whose count is 0.
inline constexpr std::size_t kMcsTableItemLength = 19;

/// Types of ordinary fields.
enum McsField : std::uint8_t {
    kMcsBothCases = 1,
    kMcsAlphanumeric = 2,
    kMcsContinuation = 3,
    kMcsAlphabetic = 4,
    kMcsBothCasesRight = 5,
    kMcsAlphanumericRight = 6,
    kMcsAlphabeticRight = 7,
    kMcsLeadingZerosJustified = 8,
    kMcsLeadingZeros = 9,
    kMcsBlankWhenZero = 10,
    kMcsBlankWhenZeroJustified = 11,
    kMcsEdited = 12,
};

/// Edit flags in B3 of an edited numeric field; the low bits are its decimals.
enum McsB3 : std::uint8_t {
    kMcsFloatingCurrency = 0x80,
    kMcsFloatingSign = 0x10,
    kMcsTrailingSign = 0x20,
};

/// Bytes in front of the text of an item, and in front of the picture of an edited field.
inline constexpr std::size_t kMcsItemHead = 3;
inline constexpr std::size_t kMcsEditedHead = 5;

/// What a first character ">" of an initial text is stored as.
inline constexpr std::uint8_t kMcsEntryMark = 0x1E;

} // namespace grolof
