// The edit picture once more, written for reading: a map of characters by index, from which
// those inside the width are taken.
#pragma once

#include <map>
#include <string>

#include "model/records.h"

namespace grolof::testing_support {

struct PlainPicture {
    std::string Characters; ///< 0 where no rule puts one
    int Digits = 0;
    int Flags = 0;
    bool ZeroDisplay = false;
};

inline PlainPicture PictureOf(const Field& f) {
    PlainPicture result;
    std::map<int, char> at;
    int d = f.Width;
    int p = 0;
    result.Flags = f.Decimals & 0xFF;
    if (f.FloatingCurrency != 0) {
        result.Flags |= 0x80;
        at[p] = ' ';
        p += 1;
        d -= 1;
    }
    if (f.FloatingSign != 0) {
        result.Flags |= 0x10;
        at[p] = ' ';
        p += 1;
        d -= 1;
    }
    if (f.TrailingSign != 0) {
        result.Flags |= 0x20;
        d -= 1;
    }
    if (f.Decimals > 0)
        d -= 1;
    int commas = 0;
    int first = 0;
    if (f.InsertDelimiters != 0) {
        const int m = d - f.Decimals;
        commas = m / 4;
        first = m % 4;
        d -= commas;
    }
    result.Digits = d;
    const int integers = d + commas - f.Decimals;
    for (int i = 0; i < integers; ++i)
        at[p + i] = f.LeadingZeros != 0 ? '9' : 'Z';
    for (int i = 0; i < commas; ++i)
        at[p + first + 4 * i] = ',';
    int e = p + integers;
    if (f.Decimals >= 1) {
        result.ZeroDisplay = f.BlankWhenZero != 0 || f.Contents == 2;
        const int from = d > f.Decimals ? e - 1 : e + 1;
        const int count = d > f.Decimals ? f.Decimals + 2 : f.Decimals;
        for (int i = 0; i < count; ++i)
            at[from + i] = '9';
        at[e] = '.';
        e += 1 + f.Decimals;
    } else if (f.Decimals == 0) {
        const bool kept =
            f.BlankWhenZero != 0 ? f.Contents == 2 || f.BlankIsZero != 0 : f.BlankIsZero != 0;
        if (!kept)
            at[e - 1] = '9';
    }
    if (f.TrailingSign != 0)
        at[e] = ' ';
    for (int i = 0; i < f.Width; ++i)
        result.Characters += at.contains(i) ? at[i] : '\0';
    return result;
}

} // namespace grolof::testing_support
