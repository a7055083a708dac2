// Inside of the DPS COPY book generator: its state, and what the layout, the repeat groups and
// the initialisation procedure ask of each other.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "copybook/rules.h"
#include "model/positions.h"
#include "model/records.h"
#include "support/output_file.h"

namespace grolof {

/// How entries and data items are written.
enum class ItemMode {
    Declared, ///< under their own names, with their values
    Filler,   ///< one repetition's storage: named FILLER, with their values
    Naming,   ///< names over a storage group: no values
};

/// State of the generator, made afresh for each COPY book.
struct DpsBook {
    OutputFile Out;
    int Level = 0;
    std::int32_t RepeatNumber = 0; ///< of the last repeat group line in this block
    std::int64_t FcaCount = 0;     ///< entries of the whole screen
    std::int64_t FcaIndex = 0;     ///< entries declared so far
    std::int64_t DataSize = 0;     ///< bytes of the data area, each item filled up to words
    std::int32_t FormNumber = 0;
    std::int32_t FormWidth = 0; ///< of the form that is being walked
    std::int64_t OutRow = 0;    ///< the cursor field, all 0 without one
    std::int64_t OutColumn = 0;
    std::int64_t OutIndex = 0;
    std::string FormName;
    std::string ScreenName;
    const Form* CurrentForm = nullptr;
    std::string LevelPrefix;
    std::string NamePrefix;
};

/// One entry of the field control area.
struct FcaEntry {
    static constexpr std::size_t kWords = 6;   ///< binary halfwords, the first sub-items
    static constexpr std::size_t kLetters = 8; ///< single characters, the rest
    std::string_view Name;                     ///< kFiller for an entry without a name
    std::array<std::int64_t, kWords> Words{};
    std::array<char, kLetters> Letters{};
};

/// Name endings of an entry's sub-items, in order.
inline constexpr std::array<std::string_view, FcaEntry::kWords + FcaEntry::kLetters> kFcaSuffixes =
    {"-STAT", "-TYPE", "-YCO",  "-XCO", "-CHAR", "-FID",  "-VAL",
     "-DYN",  "-BACK", "-FORE", "-INT", "-HIGH", "-FONT", "-EMPH"};

/// Letters for attribute codes.
char IntensityLetter(std::int32_t intensity);
char HighlightLetter(std::int32_t highlight);
char EmphasisLetter(std::int32_t emphasis);

/// Starts a COPY book: refuses a screen that has none, opens the file and takes stock of the
/// screen. Returns false, with a line on standard error, when there is nothing to write to or of.
bool OpenDpsBook(DpsBook& book, List& screen, const std::string& path);

/// Goes some levels down (up, below 0).
void StepLevel(DpsBook& book, int step);

/// Name prefix and name, bare for kFiller.
std::string PrefixedName(const DpsBook& book, std::string_view name);

/// The control entry of a named field or plain image whose parent stands at `base`, with
/// book.FcaIndex as its index.
FcaEntry FieldEntry(const DpsBook& book, const Field& field, Offset base);
FcaEntry ImageEntry(const DpsBook& book, const Image& image, Offset base);

/// Clauses of a halfword and of a single character, with the line end.
void PutWordClause(OutputFile& out, std::int64_t value, ItemMode mode);
void PutLetterClause(OutputFile& out, char letter, ItemMode mode);

/// The lines of one control entry.
void PutFcaEntry(DpsBook& book, const FcaEntry& entry, ItemMode mode);

/// Walks of the two blocks over one list.
void PutFcaItems(DpsBook& book, const List* list, Offset base, ItemMode mode);
void PutDataItems(DpsBook& book, const List* list, ItemMode mode);

/// A repeat image met in the walk of a block: two groups, its repetitions alone, or a nested
/// group, as the mode asks. An image without children is nothing and takes no number.
void PutFcaRepeat(DpsBook& book, const Image& image, Offset base, ItemMode mode);
void PutDataRepeat(DpsBook& book, const Image& image, ItemMode mode);

} // namespace grolof
