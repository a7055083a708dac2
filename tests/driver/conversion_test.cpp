// The order of the calls for each operand and each screen, and every message, seen through
// readers and writers that only take notes.
#include "driver/conversion.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "driver/grolof.h"
#include "driver_testing.h"

namespace grolof {
namespace {

using namespace testing_support;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// --- note-taking readers and writers -----------------------------------------------------------

struct Notes {
    std::vector<std::string> Calls;
    bool NoList = false;    // the readers hand out no list at all
    bool EmptyList = false; // or one without records
    bool BookFails = false, ScreenFails = false, FormatFails = false;
    int CommandResult = 0;
    std::size_t FormatSize = 10;
    Form Seen; // the form as the screen file's writer saw it
};
Notes s_notes;

Form FormNamed(const char* name, std::int32_t number = 7, FormKind kind = FormKind::Dps) {
    Form form{};
    form.Type = RecordType::Form;
    form.Name = name;
    form.Number = number;
    form.NumericName = 1;
    form.FormType = kind;
    return form;
}

Form MapNamed(const char* name, const char* copyName) {
    Form form = FormNamed(name, 0, FormKind::Bms);
    form.CopyName = copyName;
    return form;
}

void CopyMembers(Form& to, const Form& from) {
    to.Name = from.Name;
    to.Group = from.Group;
    to.CopyName = from.CopyName;
    to.Number = from.Number;
    to.FormType = from.FormType;
    to.NumericName = from.NumericName;
    to.IgnoreCase = from.IgnoreCase;
    to.IgnoreJustification = from.IgnoreJustification;
    to._24x79Unprotected = from._24x79Unprotected;
    to.InputBlankWhenZero = from.InputBlankWhenZero;
    to.RedefInit = from.RedefInit;
}

std::vector<Form> s_screens; // one form a screen, for the next read

std::vector<RecordList> HandOut() {
    std::vector<RecordList> lists;
    if (s_notes.NoList)
        return lists;
    for (const Form& form : s_screens) {
        lists.emplace_back(ListCreate());
        if (s_notes.EmptyList)
            continue;
        Form* copy = CreateForm();
        CopyMembers(*copy, form);
        ListAppend(*lists.back(), copy);
    }
    return lists;
}

RecordList HandOutFirst() {
    std::vector<RecordList> lists = HandOut();
    return lists.empty() ? nullptr : std::move(lists.front());
}

void Note(const std::string& call) {
    s_notes.Calls.push_back(call);
}

RecordList ReadFldp(const std::string& path, unsigned options) {
    Note("fldp " + path + " " + std::to_string(options));
    return HandOutFirst();
}
std::vector<RecordList> ReadBms(const std::string& path, unsigned options) {
    Note("bms " + path + " " + std::to_string(options));
    return HandOut();
}
RecordList ReadDefinition(const std::string& path) {
    Note("definition " + path);
    return HandOutFirst();
}
bool WriteBook(List&, const std::string& path) {
    Note("book " + path);
    return !s_notes.BookFails;
}
bool WriteInit(List&, const std::string& path) {
    Note("init " + path);
    return false; // of no account
}
int WriteMap(List&, const std::string& path, int comments, int continuing) {
    Note("map " + path + " " + std::to_string(comments) + std::to_string(continuing));
    return s_notes.BookFails ? 0 : 1;
}
bool WriteScreen(const List& forms, const std::string& path) {
    Note("screen " + path);
    CopyMembers(s_notes.Seen, *FormOf(forms));
    if (!s_notes.ScreenFails)
        chmod(WriteFile(path, "").c_str(), 0600);
    return !s_notes.ScreenFails;
}
bool WriteFormat(List&, const std::string& path) {
    Note("format " + path);
    if (!s_notes.FormatFails)
        WriteFile(path, std::string(s_notes.FormatSize, 'x'));
    return !s_notes.FormatFails;
}
int RunShell(const char* command) {
    Note(command);
    return s_notes.CommandResult;
}

constexpr Converters kNoteTakers{ReadFldp, ReadBms,     ReadDefinition, WriteBook, WriteInit,
                                 WriteMap, WriteScreen, WriteFormat,    RunShell};

struct Outcome {
    std::string Output;
    std::string Errors;
    int Status;
};

class Conversion : public Installation {
protected:
    Conversion() {
        s_notes = Notes();
        s_screens.clear();
        s_screens.push_back(FormNamed("MENU"));
    }

