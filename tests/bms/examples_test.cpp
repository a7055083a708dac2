// The example map sets: what is read of them, and that they may be cut anywhere.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "listing.h"
#include "source.h"

namespace grolof {
namespace {

using namespace testing_support;

using BmsExamples = BmsTest;

std::vector<std::string> Examples() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES_DIRECTORY))
        if (entry.path().extension() == ".bms")
            paths.push_back(entry.path().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

TEST_F(BmsExamples, AreReadAsListed) {
    for (const std::string name : {"csmenus", "ordset", "signset", "stkset"}) {
        const std::string source = ReadFile(std::string(EXAMPLES_DIRECTORY) + "/" + name + ".bms");
        const std::string listing =
            ReadFile(std::string(TEST_DATA_DIRECTORY) + "/" + name + ".txt");
        EXPECT_EQ(ListingOf(Read(source)), listing) << name;
    }
}

TEST_F(BmsExamples, AreReadAlikeWithCarriageReturns) {
    for (const std::string& path : Examples()) {
        std::string source = ReadFile(path);
        const std::string expected = ListingOf(Read(source));
        for (std::size_t at = 0; (at = source.find('\n', at)) != std::string::npos; at += 2)
            source.insert(at, 1, '\r');
        EXPECT_EQ(ListingOf(Read(source)), expected) << path;
    }
}

TEST_F(BmsExamples, AreReadAlikeWithSequenceNumbersAdded) {
    for (const std::string& path : Examples()) {
        const std::string source = ReadFile(path);
        std::string numbered;
        for (std::size_t at = 0; at < source.size();) {
            const std::size_t end = source.find('\n', at) + 1;
            numbered +=
                (source.compare(at, 2, " 0") == 0 ? "" : "0012300 ") + source.substr(at, end - at);
            at = end;
        }
        EXPECT_EQ(ListingOf(Read(numbered)), ListingOf(Read(source))) << path;
    }
}

// Records as lines; a map's line grows when the field with the cursor is read.
void ExpectBegins(const std::string& listing, const std::string& begin) {
    std::istringstream lines(listing), beginLines(begin);
    for (std::string line, expected; std::getline(beginLines, expected);) {
        ASSERT_TRUE(std::getline(lines, line));
        EXPECT_THAT(line, testing::StartsWith(expected));
    }
}

// Where a source is cut within a line, that line is lost and with it the statement that it
// belongs to; what stood before is read as if the file ended there.
TEST_F(BmsExamples, MayBeCutAtEveryLength) {
    for (const std::string& path : Examples()) {
        const std::string source = ReadFile(path);
        WriteFile("m.bms", source);
        std::vector<std::string> listings(source.size() + 1);
        CaptureStdout out;
        for (std::size_t length = source.size() + 1; length-- > 0;) {
            std::filesystem::resize_file("m.bms", length);
            ASSERT_EQ(StatusOf([&] { listings[length] = ListingOf(BmsReadMapSet("m.bms", 0)); }),
                      -1)
                << path << " cut at " << length;
        }
        EXPECT_EQ(out.Take(), "");
        EXPECT_EQ(listings.front(), "");
        for (std::size_t length = 1; length <= source.size(); ++length) {
            if (source[length - 1] == '\n')
                ExpectBegins(listings[length], listings[length - 1]);
            else
                ASSERT_EQ(listings[length], listings[length - 1]) << path << " cut at " << length;
        }
    }
}

// A damaged source ends in maps or in one line of message, never in anything else.
TEST_F(BmsExamples, MayBeDamagedAnywhere) {
    std::uint32_t random = 12345;
    const auto next = [&] { return random = random * 1664525U + 1013904223U; };
    for (const std::string& path : Examples()) {
        const std::string source = ReadFile(path);
        for (int i = 0; i < 300; ++i) {
            std::string damaged = source;
            for (int n = 0; n < 3; ++n)
                damaged[(next() >> 8) % damaged.size()] = static_cast<char>(next() >> 16);
            WriteFile("m.bms", damaged);
            CaptureStdout out;
            const int status = StatusOf([] { BmsReadMapSet("m.bms", 0); });
            if (status == -1)
                EXPECT_EQ(out.Take(), "");
            else
                EXPECT_THAT(out.Take(),
                            testing::AllOf(testing::StartsWith("Line "), testing::EndsWith(")\n")));
        }
    }
}

} // namespace
} // namespace grolof
