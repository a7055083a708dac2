// Reads any bytes as a form source and, when they are accepted, writes everything that the
// converter makes of them, in its order: COPY book, screen definition file, format,
// initialisation procedure.
#include <cstddef>
#include <cstdint>

#include "copybook/dps.h"
#include "fldp/parser.h"
#include "mcs/dpsmcs.h"
#include "memory_file.h"
#include "model/positions.h"
#include "model/records.h"
#include "screendef/writer.h"
#include "target.h"

namespace {

using grolof::RecordType;

// Enough for any screen; more would only play repetitions out over and over.
constexpr std::int64_t kMostPlayed = 20'000;

// A heading of a form is as wide as its text, which stands within one line of 80 columns.
void CheckHeading(const grolof::Heading& heading) {
    const auto width = static_cast<std::size_t>(heading.Width);
    Require(heading.InitialValue.value().size() == width && width > 0);
    Require(heading.Row >= 1 && heading.Column >= 1 && heading.Column + heading.Width - 1 <= 80);
}

// Below a form stand fields and images, directly below it also headings; a field has no items.
void CheckItems(const grolof::List* items, int depth) {
    if (items == nullptr)
        return;
    Require(depth <= grolof::kDeepestNesting);
    for (grolof::Record& record : *items) {
        Require(record.Type != RecordType::Form);
        Require(record.Type != RecordType::Field || record.Children == nullptr);
        Require(record.Type != RecordType::Heading || depth == 2);
        if (record.Type == RecordType::Heading)
            CheckHeading(AsHeading(record));
        CheckItems(record.Children.get(), depth + 1);
    }
}

void Check(const grolof::List& forms) {
    for (grolof::Record& form : forms) {
        Require(form.Type == RecordType::Form);
        CheckItems(form.Children.get(), 2);
    }
}

void Write(grolof::List& forms) {
    const MemoryFile output;
    grolof::DpsCopyBookWrite(forms, output.Path());
    grolof::SaveScreenDefinition(forms, output.Path());
    grolof::DpsToMcs(forms);
    grolof::DpsInitCopyBookWrite(forms, output.Path());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return SetUpTarget();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile source;
    source.Fill(bytes, size);
    try {
        const grolof::RecordList forms = grolof::ParseFldpFile(source.Path(), 1);
        Check(*forms);
        if (!grolof::ListIsEmpty(*forms) && grolof::ExpandedCount(*forms) <= kMostPlayed)
            Write(*forms);
    } catch (const RunEnded&) {
        return 0;
    }
    return 0;
}