    static Outcome Convert(std::vector<std::string> words) {
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        CaptureStdout output;
        CaptureStderr errors;
        int status = -1;
        const int ended = StatusOf([&] {
            status = RunGrolof(static_cast<int>(words.size()), arguments.data(), kNoteTakers);
        });
        return {output.Take(), errors.Take(), ended != -1 ? ended : status};
    }

    static void SetScreen(Form form) {
        s_screens.clear();
        s_screens.push_back(std::move(form));
    }
};

const std::vector<std::string> kLibrary = {"scrlib IUQ 'files/mcs/ZOR$Y$/DPS00007.t3z'",
                                           "touch 'files/mcs/ZOR$Y$'"};

// --- start of run ------------------------------------------------------------------------------

TEST_F(Conversion, UsageWithoutOperands) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"grolof"},
                                                  {"grolof", "-n"},
                                                  {"grolof", "-h"},
                                                  {"grolof", "-h", "file"}}) {
        const Outcome outcome = Convert(words);
        EXPECT_EQ(0, outcome.Status);
        EXPECT_THAT(outcome.Output,
                    AllOf(HasSubstr(" DPS FLDP Converter - "), HasSubstr("Syntax: grolof [-n] ")));
    }
    EXPECT_THAT(s_notes.Calls, IsEmpty());
}

TEST_F(Conversion, UsageUnderTheBmsName) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"bmsgrolof"},
                                                  {"bmsgrolof", "-n"},
                                                  {"bmsgrolof", "-h"},
                                                  {"grolof", "-b"}}) {
        const Outcome outcome = Convert(words);
        EXPECT_EQ(0, outcome.Status);
        EXPECT_THAT(outcome.Output, HasSubstr(" CICS BMS Converter - "));
    }
}

TEST_F(Conversion, NameWithADirectoryIsNotTheBmsName) {
    EXPECT_THAT(Convert({"./bmsgrolof"}).Output, HasSubstr(" DPS FLDP Converter - "));
}

TEST_F(Conversion, NoArgumentsAtAll) {
    char* none[] = {nullptr};
    CaptureStdout output;
    EXPECT_EQ(0, RunGrolof(0, none, kNoteTakers));
    EXPECT_THAT(output.Take(), HasSubstr(" DPS FLDP Converter - "));
}

// --- FLDP sources ------------------------------------------------------------------------------

TEST_F(Conversion, FldpSource) {
    const Outcome outcome = Convert({"grolof", "-w", "books", "menu.fldp"});
    EXPECT_EQ(0, outcome.Status);
    EXPECT_EQ("Wrote DPS COPY book: books/SCREEN-MENU-7\n"
              "  Wrote screen file: files/sfg/zor$y$/DPS00007.t3b\n"
              "   Wrote MCS format: files/mcs/ZOR$Y$/DPS00007.t3z\n",
              outcome.Output);
    EXPECT_EQ("", outcome.Errors);
    EXPECT_THAT(s_notes.Calls,
                ElementsAre("fldp menu.fldp 1", "book books/SCREEN-MENU-7",
                            "screen files/sfg/zor$y$/DPS00007.t3b",
                            "format files/mcs/ZOR$Y$/DPS00007.t3z", kLibrary[0], kLibrary[1]));
    EXPECT_EQ(0666U, FileMode("files/sfg/zor$y$/DPS00007.t3b"));
    EXPECT_EQ(0666U, FileMode("files/mcs/ZOR$Y$/DPS00007.t3z"));
    EXPECT_EQ(0U, FileMode("books/SCREEN-MENU-7")) << "the COPY book's mode is left alone";
}

TEST_F(Conversion, FldpFlagsAreThoseOfTheOptions) {
    s_notes.NoList = true;
    Convert({"grolof", "-ncjsuBr", "file"});
    Convert({"grolof", "-n", "-N", "file"});
    Convert({"grolof", "-N", "-n", "file"});
    EXPECT_THAT(s_notes.Calls, ElementsAre("fldp file 127", "fldp file 0", "fldp file 1"));
}

