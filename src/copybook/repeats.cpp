// Repeat images in the two blocks of a DPS record. At the top each becomes two groups: storage,
// in which every repetition stands with its values under the name FILLER, and over it an OCCURS
// group that names one repetition, so that a program reaches repetition i by index while all
// initial values are set. Inside the storage a nested repeat image is just more storage; inside
// the OCCURS group it is an OCCURS group of its own.
//
// The blanks before REDEFINES and INDEXED BY do not follow the level.

#include <algorithm>

#include "copybook/dps_book.h"

namespace grolof {

namespace {

// "S7-REPEAT-2-DATA-ST" without its ending: data groups bear the number prefix whether or not
// the form's names have one.
std::string DataGroup(const DpsBook& book, std::string_view kind) {
    return "S" + std::to_string(book.FormNumber) + "-" + std::string(kind) + "-" +
           std::to_string(book.RepeatNumber) + "-DATA";
}

std::string FcaGroup(const DpsBook& book, std::string_view kind) {
    return book.NamePrefix + std::string(kind) + "-" + std::to_string(book.RepeatNumber) + "-FCA";
}

void PutGroupLine(DpsBook& book, std::string_view group, std::string_view ending) {
    book.Out.Put(book.LevelPrefix);
    book.Out.Put(group);
    book.Out.Put(ending);
}

void PutStorageStart(DpsBook& book, std::string_view group) {
    book.Out.Put(kStarLine);
    PutGroupLine(book, group, "-ST.\n");
}

// The item that ends the storage group stands over its start.
void PutStorageEnd(DpsBook& book, std::string_view group) {
    book.Out.Put(kStarLine);
    PutGroupLine(book, group, "-END\n");
    book.Out.PutBlanks(16);
    book.Out.Put("REDEFINES ");
    book.Out.Put(group);
    book.Out.Put("-ST.\n");
    book.Out.Put(kStarLine);
}

void PutOccurs(DpsBook& book, std::string_view group, std::int32_t count) {
    PutGroupLine(book, group, " OCCURS ");
    book.Out.PutNumber(count);
    book.Out.Put(" TIMES\n");
}

void PutIndex(DpsBook& book, const Image& image, std::int64_t blanks, std::string_view ending) {
    book.Out.PutBlanks(blanks);
    book.Out.Put("INDEXED BY ");
    book.Out.Put(book.NamePrefix);
    book.Out.Put(TextOf(image.IndexName));
    book.Out.Put(ending);
}

void PutFcaRepetitions(DpsBook& book, const Image& image, Offset base) {
    for (std::int64_t i = 0; i < image.Count; ++i)
        PutFcaItems(book, image.Children.get(), RepetitionOffset(image, base, i), ItemMode::Filler);
}

void PutDataRepetitions(DpsBook& book, const Image& image) {
    for (std::int32_t i = 0; i < image.Count; ++i)
        PutDataItems(book, image.Children.get(), ItemMode::Filler);
}

// Without an index name the OCCURS line of a control group goes without a period too.
void PutFcaGroups(DpsBook& book, const Image& image, Offset base) {
    ++book.RepeatNumber;
    const std::string group = FcaGroup(book, "REPEAT");
    PutStorageStart(book, group);
    StepLevel(book, 10);
    PutFcaRepetitions(book, image, base);
    StepLevel(book, -10);
    PutStorageEnd(book, group);
    StepLevel(book, 5);
    PutOccurs(book, group, std::max(image.Count, 1));
    if (image.IndexName)
        PutIndex(book, image, 18, "-FCA.\n");
    StepLevel(book, 5);
    PutFcaItems(book, image.Children.get(), base, ItemMode::Naming);
    StepLevel(book, -10);
}

void PutNestedFcaGroup(DpsBook& book, const Image& image, Offset base) {
    ++book.RepeatNumber;
    book.Out.Put(kStarLine);
    PutOccurs(book, FcaGroup(book, "HREPEAT"), image.Count);
    PutIndex(book, image, 20, "-FCA.\n");
    StepLevel(book, 5);
    PutFcaItems(book, image.Children.get(), base, ItemMode::Naming);
    StepLevel(book, -5);
}

// A data group's OCCURS count is not raised to 1, and its index line is always there.
void PutDataGroups(DpsBook& book, const Image& image) {
    ++book.RepeatNumber;
    const std::string group = DataGroup(book, "REPEAT");
    PutStorageStart(book, group);
    StepLevel(book, 10);
    PutDataRepetitions(book, image);
    StepLevel(book, -10);
    PutStorageEnd(book, group);
    StepLevel(book, 5);
    PutOccurs(book, group, image.Count);
    PutIndex(book, image, 18, "-DATA.\n");
    StepLevel(book, 5);
    PutDataItems(book, image.Children.get(), ItemMode::Naming);
    StepLevel(book, -10);
}

void PutNestedDataGroup(DpsBook& book, const Image& image) {
    ++book.RepeatNumber;
    book.Out.Put(kStarLine);
    PutOccurs(book, DataGroup(book, "HREPEAT"), image.Count);
    PutIndex(book, image, 20, "-DATA.\n");
    StepLevel(book, 5);
    PutDataItems(book, image.Children.get(), ItemMode::Naming);
    StepLevel(book, -5);
}

} // namespace

void PutFcaRepeat(DpsBook& book, const Image& image, Offset base, ItemMode mode) {
    if (!HasItems(image))
        return;
    switch (mode) {
    case ItemMode::Declared:
        PutFcaGroups(book, image, base);
        break;
    case ItemMode::Filler:
        PutFcaRepetitions(book, image, base);
        break;
    case ItemMode::Naming:
        PutNestedFcaGroup(book, image, base);
        break;
    }
}

void PutDataRepeat(DpsBook& book, const Image& image, ItemMode mode) {
    if (!HasItems(image))
        return;
    switch (mode) {
    case ItemMode::Declared:
        PutDataGroups(book, image);
        break;
    case ItemMode::Filler:
        PutDataRepetitions(book, image);
        break;
    case ItemMode::Naming:
        PutNestedDataGroup(book, image);
        break;
    }
}

} // namespace grolof
