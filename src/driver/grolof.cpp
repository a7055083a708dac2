#include "driver/grolof.h"

#include "driver/conversion.h"
#include "driver/converters.h"
#include "driver/settings.h"
#include "support/host.h"
#include "support/installation.h"

namespace grolof {

int GrolofMain(int argc, char** argv) {
    return RunGrolof(argc, argv, RealConverters());
}

int RunGrolof(int argc, char** argv, const Converters& converters) {
    RootSetUp();
    LocaleSetUp();
    const char* program = argc > 0 && argv[0] != nullptr ? argv[0] : "";
    Run run{Settings{}, converters};
    if (argc <= 1) {
        PrintUsage(run.settings, program);
        return 0;
    }
    run.settings.BmsMode = IsBmsProgramName(program);
    const int firstOperand = ScanOptions(run.settings, argc, argv);
    if (firstOperand >= argc) {
        PrintUsage(run.settings, program);
        return 0;
    }
    for (int i = firstOperand; i < argc; ++i)
        ConvertFile(run, argv[i]);
    return 0;
}

} // namespace grolof