TEST_F(Conversion, NoListIsNoOutputAndNoMessage) {
    s_notes.NoList = true;
    const Outcome outcome = Convert({"grolof", "missing", "other"});
    EXPECT_EQ(0, outcome.Status);
    EXPECT_EQ("", outcome.Output);
    EXPECT_THAT(s_notes.Calls, ElementsAre("fldp missing 1", "fldp other 1"));
}

TEST_F(Conversion, BrokenTreesEndTheRun) {
    s_notes.EmptyList = true;
    Outcome outcome = Convert({"grolof", "empty", "never"});
    EXPECT_EQ(255, outcome.Status);
    EXPECT_EQ("Badly constructed parse tree!\n", outcome.Output);
    s_notes.EmptyList = false;

    s_screens.front().Name.reset();
    outcome = Convert({"grolof", "nameless", "never"});
    EXPECT_EQ(255, outcome.Status);
    EXPECT_EQ("Badly constructed parse tree!\n", outcome.Output);
    EXPECT_THAT(s_notes.Calls, ElementsAre("fldp empty 1", "fldp nameless 1"));
}

TEST_F(Conversion, EmptyNameIsAName) {
    s_screens.front().Name = "";
    const Outcome outcome = Convert({"grolof", "-N", "file"});
    EXPECT_EQ(0, outcome.Status);
    EXPECT_THAT(outcome.Output, HasSubstr("Wrote DPS COPY book: ./SCREEN--7\n"));
}

struct GroupRow {
    const char* Group;
    const char* Becomes;
};

TEST_F(Conversion, GroupThatDoesNotBeginAboveBlankIsReplaced) {
    for (const GroupRow& row :
         {GroupRow{nullptr, "Q1"}, GroupRow{"", "Q1"}, GroupRow{" X", "Q1"}, GroupRow{"\x1f", "Q1"},
          GroupRow{"\x80", "Q1"}, GroupRow{"\xff", "Q1"}, GroupRow{"!", "!"},
          GroupRow{"\x7f", "\x7f"}, GroupRow{"lib", "lib"}}) {
        s_screens.front().Group = row.Group;
        Convert({"grolof", "-gq1", "file"});
        EXPECT_STREQ(row.Becomes, s_notes.Seen.Group);
    }
}

TEST_F(Conversion, FormGroupDoesNotMoveTheOutputs) {
    s_screens.front().Group = "LIB";
    EXPECT_THAT(Convert({"grolof", "file"}).Output, HasSubstr("files/sfg/zor$y$/DPS00007.t3b\n"));
}

TEST_F(Conversion, FailuresGoOnWithTheNextOutput) {
    s_notes.BookFails = s_notes.ScreenFails = s_notes.FormatFails = true;
    s_notes.CommandResult = 1;
    const Outcome outcome = Convert({"grolof", "file"});
    EXPECT_EQ(0, outcome.Status);
    EXPECT_EQ("Problem writing COPY: ./SCREEN-MENU-7\n"
              "Problem trying to write: files/sfg/zor$y$/DPS00007.t3b\n"
              "Problem trying to write: files/mcs/ZOR$Y$/DPS00007.t3z\n"
              "Problem doing 'scrlib IUQ 'files/mcs/ZOR$Y$/DPS00007.t3z''\n",
              outcome.Output);
    EXPECT_EQ("Problem doing 'scrlib IUQ 'files/mcs/ZOR$Y$/DPS00007.t3z''\n", outcome.Errors);
}

TEST_F(Conversion, SizeCheckFollowsASuccessfulWriteOnly) {
    s_notes.FormatSize = 2561;
    EXPECT_EQ("Format file 'SHELL=/bin/sh' is too large!\n", Convert({"grolof", "file"}).Errors);
    s_notes.FormatFails = true;
    EXPECT_EQ("", Convert({"grolof", "file"}).Errors);
    s_notes.FormatFails = false;
    s_notes.FormatSize = 2560;
    EXPECT_EQ("", Convert({"grolof", "file"}).Errors);
}

TEST_F(Conversion, InitialisationBookComesLast) {
    s_screens.front().RedefInit = 1;
    const Outcome outcome = Convert({"grolof", "file"});
    EXPECT_EQ("Wrote DPS COPY book: ./SCREEN-MENU-7\n"
              "  Wrote screen file: files/sfg/zor$y$/DPS00007.t3b\n"
              "   Wrote MCS format: files/mcs/ZOR$Y$/DPS00007.t3z\n"
              "Wrote DPS COPY book: ./SCREEN-MENU-7-INIT\n",
              outcome.Output);
    EXPECT_EQ("init ./SCREEN-MENU-7-INIT", s_notes.Calls.back());
}

