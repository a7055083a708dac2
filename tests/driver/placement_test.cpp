// Paths, directories and the commands around the outputs.
#include "driver/placement.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "driver_testing.h"

namespace grolof {
namespace {

using namespace testing_support;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

Form FormNamed(const char* name, std::int32_t number = 7) {
    Form form{};
    form.Type = RecordType::Form;
    form.Name = name;
    form.Number = number;
    form.NumericName = 1;
    return form;
}

std::vector<std::string> s_commands;
int s_commandResult = 0;

int NoteCommand(const char* command) {
    s_commands.emplace_back(command);
    return s_commandResult;
}

class Placement : public Installation {
protected:
    Placement() {
        s_commands.clear();
        s_commandResult = 0;
    }

    std::string DpsPath(const Form& form = FormNamed("MENU")) const {
        return PlaceDpsCopyBook(m_settings, form).Path.Text;
    }

    Settings m_settings;
};

// --- texts -------------------------------------------------------------------------------------

TEST(PlacementTexts, FitUpTo255Bytes) {
    CaptureStderr errors;
    EXPECT_TRUE(FitsText(std::string(255, 'a')));
    EXPECT_TRUE(FitsText(""));
    EXPECT_FALSE(FitsText(std::string(256, 'a')));
    EXPECT_EQ(std::string(256, 'a') + ": too long\n", errors.Take());
}

TEST(PlacementTexts, NumberedName) {
    EXPECT_EQ("DPS00042", NumberedName(42));
    EXPECT_EQ("DPS00000", NumberedName(0));
    EXPECT_EQ("DPS1234567", NumberedName(1234567));
    EXPECT_EQ("DPS-0001", NumberedName(-1));
    EXPECT_EQ("DPS-2147483648", NumberedName(-2147483647 - 1));
}

TEST(PlacementTexts, CopyBookName) {
    EXPECT_EQ("SCREEN-MENU-7", CopyBookName(FormNamed("MENU")));
    EXPECT_EQ("SCREEN--1000", CopyBookName(FormNamed("", 1000)));
}

TEST(PlacementTexts, QuotedSlotEndsAndReopensTheQuotesAtAnApostrophe) {
    EXPECT_EQ("a b$(c)\"", QuotedSlot("a b$(c)\""));
    EXPECT_EQ("it'\\''s", QuotedSlot("it's"));
    EXPECT_EQ("'\\'''\\''", QuotedSlot("''"));
}

TEST(PlacementTexts, BareSlotIsQuotedOnlyWhenItMust) {
    const std::string plain = "azAZ09_./-+,@%:=";
    EXPECT_EQ(plain, BareSlot(plain));
    EXPECT_EQ("", BareSlot(""));
    for (const char c : std::string(" !\"#$&'()*;<>?[\\]^`{|}~\n\t\x80\xff")) {
        const std::string inside = c == '\'' ? "'\\''" : std::string(1, c);
        EXPECT_EQ("'a" + inside + "'", BareSlot(std::string("a") + c));
    }
}

// --- directories -------------------------------------------------------------------------------

struct NormalRow {
    const char* Path;
    const char* Normal;
};

class Normalised : public Placement, public testing::WithParamInterface<NormalRow> {};

TEST_P(Normalised, PairsOfSlashesBecomeOneThenATrailingOneGoes) {
    std::string path = GetParam().Path;
    EXPECT_EQ(0, MakeDirectories(path));
    EXPECT_EQ(GetParam().Normal, path);
}

INSTANTIATE_TEST_SUITE_P(Table, Normalised,
                         testing::Values(NormalRow{"", ""}, NormalRow{"a", "a"},
                                         NormalRow{"a/", "a"}, NormalRow{"a//b", "a/b"},
                                         NormalRow{"a///b", "a//b"}, NormalRow{"a////b", "a//b"},
                                         NormalRow{"a/////b", "a///b"},
                                         NormalRow{"a//b///c/", "a/b//c"}, NormalRow{"a//", "a"},
                                         NormalRow{"a///", "a/"}, NormalRow{"/", ""},
                                         NormalRow{"//", ""}, NormalRow{"///", "/"},
                                         NormalRow{"//tmp", "/tmp"}));

TEST_F(Placement, MakesEveryDirectoryButTheLastComponent) {
    std::string path = "a//b///c/";
    EXPECT_EQ(0, MakeDirectories(path));
    EXPECT_EQ("a/b//c", path);
    EXPECT_TRUE(fs::is_directory("a/b"));
    EXPECT_FALSE(PathExists("a/b/c"));
}

TEST_F(Placement, DirectoriesAreMadeForGroupToo) {
    const mode_t mask = umask(0);
    std::string path = "a/b/c";
    EXPECT_EQ(0, MakeDirectories(path));
    umask(mask);
    EXPECT_EQ(0775U, FileMode("a"));
    EXPECT_EQ(0775U, FileMode("a/b"));
}

TEST_F(Placement, AbsolutePathsAreWalkedFromTheirFirstComponent) {
    std::string path = m_top.File("x/y/z");
    EXPECT_EQ(0, MakeDirectories(path));
    EXPECT_EQ(m_top.File("x/y/z"), path);
    EXPECT_TRUE(fs::is_directory(m_top.File("x/y")));
}

TEST_F(Placement, ComponentThatIsNoDirectory) {
    WriteFile("a/file", "");
    std::string path = "a//file/c/d";
    CaptureStderr errors;
    EXPECT_EQ(13, MakeDirectories(path));
    EXPECT_EQ("ERROR a/file is not a directory\n", errors.Take());
    EXPECT_EQ("a/file/c/d", path);
}

TEST_F(Placement, DirectoryThatCannotBeMade) {
    fs::create_symlink("nowhere/at/all", "dangling");
    std::string path = "dangling/b";
    CaptureStderr errors;
    EXPECT_EQ(EEXIST, MakeDirectories(path));
    EXPECT_EQ("ERROR mkdir File exists at dangling\n", errors.Take());
}

TEST_F(Placement, DirectoryThatAnotherProcessMakesMeanwhileIsNoError) {
    constexpr int kProcesses = 8;
    constexpr int kRounds = 200;
    CaptureStderr errors;
    int gate[2]; // closed by the parent when all children stand ready
    ASSERT_EQ(0, pipe(gate));
    std::vector<pid_t> children;
    children.reserve(kProcesses);
    for (int i = 0; i < kProcesses; ++i) {
        children.push_back(fork());
        if (children.back() != 0)
            continue;
        char none = 0;
        close(gate[1]);
        int failures = read(gate[0], &none, 1) == 0 ? 0 : 1;
        for (int round = 0; round < kRounds; ++round) {
            std::string path = std::to_string(round) + "/a/b/c/file";
            failures += MakeDirectories(path) != 0;
        }
        _exit(failures == 0 ? 0 : 1);
    }
    close(gate[0]);
    close(gate[1]);
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(0, status);
    }
    EXPECT_EQ("", errors.Take());
}

TEST_F(Placement, DirectoryThatMayNotBeMade) {
    fs::create_directory("closed");
    chmod("closed", 0555);
    CaptureStderr errors;
    EXPECT_TRUE(AsOrdinaryUser([] {
        std::string path = "closed/a/b";
        return MakeDirectories(path) == EACCES;
    }));
    EXPECT_EQ("ERROR mkdir Permission denied at closed/a\n", errors.Take());
}

TEST_F(Placement, DirectoryIsWritable) {
    WriteFile("file", "");
    CaptureStderr errors;
    EXPECT_TRUE(DirectoryIsWritable("."));
    EXPECT_FALSE(DirectoryIsWritable("missing"));
    EXPECT_FALSE(DirectoryIsWritable("file"));
    EXPECT_EQ("", errors.Take()) << "a silent no";
}

TEST_F(Placement, DirectoryWithoutPermissionIsReported) {
    fs::create_directory("closed");
    chmod("closed", 0555);
    CaptureStderr errors;
    EXPECT_TRUE(AsOrdinaryUser([] { return !DirectoryIsWritable("closed"); }));
    EXPECT_EQ("closed has no permission\n", errors.Take());
}

// --- COPY book paths ---------------------------------------------------------------------------

TEST_F(Placement, CopyOptionComesFirst) {
    const ScopedVariable out("DPSOUTDIR", "out");
    m_settings.CopyDirectory = "books";
    EXPECT_EQ("books/SCREEN-MENU-7", DpsPath());
    m_settings.CopyDirectory = "!";
    EXPECT_EQ("!/SCREEN-MENU-7", DpsPath());
    for (const char* none : {"", " books", "\x1f", "\x80"}) {
        m_settings.CopyDirectory = none;
        EXPECT_EQ("out/SCREEN-MENU-7", DpsPath());
    }
}

TEST_F(Placement, OutputVariableComesBeforeTheSite) {
    fs::create_directories("site/cpy");
    const ScopedVariable site("ZORSITE", "site");
    {
        const ScopedVariable out("DPSOUTDIR", "out");
        EXPECT_EQ("out/SCREEN-MENU-7", DpsPath());
    }
    {
        const ScopedVariable out("DPSOUTDIR", "");
        EXPECT_EQ("/SCREEN-MENU-7", DpsPath()) << "set and empty is set";
    }
    EXPECT_EQ("site/cpy/SCREEN-MENU-7", DpsPath());
}

TEST_F(Placement, SiteCpyNeedNotBeADirectory) {
    WriteFile("site/cpy", "");
    fs::create_directories("files/copy");
    const ScopedVariable site("ZORSITE", "site");
    EXPECT_EQ("site/cpy/SCREEN-MENU-7", DpsPath());
}

TEST_F(Placement, FilesCopyDirectory) {
    fs::create_directories("files/copy");
    fs::create_directories("inst/cpy");
    fs::create_directories("../cpy");
    const ScopedVariable site("ZORSITE", "site");
    const ScopedVariable root("ZORROOT", "inst");
    EXPECT_EQ("files/copy/SCREEN-MENU-7", DpsPath());
}

// What stands where, and where the COPY book goes without a base.
struct UnbasedRow {
    bool CopyIsFile; // the files directory's copy entry is a file; else there is none
    bool Site;       // ZORSITE is set (without a cpy)
    bool ParentCpy;  // ../cpy exists
    bool Root;       // ZORROOT is set
    bool RootCpy;    // and has a cpy
    const char* Path;
};

class Unbased : public Placement, public testing::WithParamInterface<UnbasedRow> {};

TEST_P(Unbased, GoesWhereTheRulesSay) {
    const UnbasedRow& row = GetParam();
    if (row.CopyIsFile)
        WriteFile("files/copy", "");
    if (row.ParentCpy)
        fs::create_directory("../cpy");
    if (row.RootCpy)
        fs::create_directories("inst/cpy");
    const ScopedVariable site("ZORSITE", row.Site ? "site" : nullptr);
    const ScopedVariable root("ZORROOT", row.Root ? "inst" : nullptr);
    EXPECT_EQ(row.Path, DpsPath());
}

INSTANTIATE_TEST_SUITE_P(Table, Unbased,
                         testing::Values(
                             // A copy entry that is no directory: ../cpy is not looked at.
                             UnbasedRow{true, true, true, true, true, "./SCREEN-MENU-7"},
                             UnbasedRow{true, false, true, true, true, "inst/cpy/SCREEN-MENU-7"},
                             UnbasedRow{true, false, true, true, false, "./SCREEN-MENU-7"},
                             UnbasedRow{true, false, true, false, true, "./SCREEN-MENU-7"},
                             // No copy entry: a site without a cpy still hides ../cpy and the root.
                             UnbasedRow{false, true, true, true, true, "./SCREEN-MENU-7"},
                             UnbasedRow{false, false, true, true, true, "../cpy/SCREEN-MENU-7"},
                             UnbasedRow{false, false, true, false, false, "../cpy/SCREEN-MENU-7"},
                             UnbasedRow{false, false, false, true, true, "inst/cpy/SCREEN-MENU-7"},
                             UnbasedRow{false, false, false, true, false, "./SCREEN-MENU-7"},
                             UnbasedRow{false, false, false, false, true, "./SCREEN-MENU-7"}));

TEST_F(Placement, VariableTooLongToAskForIsNotPassedOver) {
    const std::string longSite(252, 's');
    const ScopedVariable site("ZORSITE", longSite.c_str());
    EXPECT_EQ(longSite + "/cpy/SCREEN-MENU-7", DpsPath());
}

Form MapNamed(const char* name, const char* copyName) {
    Form form = FormNamed(name);
    form.FormType = FormKind::Bms;
    if (copyName != nullptr)
        form.CopyName = copyName;
    return form;
}

TEST_F(Placement, BmsBookGoesUnderTheCopyBase) {
    m_settings.CopyDirectory = "books//x/";
    const Form form = MapNamed("MAP1", "MAPSET");
    CopyBookPlace place = PlaceDpsCopyBook(m_settings, form);
    FormBmsCopyBookPath(place, form);
    EXPECT_EQ("books//x//MAPSET", place.Path.Text);
    FormBmsCopyBookPath(place, form);
    EXPECT_EQ("books//x//MAPSET", place.Path.Text);

    m_settings.CopyDirectory = "";
    const ScopedVariable out("DPSOUTDIR", "out");
    place = PlaceDpsCopyBook(m_settings, form);
    FormBmsCopyBookPath(place, form);
    EXPECT_EQ("out/MAPSET", place.Path.Text);
}

TEST_F(Placement, BmsBookWithoutCopyNameHasTheFormsName) {
    m_settings.CopyDirectory = "books";
    const Form form = MapNamed("MAP1", nullptr);
    CopyBookPlace place = PlaceDpsCopyBook(m_settings, form);
    FormBmsCopyBookPath(place, form);
    EXPECT_EQ("books/MAP1", place.Path.Text);
}

TEST_F(Placement, BmsBookNestsUnderTheSiteAtEachForming) {
    fs::create_directories("site/cpy");
    const ScopedVariable site("ZORSITE", "site//");
    const Form form = MapNamed("MAP1", "SET");
    CopyBookPlace place = PlaceDpsCopyBook(m_settings, form);
    EXPECT_EQ("site///cpy/SCREEN-MAP1-7", place.Path.Text);
    FormBmsCopyBookPath(place, form);
    EXPECT_EQ("site///cpy/SCREEN-MAP1-7/SET", place.Path.Text);
    PrepareCopyBook(place, m_settings, form, NoteCommand);
    // Normalised twice: three slashes become two, and two one.
    EXPECT_EQ("site/cpy/SCREEN-MAP1-7/SET", place.Path.Text);
    FormBmsCopyBookPath(place, form);
    EXPECT_EQ("site/cpy/SCREEN-MAP1-7/SET/SET", place.Path.Text);
    EXPECT_TRUE(fs::is_directory("site/cpy/SCREEN-MAP1-7"));
}

TEST_F(Placement, BmsBookWithoutABase) {
    fs::create_directories("files/copy"); // counts for DPS COPY books only
    const Form form = MapNamed("MAP1", "SET");
    const auto path = [&] {
        CopyBookPlace place = PlaceDpsCopyBook(m_settings, form);
        FormBmsCopyBookPath(place, form);
        return place.Path.Text;
    };
    WriteFile("../cpy", "");
    WriteFile("cpy", "");
    EXPECT_EQ("./SET", path());
    fs::remove("cpy");
    fs::create_directory("cpy");
    EXPECT_EQ("./cpy/SET", path());
    fs::remove("../cpy");
    fs::create_directory("../cpy");
    EXPECT_EQ("../cpy/SET", path());
}

TEST_F(Placement, BmsPathTooLongIsReportedOnce) {
    m_settings.CopyDirectory = std::string(250, 'd');
    const Form form = MapNamed("M", "SETSET");
    CopyBookPlace place = PlaceDpsCopyBook(m_settings, form);
    CaptureStderr errors;
    FormBmsCopyBookPath(place, form);
    FormBmsCopyBookPath(place, form);
    EXPECT_FALSE(place.Path.Fits);
    EXPECT_EQ(m_settings.CopyDirectory + "/SETSET: too long\n", errors.Take());
}

// --- a read-only COPY book ---------------------------------------------------------------------

TEST_F(Placement, WritableOrMissingBookNeedsNoCheckOut) {
    m_settings.CopyDirectory = "books//";
    const Form form = FormNamed("MENU");
    CopyBookPlace place = PlaceDpsCopyBook(m_settings, form);
    CaptureStdout output;
    PrepareCopyBook(place, m_settings, form, NoteCommand);
    EXPECT_EQ("books/SCREEN-MENU-7", place.Path.Text);
    WriteFile("books/SCREEN-MENU-7", "");
    PrepareCopyBook(place, m_settings, form, NoteCommand);
    EXPECT_EQ("", output.Take());
    EXPECT_THAT(s_commands, IsEmpty());
}

// What a check-out attempt did, from a child that is no super-user.
struct CheckOutOutcome {
    std::string Output;
    std::string Errors;
    bool Good;
};

template <class Expectation>
CheckOutOutcome TryCheckOut(const Settings& settings, const Form& form,
                            int (*runShell)(const char*), Expectation expectation) {
    CaptureStdout output;
    CaptureStderr errors;
    const bool good = AsOrdinaryUser([&] {
        CopyBookPlace place = PlaceDpsCopyBook(settings, form);
        PrepareCopyBook(place, settings, form, runShell);
        return expectation(place.Path.Text);
    });
    return {output.Take(), errors.Take(), good};
}

TEST_F(Placement, FailedCheckOutFallsBackToTheCurrentDirectory) {
    m_settings.CopyDirectory = "books";
    chmod(WriteFile("books/SCREEN-MENU-7", "").c_str(), 0444);
    const auto outcome =
        TryCheckOut(m_settings, FormNamed("MENU"), NoteCommand, [](const std::string& path) {
            return path == "./SCREEN-MENU-7" &&
                   s_commands == std::vector<std::string>{"cd books; claimsrc SCREEN-MENU-7",
                                                          "cd books; chmod a+rw SCREEN-MENU-7"};
        });
    EXPECT_TRUE(outcome.Good);
    EXPECT_EQ("No write permission for: books/SCREEN-MENU-7\n", outcome.Output);
    EXPECT_EQ("", outcome.Errors);
}

int GrantAtClaim(const char* command) {
    if (std::string(command).find("claimsrc") != std::string::npos)
        rename("spare", "books/SCREEN-MENU-7");
    return 1; // the results of the commands are of no account
}

TEST_F(Placement, CheckOutThatSucceeds) {
    m_settings.CopyDirectory = "books";
    chmod(WriteFile("books/SCREEN-MENU-7", "").c_str(), 0444);
    chmod("books", 0777);
    chmod(WriteFile("spare", "").c_str(), 0666);
    const auto outcome =
        TryCheckOut(m_settings, FormNamed("MENU"), GrantAtClaim,
                    [](const std::string& path) { return path == "books/SCREEN-MENU-7"; });
    EXPECT_TRUE(outcome.Good);
    EXPECT_EQ("Checked out of CVS: books/SCREEN-MENU-7\n", outcome.Output);
}

TEST_F(Placement, RewritingTheScreenFileOnlyChecksNothingOut) {
    m_settings.CopyDirectory = "books";
    m_settings.RewriteOnly = true;
    chmod(WriteFile("books/SCREEN-MENU-7", "").c_str(), 0444);
    const auto outcome =
        TryCheckOut(m_settings, FormNamed("MENU"), NoteCommand, [](const std::string& path) {
            return path == "books/SCREEN-MENU-7" && s_commands.empty();
        });
    EXPECT_TRUE(outcome.Good);
    EXPECT_EQ("", outcome.Output);
}

TEST_F(Placement, HostileNamesStayInTheirPlaceOfTheCommands) {
    m_settings.CopyDirectory = "my books";
    const Form form = FormNamed("A';$(B) C", -3);
    chmod(WriteFile("my books/SCREEN-A';$(B) C--3", "").c_str(), 0444);
    const auto outcome = TryCheckOut(m_settings, form, NoteCommand, [](const std::string&) {
        return s_commands ==
               std::vector<std::string>{"cd 'my books'; claimsrc SCREEN-'A'\\'';$(B) C'--3",
                                        "cd 'my books'; chmod a+rw SCREEN-'A'\\'';$(B) C'--3"};
    });
    EXPECT_TRUE(outcome.Good);
}

TEST_F(Placement, CheckOutCommandTooLongIsNotRun) {
    const std::string name(120, 'N');
    m_settings.CopyDirectory = std::string(115, 'd');
    const std::string book = "SCREEN-" + name + "-7";
    chmod(WriteFile(m_settings.CopyDirectory + "/" + book, "").c_str(), 0444);
    const auto outcome = TryCheckOut(m_settings, FormNamed(name.c_str()), NoteCommand,
                                     [](const std::string&) { return s_commands.empty(); });
    EXPECT_TRUE(outcome.Good);
    EXPECT_EQ("cd " + m_settings.CopyDirectory + "; claimsrc " + book + ": too long\n" + "cd " +
                  m_settings.CopyDirectory + "; chmod a+rw " + book + ": too long\n",
              outcome.Errors);
    EXPECT_EQ("No write permission for: " + m_settings.CopyDirectory + "/" + book + "\n",
              outcome.Output);
}

// --- screen files and formats ------------------------------------------------------------------

TEST_F(Placement, NumericScreensAreStoredUnderTheirNumber) {
    const Form form = FormNamed("Menu", 42);
    EXPECT_EQ("files/sfg/zor$y$/DPS00042.t3b", PrepareScreenFile(m_settings, form).Text);
    EXPECT_EQ("files/mcs/ZOR$Y$/DPS00042.t3z", PrepareMcsFormat(m_settings, form).Text);
    EXPECT_TRUE(fs::is_directory("files/sfg/zor$y$"));
    EXPECT_TRUE(fs::is_directory("files/mcs/ZOR$Y$"));
}

TEST_F(Placement, NamedScreensAndBmsMode) {
    Form form = FormNamed("Menu", 42);
    m_settings.BmsMode = true; // decides about the screen file only
    EXPECT_EQ("files/sfg/zor$y$/Menu.t3b", PrepareScreenFile(m_settings, form).Text);
    EXPECT_EQ("files/mcs/ZOR$Y$/DPS00042.t3z", PrepareMcsFormat(m_settings, form).Text);
    m_settings.BmsMode = false;
    form.NumericName = 0;
    SetGroup(m_settings, "Q1");
    EXPECT_EQ("files/sfg/q1/Menu.t3b", PrepareScreenFile(m_settings, form).Text);
    EXPECT_EQ("files/mcs/Q1/Menu.t3z", PrepareMcsFormat(m_settings, form).Text);
}

TEST_F(Placement, ScreenFilePathsAreNormalised) {
    Form form = FormNamed("a//b/");
    form.NumericName = 0;
    EXPECT_EQ("files/sfg/zor$y$/a/b/.t3b", PrepareScreenFile(m_settings, form).Text);
    EXPECT_TRUE(fs::is_directory("files/sfg/zor$y$/a/b"));
}

TEST_F(Placement, StaleScreenFilesAreRemoved) {
    const Form form = FormNamed("Menu", 42);
    for (const char* name : {"Menu.xml", "Menu.sfg", "MENU.xml", "DPS00042.xml", "Menu.t3b"})
        WriteFile(std::string("files/sfg/zor$y$/") + name, "");
    PrepareScreenFile(m_settings, form);
    std::vector<std::string> left;
    for (const auto& entry : fs::directory_iterator("files/sfg/zor$y$"))
        left.push_back(entry.path().filename());
    EXPECT_THAT(left, testing::UnorderedElementsAre("MENU.xml", "DPS00042.xml", "Menu.t3b"));
}

TEST_F(Placement, StaleDirectoryStays) {
    fs::create_directories("files/sfg/zor$y$/Menu.xml");
    PrepareScreenFile(m_settings, FormNamed("Menu"));
    EXPECT_TRUE(fs::is_directory("files/sfg/zor$y$/Menu.xml"));
}

TEST_F(Placement, ScreenPathsTooLongAreReported) {
    Form form = FormNamed("");
    form.Name = std::string(240, 'N');
    form.NumericName = 0;
    const std::string stem = "files/sfg/zor$y$/" + *form.Name;
    CaptureStderr errors;
    EXPECT_FALSE(PrepareScreenFile(m_settings, form).Fits);
    EXPECT_FALSE(PrepareMcsFormat(m_settings, form).Fits);
    EXPECT_EQ(stem + ".t3b: too long\n" + stem + ".xml: too long\n" + stem + ".sfg: too long\n" +
                  "files/mcs/ZOR$Y$/" + *form.Name + ".t3z: too long\n",
              errors.Take());
    EXPECT_FALSE(PathExists("files"));
}

// --- shell and screen library ------------------------------------------------------------------

TEST_F(Placement, ShellEntry) {
    EXPECT_EQ("SHELL=/bin/sh", PutShellEntry());
    EXPECT_STREQ("/bin/sh", std::getenv("SHELL"));
    chmod(WriteFile("sh", "").c_str(), 0755);
    EXPECT_EQ("SHELL=./sh", PutShellEntry());
    EXPECT_STREQ("./sh", std::getenv("SHELL"));
}

TEST_F(Placement, ShellEntryWithoutAShellToBeFound) {
    const ScopedVariable path("ZORPATH", "nowhere");
    EXPECT_EQ("SHELL=/bin/sh", PutShellEntry());
}

// "SHELL=", the directory and "/sh" have 256 characters: one more than fit.
TEST_F(Placement, ShellEntryOfAShellThatIsTooDeep) {
    std::string directory(123, 'a');
    ASSERT_EQ(0, mkdir(directory.c_str(), 0755));
    directory += "/" + std::string(123, 'b');
    ASSERT_EQ(0, mkdir(directory.c_str(), 0755));
    chmod(WriteFile(directory + "/sh", "").c_str(), 0755);
    const ScopedVariable path("ZORPATH", directory.c_str());
    CaptureStderr errors;
    EXPECT_EQ("SHELL=/bin/sh", PutShellEntry());
    EXPECT_STREQ("/bin/sh", std::getenv("SHELL"));
}

TEST_F(Placement, SizeCheckNamesTheShellEntry) {
    CaptureStderr errors;
    CheckMcsFormatSize(WriteFile("fits", std::string(2560, 'x')), "SHELL=/bin/sh");
    CheckMcsFormatSize(WriteFile("large", std::string(2561, 'x')), "SHELL=/bin/sh");
    CheckMcsFormatSize("missing", "SHELL=/bin/sh");
    EXPECT_EQ("Format file 'SHELL=/bin/sh' is too large!\n"
              "Problem writing 'SHELL=/bin/sh'\n",
              errors.Take());
}

TEST_F(Placement, OpenToEverybody) {
    WriteFile("file", "");
    chmod("file", 0400);
    OpenToEverybody({"file"});
    EXPECT_EQ(0666U, FileMode("file"));
    CaptureStderr errors;
    OpenToEverybody({"missing"});
    EXPECT_EQ("", errors.Take());
}

std::vector<unsigned> s_modesSeen;

int CloseAgain(const char* command) {
    s_commands.emplace_back(command);
    s_modesSeen.push_back(FileMode("x.t3z"));
    chmod("x.t3z", 0600);
    return 0;
}

TEST_F(Placement, ScreenLibraryCommands) {
    s_modesSeen.clear();
    chmod(WriteFile("x.t3z", "").c_str(), 0400);
    CaptureStdout output;
    EnterScreenLibrary({"x.t3z"}, m_settings, CloseAgain);
    EXPECT_EQ("", output.Take());
    EXPECT_THAT(s_commands, ElementsAre("scrlib IUQ 'x.t3z'", "touch 'files/mcs/ZOR$Y$'"));
    EXPECT_THAT(s_modesSeen, ElementsAre(0666U, 0666U)) << "opened before and after scrlib";
}

TEST_F(Placement, ScreenLibraryFailure) {
    s_commandResult = 256;
    CaptureStdout output;
    CaptureStderr errors;
    EnterScreenLibrary({"it's.t3z"}, m_settings, NoteCommand);
    const std::string problem = "Problem doing 'scrlib IUQ 'it'\\''s.t3z''\n";
    EXPECT_EQ(problem, output.Take());
    EXPECT_EQ(problem, errors.Take());
    EXPECT_EQ(2U, s_commands.size()) << "the group is touched all the same";
}

TEST_F(Placement, ScreenLibraryCommandTooLong) {
    const std::string path(244, 'p'); // 12 bytes around it make 256
    CaptureStdout output;
    CaptureStderr errors;
    EnterScreenLibrary({path}, m_settings, NoteCommand);
    const std::string command = "scrlib IUQ '" + path + "'";
    EXPECT_EQ("Problem doing '" + command + "'\n", output.Take());
    EXPECT_EQ(command + ": too long\nProblem doing '" + command + "'\n", errors.Take());
    EXPECT_THAT(s_commands, ElementsAre("touch 'files/mcs/ZOR$Y$'"));
}

} // namespace
} // namespace grolof
