// The numbers that members of the model hold, by member. Other numbers may stand in a screen
// definition file; they are kept and mean none of these.
#pragma once

#include <cstdint>

namespace grolof {

/// `Intensity` of forms, fields, images and headings.
enum : std::int32_t {
    kNormalIntensity = 1,
    kHighIntensity = 2,
    kLowIntensity = 3,
    kSuppressed = 4,
};

/// `Highlight` of the same.
enum : std::int32_t { kNoHighlight = 1, kBlink = 2, kReverse = 3 };

/// `Emphasis` of forms, fields and images.
enum : std::int32_t { kNoEmphasis = 1, kUnderscore = 2 };

/// `Contents` of fields and images: where what is shown comes from.
enum : std::int32_t {
    kStorageContents = 1,
    kBlankContents = 2,
    kConstantContents = 3,
    kSystemContents = 4,
    kReplenishContents = 5,
};

/// `DataType` of a field.
enum : std::int32_t { kAlphanumericData = 1, kAlphabeticData = 2, kNumericData = 3 };

/// `Justification` of a field.
enum : std::int32_t { kNotJustified = 1, kLeftJustified = 2, kRightJustified = 3 };

/// `Case` of a field.
enum : std::int32_t { kAnyCase = 1, kUpperCase = 2, kLowerCase = 3 };

/// `Direction` of a repeat image; any other number is horizontal too.
enum : std::int32_t { kVertical = 1, kHorizontal = 2 };

/// `Value` of a field with system contents: the value that the screen handler fills in.
enum : std::int32_t {
    kTransactionCode = 2,
    kDate1 = 3, // to kDate8, in order
    kDate8 = 10,
    kTime1 = 11, // to kTime3
    kTime3 = 13,
    kFormName = 14,
    kFormNumber = 15,
    kCurrentPageCount = 16, // the page counts: current, data, index, total
    kTotalPageCount = 19,
    kPid = 20,
    kLpid = 21,
    kUserField1 = 22, // to kUserField5
    kUserField5 = 26,
};

/// True for the `Value` of a page count.
constexpr bool IsPageCount(std::int32_t value) {
    return value >= kCurrentPageCount && value <= kTotalPageCount;
}

} // namespace grolof