TEST_F(Conversion, PathsTooLongFailTheirOutputOnly) {
    const std::string directory(243, 'd'); // with "/SCREEN-MENU-7" 257 bytes
    const Outcome outcome = Convert({"grolof", "-w", directory, "file"});
    EXPECT_EQ(0, outcome.Status);
    EXPECT_EQ("Problem writing COPY: " + directory +
                  "/SCREEN-MENU-7\n"
                  "  Wrote screen file: files/sfg/zor$y$/DPS00007.t3b\n"
                  "   Wrote MCS format: files/mcs/ZOR$Y$/DPS00007.t3z\n",
              outcome.Output);
    EXPECT_EQ(directory + "/SCREEN-MENU-7: too long\n", outcome.Errors);
    EXPECT_THAT(s_notes.Calls, Not(testing::Contains(HasSubstr("book "))));
    EXPECT_FALSE(FileExists(directory));
}

TEST_F(Conversion, InitialisationBookPathTooLong) {
    s_screens.front().RedefInit = 1;
    const std::string directory(240, 'd'); // 254 bytes, 259 with "-INIT"
    const Outcome outcome = Convert({"grolof", "-w", directory, "file"});
    const std::string path = directory + "/SCREEN-MENU-7";
    EXPECT_THAT(outcome.Output,
                AllOf(testing::StartsWith("Wrote DPS COPY book: " + path + "\n"),
                      testing::EndsWith("Problem writing COPY: " + path + "-INIT\n")));
    EXPECT_EQ(path + "-INIT: too long\n", outcome.Errors);
}

// --- definition mode ---------------------------------------------------------------------------

TEST_F(Conversion, ScreenNumberAndFormatName) {
    WriteFile("files/sfg/zor$y$/DPS00123.t3b", "");
    WriteFile("files/sfg/zor$y$/ORDER.t3b", "");
    const Outcome outcome = Convert({"grolof", "-d", "123", "order"});
    EXPECT_EQ("Loaded MENU from file: files/sfg/zor$y$/DPS00123.t3b\n"
              "Wrote DPS COPY book: ./SCREEN-MENU-7\n"
              "Skip rewrite: files/sfg/zor$y$/DPS00007.t3b\n"
              "   Wrote MCS format: files/mcs/ZOR$Y$/DPS00007.t3z\n"
              "Loaded MENU from file: files/sfg/zor$y$/ORDER.t3b\n"
              "Wrote DPS COPY book: ./SCREEN-MENU-7\n"
              "Skip rewrite: files/sfg/zor$y$/DPS00007.t3b\n"
              "   Wrote MCS format: files/mcs/ZOR$Y$/DPS00007.t3z\n",
              outcome.Output);
    EXPECT_EQ(0, outcome.Status);
}

TEST_F(Conversion, LeadingDigitsAreTheScreenNumber) {
    WriteFile("files/sfg/q1/DPS00012.t3b", "");
    s_notes.EmptyList = true;
    Convert({"grolof", "-d", "-gq1", "12ab"});
    EXPECT_THAT(s_notes.Calls, ElementsAre("definition files/sfg/q1/DPS00012.t3b"));
}

TEST_F(Conversion, MissingDefinition) {
    const Outcome outcome = Convert({"grolof", "-d", "42", "order", "./x", "y.t3b", "-x"});
    EXPECT_EQ(0, outcome.Status);
    EXPECT_EQ("No such file: files/sfg/zor$y$/DPS00042.t3b\n"
              "No such file: files/sfg/zor$y$/ORDER.t3b\n"
              "No such file: ./x\n"
              "No such file: y.t3b\n",
              outcome.Output);
    EXPECT_THAT(s_notes.Calls, IsEmpty());
}

TEST_F(Conversion, DefinitionPathTooLong) {
    const std::string name(250, 'N');
    const Outcome outcome = Convert({"grolof", "-d", name});
    const std::string path = "files/sfg/zor$y$/" + name + ".t3b";
    EXPECT_EQ("No such file: " + path + "\n", outcome.Output);
    EXPECT_EQ(path + ": too long\n", outcome.Errors);
}

