// The ordered list that holds every collection of the model: doubly linked, with a cursor.
// The container never looks inside an element.
#pragma once

#include <cstdint>

namespace grolof {

struct Record;

struct ListNode {
    ListNode* Previous = nullptr;
    ListNode* Next = nullptr;
    Record* Data = nullptr;
};

/// Head of a list. First and Last are both none exactly when the list is empty.
struct List {
    std::int32_t Count = 0;
    ListNode* First = nullptr;
    ListNode* Last = nullptr;
    ListNode* Cursor = nullptr;
};

/// A new empty list, released by ListDestroy (or, with records, by DestroyRecordList).
List* ListCreate();

inline std::int32_t ListCount(const List& list) {
    return list.Count;
}
inline bool ListIsEmpty(const List& list) {
    return list.Count == 0;
}

/// Moves the cursor to the first (last) node; its element, none on an empty list.
Record* ListFirst(List& list);
Record* ListLast(List& list);

/// Moves the cursor one node on (back); none when there was no cursor or it ran off the end,
/// and the cursor is then none.
Record* ListNext(List& list);
Record* ListPrevious(List& list);

/// The element at the cursor, none without a cursor.
Record* ListCurrent(const List& list);

/// The element behind the cursor, which stays; none without a cursor or a successor.
Record* ListPeekNext(const List& list);

/// The cursor node, to remember a walk position and put it back later.
inline ListNode* ListGetCursor(const List& list) {
    return list.Cursor;
}
inline void ListSetCursor(List& list, ListNode* node) {
    list.Cursor = node;
}

/// Insertions. The cursor does not move; without one, "after" appends and "before" prepends.
void ListAppend(List& list, Record* element);
void ListPrepend(List& list, Record* element);
void ListInsertAfterCursor(List& list, Record* element);
void ListInsertBeforeCursor(List& list, Record* element);

/// Removals: unlink and free the node and hand its element to the caller; none, and nothing
/// changed, when there is no such node. The cursor does not move, so a cursor on the removed
/// node must be set anew.
Record* ListRemoveAfterCursor(List& list);
Record* ListRemoveBeforeCursor(List& list);
Record* ListPopFront(List& list);
Record* ListPopBack(List& list);

/// Empties the list, giving each element's memory back without looking inside it; records that
/// own texts are destroyed with DestroyRecordList instead.
void ListClear(List& list);

/// ListClear, then releases the head; nothing for none.
void ListDestroy(List* list);

/// Range-for over the elements, front to back, without touching the cursor. The element at hand
/// must not be removed meanwhile; appending is allowed and is seen.
class ListIterator {
public:
    explicit ListIterator(const ListNode* node) : m_node(node) {}
    Record& operator*() const { return *m_node->Data; }
    ListIterator& operator++() {
        m_node = m_node->Next;
        return *this;
    }
    bool operator==(const ListIterator&) const = default;

private:
    const ListNode* m_node;
};

inline ListIterator begin(const List& list) {
    return ListIterator(list.First);
}
inline ListIterator end(const List&) {
    return ListIterator(nullptr);
}

} // namespace grolof
