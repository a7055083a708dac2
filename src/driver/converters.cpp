#include "driver/converters.h"

#include <cstdlib>

#include "bms/parser.h"
#include "copybook/bms.h"
#include "copybook/dps.h"
#include "fldp/parser.h"
#include "mcs/dpsmcs.h"
#include "screendef/reader.h"
#include "screendef/writer.h"

namespace grolof {

const Converters& RealConverters() {
    static constexpr Converters converters{
        ParseFldpFile,        BmsReadMapSet,        LoadScreenDefinition,
        DpsCopyBookWrite,     DpsInitCopyBookWrite, BmsCopyBookWrite,
        SaveScreenDefinition, McsFormatWrite,       std::system,
    };
    return converters;
}

} // namespace grolof