TEST_F(Conversion, DefinitionThatCannotBeLoaded) {
    WriteFile("x.t3b", "");
    s_notes.NoList = true;
    EXPECT_EQ(255, Convert({"grolof", "-d", "x.t3b"}).Status);
    s_notes.NoList = false;
    s_notes.EmptyList = true;
    EXPECT_EQ(255, Convert({"grolof", "-d", "x.t3b"}).Status);
    s_notes.EmptyList = false;
    s_screens.front().Name.reset();
    const Outcome outcome = Convert({"grolof", "-d", "x.t3b"});
    EXPECT_EQ(255, outcome.Status);
    EXPECT_EQ("Badly constructed parse tree!\n", outcome.Output);
}

TEST_F(Conversion, PathOperandHasTheScreenFileRewrittenFromThenOn) {
    WriteFile("x.t3b", "");
    WriteFile("dir/x", "");
    WriteFile("files/sfg/zor$y$/DPS00001.t3b", "");
    const std::string rewrite = "screen files/sfg/zor$y$/DPS00007.t3b";
    Convert({"grolof", "-d", "x.t3b"});
    EXPECT_THAT(s_notes.Calls, testing::Contains(rewrite));
    s_notes = Notes();
    Convert({"grolof", "-d", "dir/x"});
    EXPECT_THAT(s_notes.Calls, testing::Contains(rewrite));
    s_notes = Notes();
    const Outcome outcome = Convert({"grolof", "-d", "1", "x.t3b", "1"});
    EXPECT_EQ(2, std::count(s_notes.Calls.begin(), s_notes.Calls.end(), rewrite));
    EXPECT_THAT(outcome.Output, HasSubstr("Skip rewrite: "));
}

TEST_F(Conversion, AnyRecordedLetterHasTheScreenFileRewritten) {
    WriteFile("files/sfg/zor$y$/DPS00001.t3b", "");
    for (const char* letter :
         {"-B", "-c", "-C", "-j", "-J", "-n", "-s", "-S", "-u", "-U", "-r", "-R"}) {
        const Outcome outcome = Convert({"grolof", "-d", letter, "1"});
        EXPECT_THAT(outcome.Output, HasSubstr("  Wrote screen file: ")) << letter;
    }
    for (const char* letter : {"-d", "-gzor$y$", "-wbooks"}) {
        const Outcome outcome = Convert({"grolof", "-d", letter, "1"});
        EXPECT_THAT(outcome.Output, HasSubstr("Skip rewrite: ")) << letter;
    }
}

struct LetterRow {
    const char* Options;
    std::int32_t Form::*Member;
    std::int32_t Before, After;
};

class Letters : public Conversion, public testing::WithParamInterface<LetterRow> {};

TEST_P(Letters, AreAppliedToALoadedForm) {
    WriteFile("x.t3b", "");
    const LetterRow& row = GetParam();
    s_screens.front().*row.Member = row.Before;
    Convert({"grolof", row.Options, "-d", "x.t3b"});
    EXPECT_EQ(row.After, s_notes.Seen.*row.Member);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Letters,
    testing::Values(
        LetterRow{"-s", &Form::NumericName, 1, 1}, LetterRow{"-n", &Form::NumericName, 0, 1},
        LetterRow{"-N", &Form::NumericName, 1, 0}, LetterRow{"-nN", &Form::NumericName, 1, 0},
        LetterRow{"-Nn", &Form::NumericName, 1, 0}, LetterRow{"-c", &Form::IgnoreCase, 0, 1},
        LetterRow{"-C", &Form::IgnoreCase, 1, 0}, LetterRow{"-Cc", &Form::IgnoreCase, 1, 0},
        LetterRow{"-j", &Form::IgnoreJustification, 0, 1},
        LetterRow{"-J", &Form::IgnoreJustification, 1, 0},
        LetterRow{"-Jj", &Form::IgnoreJustification, 1, 0},
        LetterRow{"-u", &Form::_24x79Unprotected, 0, 1},
        LetterRow{"-U", &Form::_24x79Unprotected, 1, 0},
        LetterRow{"-Uu", &Form::_24x79Unprotected, 1, 0},
        LetterRow{"-B", &Form::InputBlankWhenZero, 0, 1},
        LetterRow{"-n", &Form::InputBlankWhenZero, 1, 1}, LetterRow{"-r", &Form::RedefInit, 0, 1},
        LetterRow{"-R", &Form::RedefInit, 1, 0}, LetterRow{"-Rr", &Form::RedefInit, 1, 0}));

