// The keyword look-up that the source readers share: two tables, one search.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "support/text.h"

namespace grolof {

/// A table word (upper case) and the code that it stands for.
struct Keyword {
    int Code;
    std::string_view Word;
};

/// A keyword table in its given order together with a hash over its words, both made by the
/// compiler. A look-up costs one pass over the word and as a rule one comparison.
template <std::size_t N>
class KeywordTable {
public:
    constexpr KeywordTable(const std::array<Keyword, N>& entries, int notFound)
        : m_entries(entries), m_notFound(notFound) {
        m_slots.fill(kFree);
        for (std::size_t i = 0; i < N; ++i) {
            m_longest = std::max(m_longest, entries[i].Word.size());
            std::size_t slot = HashOf(entries[i].Word) % kSlots;
            while (m_slots[slot] != kFree)
                slot = (slot + 1) % kSlots;
            m_slots[slot] = static_cast<std::uint16_t>(i);
        }
    }

    /// Code of the first entry equal to a word without regard to case, the table's "not found"
    /// code when there is none. Upper case is the locale's, as in TextCompareNoCase.
    int CodeOf(std::string_view word) const {
        std::array<char, kLongest> upper;
        if (word.size() > m_longest || word.size() > upper.size())
            return m_notFound;
        for (std::size_t i = 0; i < word.size(); ++i)
            upper[i] = static_cast<char>(UpperOf(word[i]));
        return CodeOfUpper({upper.data(), word.size()});
    }

    /// The entries in their given order.
    constexpr const std::array<Keyword, N>& Entries() const { return m_entries; }

private:
    static constexpr std::uint16_t kFree = std::numeric_limits<std::uint16_t>::max();
    static constexpr std::size_t kLongest = 64;
    static constexpr std::size_t kSlots = [] {
        std::size_t slots = 4;
        while (slots < 3 * N)
            slots *= 2;
        return slots;
    }();
    static_assert(N < kFree);

    static constexpr std::uint32_t HashOf(std::string_view word) {
        std::uint32_t hash = 2166136261U;
        for (const char c : word)
            hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
        return hash ^ hash >> 15;
    }

    // Of equal entries the first took the slot that is probed first.
    constexpr int CodeOfUpper(std::string_view word) const {
        for (std::size_t slot = HashOf(word) % kSlots; m_slots[slot] != kFree;
             slot = (slot + 1) % kSlots)
            if (m_entries[m_slots[slot]].Word == word)
                return m_entries[m_slots[slot]].Code;
        return m_notFound;
    }

    std::array<Keyword, N> m_entries;
    std::array<std::uint16_t, kSlots> m_slots{};
    std::size_t m_longest = 0; // of the table's words
    int m_notFound;
};

} // namespace grolof
