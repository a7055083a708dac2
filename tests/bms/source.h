// How the tests of the map reader feed it: a source text becomes "m.bms" in a directory of its
// own, which is the working directory, so that messages name "m.bms".
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "bms/parser.h"
#include "bms/reader.h"
#include "common/testing.h"
#include "model/records.h"

namespace grolof::testing_support {

class BmsTest : public ::testing::Test {
protected:
    /// Writes the source and reads it; it must be accepted without a word.
    static std::vector<RecordList> Read(std::string_view source) {
        WriteFile("m.bms", source);
        CaptureStdout out;
        std::vector<RecordList> maps;
        EXPECT_EQ(StatusOf([&] { maps = BmsReadMapSet("m.bms", 0); }), -1) << source;
        EXPECT_EQ(out.Take(), "") << source;
        return maps;
    }

    /// Writes the source and reads it; it must be rejected with status 1. The line printed.
    static std::string Rejected(std::string_view source) {
        WriteFile("m.bms", source);
        CaptureStdout out;
        EXPECT_EQ(StatusOf([] { BmsReadMapSet("m.bms", 0); }), 1) << source;
        return out.Take();
    }

    /// Writes the source and opens it for statements.
    static void Open(std::string_view source) {
        WriteFile("m.bms", source);
        ASSERT_TRUE(BmsOpen("m.bms", 0));
    }

    /// Joined text of the only statement of a source.
    static std::string Statement(std::string_view source) {
        Open(source);
        EXPECT_TRUE(BmsReadStatement()) << source;
        std::string text = s_bms.Statement;
        EXPECT_FALSE(BmsReadStatement()) << source;
        return text;
    }

    /// One map with one field of these operands. The list stays with the fixture.
    Field& FieldWith(const std::string& operands) {
        m_maps = Read("M        DFHMDI SIZE=(24,80)\nF        DFHMDF " + operands + "\n");
        return AsField(*m_maps.at(0)->Last->Data);
    }

    /// One map with one constant of these operands.
    Heading& ConstantWith(const std::string& operands) {
        m_maps = Read("M        DFHMDI SIZE=(24,80)\n         DFHMDF " + operands + "\n");
        return AsHeading(*m_maps.at(0)->Last->Data);
    }

    static Form& FormIn(const RecordList& map) { return *FormOf(*map); }

    std::vector<RecordList> m_maps;

private:
    ScopedHost m_host;
    TemporaryDirectory m_directory;
    ScopedDirectory m_here{m_directory.Path()};
};

/// A line of a column width, filled with blanks, with a character in column 72.
inline std::string Marked(std::string line, char mark = 'X') {
    line.resize(71, ' ');
    return line + mark + "\n";
}

} // namespace grolof::testing_support
