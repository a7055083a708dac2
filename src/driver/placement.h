// Where the outputs of a form go, and the commands around them: paths, directories, a read-only
// COPY book, the screen library.
//
// Every path and every command is a text of at most 255 bytes. One that is longer is reported on
// standard error and never used.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "driver/settings.h"
#include "model/records.h"

namespace grolof {

/// Longest path or command, in bytes.
inline constexpr std::size_t kLongestText = 255;

/// True when a path or command fits; otherwise says "…: too long" on standard error.
bool FitsText(const std::string& text);

/// True when a status query of the path succeeds, whatever kind of file it is.
bool PathExists(const std::string& path);

/// True when the path is a directory that the process may write in. A directory that it may not
/// write in is reported on standard error; anything else is a silent no.
bool DirectoryIsWritable(const std::string& path);

/// Makes the missing directories on the way to the last component, mode 0775, after normalising
/// the path in place: each pair of neighbouring slashes becomes one (so three become two), then
/// one trailing slash goes. Returns 0, or after a message on standard error EACCES when a
/// component is not a directory, or the error number of the directory that could not be made.
int MakeDirectories(std::string& path);

/// A path that an output goes to.
struct OutputPath {
    std::string Text;
    bool Fits = true; ///< false: the output is refused and counts as failed
};

/// The COPY book's path, with what is needed to form the path of a BMS COPY book from it.
struct CopyBookPlace {
    /// The COPY base that a BMS COPY book is put under. PathItself is the path as it stands at
    /// that moment, so it nests deeper at each forming and follows every change of the path.
    enum class Base { None, Directory, PathItself };

    OutputPath Path;
    Base BaseKind = Base::None;
    std::string BaseDirectory; ///< for Base::Directory
};

/// "SCREEN-<name>-<number>" of a form.
std::string CopyBookName(const Form& form);

/// The path of a DPS COPY book, by the options, the environment and what stands on disk.
CopyBookPlace PlaceDpsCopyBook(const Settings& settings, const Form& form);

/// Forms the path of a BMS COPY book in place of the present one; done twice for each form.
void FormBmsCopyBookPath(CopyBookPlace& place, const Form& form);

/// Makes the COPY book's directories, gets a read-only COPY book out of version control or else
/// turns to the current directory, and makes the directories again.
void PrepareCopyBook(CopyBookPlace& place, const Settings& settings, const Form& form,
                     int (*runShell)(const char*));

/// The screen definition file's path; its directories are made and the screen files of earlier
/// formats, which would shadow it, are removed.
OutputPath PrepareScreenFile(const Settings& settings, const Form& form);

/// The MCS format's path; its directories are made.
OutputPath PrepareMcsFormat(const Settings& settings, const Form& form);

/// Puts "SHELL=<path of sh>" into the environment; returns that entry.
std::string PutShellEntry();

/// Looks at the size of an MCS format just written and complains on standard error when it is
/// beyond what the screen handler takes. The messages name the SHELL entry, not the file: the
/// operators' log filters know them so.
void CheckMcsFormatSize(const std::string& path, const std::string& shellEntry);

/// Gives everybody read and write permission; a failure is of no account.
void OpenToEverybody(const OutputPath& path);

/// Enters an MCS format into the screen library and marks its group as changed.
void EnterScreenLibrary(const OutputPath& mcsFormat, const Settings& settings,
                        int (*runShell)(const char*));

/// A text for a place inside apostrophes in a command: an apostrophe becomes '\''.
std::string QuotedSlot(const std::string& text);

/// A text for a bare place in a command: as it is when it holds only letters, digits and
/// _ . / - + , @ % : = and otherwise inside apostrophes.
std::string BareSlot(const std::string& text);

} // namespace grolof
