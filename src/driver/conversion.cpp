#include "driver/conversion.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "driver/placement.h"
#include "support/host.h"
#include "support/installation.h"
#include "support/text.h"

namespace grolof {

namespace {

constexpr int kBadTreeStatus = 255;

[[noreturn]] void RefuseTree() {
    std::puts("Badly constructed parse tree!");
    EndRun(kBadTreeStatus);
}

// The form that heads a screen, which must have a name; without one the run ends.
Form& NamedForm(const RecordList& screen) {
    Form* form = screen ? FormOf(*screen) : nullptr;
    if (form == nullptr || !form->Name)
        RefuseTree();
    return *form;
}

// --- definition mode ---------------------------------------------------------------------------

// A path operand records an x, which makes the screen file rewritten.
std::string DefinitionPath(Settings& settings, const std::string& operand) {
    if (operand.find(".t3b") != std::string::npos || operand.find('/') != std::string::npos) {
        RecordOptionLetter(settings, 'x');
        return operand;
    }
    std::string name = operand;
    if (BeginsWithDigit(operand))
        name = NumberedName(NumberOf(operand));
    else
        TextToUpper(name);
    return zorsysfiles + "/sfg/" + settings.LowerGroup + "/" + name + ".t3b";
}

// What a recorded letter does to a loaded form. The clearing letter is looked at second, so it
// wins over the setting one in whatever order they were given.
struct LetterEffect {
    char Sets;
    char Clears; ///< 0: nothing clears it
    std::int32_t Form::*Member;
};
constexpr LetterEffect kLetterEffects[] = {
    {'n', 'N', &Form::NumericName},         {'c', 'C', &Form::IgnoreCase},
    {'j', 'J', &Form::IgnoreJustification}, {'u', 'U', &Form::_24x79Unprotected},
    {'B', '\0', &Form::InputBlankWhenZero}, {'r', 'R', &Form::RedefInit},
};

void ApplyOptionLetters(const Settings& settings, Form& form) {
    for (const LetterEffect& effect : kLetterEffects) {
        if (OptionGiven(settings, effect.Sets))
            form.*effect.Member = 1;
        if (effect.Clears != '\0' && OptionGiven(settings, effect.Clears))
            form.*effect.Member = 0;
    }
}

// The dialect is named only when it differs from the run's.
void ReportLoaded(const Settings& settings, const Form& form, const std::string& path) {
    const bool foreign = form.FormType == FormKind::Bms && !settings.BmsMode;
    std::printf(foreign ? "Loaded BMS %s from file: %s\n" : "Loaded %s from file: %s\n",
                form.Name->c_str(), path.c_str());
}

void ConvertDefinition(Run& run, const std::string& operand) {
    const std::string path = DefinitionPath(run.settings, operand);
    if (!FitsText(path) || !PathExists(path)) {
        std::printf("No such file: %s\n", path.c_str());
        return;
    }
    RecordList screen = run.converters.ReadScreenDefinition(path);
    Form& form = NamedForm(screen);
    ReportLoaded(run.settings, form, path);
    if (form.FormType == FormKind::None)
        form.FormType = FormKind::Dps;
    ApplyOptionLetters(run.settings, form);
    ConvertScreen(run, std::move(screen), false);
}

// --- sources -----------------------------------------------------------------------------------

void ConvertMapSet(Run& run, const std::string& path) {
    run.settings.BmsMode = true;
    std::vector<RecordList> maps = run.converters.ReadBms(path, run.settings.ConversionFlags);
    bool continuing = false;
    for (RecordList& map : maps) {
        ConvertScreen(run, std::move(map), continuing);
        continuing = true;
    }
}

void ConvertFldp(Run& run, const std::string& path) {
    RecordList forms = run.converters.ReadFldp(path, run.settings.ConversionFlags);
    if (forms)
        ConvertScreen(run, std::move(forms), false);
}

} // namespace

void ConvertFile(Run& run, const char* operand) {
    const std::string path = operand;
    if (run.settings.BmsMode || path.find(".bms") != std::string::npos)
        ConvertMapSet(run, path);
    else if (run.settings.DefinitionMode)
        ConvertDefinition(run, path);
    else
        ConvertFldp(run, path);
}

// --- one screen --------------------------------------------------------------------------------

namespace {

void Report(const char* format, const OutputPath& path) {
    std::printf(format, path.Text.c_str());
}

void WriteDpsCopyBook(Run& run, List& screen, const OutputPath& path) {
    const bool written = path.Fits && run.converters.WriteDpsCopyBook(screen, path.Text);
    Report(written ? "Wrote DPS COPY book: %s\n" : "Problem writing COPY: %s\n", path);
}

void WriteBmsCopyBook(Run& run, List& screen, const OutputPath& path, bool continuing) {
    if (!path.Fits || run.converters.WriteBmsCopyBook(screen, path.Text, 1, continuing) == 0)
        Report("Problem trying to write: %s\n", path);
    else
        Report(continuing ? "Continue BMS COPY book: %s\n" : "Wrote BMS COPY book: %s\n", path);
}

void WriteScreenFile(Run& run, const List& screen, const OutputPath& path) {
    if (path.Fits && run.converters.WriteScreenDefinition(screen, path.Text)) {
        Report("  Wrote screen file: %s\n", path);
        OpenToEverybody(path);
    } else {
        Report("Problem trying to write: %s\n", path);
    }
}

void WriteMcsFormat(Run& run, List& screen, const OutputPath& path, const std::string& shell) {
    if (path.Fits && run.converters.WriteMcsFormat(screen, path.Text)) {
        Report("   Wrote MCS format: %s\n", path);
        CheckMcsFormatSize(path.Text, shell);
    } else {
        Report("Problem trying to write: %s\n", path);
    }
}

// The writer's result is of no account; only a path that is refused is a failure here.
void WriteInitCopyBook(Run& run, List& screen, OutputPath path) {
    path.Text += "-INIT";
    path.Fits = path.Fits && FitsText(path.Text);
    if (path.Fits)
        run.converters.WriteDpsInitCopyBook(screen, path.Text);
    Report(path.Fits ? "Wrote DPS COPY book: %s\n" : "Problem writing COPY: %s\n", path);
}

// A bare screen number or name with -d leaves the screen file alone; any recorded letter, or a
// path operand, has it rewritten.
bool KeepsScreenFile(const Settings& settings) {
    return settings.DefinitionMode && !settings.RewriteOnly && settings.OptionLetterCount == 0;
}

CopyBookPlace PlaceCopyBook(Settings& settings, Form& form) {
    CopyBookPlace place = PlaceDpsCopyBook(settings, form);
    if (form.FormType == FormKind::Bms) {
        settings.BmsMode = true;
        form.NumericName = 0;
        FormBmsCopyBookPath(place, form);
    } else {
        place.Path.Fits = FitsText(place.Path.Text);
    }
    return place;
}

} // namespace

void ConvertScreen(Run& run, RecordList screen, bool continuing) {
    Settings& settings = run.settings;
    Form& form = NamedForm(screen);
    if (!HasGroup(form))
        form.Group = InternText(settings.UpperGroup);

    CopyBookPlace copyBook = PlaceCopyBook(settings, form);
    PrepareCopyBook(copyBook, settings, form, run.converters.RunShell);
    const OutputPath screenFile = PrepareScreenFile(settings, form);
    const OutputPath mcsFormat = PrepareMcsFormat(settings, form);
    const std::string shell = PutShellEntry();

    if (settings.BmsMode) {
        FormBmsCopyBookPath(copyBook, form);
        WriteBmsCopyBook(run, *screen, copyBook.Path, continuing);
    } else if (settings.RewriteOnly) {
        Report("Skip write: %s\n", copyBook.Path);
    } else {
        WriteDpsCopyBook(run, *screen, copyBook.Path);
    }

    if (KeepsScreenFile(settings))
        Report("Skip rewrite: %s\n", screenFile);
    else
        WriteScreenFile(run, *screen, screenFile);

    if (settings.RewriteOnly)
        Report("Skip write: %s\n", mcsFormat);
    else
        WriteMcsFormat(run, *screen, mcsFormat, shell);
    EnterScreenLibrary(mcsFormat, settings, run.converters.RunShell);

    if (form.RedefInit != 0)
        WriteInitCopyBook(run, *screen, copyBook.Path);
}

} // namespace grolof
