#include "model/list.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "model/records.h"

namespace grolof {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A list over elements that live elsewhere: it must be emptied by pops, never cleared.
class ListTest : public testing::Test {
protected:
    ~ListTest() override {
        while (!ListIsEmpty(m_list))
            ListPopFront(m_list);
    }

    static std::vector<Record*> Forward(const List& list) {
        std::vector<Record*> elements;
        for (const ListNode* node = list.First; node != nullptr; node = node->Next)
            elements.push_back(node->Data);
        return elements;
    }

    static std::vector<Record*> Backward(const List& list) {
        std::vector<Record*> elements;
        for (const ListNode* node = list.Last; node != nullptr; node = node->Previous)
            elements.insert(elements.begin(), node->Data);
        return elements;
    }

    // The elements, after the links were checked from both ends.
    std::vector<Record*> Elements() const {
        const auto elements = Forward(m_list);
        EXPECT_EQ(Backward(m_list), elements);
        EXPECT_EQ(ListCount(m_list), static_cast<std::int32_t>(elements.size()));
        EXPECT_EQ(ListIsEmpty(m_list), elements.empty());
        EXPECT_EQ(m_list.First == nullptr, elements.empty());
        EXPECT_EQ(m_list.Last == nullptr, elements.empty());
        if (m_list.First != nullptr) {
            EXPECT_EQ(m_list.First->Previous, nullptr);
            EXPECT_EQ(m_list.Last->Next, nullptr);
        }
        return elements;
    }

    void Fill() {
        for (Record* element : {a, b, c})
            ListAppend(m_list, element);
    }

