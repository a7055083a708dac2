// The readers, the writers and the shell, as the conversion calls them.
#pragma once

#include <string>
#include <vector>

#include "model/records.h"

namespace grolof {

/// One entry a call, so that a test can put a watcher in its place.
struct Converters {
    RecordList (*ReadFldp)(const std::string& path, unsigned options);
    std::vector<RecordList> (*ReadBms)(const std::string& path, unsigned options);
    RecordList (*ReadScreenDefinition)(const std::string& path);
    bool (*WriteDpsCopyBook)(List& screen, const std::string& path);
    bool (*WriteDpsInitCopyBook)(List& screen, const std::string& path);
    int (*WriteBmsCopyBook)(List& screen, const std::string& path, int withMapComments,
                            int continuing);
    bool (*WriteScreenDefinition)(const List& forms, const std::string& path);
    bool (*WriteMcsFormat)(List& screen, const std::string& path);
    int (*RunShell)(const char* command); ///< as std::system
};

/// The program's own readers and writers, and the system shell.
const Converters& RealConverters();

} // namespace grolof
