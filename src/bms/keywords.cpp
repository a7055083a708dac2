#include "bms/keywords.h"

#include <algorithm>
#include <cstddef>

namespace grolof {

namespace {

constexpr int kNotFound = -1;

// The entry that ends the table stands for no word and stays out of the search.
constexpr auto kWords = [] {
    std::array<Keyword, BmsKeywords.size() - 1> words{};
    std::copy_n(BmsKeywords.begin(), words.size(), words.begin());
    return words;
}();

constexpr bool IsInOrder() {
    for (std::size_t i = 0; i < BmsKeywords.size(); ++i)
        if (BmsKeywords[i].Code != static_cast<int>(i) + 1)
            return false;
    return std::is_sorted(kWords.begin(), kWords.end(),
                          [](const Keyword& a, const Keyword& b) { return a.Word < b.Word; });
}
static_assert(IsInOrder());
static_assert(BmsKeywords.back().Code == kBmsKeywordEnd && BmsKeywords.back().Word.empty());

constexpr KeywordTable kTable(kWords, kNotFound);

} // namespace

int BmsKeywordCode(std::string_view text) {
    return kTable.CodeOf(text);
}

} // namespace grolof
