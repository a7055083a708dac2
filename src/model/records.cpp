#include "model/records.h"

#include <array>
#include <cstdio>
#include <unordered_set>

#include "support/text.h"

namespace grolof {

namespace {

template <class Kind>
Kind* Create(RecordType type) {
    auto* record = new Kind;
    record->Type = type;
    return record;
}

} // namespace

Form* CreateForm() {
    return Create<Form>(RecordType::Form);
}
Field* CreateField() {
    return Create<Field>(RecordType::Field);
}
Image* CreateImage() {
    return Create<Image>(RecordType::Image);
}
Heading* CreateHeading() {
    return Create<Heading>(RecordType::Heading);
}

void DestroyRecord(Record* record) {
    if (record == nullptr)
        return;
    switch (record->Type) {
    case RecordType::Form:
        delete static_cast<Form*>(record);
        break;
    case RecordType::Field:
        delete static_cast<Field*>(record);
        break;
    case RecordType::Image:
    case RecordType::RepeatImage:
        delete static_cast<Image*>(record);
        break;
    case RecordType::Heading:
        delete static_cast<Heading*>(record);
        break;
    }
}

void DestroyRecordList(List* list) {
    if (list == nullptr)
        return;
    while (!ListIsEmpty(*list))
        DestroyRecord(ListPopFront(*list));
    ListDestroy(list);
}

void RecordListDeleter::operator()(List* list) const {
    DestroyRecordList(list);
}

List& ChildrenOf(Record& record) {
    if (!record.Children)
        record.Children.reset(ListCreate());
    return *record.Children;
}

Form* FormOf(const List& screen) {
    const ListNode* first = screen.First;
    if (first == nullptr || first->Data == nullptr || first->Data->Type != RecordType::Form)
        return nullptr;
    return &AsForm(*first->Data);
}

const std::string& TextOf(const Text& text) {
    static const std::string none;
    return text ? *text : none;
}

bool HasGroup(const Form& form) {
    return form.Group != nullptr && BeginsAboveBlank(form.Group);
}

std::string NumberedName(std::int32_t number) {
    std::array<char, 16> name; // "DPS", a sign and ten digits at most
    std::snprintf(name.data(), name.size(), "DPS%05d", number);
    return name.data();
}

std::string StoredName(const Form& form) {
    return form.NumericName != 0 ? NumberedName(form.Number) : TextOf(form.Name);
}

const char* InternText(std::string_view text) {
    static std::unordered_set<std::string> texts;
    return texts.emplace(text).first->c_str();
}

} // namespace grolof