TEST_F(Conversion, FormWithoutATypeBecomesADpsForm) {
    WriteFile("x.t3b", "");
    SetScreen(FormNamed("MENU", 7, FormKind::None));
    Convert({"grolof", "-d", "x.t3b"});
    EXPECT_EQ(FormKind::Dps, s_notes.Seen.FormType);
    SetScreen(FormNamed("MENU", 7, FormKind::Sfs));
    Convert({"grolof", "-d", "x.t3b"});
    EXPECT_EQ(FormKind::Sfs, s_notes.Seen.FormType);
}

TEST_F(Conversion, RewriteOnly) {
    WriteFile("x.t3b", "");
    const Outcome outcome = Convert({"grolof", "-x", "x.t3b"});
    EXPECT_EQ(0, outcome.Status);
    EXPECT_EQ("Loaded MENU from file: x.t3b\n"
              "Skip write: ./SCREEN-MENU-7\n"
              "  Wrote screen file: files/sfg/zor$y$/DPS00007.t3b\n"
              "Skip write: files/mcs/ZOR$Y$/DPS00007.t3z\n",
              outcome.Output);
    EXPECT_THAT(s_notes.Calls,
                ElementsAre("definition x.t3b", "screen files/sfg/zor$y$/DPS00007.t3b", kLibrary[0],
                            kLibrary[1]));
}

TEST_F(Conversion, RewriteOnlyNeedsNoLetter) {
    WriteFile("files/sfg/zor$y$/DPS00001.t3b", "");
    EXPECT_THAT(Convert({"grolof", "-x", "1"}).Output, HasSubstr("  Wrote screen file: "));
}

TEST_F(Conversion, RewriteOnlyStillWritesTheInitialisationBook) {
    WriteFile("x.t3b", "");
    EXPECT_THAT(Convert({"grolof", "-x", "-r", "x.t3b"}).Output,
                testing::EndsWith("Wrote DPS COPY book: ./SCREEN-MENU-7-INIT\n"));
}

// --- BMS ---------------------------------------------------------------------------------------

TEST_F(Conversion, MapSetOfThreeMaps) {
    s_screens.clear();
    for (const char* name : {"MAP1", "MAP2", "MAP3"})
        s_screens.push_back(MapNamed(name, "SET"));
    const Outcome outcome = Convert({"bmsgrolof", "-w", "books", "set"});
    const auto map = [](const std::string& name, const std::string& said) {
        return said + " BMS COPY book: books/SET\n" + "  Wrote screen file: files/sfg/zor$y$/" +
               name + ".t3b\n" + "   Wrote MCS format: files/mcs/ZOR$Y$/" + name + ".t3z\n";
    };
    EXPECT_EQ(map("MAP1", "Wrote") + map("MAP2", "Continue") + map("MAP3", "Continue"),
              outcome.Output);
    EXPECT_THAT(s_notes.Calls, AllOf(testing::Contains("bms set 1"),
                                     testing::Contains("map books/SET 10").Times(1),
                                     testing::Contains("map books/SET 11").Times(2)));
    EXPECT_EQ(0, s_notes.Seen.NumericName) << "maps are stored under their names";
}

TEST_F(Conversion, EveryOperandIsBmsInBmsMode) {
    s_notes.NoList = true;
    Convert({"bmsgrolof", "-d", "x.t3b", "12"});
    Convert({"grolof", "-b", "-x", "x.t3b"});
    EXPECT_THAT(s_notes.Calls, ElementsAre("bms x.t3b 1", "bms 12 1", "bms x.t3b 1"));
}

TEST_F(Conversion, BmsOperandSwitchesTheRestOfTheRun) {
    s_notes.NoList = true;
    Convert({"grolof", "a", "x.bms.old", "b"});
    Convert({"grolof", "a"});
    EXPECT_THAT(s_notes.Calls, ElementsAre("fldp a 1", "bms x.bms.old 1", "bms b 1", "fldp a 1"));
}

