// Loads any bytes as a screen definition file, writes what was loaded, and loads that again: the
// second and the third writing must agree. (The first may differ, because a stored 0 is not
// written and comes back as the default.)
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "memory_file.h"
#include "screendef/element_names.h"
#include "screendef/reader.h"
#include "screendef/writer.h"
#include "target.h"

namespace {

// Loads the file as a fresh process does, writes it back in place, and gives the text.
std::string Rewritten(const MemoryFile& file) {
    grolof::ResetElementNames();
    const grolof::RecordList forms = grolof::LoadScreenDefinition(file.Path());
    Require(grolof::SaveScreenDefinition(*forms, file.Path()));
    return file.Contents();
}

// A line that the reader takes in pieces does not survive.
bool HasLongLine(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (end - at >= grolof::kLongestDefinitionLine)
            return true;
        at = end + 1;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile file;
    file.Fill(bytes, size);
    const bool lossless = !HasLongLine(Rewritten(file));
    const std::string second = Rewritten(file);
    if (lossless && !HasLongLine(second))
        Require(Rewritten(file) == second);
    return 0;
}
