#include "driver/placement.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

#include "driver/standard_streams.h"
#include "model/records.h"
#include "support/environment.h"
#include "support/installation.h"
#include "support/program_search.h"
#include "support/text.h"

namespace grolof {

namespace {

constexpr mode_t kDirectoryMode = 0775;
constexpr mode_t kEverybodyMode = 0666;

/// Largest MCS format that the screen handler takes, in bytes.
constexpr off_t kLargestMcsFormat = 2560;

enum class Entry { Missing, Directory, Other };

Entry EntryAt(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return Entry::Missing;
    return S_ISDIR(status.st_mode) ? Entry::Directory : Entry::Other;
}

bool IsWritable(const std::string& path) {
    return access(path.c_str(), W_OK) == 0;
}

// A variable that is set counts even when it is empty.
std::optional<std::string> Environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

OutputPath Bounded(std::string text) {
    OutputPath path{std::move(text)};
    path.Fits = FitsText(path.Text);
    return path;
}

void MakeDirectoriesOf(OutputPath& path) {
    if (path.Fits)
        MakeDirectories(path.Text);
}

} // namespace

bool FitsText(const std::string& text) {
    if (text.size() <= kLongestText)
        return true;
    std::fprintf(stderr, "%s: too long\n", text.c_str());
    return false;
}

bool PathExists(const std::string& path) {
    return EntryAt(path) != Entry::Missing;
}

bool DirectoryIsWritable(const std::string& path) {
    if (EntryAt(path) != Entry::Directory)
        return false;
    if (IsWritable(path))
        return true;
    std::fprintf(stderr, "%s has no permission\n", path.c_str());
    return false;
}

// --- directories -------------------------------------------------------------------------------

namespace {

void NormalisePath(std::string& path) {
    std::string normal;
    for (std::size_t i = 0; i < path.size(); ++i) {
        normal += path[i];
        if (path[i] == '/' && i + 1 < path.size() && path[i + 1] == '/')
            ++i;
    }
    if (!normal.empty() && normal.back() == '/')
        normal.pop_back();
    path = std::move(normal);
}

int NotADirectory(const std::string& path) {
    std::fprintf(stderr, "ERROR %s is not a directory\n", path.c_str());
    return EACCES;
}

int MakeDirectory(const std::string& path) {
    switch (EntryAt(path)) {
    case Entry::Directory:
        return 0;
    case Entry::Other:
        return NotADirectory(path);
    case Entry::Missing:
        break;
    }
    if (mkdir(path.c_str(), kDirectoryMode) == 0)
        return 0;
    const int error = errno;
    if (error == EEXIST && EntryAt(path) == Entry::Directory)
        return 0; // another process made it meanwhile
    std::fprintf(stderr, "ERROR mkdir %s at %s\n", std::strerror(error), path.c_str());
    return error;
}

} // namespace

int MakeDirectories(std::string& path) {
    NormalisePath(path);
    for (auto slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1))
        if (const int error = MakeDirectory(path.substr(0, slash)); error != 0)
            return error;
    return 0;
}

// --- COPY books --------------------------------------------------------------------------------

namespace {

// A directory whose cpy could not even be asked for is taken as having one: the COPY book's path
// under it is then too long as well, and is refused instead of going astray.
bool HasCpy(const std::string& directory) {
    const std::string cpy = directory + "/cpy";
    return cpy.size() > kLongestText || PathExists(cpy);
}

std::string CpyOrHere(const std::string& directory) {
    return HasCpy(directory) ? directory + "/cpy" : ".";
}

// "../cpy" counts only when the files directory has no copy entry at all; a copy entry that is
// no directory skips it.
std::string CopyDirectoryWithoutBase(const std::optional<std::string>& site) {
    std::string copy = zorsysfiles + "/copy";
    const Entry entry = EntryAt(copy);
    if (entry == Entry::Directory)
        return copy;
    if (site)
        return CpyOrHere(*site);
    if (entry == Entry::Missing && PathExists("../cpy"))
        return "../cpy";
    const auto root = Environment("ZORROOT");
    return root ? CpyOrHere(*root) : ".";
}

CopyBookPlace InDirectory(const std::string& directory, const std::string& book,
                          CopyBookPlace::Base base) {
    return {{directory + "/" + book}, base, directory};
}

} // namespace

std::string CopyBookName(const Form& form) {
    return "SCREEN-" + TextOf(form.Name) + "-" + std::to_string(form.Number);
}

CopyBookPlace PlaceDpsCopyBook(const Settings& settings, const Form& form) {
    using Base = CopyBookPlace::Base;
    const std::string book = CopyBookName(form);
    if (BeginsAboveBlank(settings.CopyDirectory))
        return InDirectory(settings.CopyDirectory, book, Base::Directory);
    if (const auto directory = Environment("DPSOUTDIR"))
        return InDirectory(*directory, book, Base::Directory);
    const auto site = Environment("ZORSITE");
    if (site && HasCpy(*site))
        return InDirectory(*site + "/cpy", book, Base::PathItself);
    return InDirectory(CopyDirectoryWithoutBase(site), book, Base::None);
}

