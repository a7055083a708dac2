// What the tests of the screen definition file share.
#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "common/testing.h"
#include "screendef/attributes.h"
#include "screendef/element_names.h"
#include "screendef/reader.h"
#include "screendef/writer.h"

namespace grolof::testing_support {

/// A directory of one's own and the element names of a fresh process.
class DefinitionTest : public ::testing::Test {
protected:
    DefinitionTest() { ResetElementNames(); }
    ~DefinitionTest() override { ResetElementNames(); }

    /// What the writer makes of a list.
    std::string Written(const List& forms) {
        const std::string path = m_directory.File("written.t3b");
        EXPECT_TRUE(SaveScreenDefinition(forms, path));
        return ReadFile(path);
    }

    /// What the reader makes of a text; nothing may be said on standard error.
    RecordList Loaded(std::string_view text) {
        CaptureStderr errors;
        RecordList forms =
            LoadScreenDefinition(WriteFile(m_directory.File("definition.t3b"), text));
        EXPECT_EQ(errors.Take(), "");
        EXPECT_NE(forms, nullptr);
        return forms;
    }

    TemporaryDirectory m_directory;
};

/// The record at a place of a list, counted from 0; fails the test when there is none.
inline Record& RecordAt(const List& list, int index) {
    for (Record& record : list)
        if (index-- == 0)
            return record;
    throw std::runtime_error("no such record");
}

inline Record& ChildAt(const Record& record, int index) {
    if (!record.Children)
        throw std::runtime_error("no children");
    return RecordAt(*record.Children, index);
}

/// A new list with records it takes over.
template <class... Kinds>
RecordList ListOf(Kinds*... records) {
    RecordList list(ListCreate());
    (ListAppend(*list, records), ...);
    return list;
}

std::string Describe(const List& list);

/// A record in one text: its tag, every attribute with its value, and its children.
template <class Kind>
std::string DescribeAs(const Kind& record) {
    std::string text = std::to_string(static_cast<int>(record.Type)) + "{";
    for (const auto& attribute : AttributesOf(record)) {
        text += attribute.Name;
        std::visit(
            MemberCases{
                [&](Text Kind::*m) { text += record.*m ? "'" + *(record.*m) + "'" : "none"; },
                [&](std::int32_t Kind::*m) { text += std::to_string(record.*m); },
                [&](char Kind::*m) { text += std::to_string(record.*m); },
                [&](FormKind Kind::*m) { text += std::to_string(static_cast<int>(record.*m)); },
                [&](const char* Kind::*m) { text += record.*m != nullptr ? record.*m : "none"; },
                [](StorageName) {}},
            attribute.Member);
        text += ' ';
    }
    return text + (record.Children ? Describe(*record.Children) : "no list") + "}\n";
}

inline std::string Describe(const List& list) {
    std::string text = "[";
    for (Record& record : list) {
        switch (record.Type) {
        case RecordType::Form:
            text += DescribeAs(AsForm(record));
            break;
        case RecordType::Field:
            text += DescribeAs(AsField(record));
            break;
        case RecordType::Image:
        case RecordType::RepeatImage:
            text += DescribeAs(AsImage(record));
            break;
        case RecordType::Heading:
            text += DescribeAs(AsHeading(record));
            break;
        }
    }
    return text + "]";
}

} // namespace grolof::testing_support
