// What is known of a DPS screen before its COPY book is written: names, counts, sizes, the links
// of images and the cursor. The record and the procedure that fills it take stock in the same way.

#include <cstdio>
#include <unordered_map>

#include "copybook/dps_book.h"
#include "copybook/entry_walk.h"
#include "support/text.h"

namespace grolof {

namespace {

// A form whose width is 0 among the records of a list.
const Form* FormWithoutWidth(const List* list) {
    if (list == nullptr)
        return nullptr;
    for (Record& record : *list) {
        if (record.Type == RecordType::Form && AsForm(record).Width == 0)
            return &AsForm(record);
        if (const Form* inside = FormWithoutWidth(record.Children.get()))
            return inside;
    }
    return nullptr;
}

// Says why a screen has no COPY book; true when there is a reason.
bool Refuse(const List& screen) {
    const Form* form = FormOf(screen);
    const char* reason = nullptr;
    if (form == nullptr) {
        reason = "no form";
    } else if (const Form* flat = FormWithoutWidth(&screen)) {
        form = flat;
        reason = "the form's width is 0";
    } else if (ExpandedCount(screen) > kMostRecords) {
        reason = "too many repetitions";
    }
    if (reason == nullptr)
        return false;
    std::fprintf(stderr, "%s: no COPY book: %s\n",
                 form != nullptr ? TextOf(form->Name).c_str() : "", reason);
    return true;
}

std::int64_t WholeWords(std::int64_t length) {
    return (length + 3) / 4 * 4;
}

void TakeForm(DpsBook& book, const Form& form) {
    book.CurrentForm = &form;
    book.FormNumber = form.Number;
    book.FormName = TextOf(form.Name);
    book.ScreenName = ScreenNameOf(form);
}

// The last form of a screen gives the book its name and number. The area counts every repetition.
void TakeStock(DpsBook& book, const List& screen) {
    ForEachEntry(screen, [&](const Record& record, const EntryPlace& at) {
        if (record.Type == RecordType::Form) {
            TakeForm(book, static_cast<const Form&>(record));
            return;
        }
        book.FcaCount += at.Times;
        if (record.Type == RecordType::Field)
            book.DataSize += at.Times * WholeWords(DataLength(static_cast<const Field&>(record)));
    });
}

std::string CaseFolded(std::string name) {
    TextToUpper(name);
    return name;
}

// A linked image without a spacing takes the index of the first named image of its name, which is
// normally its own.
void LinkImages(const List& screen) {
    std::unordered_map<std::string, std::int64_t> indexes;
    ForEachEntry(screen, [&](Record& record, const EntryPlace& at) {
        if (record.Type == RecordType::Image)
            indexes.emplace(CaseFolded(*AsImage(record).Name), at.Index);
    });
    ForEachEntry(screen, [&](Record& record, const EntryPlace&) {
        if (record.Type != RecordType::Image)
            return;
        Image& image = AsImage(record);
        if (image.Linked != 0 && image.Spacing == 0)
            image.Spacing = static_cast<std::int32_t>(indexes.at(CaseFolded(*image.Name)));
    });
}

// The cursor goes to the first field with the image name of its form. Only its own column wraps,
// not the offset of its image.
void FindCursor(DpsBook& book, const List& screen) {
    ForEachEntry(screen, [&](Record& record, const EntryPlace& at) {
        if (record.Type != RecordType::Field || !at.In->ImageName || book.OutIndex != 0)
            return;
        const Field& field = AsField(record);
        if (TextCompareNoCase(*field.Name, *at.In->ImageName) != 0)
            return;
        const Position position = OwnColumnWrapped(at.Base, field.Row, field.Column, at.In->Width);
        book.OutRow = position.Row;
        book.OutColumn = position.Column;
        book.OutIndex = at.Index;
    });
}

} // namespace

bool OpenDpsBook(DpsBook& book, List& screen, const std::string& path) {
    if (Refuse(screen) || !book.Out.Open(path))
        return false;
    TakeStock(book, screen);
    book.NamePrefix = NumberPrefix(*book.CurrentForm);
    book.FormWidth = book.CurrentForm->Width;
    LinkImages(screen);
    FindCursor(book, screen);
    return true;
}

} // namespace grolof
