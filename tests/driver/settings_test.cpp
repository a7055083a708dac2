// Options, groups and the usage text.
#include "driver/settings.h"

#include <initializer_list>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "driver_testing.h"

namespace grolof {
namespace {

using namespace testing_support;

// Command lines in a form that getopt may shuffle.
class Arguments {
public:
    Arguments(std::initializer_list<const char*> words) : m_words(words.begin(), words.end()) {
        for (std::string& word : m_words)
            m_pointers.push_back(word.data());
        m_pointers.push_back(nullptr);
    }
    int Count() const { return static_cast<int>(m_words.size()); }
    char** Values() { return m_pointers.data(); }

private:
    std::vector<std::string> m_words;
    std::vector<char*> m_pointers;
};

Settings Scanned(std::initializer_list<const char*> words) {
    Arguments arguments(words);
    Settings settings;
    ScanOptions(settings, arguments.Count(), arguments.Values());
    return settings;
}

std::string Letters(const Settings& settings) {
    return {settings.OptionLetters.data(), settings.OptionLetterCount};
}

TEST(Settings, WithoutOptions) {
    const Settings settings = Scanned({"grolof", "file"});
    EXPECT_FALSE(settings.BmsMode);
    EXPECT_FALSE(settings.DefinitionMode);
    EXPECT_FALSE(settings.RewriteOnly);
    EXPECT_EQ(std::string(16, ' '),
              std::string(settings.OptionLetters.data(), settings.OptionLetters.size()));
    EXPECT_EQ(0U, settings.OptionLetterCount);
    EXPECT_EQ(1U, settings.ConversionFlags);
    EXPECT_EQ("", settings.CopyDirectory);
    EXPECT_EQ("ZOR$Y$", settings.UpperGroup);
    EXPECT_EQ("zor$y$", settings.LowerGroup);
}

struct OptionRow {
    const char* Option;
    unsigned Flags;      // conversion flags when only this option is given
    unsigned FlagsAfter; // when every flag is set before
    const char* Letters;
    bool Bms, Definition, Rewrite;
};

class EveryOption : public testing::TestWithParam<OptionRow> {};

TEST_P(EveryOption, DoesWhatItSays) {
    const OptionRow& row = GetParam();
    const Settings settings = Scanned({"grolof", row.Option, "file"});
    EXPECT_EQ(row.Flags, settings.ConversionFlags);
    EXPECT_EQ(row.Letters, Letters(settings));
    EXPECT_EQ(row.Bms, settings.BmsMode);
    EXPECT_EQ(row.Definition, settings.DefinitionMode);
    EXPECT_EQ(row.Rewrite, settings.RewriteOnly);
    EXPECT_EQ(row.FlagsAfter, Scanned({"grolof", "-Bcjnsur", row.Option, "file"}).ConversionFlags);
}

INSTANTIATE_TEST_SUITE_P(Table, EveryOption,
                         testing::Values(OptionRow{"-b", 1, 127, "", true, false, false},
                                         OptionRow{"-B", 33, 127, "B", false, false, false},
                                         OptionRow{"-c", 3, 127, "c", false, false, false},
                                         OptionRow{"-C", 1, 125, "C", false, false, false},
                                         OptionRow{"-d", 1, 127, "", false, true, false},
                                         OptionRow{"-j", 5, 127, "j", false, false, false},
                                         OptionRow{"-J", 1, 123, "J", false, false, false},
                                         OptionRow{"-n", 1, 127, "n", false, false, false},
                                         OptionRow{"-N", 0, 126, "N", false, false, false},
                                         OptionRow{"-s", 9, 127, "s", false, false, false},
                                         OptionRow{"-S", 1, 119, "S", false, false, false},
                                         OptionRow{"-u", 17, 127, "u", false, false, false},
                                         OptionRow{"-U", 1, 111, "U", false, false, false},
                                         OptionRow{"-x", 1, 127, "", false, true, true},
                                         OptionRow{"-r", 65, 127, "r", false, false, false},
                                         OptionRow{"-R", 1, 63, "R", false, false, false},
                                         OptionRow{"-wdir", 1, 127, "", false, false, false},
                                         OptionRow{"-ggroup", 1, 127, "", false, false, false}));

TEST(Settings, LastFlagOptionWins) {
    EXPECT_EQ(0U, Scanned({"grolof", "-n", "-N"}).ConversionFlags);
    EXPECT_EQ(1U, Scanned({"grolof", "-N", "-n"}).ConversionFlags);
}

TEST(Settings, LettersAreRecordedInOrderAndAgain) {
    EXPECT_EQ("nNnc", Letters(Scanned({"grolof", "-nN", "-n", "file", "-c"})));
}

TEST(Settings, OnlySixteenLettersCount) {
    const Settings settings = Scanned({"grolof", "-ccccccccccccccccN", "file"});
    EXPECT_EQ("cccccccccccccccc", Letters(settings));
    EXPECT_FALSE(OptionGiven(settings, 'N'));
    EXPECT_EQ(2U, settings.ConversionFlags) << "the flag itself is still cleared";
}

TEST(Settings, OptionGivenLooksAtRecordedLettersOnly) {
    Settings settings;
    EXPECT_FALSE(OptionGiven(settings, ' '));
    RecordOptionLetter(settings, 'x');
    EXPECT_TRUE(OptionGiven(settings, 'x'));
    EXPECT_FALSE(OptionGiven(settings, 'n'));
}

TEST(Settings, OperandsMayStandBetweenOptions) {
    Arguments arguments{"grolof", "one", "-N", "two", "-w", "dir", "--", "-n"};
    Settings settings;
    const int first = ScanOptions(settings, arguments.Count(), arguments.Values());
    ASSERT_EQ(5, first);
    EXPECT_STREQ("one", arguments.Values()[5]);
    EXPECT_STREQ("two", arguments.Values()[6]);
    EXPECT_STREQ("-n", arguments.Values()[7]);
    EXPECT_EQ("dir", settings.CopyDirectory);
    EXPECT_EQ(0U, settings.ConversionFlags);
}

TEST(Settings, UnknownOptionIsReportedAndIgnored) {
    CaptureStderr errors;
    const Settings settings = Scanned({"grolof", "-q", "-c", "file"});
    EXPECT_EQ("grolof: invalid option -- 'q'\n", errors.Take());
    EXPECT_EQ(3U, settings.ConversionFlags);
    EXPECT_EQ("c", Letters(settings));
}

TEST(Settings, MissingArgumentIsReportedAndIgnored) {
    CaptureStderr errors;
    const Settings settings = Scanned({"grolof", "-w"});
    EXPECT_EQ("grolof: option requires an argument -- 'w'\n", errors.Take());
    EXPECT_EQ("", settings.CopyDirectory);
}

TEST(Settings, GroupIsCutAndConverted) {
    const Settings settings = Scanned({"grolof", "-gother", "-g", "abcdefghij"});
    EXPECT_EQ("ABCDEFGH", settings.UpperGroup);
    EXPECT_EQ("abcdefgh", settings.LowerGroup);
    EXPECT_EQ("Q1", Scanned({"grolof", "-gq1"}).UpperGroup);
}

TEST(Settings, CopyDirectoryOverItsBoundIsReported) {
    const std::string longest(255, 'd');
    const std::string longer(256, 'd');
    CaptureStderr errors;
    EXPECT_EQ(longest, Scanned({"grolof", "-w", longest.c_str()}).CopyDirectory);
    Scanned({"grolof", "-w", longer.c_str()});
    EXPECT_EQ(longer + ": too long\n", errors.Take());
}

TEST(Settings, BmsProgramNames) {
    EXPECT_TRUE(IsBmsProgramName("bms"));
    EXPECT_TRUE(IsBmsProgramName("bmsgrolof"));
    EXPECT_FALSE(IsBmsProgramName("BMSgrolof"));
    EXPECT_FALSE(IsBmsProgramName("./bmsgrolof"));
    EXPECT_FALSE(IsBmsProgramName("bm"));
    EXPECT_FALSE(IsBmsProgramName(""));
}

class Usage : public Installation {
protected:
    static std::string Of(const Settings& settings, const char* program) {
        CaptureStdout output;
        PrintUsage(settings, program);
        return output.Take();
    }
};

TEST_F(Usage, Dps) {
    Settings settings;
    SetGroup(settings, "Orders");
    EXPECT_EQ(" DPS FLDP Converter - screen formats and COPY books from screen sources\n"
              "               version:  4.49 2013/08/19 \n"
              "Syntax: /usr/bin/grolof [-n] [-c|C] [-j|J] [-s|S] [-u] -[d|x] files...\n"
              " -d : Load screen definition file & generate MCS format with DPS COPY book\n"
              " -n : Use numeric screen name (Default)\n"
              " -N : Use character screen name\n"
              " -B : If BlankWhenZero on output also make it BlankWhenBlank on input\n"
              " -c : Ignore case (use upper case)\n"
              " -C : honour case\n"
              " -g group : Put format in 'group' instead of ZOR$Y$\n"
              " -j : Ignore justification\n"
              " -J : honour justification\n"
              " -s : Ignore unsupported system fields\n"
              " -S : Convert unsupported system fields to user fields\n"
              " -x : Load screen definition file (format.t3b) and rewrite that only\n"
              " -w copydir : path to COPY book to be written\n"
              "     where 'files' are DPS FLDP format text files\n"
              " Unless '-d' is given then 'files' are format.t3b text files\n"
              "             or DPS screen numbers or format names \n"
              "                already in files/sfg/orders\n",
              Of(settings, "/usr/bin/grolof"));
}

constexpr const char* kBmsUsage =
    " [-n] [-c|C] [-j|J] [-s|S] [-u] -[d|x] files...\n"
    " -b : Load screen definition file & generate MCS format with BMS COPY book\n"
    " -B : If BlankWhenZero on output also make it BlankWhenBlank on input\n"
    " -c : Ignore case (use upper case)\n"
    " -C : honour case\n"
    " -g group : Put format in 'group' instead of ZOR$Y$\n"
    " -j : Ignore justification\n"
    " -J : honour justification\n"
    " -s : Ignore unsupported system fields\n"
    " -S : Convert unsupported system fields to user fields\n"
    " -x : Load screen definition file (format.t3b) and rewrite that only\n"
    " -w copydir : path to COPY book to be written\n"
    "     where 'files' are CICS Basic Mapping format text files\n";

TEST_F(Usage, BmsByModeOrByName) {
    const std::string head =
        " CICS BMS Converter - screen formats and COPY books from screen sources\n"
        "               version:  4.49 2013/08/19 \n"
        "Syntax: ";
    Settings settings;
    EXPECT_EQ(head + "bmsgrolof" + kBmsUsage, Of(settings, "bmsgrolof"));
    settings.BmsMode = true;
    EXPECT_EQ(head + "grolof" + kBmsUsage, Of(settings, "grolof"));
}

TEST_F(Usage, HelpEndsTheRunAtOnce) {
    CaptureStdout output;
    EXPECT_EQ(0, StatusOf([] { Scanned({"grolof", "-gq1", "-h", "-gq2", "-b", "file"}); }));
    EXPECT_THAT(output.Take(), testing::AllOf(testing::StartsWith(" DPS FLDP Converter"),
                                              testing::EndsWith("files/sfg/q1\n")));
}

TEST_F(Usage, HelpShowsTheDialectAsSetSoFar) {
    CaptureStdout output;
    EXPECT_EQ(0, StatusOf([] { Scanned({"grolof", "-bh"}); }));
    EXPECT_THAT(output.Take(), testing::StartsWith(" CICS BMS Converter"));
}

} // namespace
} // namespace grolof
