// What the tests of this room share: small models, bytes as hex, streams around an item.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "mcs/dpsmcs.h"
#include "mcs/format.h"
#include "model/records.h"

namespace grolof::testing_support {

using Bytes = std::vector<std::uint8_t>;

/// Bytes as "01 93 02".
inline std::string Hex(std::span<const std::uint8_t> bytes) {
    std::string text;
    std::array<char, 4> byte;
    for (const std::uint8_t b : bytes) {
        std::snprintf(byte.data(), byte.size(), text.empty() ? "%02X" : " %02X", b);
        text += byte.data();
    }
    return text;
}

/// The other way round; blanks do not count.
inline Bytes FromHex(std::string_view hex) {
    Bytes bytes;
    std::string digits;
    for (const char c : hex) {
        if (c == ' ' || c == '\n')
            continue;
        digits += c;
        if (digits.size() == 2) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits, nullptr, 16)));
            digits.clear();
        }
    }
    return bytes;
}

/// Bytes that skip so many columns.
inline std::string Skip(int columns) {
    std::string hex;
    for (; columns > 63; columns -= 63)
        hex += "FF ";
    std::array<char, 4> byte;
    std::snprintf(byte.data(), byte.size(), "%02X", 0xC0 + columns);
    return columns > 0 ? hex + byte.data() : hex;
}

/// A screen with an unnumbered form of 24 rows and 80 columns, without children.
struct Screen {
    RecordList Records{ListCreate()};
    Form* TheForm = CreateForm();

    Screen() {
        TheForm->Name = "TEST";
        ListAppend(*Records, TheForm);
    }

    /// The list that children of the form go to; makes it.
    List& Children() { return ChildrenOf(*TheForm); }
    operator List&() { return *Records; }
};

template <class Kind>
Kind& Append(List& list, Kind* record) {
    ListAppend(list, record);
    return *record;
}

inline Field& AddField(List& list, int row, int column, int width) {
    Field& field = Append(list, CreateField());
    field.Row = row;
    field.Column = column;
    field.Width = width;
    return field;
}

inline Heading& AddHeading(List& list, int row, int column, const std::string& text) {
    Heading& heading = Append(list, CreateHeading());
    heading.Row = row;
    heading.Column = column;
    heading.Width = static_cast<int>(text.size());
    heading.InitialValue = text;
    return heading;
}

inline Image& AddImage(List& list, int row, int column) {
    Image& image = Append(list, CreateImage());
    image.Row = row;
    image.Column = column;
    return image;
}

inline Image& AddRepeat(List& list, int row, int column, int count) {
    Image& image = AddImage(list, row, column);
    image.Type = RecordType::RepeatImage;
    image.Count = count;
    return image;
}

/// The format as built, before compaction or after it; empty when refused.
inline Bytes Uncompacted(List& screen) {
    const McsBuffer buffer = DpsToMcsUncompacted(screen);
    return {buffer.Data, buffer.Data + buffer.Size};
}
inline Bytes Compacted(List& screen) {
    const McsBuffer buffer = DpsToMcs(screen);
    return {buffer.Data, buffer.Data + buffer.Size};
}

/// Hex of the stream before compaction.
inline std::string StreamOf(List& screen) {
    const Bytes bytes = Uncompacted(screen);
    return bytes.size() < kMcsHeaderSize ? "refused" : Hex(std::span(bytes).subspan(48));
}

/// The end of every stream of 80 columns that is still on row 1, at a column: the skip to
/// column 81; the line items of row 1 and of rows 2 to 23; the skip to column 80 (79 columns:
/// 63 + 16); the blank; the line item of row 24.
inline std::string TailFrom(int column) {
    const std::string skip = column < 81 ? Skip(81 - column) + " " : "";
    return skip + "00 14 00 15 14 00 FF D0 01 93 02 20 00 14 00";
}

} // namespace grolof::testing_support