    List m_list;
    Heading m_elements[5];
    Record* const a = &m_elements[0];
    Record* const b = &m_elements[1];
    Record* const c = &m_elements[2];
    Record* const d = &m_elements[3];
    Record* const e = &m_elements[4];
};

TEST_F(ListTest, NewListIsEmpty) {
    List* list = ListCreate();
    EXPECT_EQ(ListCount(*list), 0);
    EXPECT_TRUE(ListIsEmpty(*list));
    EXPECT_EQ(list->First, nullptr);
    EXPECT_EQ(list->Last, nullptr);
    EXPECT_EQ(ListGetCursor(*list), nullptr);
    ListDestroy(list);
}

TEST_F(ListTest, EmptyListAnswersNoneEverywhere) {
    EXPECT_EQ(ListFirst(m_list), nullptr);
    EXPECT_EQ(ListLast(m_list), nullptr);
    EXPECT_EQ(ListNext(m_list), nullptr);
    EXPECT_EQ(ListPrevious(m_list), nullptr);
    EXPECT_EQ(ListCurrent(m_list), nullptr);
    EXPECT_EQ(ListPeekNext(m_list), nullptr);
    EXPECT_EQ(ListPopFront(m_list), nullptr);
    EXPECT_EQ(ListPopBack(m_list), nullptr);
    EXPECT_EQ(ListRemoveAfterCursor(m_list), nullptr);
    EXPECT_EQ(ListRemoveBeforeCursor(m_list), nullptr);
    EXPECT_THAT(Elements(), IsEmpty());
}

TEST_F(ListTest, AppendsAndPrepends) {
    ListAppend(m_list, b);
    EXPECT_THAT(Elements(), ElementsAre(b));
    ListAppend(m_list, c);
    ListPrepend(m_list, a);
    EXPECT_THAT(Elements(), ElementsAre(a, b, c));
    EXPECT_EQ(ListGetCursor(m_list), nullptr) << "no insertion moves the cursor";
}

TEST_F(ListTest, WalksForward) {
    Fill();
    EXPECT_EQ(ListFirst(m_list), a);
    EXPECT_EQ(ListCurrent(m_list), a);
    EXPECT_EQ(ListNext(m_list), b);
    EXPECT_EQ(ListNext(m_list), c);
    EXPECT_EQ(ListCurrent(m_list), c);
    EXPECT_EQ(ListNext(m_list), nullptr);
    EXPECT_EQ(ListGetCursor(m_list), nullptr);
    EXPECT_EQ(ListCurrent(m_list), nullptr);
    EXPECT_EQ(ListNext(m_list), nullptr) << "it does not begin again";
    EXPECT_EQ(ListPrevious(m_list), nullptr) << "nor come back";
}

TEST_F(ListTest, WalksBackward) {
    Fill();
    EXPECT_EQ(ListLast(m_list), c);
    EXPECT_EQ(ListPrevious(m_list), b);
    EXPECT_EQ(ListPrevious(m_list), a);
    EXPECT_EQ(ListPrevious(m_list), nullptr);
    EXPECT_EQ(ListCurrent(m_list), nullptr);
    EXPECT_EQ(ListPrevious(m_list), nullptr);
}

TEST_F(ListTest, WithoutCursorNextAndPreviousLeaveItNone) {
    Fill();
    EXPECT_EQ(ListNext(m_list), nullptr);
    EXPECT_EQ(ListGetCursor(m_list), nullptr);
    EXPECT_EQ(ListPrevious(m_list), nullptr);
    EXPECT_EQ(ListGetCursor(m_list), nullptr);
    EXPECT_EQ(ListPeekNext(m_list), nullptr);
}

TEST_F(ListTest, PeekDoesNotMove) {
    Fill();
    ListFirst(m_list);
    EXPECT_EQ(ListPeekNext(m_list), b);
    EXPECT_EQ(ListPeekNext(m_list), b);
    EXPECT_EQ(ListCurrent(m_list), a);
    ListLast(m_list);
    EXPECT_EQ(ListPeekNext(m_list), nullptr);
    EXPECT_EQ(ListCurrent(m_list), c);
}

TEST_F(ListTest, CursorIsRememberedAndPutBack) {
    Fill();
    ListFirst(m_list);
    ListNode* const at = ListGetCursor(m_list);
    EXPECT_EQ(at, m_list.First);
    while (ListNext(m_list) != nullptr) {
    }
    ListSetCursor(m_list, at);
    EXPECT_EQ(ListCurrent(m_list), a);
    EXPECT_EQ(ListNext(m_list), b);
    ListSetCursor(m_list, nullptr);
    EXPECT_EQ(ListCurrent(m_list), nullptr);
}

TEST_F(ListTest, InsertsAfterTheCursor) {
    ListAppend(m_list, a);
    ListFirst(m_list);
    ListInsertAfterCursor(m_list, c);
    ListInsertAfterCursor(m_list, b);
    EXPECT_THAT(Elements(), ElementsAre(a, b, c));
    EXPECT_EQ(ListCurrent(m_list), a);
    ListLast(m_list);
    ListInsertAfterCursor(m_list, d);
    EXPECT_THAT(Elements(), ElementsAre(a, b, c, d));
    EXPECT_EQ(ListCurrent(m_list), c);
}

TEST_F(ListTest, InsertsBeforeTheCursor) {
    ListAppend(m_list, d);
    ListFirst(m_list);
    ListInsertBeforeCursor(m_list, a);
    EXPECT_THAT(Elements(), ElementsAre(a, d));
    ListInsertBeforeCursor(m_list, b);
    ListInsertBeforeCursor(m_list, c);
    EXPECT_THAT(Elements(), ElementsAre(a, b, c, d));
    EXPECT_EQ(ListCurrent(m_list), d);
}

TEST_F(ListTest, WithoutCursorInsertAfterAppends) {
    ListInsertAfterCursor(m_list, a);
    ListInsertAfterCursor(m_list, b);
    ListInsertAfterCursor(m_list, c);
    EXPECT_THAT(Elements(), ElementsAre(a, b, c));
    EXPECT_EQ(ListGetCursor(m_list), nullptr);
}

TEST_F(ListTest, WithoutCursorInsertBeforePrepends) {
    ListInsertBeforeCursor(m_list, c);
    ListInsertBeforeCursor(m_list, b);
    ListInsertBeforeCursor(m_list, a);
    EXPECT_THAT(Elements(), ElementsAre(a, b, c));
    EXPECT_EQ(ListGetCursor(m_list), nullptr);
}

TEST_F(ListTest, RemovesAfterTheCursor) {
    Fill();
    ListFirst(m_list);
    EXPECT_EQ(ListRemoveAfterCursor(m_list), b);
    EXPECT_THAT(Elements(), ElementsAre(a, c));
    EXPECT_EQ(ListCurrent(m_list), a);
    EXPECT_EQ(ListRemoveAfterCursor(m_list), c);
    EXPECT_THAT(Elements(), ElementsAre(a));
    EXPECT_EQ(ListRemoveAfterCursor(m_list), nullptr);
    EXPECT_THAT(Elements(), ElementsAre(a));
    ListSetCursor(m_list, nullptr);
    EXPECT_EQ(ListRemoveAfterCursor(m_list), nullptr);
    EXPECT_THAT(Elements(), ElementsAre(a));
}

TEST_F(ListTest, RemovesBeforeTheCursor) {
    Fill();
    ListLast(m_list);
    EXPECT_EQ(ListRemoveBeforeCursor(m_list), b);
    EXPECT_THAT(Elements(), ElementsAre(a, c));
    EXPECT_EQ(ListRemoveBeforeCursor(m_list), a);
    EXPECT_THAT(Elements(), ElementsAre(c));
    EXPECT_EQ(ListRemoveBeforeCursor(m_list), nullptr) << "the cursor is at the first node";
    EXPECT_THAT(Elements(), ElementsAre(c));
    EXPECT_EQ(ListCurrent(m_list), c);
    ListSetCursor(m_list, nullptr);
    EXPECT_EQ(ListRemoveBeforeCursor(m_list), nullptr);
    EXPECT_THAT(Elements(), ElementsAre(c));
}

TEST_F(ListTest, PopsFromBothEnds) {
    Fill();
    ListFirst(m_list);
    ListNext(m_list);
    EXPECT_EQ(ListPopFront(m_list), a);
    EXPECT_THAT(Elements(), ElementsAre(b, c));
    EXPECT_EQ(ListPopBack(m_list), c);
    EXPECT_THAT(Elements(), ElementsAre(b));
    EXPECT_EQ(ListCurrent(m_list), b) << "the pops do not move the cursor";
    EXPECT_EQ(ListPopBack(m_list), b);
    EXPECT_THAT(Elements(), IsEmpty());
}

TEST_F(ListTest, IsUsableAgainAfterItsLastNodeWent) {
    Fill();
    ListFirst(m_list);
    while (ListPopFront(m_list) != nullptr) {
    }
    EXPECT_EQ(ListFirst(m_list), nullptr) << "which also sets the cursor anew";
    ListAppend(m_list, d);
    ListPrepend(m_list, e);
    EXPECT_THAT(Elements(), ElementsAre(e, d));
}

TEST_F(ListTest, SameElementMayStandTwice) {
    ListAppend(m_list, a);
    ListAppend(m_list, a);
    EXPECT_THAT(Elements(), ElementsAre(a, a));
    ListFirst(m_list);
    EXPECT_EQ(ListRemoveAfterCursor(m_list), a);
    EXPECT_THAT(Elements(), ElementsAre(a));
}

TEST_F(ListTest, RangeForLeavesTheCursor) {
    Fill();
    ListFirst(m_list);
    std::vector<Record*> seen;
    for (Record& element : m_list)
        seen.push_back(&element);
    EXPECT_THAT(seen, ElementsAre(a, b, c));
    EXPECT_EQ(ListCurrent(m_list), a);
}

TEST_F(ListTest, RangeForSeesWhatIsAppendedMeanwhile) {
    Fill();
    std::vector<Record*> seen;
    for (Record& element : m_list) {
        seen.push_back(&element);
        if (&element == c)
            ListAppend(m_list, d);
    }
    EXPECT_THAT(seen, ElementsAre(a, b, c, d));
}

// Elements without anything of their own, which the plain release fits.
Record* PlainElement() {
    return CreateHeading();
}

TEST(ListClear, ReleasesTheElementsAndKeepsTheHead) {
    List list;
    for (int i = 0; i < 3; ++i)
        ListAppend(list, PlainElement());
    ListClear(list);
    EXPECT_TRUE(ListIsEmpty(list));
    EXPECT_EQ(list.First, nullptr);
    EXPECT_EQ(list.Last, nullptr);
    ListClear(list);
    ListAppend(list, PlainElement());
    EXPECT_EQ(ListCount(list), 1);
    ListClear(list);
}

TEST(ListDestroy, ReleasesElementsAndHead) {
    List* list = ListCreate();
    ListAppend(*list, PlainElement());
    ListDestroy(list); // a leak checker sees whether all went
    ListDestroy(nullptr);
}

// A list beside a vector and an index that stands for the cursor: -1 is none.
class Twin {
public:
    ~Twin() {
        while (!ListIsEmpty(m_list))
            ListPopFront(m_list);
    }

