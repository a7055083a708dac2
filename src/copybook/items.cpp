// The entries of a DPS screen's field control area (FCA) and the items of its data area.

#include "copybook/dps_book.h"
#include "model/codes.h"

namespace grolof {

namespace {

// Types of control entries.
constexpr std::int64_t kInputOutput = 1;
constexpr std::int64_t kOutputOnly = 2;
constexpr std::int64_t kImage = 4;
constexpr std::int64_t kLinkedImage = 5;
constexpr std::int64_t kBlankWhenZero = 6;
constexpr std::int64_t kNumericMore = 10; // a numeric field's type is this much more
constexpr std::int64_t kPageCounts = 20;  // to 23, the four page counts

// The screen handler fills in the page counts itself.
bool ShowsPageCount(const Field& field) {
    return field.Contents == kSystemContents && IsPageCount(field.Value);
}

std::int64_t FieldType(const Field& field) {
    if (ShowsPageCount(field))
        return kPageCounts + field.Value - kCurrentPageCount;
    if (IsNumeric(field) && field.BlankWhenZero != 0)
        return kBlankWhenZero;
    return (field.UsageOutput != 0 ? kOutputOnly : kInputOutput) +
           (IsNumeric(field) ? kNumericMore : 0);
}

char FieldDynamics(const Field& field) {
    if (field.Protected != 0)
        return field.Contents == kBlankContents ? 'S' : 'D';
    return field.SetModified != 0 ? 'M' : 'U';
}

char ColourLetter(std::int32_t colour, char none) {
    return colour != 0 ? static_cast<char>(colour) : none;
}

constexpr std::string_view kWordPicture = "PIC 9(4)  COMP";
constexpr std::string_view kLetterPicture = "PIC X(1)";

// A sub-item's name in its column. An over-long one takes a line of its own.
void PutFcaName(DpsBook& book, std::string_view name, std::string_view suffix) {
    const std::int64_t column = FcaNameColumn(book.Level);
    const auto length = static_cast<std::int64_t>(name.size() + suffix.size());
    book.Out.Put(book.LevelPrefix);
    book.Out.Put(name);
    book.Out.Put(suffix);
    if (length <= column) {
        book.Out.PutBlanks(column - length + 1);
        return;
    }
    book.Out.Put("\n");
    book.Out.PutBlanks(static_cast<std::int64_t>(book.LevelPrefix.size()) + column + 1);
}

void PutDataValue(OutputFile& out, const Field& field) {
    if (field.InitialValue)
        PutValueBelow(out, *field.InitialValue);
    else
        out.Put(IsNumeric(field) ? " VALUE 0.\n" : " VALUE ' '.\n");
}

void PutDataName(DpsBook& book, std::string_view name) {
    book.Out.Put(book.LevelPrefix);
    book.Out.PutPadded(name, DataNameColumn(book.Level));
    book.Out.Put(" ");
}

// Items are filled up to whole words, also where the group only names storage.
void PutAlignment(DpsBook& book, std::int64_t length) {
    if (length % 4 == 0)
        return;
    PutDataName(book, kFiller);
    book.Out.Put("PIC X(");
    book.Out.PutNumber(4 - length % 4);
    book.Out.Put(").\n");
}

void PutDataItem(DpsBook& book, const Field& field, ItemMode mode) {
    const bool unnamed = mode == ItemMode::Filler;
    book.Out.Put(kStarLine);
    PutDataName(book, unnamed ? std::string(kFiller) : PrefixedName(book, *field.Name));
    if (mode == ItemMode::Naming) {
        book.Out.Put(PictureOf(field));
        book.Out.Put(".\n");
    } else {
        book.Out.PutPadded(PictureOf(field), kPictureColumn);
        PutDataValue(book.Out, field);
    }
    PutAlignment(book, DataLength(field));
}

} // namespace

char IntensityLetter(std::int32_t intensity) {
    switch (intensity) {
    case kHighIntensity:
        return 'H';
    case kLowIntensity:
        return 'L';
    case kSuppressed:
        return 'S';
    default:
        return 'N';
    }
}

char HighlightLetter(std::int32_t highlight) {
    return highlight == kBlink ? 'B' : highlight == kReverse ? 'R' : 'N';
}

char EmphasisLetter(std::int32_t emphasis) {
    return emphasis == kUnderscore ? 'U' : 'N';
}

void StepLevel(DpsBook& book, int step) {
    book.Level += step;
    book.LevelPrefix = DpsLevelPrefix(book.Level);
}

std::string PrefixedName(const DpsBook& book, std::string_view name) {
    return name == kFiller ? std::string(name) : book.NamePrefix + std::string(name);
}

void PutWordClause(OutputFile& out, std::int64_t value, ItemMode mode) {
    out.Put(kWordPicture);
    if (mode != ItemMode::Naming) {
        out.Put(" VALUE ");
        out.PutNumber(value);
    }
    out.Put(".\n");
}

void PutLetterClause(OutputFile& out, char letter, ItemMode mode) {
    out.Put(kLetterPicture);
    if (mode != ItemMode::Naming) {
        out.Put("       VALUE '");
        out.Put({&letter, 1});
        out.Put("'");
    }
    out.Put(".\n");
}

FcaEntry FieldEntry(const DpsBook& book, const Field& field, Offset base) {
    const Position at = WrappedPosition(base, field.Row, field.Column, book.FormWidth);
    return {ShowsPageCount(field) ? kFiller : TextOf(field.Name),
            {0, FieldType(field), at.Row, at.Column, DataLength(field), book.FcaIndex},
            {field.Justification == kRightJustified ? 'R' : 'V', FieldDynamics(field),
             ColourLetter(field.BackColour, 'E'), ColourLetter(field.Colour, 'W'),
             IntensityLetter(field.Intensity), HighlightLetter(field.Highlight), 'N',
             EmphasisLetter(field.Emphasis)}};
}

FcaEntry ImageEntry(const DpsBook& book, const Image& image, Offset base) {
    const Position at = OwnColumnWrapped(base, image.Row, image.Column, book.FormWidth);
    const bool linked = image.Linked != 0;
    return {linked ? kFiller : TextOf(image.Name),
            {linked ? std::int64_t{image.Spacing} - 1 : 0, linked ? kLinkedImage : kImage, at.Row,
             at.Column, image.Width, book.FcaIndex},
            {'V', image.Contents == kBlankContents ? 'C' : 'O', 'E', 'W',
             IntensityLetter(image.Intensity), HighlightLetter(image.Highlight), 'N',
             EmphasisLetter(image.Emphasis)}};
}

void PutFcaEntry(DpsBook& book, const FcaEntry& entry, ItemMode mode) {
    const bool unnamed = mode == ItemMode::Filler || entry.Name == kFiller;
    const std::string name = unnamed ? std::string(kFiller) : PrefixedName(book, entry.Name);
    book.Out.Put(kStarLine);
    for (std::size_t i = 0; i < kFcaSuffixes.size(); ++i) {
        PutFcaName(book, name, unnamed ? "" : kFcaSuffixes[i]);
        if (i < FcaEntry::kWords)
            PutWordClause(book.Out, entry.Words[i], mode);
        else
            PutLetterClause(book.Out, entry.Letters[i - FcaEntry::kWords], mode);
    }
}

namespace {

// Names over storage are no new entries.
void TakeIndex(DpsBook& book, ItemMode mode) {
    if (mode != ItemMode::Naming)
        ++book.FcaIndex;
}

void PutFcaField(DpsBook& book, const Field& field, Offset base, ItemMode mode) {
    if (!field.Name)
        return;
    TakeIndex(book, mode);
    PutFcaEntry(book, FieldEntry(book, field, base), mode);
}

void PutFcaImage(DpsBook& book, const Image& image, Offset base, ItemMode mode) {
    if (image.Name) {
        TakeIndex(book, mode);
        PutFcaEntry(book, ImageEntry(book, image, base), mode);
    }
    PutFcaItems(book, image.Children.get(), ImageOffset(image, base), mode);
}

} // namespace

void PutFcaItems(DpsBook& book, const List* list, Offset base, ItemMode mode) {
    if (list == nullptr)
        return;
    for (Record& record : *list) {
        switch (record.Type) {
        case RecordType::Form:
            book.FormWidth = AsForm(record).Width;
            PutFcaItems(book, record.Children.get(), base, mode);
            break;
        case RecordType::Field:
            PutFcaField(book, AsField(record), base, mode);
            break;
        case RecordType::Image:
            PutFcaImage(book, AsImage(record), base, mode);
            break;
        case RecordType::RepeatImage:
            PutFcaRepeat(book, AsImage(record), base, mode);
            break;
        case RecordType::Heading:
            break;
        }
    }
}

void PutDataItems(DpsBook& book, const List* list, ItemMode mode) {
    if (list == nullptr)
        return;
    for (Record& record : *list) {
        switch (record.Type) {
        case RecordType::Form:
        case RecordType::Image:
            PutDataItems(book, record.Children.get(), mode);
            break;
        case RecordType::Field:
            if (AsField(record).Name)
                PutDataItem(book, AsField(record), mode);
            break;
        case RecordType::RepeatImage:
            PutDataRepeat(book, AsImage(record), mode);
            break;
        case RecordType::Heading:
            break;
        }
    }
}

} // namespace grolof
