// The sequences that turn an operand into forms and a form into its outputs.
#pragma once

#include "driver/converters.h"
#include "driver/settings.h"

namespace grolof {

/// What a run carries from operand to operand.
struct Run {
    Settings settings;
    const Converters& converters;
};

/// Reads one file operand and writes the outputs of its forms. A broken form ends the run with
/// status 255.
void ConvertFile(Run& run, const char* operand);

/// Writes the outputs of one screen and destroys it. `continuing` is true for every map of a
/// map set but the first.
void ConvertScreen(Run& run, RecordList screen, bool continuing);

} // namespace grolof
