#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "common/testing.h"
#include "support/input_file.h"
#include "support/output_file.h"

namespace grolof {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::CaptureStderr;
using testing_support::FileExists;
using testing_support::FileMode;
using testing_support::ReadFile;
using testing_support::TemporaryDirectory;
using testing_support::WriteFile;

std::string ErrorText(const std::string& path, int error) {
    return path + ": " + std::strerror(error) + "\n";
}

// All lines of a text read through a file, one ended by the end of the file marked with "$".
std::vector<std::string> LinesOf(std::string_view text, std::size_t most) {
    const TemporaryDirectory directory;
    InputFile file;
    EXPECT_TRUE(file.Open(WriteFile(directory.File("input"), text)));
    std::vector<std::string> lines;
    std::string line;
    while (file.ReadLine(line, most))
        lines.push_back(line + (file.AtEnd() ? "$" : ""));
    EXPECT_TRUE(most == 0 || file.AtEnd());
    EXPECT_EQ(line, "");
    return lines;
}

TEST(InputFile, ReadsLinesWithTheirLineFeeds) {
    EXPECT_THAT(LinesOf("one\n\ntwo\n", 80), ElementsAre("one\n", "\n", "two\n"));
}

TEST(InputFile, MarksALastLineWithoutLineFeed) {
    EXPECT_THAT(LinesOf("one\ntwo", 80), ElementsAre("one\n", "two$"));
}

TEST(InputFile, LastLineThatFillsItsBoundIsNotMarked) {
    EXPECT_THAT(LinesOf("abcde", 5), ElementsAre("abcde"));
    EXPECT_THAT(LinesOf("abcde", 6), ElementsAre("abcde$"));
}

TEST(InputFile, BreaksLongLinesAtTheBound) {
    EXPECT_THAT(LinesOf("abcdefg\nhi\n", 3), ElementsAre("abc", "def", "g\n", "hi\n"));
    // A line feed that no longer fits is a line of its own.
    EXPECT_THAT(LinesOf("abc\nd\n", 3), ElementsAre("abc", "\n", "d\n"));
}

TEST(InputFile, TextEndsAtAnEmbeddedNul) {
    EXPECT_THAT(LinesOf({"ab\0cd\nef\n", 9}, 80), ElementsAre("ab", "ef\n"));
    EXPECT_THAT(LinesOf({"\0\nx", 3}, 80), ElementsAre("", "x$"));
}

TEST(InputFile, NothingComesOfAnEmptyFileOrAnEmptyBound) {
    EXPECT_THAT(LinesOf("", 80), IsEmpty());
    EXPECT_THAT(LinesOf("abc", 0), IsEmpty());
}

TEST(InputFile, LinesCrossTheBlocksOfTheFile) {
    const std::string longLine(70'000, 'x');
    EXPECT_THAT(LinesOf(longLine + "\ny\n", 100'000), ElementsAre(longLine + "\n", "y\n"));
    EXPECT_THAT(LinesOf(longLine, 65'536),
                ElementsAre(std::string(65'536, 'x'), std::string(4'464, 'x') + "$"));
    // The second line has its first part in one block and its second in the next.
    EXPECT_THAT(LinesOf(std::string(100'000, 'x'), 40'000),
                ElementsAre(std::string(40'000, 'x'), std::string(40'000, 'x'),
                            std::string(20'000, 'x') + "$"));
}

TEST(InputFile, MissingFileIsReported) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("absent");
    InputFile file;
    CaptureStderr errors;
    EXPECT_FALSE(file.Open(path));
    EXPECT_EQ(errors.Take(), ErrorText(path, ENOENT));
    std::string line = "old";
    EXPECT_FALSE(file.ReadLine(line, 10));
    EXPECT_EQ(line, "");
}

TEST(InputFile, DirectoryIsReportedOnceAndReadsAsEmpty) {
    const TemporaryDirectory directory;
    InputFile file;
    CaptureStderr errors;
    EXPECT_TRUE(file.Open(directory.Path()));
    std::string line;
    EXPECT_FALSE(file.ReadLine(line, 10));
    EXPECT_TRUE(file.AtEnd());
    EXPECT_FALSE(file.ReadLine(line, 10));
    EXPECT_EQ(errors.Take(), ErrorText(directory.Path(), EISDIR));
}

TEST(InputFile, OpensAfreshAndForgetsTheFileBefore) {
    const TemporaryDirectory directory;
    InputFile file;
    std::string line;
    ASSERT_TRUE(file.Open(WriteFile(directory.File("a"), "1\n2\n")));
    ASSERT_TRUE(file.ReadLine(line, 10));
    ASSERT_TRUE(file.Open(WriteFile(directory.File("b"), "3")));
    EXPECT_TRUE(file.ReadLine(line, 10));
    EXPECT_EQ(line, "3");
    EXPECT_FALSE(file.ReadLine(line, 10));
    ASSERT_TRUE(file.Open(directory.File("a")));
    EXPECT_TRUE(file.ReadLine(line, 10));
    EXPECT_EQ(line, "1\n");
    file.Close();
    EXPECT_FALSE(file.ReadLine(line, 10));
    file.Close();
}

TEST(OutputFile, WritesBytesAndFormattedTexts) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("out");
    OutputFile file;
    ASSERT_TRUE(file.Open(path));
    file.Put({"a\0b\n", 4});
    file.Put("");
    file.Print("%s=%05d\n", "Number", 42);
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadFile(path), std::string("a\0b\nNumber=00042\n", 17));
}

TEST(OutputFile, PrintsTextsOfAnyLength) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("out");
    OutputFile file;
    ASSERT_TRUE(file.Open(path));
    std::string expected;
    for (const std::size_t length : {0U, 509U, 510U, 511U, 512U, 40'000U}) {
        const std::string text(length, static_cast<char>('a' + length % 26));
        file.Print("%s\n", text.c_str());
        expected += text + "\n";
    }
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadFile(path), expected);
}

TEST(OutputFile, WritesMoreThanItsBufferInOrder) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("out");
    OutputFile file;
    ASSERT_TRUE(file.Open(path));
    std::string expected;
    for (const std::size_t length :
         {10U, 16'374U, 1U, 16'000U, 9'000U, 16'384U, 16'385U, 3U, 100'000U, 7U}) {
        const std::string text(length, static_cast<char>('a' + expected.size() % 26));
        file.Put(text);
        expected += text;
    }
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadFile(path), expected);
}

// Writes a text through a file of its own; returns where the file ended.
std::int64_t WriteAnew(const std::string& path, std::string_view text) {
    OutputFile file;
    EXPECT_TRUE(file.Open(path));
    file.Put(text);
    EXPECT_TRUE(file.Close());
    return file.End();
}

std::int64_t GoOn(const std::string& path, std::int64_t place, std::string_view text) {
    OutputFile file;
    EXPECT_TRUE(file.OpenAt(path, place));
    file.Put(text);
    EXPECT_TRUE(file.Close());
    return file.End();
}

TEST(OutputFile, GoesOnWhereItEnded) {
    const TemporaryDirectory directory;
    const std::string path = WriteFile(directory.File("out"), "old contents");
    auto place = WriteAnew(path, "first,");
    EXPECT_EQ(place, 6);
    place = GoOn(path, place, "second,");
    EXPECT_EQ(place, 13);
    GoOn(path, place, "third");
    EXPECT_EQ(ReadFile(path), "first,second,third");
}

TEST(OutputFile, GoesOnInsideAFileThatAnotherRunIsWritingToo) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("out");
    const auto place = WriteAnew(path, "first,");
    const auto other = WriteAnew(path, "first,");
    GoOn(path, other, "second,third");
    EXPECT_EQ(GoOn(path, place, "second,"), 13);
    EXPECT_EQ(ReadFile(path), "first,second,third");
}

TEST(OutputFile, GoesOnBehindTheEndOfAFileThatAnotherRunHasJustBegunAnew) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("out");
    const auto place = WriteAnew(path, "first,");
    OutputFile other;
    ASSERT_TRUE(other.Open(path));
    EXPECT_EQ(GoOn(path, place, "second"), 12);
    other.Put("first,");
    EXPECT_TRUE(other.Close());
    EXPECT_EQ(ReadFile(path), "first,second");
}

TEST(OutputFile, AppendsToAnyFile) {
    const TemporaryDirectory directory;
    for (const char* text : {"", "old,"}) {
        const std::string path = WriteFile(directory.File("out"), text);
        OutputFile file;
        EXPECT_TRUE(file.Open(path, OutputFile::Mode::Append));
        file.Put("new");
        EXPECT_TRUE(file.Close());
        EXPECT_EQ(ReadFile(path), text + std::string("new"));
        EXPECT_EQ(file.End(), static_cast<std::int64_t>(ReadFile(path).size()));
    }
}

TEST(OutputFile, KeepsWhatStandsBehindUntilItIsToldOtherwise) {
    const TemporaryDirectory directory;
    const std::string path = WriteFile(directory.File("out"), "old contents");
    OutputFile file;
    ASSERT_TRUE(file.Open(path, OutputFile::Mode::Keep));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadFile(path), "old contents");
    ASSERT_TRUE(file.Open(path, OutputFile::Mode::Keep));
    file.Put("new");
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadFile(path), "new contents");
    ASSERT_TRUE(file.Open(path, OutputFile::Mode::Keep));
    file.Put("short");
    file.Cut();
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadFile(path), "short");
    ASSERT_TRUE(file.Open("/dev/null", OutputFile::Mode::Keep));
    CaptureStderr errors;
    file.Cut();
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(errors.Take(), "") << "a device has nothing to take away";
}

