#include "driver/settings.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include <unistd.h>

#include "driver/placement.h"
#include "support/host.h"
#include "support/installation.h"
#include "support/text.h"

namespace grolof {

namespace {

constexpr const char* kOptionString = "bBcCdhjJnNsSuUxrRw:g:";
constexpr std::size_t kLongestGroup = 8;

constexpr const char* kBanner = "screen formats and COPY books from screen sources";

// The version is the field behind the name, its leading blank included.
constexpr const char kSourceIdentifier[] = "grolof.cpp 4.49 2013/08/19 converter";
constexpr const char* kVersionField = kSourceIdentifier + sizeof("grolof.cpp") - 1;

// The option letters that are recorded, with the conversion flag that each sets or clears.
struct FlagOption {
    char Letter;
    unsigned Flag;
    bool Sets;
};
constexpr FlagOption kFlagOptions[] = {
    {'B', kInputBlankWhenZero, true},   {'c', kIgnoreCase, true},
    {'C', kIgnoreCase, false},          {'j', kIgnoreJustification, true},
    {'J', kIgnoreJustification, false}, {'n', kNumericName, true},
    {'N', kNumericName, false},         {'s', kIgnoreSystemFields, true},
    {'S', kIgnoreSystemFields, false},  {'u', k24x79Unprotected, true},
    {'U', k24x79Unprotected, false},    {'r', kRedefInit, true},
    {'R', kRedefInit, false},
};

void TakeFlagOption(Settings& settings, char letter) {
    for (const FlagOption& option : kFlagOptions) {
        if (option.Letter != letter)
            continue;
        if (option.Sets)
            settings.ConversionFlags |= option.Flag;
        else
            settings.ConversionFlags &= ~option.Flag;
        RecordOptionLetter(settings, letter);
    }
}

// A directory that is too long is kept, so that every COPY book meant for it is refused.
void SetCopyDirectory(Settings& settings, const char* directory) {
    settings.CopyDirectory = directory;
    static_cast<void>(FitsText(settings.CopyDirectory));
}

void TakeOption(Settings& settings, int letter, const char* program) {
    switch (letter) {
    case 'b':
        settings.BmsMode = true;
        break;
    case 'x':
        settings.RewriteOnly = true;
        [[fallthrough]];
    case 'd':
        settings.DefinitionMode = true;
        break;
    case 'h':
        PrintUsage(settings, program);
        EndRun(0);
    case 'w':
        SetCopyDirectory(settings, optarg);
        break;
    case 'g':
        SetGroup(settings, optarg);
        break;
    default: // an unknown option has had the scanner's diagnostic and changes nothing
        TakeFlagOption(settings, static_cast<char>(letter));
        break;
    }
}

constexpr const char* kDpsOptionLines =
    " -d : Load screen definition file & generate MCS format with DPS COPY book\n"
    " -n : Use numeric screen name (Default)\n"
    " -N : Use character screen name\n"
    " -B : If BlankWhenZero on output also make it BlankWhenBlank on input\n";
constexpr const char* kBmsOptionLines =
    " -b : Load screen definition file & generate MCS format with BMS COPY book\n"
    " -B : If BlankWhenZero on output also make it BlankWhenBlank on input\n";
constexpr const char* kCommonOptionLines =
    " -c : Ignore case (use upper case)\n"
    " -C : honour case\n"
    " -g group : Put format in 'group' instead of ZOR$Y$\n"
    " -j : Ignore justification\n"
    " -J : honour justification\n"
    " -s : Ignore unsupported system fields\n"
    " -S : Convert unsupported system fields to user fields\n"
    " -x : Load screen definition file (format.t3b) and rewrite that only\n"
    " -w copydir : path to COPY book to be written\n";
// "Unless '-d'" is inverted, and the third line ends in a blank: users' scripts know this text.
constexpr const char* kDpsOperandLines =
    "     where 'files' are DPS FLDP format text files\n"
    " Unless '-d' is given then 'files' are format.t3b text files\n"
    "             or DPS screen numbers or format names \n";
constexpr const char* kBmsOperandLines =
    "     where 'files' are CICS Basic Mapping format text files\n";

} // namespace

void RecordOptionLetter(Settings& settings, char letter) {
    if (settings.OptionLetterCount < settings.OptionLetters.size())
        settings.OptionLetters[settings.OptionLetterCount++] = letter;
}

bool OptionGiven(const Settings& settings, char letter) {
    const auto first = settings.OptionLetters.begin();
    const auto last = first + static_cast<std::ptrdiff_t>(settings.OptionLetterCount);
    return std::find(first, last, letter) != last;
}

bool IsBmsProgramName(const char* program) {
    return std::strncmp(program, "bms", 3) == 0;
}

void SetGroup(Settings& settings, const char* group) {
    settings.UpperGroup.assign(group, strnlen(group, kLongestGroup));
    TextToUpper(settings.UpperGroup);
    settings.LowerGroup = settings.UpperGroup;
    TextToLower(settings.LowerGroup);
}

int ScanOptions(Settings& settings, int argc, char** argv) {
    optind = 0; // 0 rather than 1 also forgets where an earlier scan stood
    for (int letter = 0; (letter = getopt(argc, argv, kOptionString)) != -1;)
        TakeOption(settings, letter, argv[0]);
    return optind;
}

void PrintUsage(const Settings& settings, const char* program) {
    const bool bms = settings.BmsMode || IsBmsProgramName(program);
    std::printf(bms ? " CICS BMS Converter - %s\n" : " DPS FLDP Converter - %s\n", kBanner);
    std::printf("               version: %.17s\n", kVersionField);
    std::printf("Syntax: %s [-n] [-c|C] [-j|J] [-s|S] [-u] -[d|x] files...\n", program);
    std::fputs(bms ? kBmsOptionLines : kDpsOptionLines, stdout);
    std::fputs(kCommonOptionLines, stdout);
    std::fputs(bms ? kBmsOperandLines : kDpsOperandLines, stdout);
    if (!bms)
        std::printf("                already in %s/sfg/%s\n", zorsysfiles.c_str(),
                    settings.LowerGroup.c_str());
}

} // namespace grolof