TEST_F(Conversion, LoadedBmsFormTurnsBmsModeOn) {
    WriteFile("x.t3b", "");
    SetScreen(MapNamed("MAP1", "SET"));
    const Outcome outcome = Convert({"grolof", "-d", "x.t3b", "x.t3b"});
    EXPECT_THAT(outcome.Output,
                testing::StartsWith("Loaded BMS MAP1 from file: x.t3b\n"
                                    "Wrote BMS COPY book: ./SET\n"
                                    "  Wrote screen file: files/sfg/zor$y$/MAP1.t3b\n"));
    EXPECT_THAT(s_notes.Calls, AllOf(testing::Contains("definition x.t3b").Times(1),
                                     testing::Contains("bms x.t3b 1").Times(1)));
}

TEST_F(Conversion, BmsBookIsWrittenUnderRewriteOnly) {
    WriteFile("x.t3b", "");
    SetScreen(MapNamed("MAP1", "SET"));
    EXPECT_EQ("Loaded BMS MAP1 from file: x.t3b\n"
              "Wrote BMS COPY book: ./SET\n"
              "  Wrote screen file: files/sfg/zor$y$/MAP1.t3b\n"
              "Skip write: files/mcs/ZOR$Y$/MAP1.t3z\n",
              Convert({"grolof", "-x", "x.t3b"}).Output);
}

TEST_F(Conversion, BmsBookThatFails) {
    SetScreen(MapNamed("MAP1", "SET"));
    s_notes.BookFails = true;
    EXPECT_THAT(Convert({"bmsgrolof", "set"}).Output,
                testing::StartsWith("Problem trying to write: ./SET\n"));
}

TEST_F(Conversion, BmsSourceTakesNoOptionLetters) {
    SetScreen(MapNamed("MAP1", "SET"));
    Convert({"bmsgrolof", "-cr", "set"});
    EXPECT_EQ(0, s_notes.Seen.IgnoreCase);
    EXPECT_EQ(0, s_notes.Seen.RedefInit);
}

TEST_F(Conversion, DefinitionModeKeepsTheScreenFileOfABmsSourceToo) {
    SetScreen(MapNamed("MAP1", "SET"));
    EXPECT_THAT(Convert({"bmsgrolof", "-d", "set"}).Output,
                HasSubstr("Skip rewrite: files/sfg/zor$y$/MAP1.t3b\n"));
}

TEST_F(Conversion, BrokenMapEndsTheRunAfterTheOthers) {
    s_screens.clear();
    s_screens.push_back(MapNamed("MAP1", "SET"));
    s_screens.push_back(MapNamed("MAP2", "SET"));
    s_screens.back().Name.reset();
    const Outcome outcome = Convert({"bmsgrolof", "set"});
    EXPECT_EQ(255, outcome.Status);
    EXPECT_THAT(outcome.Output, AllOf(testing::StartsWith("Wrote BMS COPY book: ./SET\n"),
                                      testing::EndsWith("Badly constructed parse tree!\n")));
}

TEST_F(Conversion, ShellIsSetForTheScreenLibraryNotForTheCheckOut) {
    // The check-out comes first, so it sees the starter's SHELL.
    mkdir("books", 0777);
    chmod("books", 0777);
    chmod(WriteFile("books/SCREEN-MENU-7", "").c_str(), 0444);
    CaptureStdout output;
    static constexpr auto showShell = [](const char* command) {
        std::printf("%.6s %s\n", command, std::getenv("SHELL"));
        return 0;
    };
    EXPECT_TRUE(AsOrdinaryUser([] {
        Converters converters = kNoteTakers;
        converters.RunShell = showShell;
        grolof::Run run{Settings{}, converters};
        run.settings.CopyDirectory = "books";
        ConvertFile(run, "file");
        return true;
    }));
    EXPECT_EQ("cd boo /bin/none\n"
              "cd boo /bin/none\n"
              "No write permission for: books/SCREEN-MENU-7\n"
              "Wrote DPS COPY book: ./SCREEN-MENU-7\n"
              "  Wrote screen file: files/sfg/zor$y$/DPS00007.t3b\n"
              "   Wrote MCS format: files/mcs/ZOR$Y$/DPS00007.t3z\n"
              "scrlib /bin/sh\n"
              "touch  /bin/sh\n",
              output.Take());
}

} // namespace
} // namespace grolof
