#include "model/records.h"

#include <unordered_set>

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

const char* InternText(std::string_view text) {
    static std::unordered_set<std::string> texts;
    return texts.emplace(text).first->c_str();
}

} // namespace grolof