    void Step(unsigned operation, Record* element) {
        switch (operation) {
        case 0:
            ListAppend(m_list, element);
            return Insert(m_twin.size(), element);
        case 1:
            ListPrepend(m_list, element);
            return Insert(0, element);
        case 2:
            ListInsertAfterCursor(m_list, element);
            return Insert(m_at < 0 ? m_twin.size() : Index(1), element);
        case 3:
            ListInsertBeforeCursor(m_list, element);
            return Insert(m_at < 0 ? 0 : Index(0), element);
        case 4:
            return Compare(ListFirst(m_list), MoveTo(0));
        case 5:
            return Compare(ListLast(m_list), MoveTo(Size() - 1));
        case 6:
            return Compare(ListNext(m_list), m_at < 0 ? nullptr : MoveTo(m_at + 1));
        case 7:
            return Compare(ListPrevious(m_list), m_at < 0 ? nullptr : MoveTo(m_at - 1));
        case 8:
            return Compare(ListRemoveAfterCursor(m_list), m_at < 0 ? nullptr : Remove(m_at + 1));
        case 9:
            return Compare(ListRemoveBeforeCursor(m_list), m_at < 0 ? nullptr : Remove(m_at - 1));
        case 10:
            return m_at == 0 ? void() : Compare(ListPopFront(m_list), Remove(0));
        default:
            return m_at >= 0 && m_at == Size() - 1
                       ? void()
                       : Compare(ListPopBack(m_list), Remove(Size() - 1));
        }
    }

