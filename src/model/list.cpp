#include "model/list.h"

#include <new>
#include <utility>

namespace grolof {

namespace {

Record* DataOf(const ListNode* node) {
    return node != nullptr ? node->Data : nullptr;
}

Record* MoveTo(List& list, ListNode* node) {
    list.Cursor = node;
    return DataOf(node);
}

// Links a new node between two neighbours, either of which may be none (an end of the list).
void Link(List& list, ListNode* previous, ListNode* next, Record* element) {
    auto* node = new ListNode{previous, next, element};
    (previous != nullptr ? previous->Next : list.First) = node;
    (next != nullptr ? next->Previous : list.Last) = node;
    ++list.Count;
}

// Unlinks and frees a node; its element goes to the caller. None for none.
Record* Unlink(List& list, ListNode* node) {
    if (node == nullptr)
        return nullptr;
    (node->Previous != nullptr ? node->Previous->Next : list.First) = node->Next;
    (node->Next != nullptr ? node->Next->Previous : list.Last) = node->Previous;
    --list.Count;
    Record* element = node->Data;
    delete node;
    return element;
}

} // namespace

List* ListCreate() {
    return new List;
}

Record* ListFirst(List& list) {
    return MoveTo(list, list.First);
}

Record* ListLast(List& list) {
    return MoveTo(list, list.Last);
}

Record* ListNext(List& list) {
    return list.Cursor != nullptr ? MoveTo(list, list.Cursor->Next) : nullptr;
}

Record* ListPrevious(List& list) {
    return list.Cursor != nullptr ? MoveTo(list, list.Cursor->Previous) : nullptr;
}

Record* ListCurrent(const List& list) {
    return DataOf(list.Cursor);
}

Record* ListPeekNext(const List& list) {
    return list.Cursor != nullptr ? DataOf(list.Cursor->Next) : nullptr;
}

void ListAppend(List& list, Record* element) {
    Link(list, list.Last, nullptr, element);
}

void ListPrepend(List& list, Record* element) {
    Link(list, nullptr, list.First, element);
}

void ListInsertAfterCursor(List& list, Record* element) {
    ListNode* at = list.Cursor != nullptr ? list.Cursor : list.Last;
    Link(list, at, at != nullptr ? at->Next : nullptr, element);
}

void ListInsertBeforeCursor(List& list, Record* element) {
    ListNode* at = list.Cursor != nullptr ? list.Cursor : list.First;
    Link(list, at != nullptr ? at->Previous : nullptr, at, element);
}

Record* ListRemoveAfterCursor(List& list) {
    return list.Cursor != nullptr ? Unlink(list, list.Cursor->Next) : nullptr;
}

Record* ListRemoveBeforeCursor(List& list) {
    return list.Cursor != nullptr ? Unlink(list, list.Cursor->Previous) : nullptr;
}

Record* ListPopFront(List& list) {
    return Unlink(list, list.First);
}

Record* ListPopBack(List& list) {
    return Unlink(list, list.Last);
}

void ListClear(List& list) {
    ListNode* node = list.First;
    list.First = list.Last = nullptr;
    list.Count = 0;
    while (node != nullptr) {
        ::operator delete(static_cast<void*>(node->Data));
        delete std::exchange(node, node->Next);
    }
}

void ListDestroy(List* list) {
    if (list == nullptr)
        return;
    ListClear(*list);
    delete list;
}

} // namespace grolof
