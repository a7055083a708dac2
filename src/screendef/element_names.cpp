#include "screendef/element_names.h"

namespace grolof {

namespace {
ElementNames s_elementNames;
} // namespace

const ElementNames& CurrentElementNames() {
    return s_elementNames;
}

void UseBmsElementNames() {
    s_elementNames = {kBmsFieldElement, kBmsHeadingElement};
}

void ResetElementNames() {
    s_elementNames = {};
}

} // namespace grolof