TEST(OutputFile, MakesAFileWithoutExecuteBitsAlsoToContinueIt) {
    const TemporaryDirectory directory;
    const mode_t mask = umask(027);
    for (const auto mode : {OutputFile::Mode::Truncate, OutputFile::Mode::Append}) {
        const std::string path =
            directory.File(mode == OutputFile::Mode::Append ? "continued" : "new");
        OutputFile file;
        EXPECT_TRUE(file.Open(path, mode));
        EXPECT_EQ(FileMode(path), 0640U);
    }
    umask(mask);
}

TEST(OutputFile, IsWrittenAtTheEndOfItsScope) {
    const TemporaryDirectory directory;
    {
        OutputFile file;
        ASSERT_TRUE(file.Open(directory.File("out")));
        file.Put("text");
    }
    EXPECT_EQ(ReadFile(directory.File("out")), "text");
}

TEST(OutputFile, PlaceThatDoesNotExistIsReported) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("absent/out");
    OutputFile file;
    CaptureStderr errors;
    EXPECT_FALSE(file.Open(path));
    file.Put("lost");
    EXPECT_EQ(errors.Take(), ErrorText(path, ENOENT));
    EXPECT_FALSE(FileExists(path));
}

TEST(OutputFile, FullDiskIsReportedOnce) {
    if (!FileExists("/dev/full"))
        GTEST_SKIP() << "no device that is always full";
    OutputFile file;
    CaptureStderr errors;
    ASSERT_TRUE(file.Open("/dev/full"));
    file.Put(std::string(50'000, 'x'));
    file.Put(std::string(50'000, 'y'));
    file.Put("tail");
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(errors.Take(), ErrorText("/dev/full", ENOSPC));
}

TEST(OutputFile, FullDiskShowsAtTheLatestWhenClosing) {
    if (!FileExists("/dev/full"))
        GTEST_SKIP() << "no device that is always full";
    const TemporaryDirectory directory;
    OutputFile file;
    CaptureStderr errors;
    ASSERT_TRUE(file.Open("/dev/full"));
    file.Put("x");
    EXPECT_FALSE(file.Close());
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(errors.Take(), ErrorText("/dev/full", ENOSPC));
    ASSERT_TRUE(file.Open(directory.File("out"))); // and the next file starts without a stain
    EXPECT_TRUE(file.Close());
}

} // namespace
} // namespace grolof
