#include "driver/grolof.h"
#include "driver/standard_streams.h"

int main(int argc, char** argv) {
    grolof::GuardStandardStreams();
    return grolof::GrolofMain(argc, argv);
}