void FormBmsCopyBookPath(CopyBookPlace& place, const Form& form) {
    const std::string book = "/" + (form.CopyName ? *form.CopyName : TextOf(form.Name));
    std::string& path = place.Path.Text;
    switch (place.BaseKind) {
    case CopyBookPlace::Base::Directory:
        path = place.BaseDirectory + book;
        break;
    case CopyBookPlace::Base::PathItself:
        path += book;
        break;
    case CopyBookPlace::Base::None:
        path = (DirectoryIsWritable("../cpy")  ? "../cpy"
                : DirectoryIsWritable("./cpy") ? "./cpy"
                                               : ".") +
               book;
        break;
    }
    // One report for each form is enough: what was refused stays refused.
    place.Path.Fits = place.Path.Fits && FitsText(path);
}

namespace {

int RunCommand(const std::string& command, int (*runShell)(const char*)) {
    if (!FitsText(command))
        return -1;
    FlushOutput();
    return runShell(command.c_str());
}

std::string DirectoryOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

void CheckOut(const std::string& path, const Form& form, int (*runShell)(const char*)) {
    const std::string change = "cd " + BareSlot(DirectoryOf(path)) + "; ";
    const std::string book =
        "SCREEN-" + BareSlot(TextOf(form.Name)) + "-" + std::to_string(form.Number);
    RunCommand(change + "claimsrc " + book, runShell);
    RunCommand(change + "chmod a+rw " + book, runShell);
}

void ClaimReadOnlyCopyBook(OutputPath& path, const Form& form, int (*runShell)(const char*)) {
    // Whether the directory is under version control is not looked at: the presence of the COPY
    // book itself decides.
    if (PathExists(path.Text))
        CheckOut(path.Text, form, runShell);
    if (IsWritable(path.Text)) {
        std::printf("Checked out of CVS: %s\n", path.Text.c_str());
        return;
    }
    std::printf("No write permission for: %s\n", path.Text.c_str());
    path = Bounded("./" + CopyBookName(form));
}

} // namespace

void PrepareCopyBook(CopyBookPlace& place, const Settings& settings, const Form& form,
                     int (*runShell)(const char*)) {
    OutputPath& path = place.Path;
    MakeDirectoriesOf(path);
    if (path.Fits && !settings.RewriteOnly && PathExists(path.Text) && !IsWritable(path.Text))
        ClaimReadOnlyCopyBook(path, form, runShell);
    MakeDirectoriesOf(path);
}

// --- screen definition file and MCS format -----------------------------------------------------

OutputPath PrepareScreenFile(const Settings& settings, const Form& form) {
    const std::string directory = zorsysfiles + "/sfg/" + settings.LowerGroup + "/";
    OutputPath path =
        Bounded(directory + (settings.BmsMode ? TextOf(form.Name) : StoredName(form)) + ".t3b");
    MakeDirectoriesOf(path);
    for (const char* suffix : {".xml", ".sfg"}) {
        const std::string stale = directory + TextOf(form.Name) + suffix;
        if (FitsText(stale))
            unlink(stale.c_str());
    }
    return path;
}

OutputPath PrepareMcsFormat(const Settings& settings, const Form& form) {
    OutputPath path =
        Bounded(zorsysfiles + "/mcs/" + settings.UpperGroup + "/" + StoredName(form) + ".t3z");
    MakeDirectoriesOf(path);
    return path;
}

std::string PutShellEntry() {
    const char* found = ProgramSearch("sh");
    std::string entry = std::string("SHELL=") + (found != nullptr ? found : "/bin/sh");
    if (!FitsText(entry))
        entry = "SHELL=/bin/sh";
    EnvironmentPut(entry);
    return entry;
}

void CheckMcsFormatSize(const std::string& path, const std::string& shellEntry) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        std::fprintf(stderr, "Problem writing '%s'\n", shellEntry.c_str());
    else if (status.st_size > kLargestMcsFormat)
        std::fprintf(stderr, "Format file '%s' is too large!\n", shellEntry.c_str());
    std::fflush(stderr);
}

void OpenToEverybody(const OutputPath& path) {
    if (path.Fits)
        static_cast<void>(chmod(path.Text.c_str(), kEverybodyMode));
}

// --- commands ----------------------------------------------------------------------------------

void EnterScreenLibrary(const OutputPath& mcsFormat, const Settings& settings,
                        int (*runShell)(const char*)) {
    OpenToEverybody(mcsFormat);
    const std::string enter = "scrlib IUQ '" + QuotedSlot(mcsFormat.Text) + "'";
    if (RunCommand(enter, runShell) != 0) {
        std::printf("Problem doing '%s'\n", enter.c_str());
        FlushOutput();
        std::fprintf(stderr, "Problem doing '%s'\n", enter.c_str());
        std::fflush(stderr);
    }
    OpenToEverybody(mcsFormat);
    RunCommand("touch '" + QuotedSlot(zorsysfiles + "/mcs/" + settings.UpperGroup) + "'", runShell);
}

std::string QuotedSlot(const std::string& text) {
    std::string slot;
    for (const char c : text) {
        if (c == '\'')
            slot += "'\\''";
        else
            slot += c;
    }
    return slot;
}

std::string BareSlot(const std::string& text) {
    constexpr const char* kPlain = "abcdefghijklmnopqrstuvwxyz"
                                   "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                   "0123456789_./-+,@%:=";
    const bool plain = text.find_first_not_of(kPlain) == std::string::npos;
    return plain ? text : "'" + QuotedSlot(text) + "'";
}

} // namespace grolof
