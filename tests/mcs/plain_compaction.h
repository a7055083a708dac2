// The three compaction passes once more, written for reading and not for speed: each goes over
// the stream as its rule is told, with nothing remembered from one step to the next. The tests
// hold the fast ones against these.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace grolof::testing_support {

/// The area behind the header, and how much of it is stream.
struct PlainStream {
    std::vector<std::uint8_t> Area;
    std::size_t Length = 0;

    unsigned At(std::size_t at) const { return at < Area.size() ? Area[at] : 0; }

    /// Takes out [a, b); what the stream loses in length is filled with zeros at its end.
    void Delete(std::size_t a, std::size_t b) {
        std::vector<std::uint8_t> rest;
        for (std::size_t i = b; i < Length; ++i)
            rest.push_back(Area[i]);
        const std::size_t shorter = a + rest.size();
        for (std::size_t i = shorter; i < Length; ++i)
            Area[i] = 0;
        for (std::size_t i = 0; i < rest.size(); ++i)
            Area[a + i] = rest[i];
        Length = shorter;
    }

    /// True when L bytes at a and at b are the same and all of them lie in the area.
    bool Same(std::size_t a, std::size_t b, std::size_t L) const {
        for (std::size_t i = 0; i < L; ++i) {
            if (b + i >= Area.size() || Area[a + i] != Area[b + i])
                return false;
        }
        return true;
    }
};

inline std::size_t PlainNext(const PlainStream& s, std::size_t p) {
    const unsigned b0 = s.At(p);
    if (b0 >= 0xC0)
        return p + 1;
    if (b0 >= 0x80)
        return p + 4;
    const unsigned b1 = s.At(p + 1);
    unsigned n = b0;
    if ((b1 & 0x10) != 0) {
        if ((b1 & 0x1F) == 0x13)
            return p + n + 3;
        if ((b1 & 0x1F) == 0x1F)
            return n != 0 ? p + n + 3 : p + 19;
        if ((b1 & 0x1F) == 0x10)
            return n == 0 ? p + 3 : p + 4;
        return p + 3;
    }
    if ((b1 & 0x0F) == 3) {
        p += 3;
        while (s.At(p) < 0x80 && (s.At(p + 1) & 0x1F) == 0x03) {
            n += s.At(p);
            p += 3;
        }
        n += s.At(p) & 0x7F;
    }
    const unsigned type = s.At(p + 1) & 0x0F;
    const unsigned text = (s.At(p + 2) & 0x40) != 0 ? n : 0;
    if (type == 12)
        return p + 5 + n + text;
    if (type == 0 || type == 3 || type > 12)
        return p + 3;
    return p + 3 + text;
}

inline std::size_t PlainLineEnd(const PlainStream& s, std::size_t p) {
    while (p < s.Length) {
        if (s.At(p) < 0xC0 && (s.At(p + 1) & 0x1F) == 0x14)
            return p + 3;
        p = PlainNext(s, p);
    }
    return s.Length;
}

inline std::size_t PlainCopies(const PlainStream& s, std::size_t at, std::size_t L) {
    std::size_t count = 2;
    while (s.Same(at, at + count * L, L))
        ++count;
    return count > 127 ? 128 : count;
}

inline void PlainMergeSkips(PlainStream& s) {
    std::size_t p = 0;
    while (p < s.Length) {
        const std::size_t q = PlainNext(s, p);
        if (s.At(p) >= 0xC0 && s.At(p + 1) >= 0xC0) {
            const unsigned sum = (s.At(p) & 0x3F) + (s.At(p + 1) & 0x3F);
            if (sum < 63) {
                s.Area[p] = static_cast<std::uint8_t>(0xC0 | sum);
                s.Delete(p + 1, p + 2);
            }
        }
        p = q;
    }
}

inline void PlainFoldRows(PlainStream& s) {
    std::size_t r = 0;
    while (r < s.Length) {
        const std::size_t a = PlainLineEnd(s, r);
        const std::size_t b = PlainLineEnd(s, a);
        const std::size_t L = a - r;
        if (L > 3 && b == a + L && s.Same(r, a, L)) {
            const std::size_t count = PlainCopies(s, r, L);
            s.Area[a - 3] = static_cast<std::uint8_t>(count - 1);
            s.Delete(a, r + count * L);
            r = 0;
        } else {
            r = a;
        }
    }
}

inline void PlainFoldRuns(PlainStream& s) {
    std::size_t p = 0;
    while (p < s.Length) {
        const std::size_t next = PlainNext(s, p);
        std::size_t q = next;
        std::size_t r = PlainNext(s, q);
        std::size_t L = q - p;
        bool folded = false;
        while (L < 255) {
            if (L > 3 && s.Same(p, q, L)) {
                const std::size_t count = PlainCopies(s, p, L);
                s.Area[q] = static_cast<std::uint8_t>(count - 1);
                s.Area[q + 1] = 0x15;
                s.Area[q + 2] = static_cast<std::uint8_t>(L);
                s.Delete(q + 3, p + count * L);
                p = q + 3;
                folded = true;
                break;
            }
            const std::size_t after = PlainNext(s, r);
            if (after >= s.Length)
                break;
            L = r - p;
            if (L > 254)
                break;
            q = r;
            r = after;
        }
        if (!folded)
            p = next;
    }
}

} // namespace grolof::testing_support
