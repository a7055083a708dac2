// What is known of a DPS screen before its COPY book is written: names, counts, sizes, the links
// of images and the cursor. The record and the procedure that fills it take stock in the same way.

#include <cstdio>
#include <unordered_map>

#include "copybook/dps_book.h"
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
bool IsRefused(const List& screen) {
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
                 form != nullptr ? form->Name.value_or("").c_str() : "", reason);
    return true;
}

std::int64_t WholeWords(std::int64_t length) {
    return (length + 3) / 4 * 4;
}

std::int64_t TimesPlayed(const Image& image) {
    return image.Count > 0 ? image.Count : 0;
}

// Bytes of the data items in a list, repetitions played.
std::int64_t DataSize(const List* list) {
    if (list == nullptr)
        return 0;
    std::int64_t size = 0;
    for (Record& record : *list) {
        if (record.Type == RecordType::Field)
            size += AsField(record).Name ? WholeWords(DataLength(AsField(record))) : 0;
        else if (record.Type == RecordType::RepeatImage)
            size += TimesPlayed(AsImage(record)) * DataSize(record.Children.get());
        else if (record.Type == RecordType::Form || record.Type == RecordType::Image)
            size += DataSize(record.Children.get());
    }
    return size;
}

// The last form of a list gives the book its name and number.
void TakeForms(DpsBook& book, const List* list) {
    if (list == nullptr)
        return;
    for (Record& record : *list) {
        if (record.Type != RecordType::Form)
            continue;
        const Form& form = AsForm(record);
        book.CurrentForm = &form;
        book.FormNumber = form.Number;
        book.FormName = form.Name.value_or("");
        book.ScreenName = ScreenNameOf(form);
        TakeForms(book, form.Children.get());
    }
}

// Walks over all control entries in order, each once: of repetitions only the first is entered,
// the others are counted. The visitor gets the record, its parent's offset, its index and the
// width of its form.
template <class Visit>
class EntryWalk {
public:
    explicit EntryWalk(Visit visit) : m_visit(visit) {}

    void Walk(const List* list, Offset base) {
        if (list == nullptr)
            return;
        for (Record& record : *list)
            Enter(record, base);
    }

private:
    void Enter(Record& record, Offset base) {
        switch (record.Type) {
        case RecordType::Form:
            m_width = AsForm(record).Width;
            Walk(record.Children.get(), base);
            break;
        case RecordType::Field:
            if (AsField(record).Name)
                m_visit(record, base, ++m_index, m_width);
            break;
        case RecordType::Image:
            if (AsImage(record).Name)
                m_visit(record, base, ++m_index, m_width);
            Walk(record.Children.get(), ImageOffset(AsImage(record), base));
            break;
        case RecordType::RepeatImage:
            Repeat(AsImage(record), base);
            break;
        case RecordType::Heading:
            break;
        }
    }

    void Repeat(const Image& image, Offset base) {
        if (!IsPlayed(image))
            return;
        const std::int64_t before = m_index;
        Walk(image.Children.get(), RepetitionOffset(image, base, 0));
        m_index += (m_index - before) * (image.Count - 1);
    }

    Visit m_visit;
    std::int64_t m_index = 0;
    std::int32_t m_width = 1; // a form stands in front of all entries and sets it
};

std::string CaseFolded(std::string name) {
    TextToUpper(name);
    return name;
}

using ImageIndexes = std::unordered_map<std::string, std::int64_t>;

// Index of the first named plain image of each name.
ImageIndexes CollectImageIndexes(const List& screen) {
    ImageIndexes indexes;
    EntryWalk walk([&](Record& record, Offset, std::int64_t index, std::int32_t) {
        if (record.Type == RecordType::Image)
            indexes.emplace(CaseFolded(*AsImage(record).Name), index);
    });
    walk.Walk(&screen, {});
    return indexes;
}

void LinkImages(const ImageIndexes& indexes, const List* list) {
    if (list == nullptr)
        return;
    for (Record& record : *list) {
        if (record.Type == RecordType::Image) {
            Image& image = AsImage(record);
            if (image.Linked != 0 && image.Spacing == 0 && image.Name) {
                const auto found = indexes.find(CaseFolded(*image.Name));
                if (found != indexes.end())
                    image.Spacing = static_cast<std::int32_t>(found->second);
            }
        }
        LinkImages(indexes, record.Children.get());
    }
}

// The cursor goes to the first field with the form's image name. Only its own column wraps, not
// the offset of its image.
void FindCursor(DpsBook& book, const List& screen) {
    if (!book.CurrentForm->ImageName)
        return;
    const std::string& wanted = *book.CurrentForm->ImageName;
    EntryWalk walk([&](Record& record, Offset base, std::int64_t index, std::int32_t width) {
        if (record.Type != RecordType::Field || book.OutIndex != 0)
            return;
        const Field& field = AsField(record);
        if (TextCompareNoCase(*field.Name, wanted) != 0)
            return;
        const std::int64_t k = std::int64_t{field.Column} - 1;
        book.OutRow = base.Row + field.Row + k / width;
        book.OutColumn = base.Column + 1 + k % width;
        book.OutIndex = index;
    });
    walk.Walk(&screen, {});
}

} // namespace

std::int64_t FcaEntryCount(const List* list) {
    if (list == nullptr)
        return 0;
    std::int64_t count = 0;
    for (Record& record : *list) {
        if (record.Type == RecordType::Field)
            count += AsField(record).Name ? 1 : 0;
        else if (record.Type == RecordType::RepeatImage)
            count += TimesPlayed(AsImage(record)) * FcaEntryCount(record.Children.get());
        else if (record.Type == RecordType::Image)
            count += (AsImage(record).Name ? 1 : 0) + FcaEntryCount(record.Children.get());
        else if (record.Type == RecordType::Form)
            count += FcaEntryCount(record.Children.get());
    }
    return count;
}

bool OpenDpsBook(DpsBook& book, List& screen, const std::string& path) {
    if (IsRefused(screen) || !book.Out.Open(path))
        return false;
    TakeForms(book, &screen);
    book.NamePrefix = NumberPrefix(*book.CurrentForm);
    book.FormWidth = book.CurrentForm->Width;
    book.FcaCount = FcaEntryCount(&screen);
    book.DataSize = DataSize(&screen);
    LinkImages(CollectImageIndexes(screen), &screen);
    FindCursor(book, screen);
    return true;
}

} // namespace grolof
