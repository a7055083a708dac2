#include "copybook/rules.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "model/codes.h"

namespace grolof {

namespace {

// The level as at least two digits.
std::string LevelDigits(int level) {
    std::string digits = std::to_string(level);
    return digits.size() < 2 ? "0" + digits : digits;
}

// A number as it comes out of 32 bits.
std::string Decimal(std::int64_t value) {
    return std::to_string(static_cast<std::int32_t>(value));
}

std::string NumericPicture(const Field& field, std::int64_t length) {
    const bool isSigned = field.FloatingSign != 0 || field.TrailingSign != 0;
    std::string picture = isSigned ? "PIC S9(" : "PIC 9(";
    if (field.Decimals == 0)
        return picture + Decimal(length) + ")";
    return picture + Decimal(length - field.Decimals) + ")V9(" + Decimal(field.Decimals) + ")";
}

// A literal of its own behind blanks, with the period that ends the item.
void PutLiteralLine(OutputFile& out, std::int64_t blanks, std::string_view text) {
    out.PutBlanks(blanks);
    out.Put("'");
    out.Put(text);
    out.Put("'.\n");
}

} // namespace

std::string DpsLevelPrefix(int level) {
    const auto steps = static_cast<std::size_t>(level / 5);
    return std::string(steps * 2 + 11, ' ') + LevelDigits(level) + " ";
}

std::string BmsLevelPrefix(int level) {
    if (level == 3)
        return std::string(12, ' ') + "03 ";
    return DpsLevelPrefix(level) + " ";
}

std::string NumberPrefix(const Form& form) {
    return "S" + std::to_string(form.Number) + "-";
}

std::string ScreenNameOf(const Form& form) {
    if (form.NumericName == 0)
        return TextOf(form.Name);
    std::array<char, 24> name;
    std::snprintf(name.data(), name.size(), "DPS%5.5d", form.Number);
    return name.data();
}

std::int64_t DataLength(const Field& field) {
    std::int64_t length = field.Width;
    for (const std::int32_t taken :
         {field.Decimals, field.FloatingCurrency, field.FloatingSign, field.TrailingSign})
        length -= taken != 0 ? 1 : 0;
    if (field.InsertDelimiters != 0)
        length -= (length - field.Decimals) / 4;
    return length;
}

std::string PictureOf(const Field& field) {
    const std::int64_t length = DataLength(field);
    if (field.DataType == kAlphanumericData)
        return "PIC X(" + Decimal(length) + ")";
    if (field.DataType == kAlphabeticData)
        return "PIC A(" + Decimal(length) + ")";
    return NumericPicture(field, length);
}

void PutValueBelow(OutputFile& out, std::string_view text) {
    constexpr std::size_t nearRight = 42, fits = 55, firstPiece = 58;
    out.Put(" VALUE\n");
    if (text.size() < nearRight) {
        PutLiteralLine(out, 27, text);
        return;
    }
    PutLiteralLine(out, 12, text.size() > fits ? text.substr(0, firstPiece) : text);
    if (text.size() > fits) {
        out.Put("      -");
        PutLiteralLine(out, 4, text.substr(std::min(firstPiece, text.size())));
    }
}

} // namespace grolof
