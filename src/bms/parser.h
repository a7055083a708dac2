// The map macros DFHMSD, DFHMDI and DFHMDF, turned into the form model.
#pragma once

#include <string>
#include <vector>

#include "model/records.h"

namespace grolof {

/// Reads a map source file: one list a map, headed by its BmsForm, fields and constants behind
/// it in source order. Empty when the file cannot be opened (the system error text is then on
/// standard error) or holds no map. A syntax error ends the run with status 1. `option` is kept
/// by the reader and has no effect.
std::vector<RecordList> BmsReadMapSet(const std::string& path, unsigned option);

} // namespace grolof
