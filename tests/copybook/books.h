// Screens in a few words, and their COPY books as texts.
#pragma once

#include <cstdint>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/testing.h"
#include "copybook/bms.h"
#include "copybook/dps.h"
#include "model/records.h"

namespace grolof {

/// A screen with one form.
class Screen {
public:
    explicit Screen(const char* name = "ORDER", std::int32_t number = 7)
        : m_list(ListCreate()), m_form(CreateForm()) {
        m_form->Name = name;
        m_form->Number = number;
        ListAppend(*m_list, m_form);
    }

    List& Records() { return *m_list; }
    Form& Head() { return *m_form; }
    List& Items() { return ChildrenOf(*m_form); }

private:
    RecordList m_list;
    Form* m_form;
};

inline Field& AddField(List& list, const char* name, std::int32_t width = 1, std::int32_t row = 1,
                       std::int32_t column = 1) {
    Field* field = CreateField();
    if (name != nullptr)
        field->Name = name;
    field->Width = width;
    field->Row = row;
    field->Column = column;
    ListAppend(list, field);
    return *field;
}

inline Image& AddImage(List& list, const char* name, std::int32_t row = 1,
                       std::int32_t column = 1) {
    Image* image = CreateImage();
    if (name != nullptr)
        image->Name = name;
    image->Row = row;
    image->Column = column;
    ListAppend(list, image);
    return *image;
}

inline Image& AddRepeat(List& list, std::int32_t count, const char* index, std::int32_t row = 1,
                        std::int32_t column = 1) {
    Image& image = AddImage(list, nullptr, row, column);
    image.Type = RecordType::RepeatImage;
    image.Count = count;
    if (index != nullptr)
        image.IndexName = index;
    return image;
}

/// Writes books into a directory of its own, on 5 March 2024 at 09:07:02, as user "tester".
class BookTest : public testing::Test {
protected:
    std::string Path() const { return m_directory.File("BOOK"); }

    std::string Book(Screen& screen) {
        EXPECT_TRUE(DpsCopyBookWrite(screen.Records(), Path()));
        return testing_support::ReadFile(Path());
    }

    std::string InitBook(Screen& screen) {
        EXPECT_TRUE(DpsInitCopyBookWrite(screen.Records(), Path()));
        return testing_support::ReadFile(Path());
    }

    static std::string Golden(const std::string& name) {
        return testing_support::ReadFile(TEST_DATA_DIRECTORY "/golden/" + name);
    }

    const testing_support::TemporaryDirectory& Directory() const { return m_directory; }

private:
    testing_support::TemporaryDirectory m_directory;
    testing_support::ScopedHost m_host;
};

/// What stands between two texts of a book; fails the test when either is missing.
inline std::string Between(const std::string& book, const std::string& from,
                           const std::string& to) {
    const std::size_t begin = book.find(from);
    EXPECT_NE(begin, std::string::npos) << "no '" << from << "' in:\n" << book;
    if (begin == std::string::npos)
        return {};
    const std::size_t end = book.find(to, begin + from.size());
    EXPECT_NE(end, std::string::npos) << "no '" << to << "' behind '" << from << "' in:\n" << book;
    if (end == std::string::npos)
        return {};
    return book.substr(begin + from.size(), end - begin - from.size());
}

/// What stands behind a text of a book.
inline std::string Behind(const std::string& book, const std::string& from) {
    const std::size_t begin = book.rfind(from);
    EXPECT_NE(begin, std::string::npos) << "no '" << from << "' in:\n" << book;
    return begin == std::string::npos ? "" : book.substr(begin + from.size());
}

/// The value of an item that stands on one line with its VALUE clause: the text between "VALUE "
/// and the period.
inline std::string ValueOf(const std::string& book, const std::string& item) {
    const std::string line = Between(book, " " + item + " ", "\n");
    const std::size_t value = line.find("VALUE ");
    return value == std::string::npos ? line : line.substr(value + 6, line.size() - value - 7);
}

inline std::size_t CountOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos;
         at = text.find(part, at + part.size()))
        ++count;
    return count;
}

} // namespace grolof
