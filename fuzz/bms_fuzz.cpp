// Reads any bytes as a map source and, when they are accepted, writes everything that the
// converter makes of them, in its order: COPY book, screen definition file, format.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "bms/parser.h"
#include "copybook/bms.h"
#include "mcs/dpsmcs.h"
#include "memory_file.h"
#include "model/records.h"
#include "screendef/writer.h"
#include "target.h"

namespace {

// What every map is: a form, then fields with names and constants as wide as their texts.
void Check(const grolof::List& map) {
    bool first = true;
    for (grolof::Record& record : map) {
        Require((record.Type == grolof::RecordType::Form) == first);
        first = false;
        if (record.Type == grolof::RecordType::Field)
            Require(AsField(record).Name.has_value());
        if (record.Type == grolof::RecordType::Heading) {
            const grolof::Heading& heading = AsHeading(record);
            Require(static_cast<std::size_t>(heading.Width) == heading.InitialValue.value().size());
        }
    }
    Require(!first);
}

void Write(std::vector<grolof::RecordList>& maps) {
    const MemoryFile book, screen;
    int continuing = 0;
    for (grolof::RecordList& map : maps) {
        Check(*map);
        grolof::BmsCopyBookWrite(*map, book.Path(), 1, continuing);
        grolof::SaveScreenDefinition(*map, screen.Path());
        grolof::DpsToMcs(*map);
        continuing = 1;
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return SetUpTarget();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile source;
    source.Fill(bytes, size);
    try {
        std::vector<grolof::RecordList> maps = grolof::BmsReadMapSet(source.Path(), 0);
        Write(maps);
    } catch (const RunEnded&) {
        return 0;
    }
    return 0;
}
