// The procedure that sets a DPS screen's record to its initial values at run time: the values
// that the record declares, as MOVE statements. What stands in repeat images is left to the
// record's own VALUE clauses.
//
// Its names always bear the number prefix, also where the record's own names have none.

#include "copybook/dps.h"
#include "copybook/dps_book.h"
#include "copybook/entry_walk.h"

namespace grolof {

namespace {

void PutComments(DpsBook& book) {
    book.Out.Put("      /\n"
                 "      *\n"
                 "      *     THIS PROCEDURE INITS THE FOLLOWING FORM:\n"
                 "      *     ****************************************\n");
    book.Out.Print("      *     NAME   : %s\n", book.FormName.c_str());
    book.Out.Print("      *     NUMBER : %d\n", book.FormNumber);
    book.Out.Put(kStarLine);
}

void MoveHeaderNumber(DpsBook& book, const char* name, std::int64_t value) {
    book.Out.Print("            MOVE %5d  TO %s%s.\n", static_cast<std::int32_t>(value),
                   book.NamePrefix.c_str(), name);
}

void MoveHeaderLetter(DpsBook& book, const char* name, char letter) {
    book.Out.Print("            MOVE '%c'  TO %s%s.\n", letter, book.NamePrefix.c_str(), name);
}

void MoveHeader(DpsBook& book) {
    const Form& form = *book.CurrentForm;
    MoveHeaderNumber(book, "NUMBER", book.FormNumber);
    book.Out.Print("            MOVE '%s' TO %sNAME.\n", book.ScreenName.c_str(),
                   book.NamePrefix.c_str());
    MoveHeaderNumber(book, "FCA-LENGTH", book.FcaCount * 5);
    MoveHeaderNumber(book, "FCA-COUNT", book.FcaCount);
    MoveHeaderNumber(book, "NUMBER-ROWS", form.Height);
    MoveHeaderNumber(book, "NUMBER-COLS", form.Width);
    MoveHeaderNumber(book, "WSDATA-LENGTH", book.DataSize / 4);
    for (const char* name : {"SOE-YCO", "SOE-XCO", "FUNCTIONKEY"})
        MoveHeaderNumber(book, name, 0);
    MoveHeaderNumber(book, "OUT-YCO", book.OutRow);
    MoveHeaderNumber(book, "OUT-XCO", book.OutColumn);
    MoveHeaderNumber(book, "OUT-FID", book.OutIndex);
    for (const char* name : {"IN-YCO", "IN-XCO", "IN-FID"})
        MoveHeaderNumber(book, name, 0);
}

void MoveDefaults(DpsBook& book) {
    const Form& form = *book.CurrentForm;
    MoveHeaderLetter(book, "VALID", 'V');
    MoveHeaderLetter(book, "DYNAMIC", 'D');
    MoveHeaderLetter(book, "BACKGROUND", 'E');
    MoveHeaderLetter(book, "FOREGROUND", 'W');
    MoveHeaderLetter(book, "FONT", 'N');
    MoveHeaderLetter(book, "CNUM-VALIDATE", 'Y');
    MoveHeaderLetter(book, "INTENSITY", IntensityLetter(form.Intensity));
    MoveHeaderLetter(book, "HIGHLIGHT", HighlightLetter(form.Highlight));
    MoveHeaderLetter(book, "EMPHASIS", EmphasisLetter(form.Emphasis));
}

// One statement: a value right-justified in 6 columns, and where it goes.
void Move(DpsBook& book, std::string_view value, std::string_view name, std::string_view suffix) {
    book.Out.Put("           MOVE ");
    book.Out.PutBlanks(6 - static_cast<std::int64_t>(value.size()));
    book.Out.Put(value);
    book.Out.Put(" TO ");
    book.Out.Put(book.NamePrefix);
    book.Out.Put(name);
    book.Out.Put(suffix);
    book.Out.Put(".\n");
}

void MoveEntry(DpsBook& book, const FcaEntry& entry) {
    if (entry.Name == kFiller)
        return;
    for (std::size_t i = 0; i < FcaEntry::kWords; ++i)
        Move(book, std::to_string(static_cast<std::int32_t>(entry.Words[i])), entry.Name,
             kFcaSuffixes[i]);
    for (std::size_t i = 0; i < FcaEntry::kLetters; ++i) {
        const std::array<char, 3> literal = {'\'', entry.Letters[i], '\''};
        Move(book, {literal.data(), literal.size()}, entry.Name,
             kFcaSuffixes[FcaEntry::kWords + i]);
    }
}

// Entries inside repeat images get no statements but count.
void MoveFca(DpsBook& book, const List& screen) {
    ForEachEntry(screen, [&](Record& record, const EntryPlace& at) {
        if (at.Repeated || record.Type == RecordType::Form)
            return;
        book.FormWidth = at.In->Width;
        book.FcaIndex = at.Index;
        MoveEntry(book, record.Type == RecordType::Field
                            ? FieldEntry(book, AsField(record), at.Base)
                            : ImageEntry(book, AsImage(record), at.Base));
    });
}

void MoveField(DpsBook& book, const Field& field) {
    if (!field.InitialValue) {
        Move(book, IsNumeric(field) ? "0" : "' '", *field.Name, "");
        return;
    }
    book.Out.Put("           MOVE '");
    book.Out.Put(*field.InitialValue);
    book.Out.Put("'\n                TO ");
    book.Out.Put(book.NamePrefix);
    book.Out.Put(*field.Name);
    book.Out.Put(".\n");
}

void MoveData(DpsBook& book, const List& screen) {
    ForEachEntry(screen, [&](Record& record, const EntryPlace& at) {
        if (record.Type == RecordType::Field && !at.Repeated && *AsField(record).Name != kFiller)
            MoveField(book, AsField(record));
    });
}

} // namespace

bool DpsInitCopyBookWrite(List& screen, const std::string& path) {
    DpsBook book;
    if (!OpenDpsBook(book, screen, path))
        return false;
    PutComments(book);
    MoveHeader(book);
    MoveDefaults(book);
    book.Out.Put(kStarLine);
    MoveFca(book, screen);
    MoveData(book, screen);
    book.Out.Close();
    return true;
}

} // namespace grolof