    void CompareAll() const {
        std::vector<Record*> forward;
        for (Record& element : m_list)
            forward.push_back(&element);
        ASSERT_EQ(forward, m_twin);
        std::size_t left = m_twin.size();
        for (const ListNode* node = m_list.Last; node != nullptr; node = node->Previous)
            ASSERT_EQ(node->Data, m_twin[--left]);
        ASSERT_EQ(left, 0U);
        ASSERT_EQ(ListCount(m_list), Size());
        ASSERT_EQ(ListCurrent(m_list), m_at < 0 ? nullptr : m_twin[Index(0)]);
    }

private:
    std::int32_t Size() const { return static_cast<std::int32_t>(m_twin.size()); }
    std::size_t Index(std::int32_t more) const { return static_cast<std::size_t>(m_at + more); }

    static void Compare(const Record* got, const Record* expected) { ASSERT_EQ(got, expected); }

    void Insert(std::size_t index, Record* element) {
        m_twin.insert(m_twin.begin() + static_cast<std::ptrdiff_t>(index), element);
        if (m_at >= 0 && static_cast<std::size_t>(m_at) >= index)
            ++m_at;
    }

    Record* MoveTo(std::int32_t index) {
        m_at = index >= 0 && index < Size() ? index : -1;
        return m_at < 0 ? nullptr : m_twin[Index(0)];
    }

    Record* Remove(std::int32_t index) {
        if (index < 0 || index >= Size())
            return nullptr;
        Record* element = m_twin[static_cast<std::size_t>(index)];
        m_twin.erase(m_twin.begin() + index);
        if (index < m_at)
            --m_at;
        return element;
    }

    List m_list;
    std::vector<Record*> m_twin;
    std::int32_t m_at = -1;
};

TEST(ListTwin, BehavesAsAVectorWithAnIndex) {
    std::vector<Heading> elements(50);
    std::mt19937 random(20240305); // the same steps in every run
    Twin twin;
    for (int step = 0; step < 5'000; ++step) {
        twin.Step(static_cast<unsigned>(random() % 12), &elements[random() % elements.size()]);
        ASSERT_NO_FATAL_FAILURE(twin.CompareAll()) << "step " << step;
    }
}

} // namespace
} // namespace grolof
