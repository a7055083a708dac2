// The settings of a run: what the command line says, and the usage text.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "model/conversion_flags.h"
#include "model/records.h"

namespace grolof {

/// Most option letters that a run remembers; further ones are not recorded.
inline constexpr std::size_t kMostOptionLetters = 16;

/// Fixed once the options are scanned, except that BmsMode may come on later (and stays on) and
/// that OptionLetters grows by an x for every path operand of definition mode.
struct Settings {
    bool BmsMode = false;        ///< operands are BMS macro sources
    bool DefinitionMode = false; ///< operands are screen definition files
    bool RewriteOnly = false;    ///< only the screen definition file is rewritten
    std::array<char, kMostOptionLetters> OptionLetters{}; ///< in command-line order
    std::size_t OptionLetterCount = 0;
    unsigned ConversionFlags = kDefaultConversionFlags;
    std::string CopyDirectory; ///< where -w wants the COPY books, empty without -w
    std::string UpperGroup = kDefaultGroup;
    std::string LowerGroup = "zor$y$";
    Settings() { OptionLetters.fill(' '); }
};

/// Remembers an option letter while there is room.
void RecordOptionLetter(Settings& settings, char letter);

/// True when an option letter was recorded.
bool OptionGiven(const Settings& settings, char letter);

/// True for a program name that begins with "bms"; a leading directory hides it.
bool IsBmsProgramName(const char* program);

/// Sets both copies of the group from at most the first 8 bytes of a text.
void SetGroup(Settings& settings, const char* group);

/// Scans the options of a command line into the settings; returns the index of the first operand
/// (operands are moved behind the options). -h prints the usage and ends the run with status 0.
int ScanOptions(Settings& settings, int argc, char** argv);

/// Prints the usage of the dialect in force on standard output.
void PrintUsage(const Settings& settings, const char* program);

} // namespace grolof
