#include "mcs/edit_picture.h"

#include <algorithm>

#include "mcs/format.h"
#include "model/codes.h"

namespace grolof {

namespace {

constexpr std::int64_t kDigitsPerComma = 4; // three digits and the comma itself

// A picture in the making. Indexes may lie outside the width; nothing is written there.
struct PictureSink {
    std::span<std::uint8_t> Bytes;

    void Put(std::int64_t index, char c) { Fill(index, 1, c); }

    void Fill(std::int64_t index, std::int64_t count, char c) {
        const auto width = static_cast<std::int64_t>(Bytes.size());
        const std::int64_t from = std::clamp<std::int64_t>(index, 0, width);
        const std::int64_t to = std::clamp<std::int64_t>(index + count, from, width);
        std::fill(Bytes.begin() + from, Bytes.begin() + to, static_cast<std::uint8_t>(c));
    }

    void PutCommas(std::int64_t index, std::int64_t count) {
        const auto width = static_cast<std::int64_t>(Bytes.size());
        for (; count > 0 && index < width; --count, index += kDigitsPerComma)
            Put(index, ',');
    }
};

// A blank position in front for a sign or currency that floats.
void PutFloating(PictureSink& sink, EditPicture& edit, std::int64_t& p, std::uint8_t flag) {
    edit.Flags |= flag;
    sink.Put(p++, ' ');
    --edit.Digits;
}

// The point and the decimals, from index e on; where they end. With integer digits in front the
// units digit is always shown.
std::int64_t PutDecimals(PictureSink& sink, std::int64_t e, std::int64_t digits,
                         std::int64_t decimals) {
    if (digits > decimals)
        sink.Fill(e - 1, decimals + 2, '9');
    else
        sink.Fill(e + 1, decimals, '9');
    sink.Put(e, '.');
    return e + 1 + decimals;
}

// True when a number without decimals shows its last digit even if it is 0.
bool ShowsLastDigit(const Field& field) {
    if (field.BlankIsZero != 0)
        return false;
    return field.BlankWhenZero == 0 || field.Contents != kBlankContents;
}

} // namespace

EditPicture MakeEditPicture(const Field& field, std::span<std::uint8_t> picture) {
    PictureSink sink{picture};
    const std::int64_t decimals = field.Decimals;
    EditPicture edit{.Flags = static_cast<std::uint8_t>(decimals), .Digits = field.Width};
    std::int64_t p = 0;
    if (field.FloatingCurrency != 0)
        PutFloating(sink, edit, p, kMcsFloatingCurrency);
    if (field.FloatingSign != 0)
        PutFloating(sink, edit, p, kMcsFloatingSign);
    if (field.TrailingSign != 0) {
        edit.Flags |= kMcsTrailingSign;
        --edit.Digits;
    }
    if (decimals > 0)
        --edit.Digits;

    const std::int64_t positions = edit.Digits - decimals; // integer digits and their commas
    const bool delimited = field.InsertDelimiters != 0;
    const std::int64_t commas = delimited ? positions / kDigitsPerComma : 0;
    edit.Digits -= commas;
    sink.Fill(p, positions, field.LeadingZeros != 0 ? '9' : 'Z');
    sink.PutCommas(p + positions % kDigitsPerComma, commas);

    std::int64_t e = p + positions; // the index behind the integer part
    if (decimals >= 1) {
        edit.ShowsBlankAsZero = field.BlankWhenZero != 0 || field.Contents == kBlankContents;
        e = PutDecimals(sink, e, edit.Digits, decimals);
    } else if (decimals == 0 && ShowsLastDigit(field)) {
        sink.Put(e - 1, '9');
    }
    if (field.TrailingSign != 0)
        sink.Put(e, ' ');
    return edit;
}

} // namespace grolof
