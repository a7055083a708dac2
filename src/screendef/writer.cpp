#include "screendef/writer.h"

#include <cstdint>
#include <string_view>
#include <variant>

#include "screendef/attributes.h"
#include "screendef/element_names.h"
#include "support/output_file.h"
#include "support/text.h"

namespace grolof {

namespace {

// State of the writer: the open file and the depth of the element at hand.
struct DefinitionWriter {
    OutputFile File;
    std::int64_t Depth = 0;
};

DefinitionWriter s_writer;

void PutIndentation() {
    s_writer.File.PutBlanks(4 * s_writer.Depth);
}

void BeginAttribute(std::string_view name) {
    PutIndentation();
    s_writer.File.Put(name);
    s_writer.File.Put("\"");
}

void EndAttribute() {
    s_writer.File.Put("\"\n");
}

void PutAttribute(std::string_view name, std::string_view value) {
    BeginAttribute(name);
    s_writer.File.Put(value);
    EndAttribute();
}

void PutNumber(std::string_view name, std::int32_t value) {
    if (value == 0)
        return;
    BeginAttribute(name);
    s_writer.File.PutNumber(value);
    EndAttribute();
}

// A text ends at an embedded NUL, as every text of the model does.
void PutText(std::string_view name, const char* value) {
    if (value != nullptr)
        PutAttribute(name, value);
}

void PutFormType(std::string_view name, FormKind kind) {
    for (const FormTypeWord& word : kFormTypeWords)
        if (word.IsWritten && word.Kind == kind)
            return PutAttribute(name, word.Word);
    PutNumber(name, static_cast<std::int32_t>(kind));
}

template <class Kind>
void PutMember(const Kind& record, const Attribute<Kind>& attribute) {
    const std::string_view name = attribute.Name;
    std::visit(MemberCases{
                   [&](Text Kind::*member) {
                       const Text& text = record.*member;
                       PutText(name, text ? text->c_str() : nullptr);
                   },
                   [&](std::int32_t Kind::*member) { PutNumber(name, record.*member); },
                   [&](char Kind::*member) {
                       if (const char value = record.*member; value != '\0')
                           PutAttribute(name, {&value, 1});
                   },
                   [&](FormKind Kind::*member) { PutFormType(name, record.*member); },
                   [&](const char* Kind::*member) {
                       const char* text = record.*member;
                       if (text != nullptr && BeginsAboveBlank(text))
                           PutText(name, text);
                   },
                   [](StorageName) {},
               },
               attribute.Member);
}

void PutRecord(const Record& record);

// Start line; everything up to the closing of the start tag stands one level deeper.
void OpenElement(std::string_view element) {
    PutIndentation();
    s_writer.File.Put("<");
    s_writer.File.Put(element);
    s_writer.File.Put("\n");
    ++s_writer.Depth;
}

void CloseStartTagAndPutChildren(const Record& record) {
    PutIndentation();
    s_writer.File.Put(">\n");
    if (!record.Children)
        return;
    for (const Record& child : *record.Children)
        PutRecord(child);
}

void EndElement(std::string_view element) {
    --s_writer.Depth;
    PutIndentation();
    s_writer.File.Put("</");
    s_writer.File.Put(element);
    s_writer.File.Put(">\n");
}

// The end line bears the name of the start line, also when a BMS form among the children has
// switched the names meanwhile.
template <class Kind>
void PutElement(std::string_view element, const Kind& record) {
    OpenElement(element);
    for (const Attribute<Kind>& attribute : AttributesOf(record))
        PutMember(record, attribute);
    CloseStartTagAndPutChildren(record);
    EndElement(element);
}

void PutForm(const Form& form) {
    const bool isBms = form.FormType == FormKind::Bms;
    if (isBms)
        UseBmsElementNames();
    PutElement(isBms ? kBmsFormElement : kDpsFormElement, form);
}

void PutRecord(const Record& record) {
    switch (record.Type) {
    case RecordType::Form:
        return PutForm(static_cast<const Form&>(record));
    case RecordType::Field:
        return PutElement(CurrentElementNames().Field, static_cast<const Field&>(record));
    case RecordType::Image:
    case RecordType::RepeatImage:
        return PutElement(kImageElement, static_cast<const Image&>(record));
    case RecordType::Heading:
        return PutElement(CurrentElementNames().Heading, static_cast<const Heading&>(record));
    }
}

} // namespace

bool SaveScreenDefinition(const List& forms, const std::string& path) {
    if (!s_writer.File.Open(path))
        return false;
    s_writer.Depth = 0;
    for (const Record& record : forms)
        PutRecord(record);
    s_writer.File.Close(); // a failed write has been reported and changes nothing else
    return true;
}

} // namespace grolof
