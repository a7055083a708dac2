// Form language sources as test input, and records as text to compare.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "common/testing.h"
#include "fldp/parser.h"
#include "model/conversion_flags.h"

namespace grolof::fldp_test {

using namespace testing_support;

/// How a run of the parser went.
struct Outcome {
    RecordList Forms;
    int Status = -1; ///< exit status, -1 when the parser returned
    std::string Out; ///< standard output, the file's directory taken off its name
    std::string Error;
};

/// A test that reads sources as the file "x.fldp".
class SourceTest : public ::testing::Test {
protected:
    std::string Write(std::string_view text) { return WriteFile(m_directory.File("x.fldp"), text); }

    Outcome Read(std::string_view text, unsigned options = kDefaultConversionFlags) {
        const std::string path = Write(text);
        Outcome outcome;
        CaptureStdout out;
        CaptureStderr error;
        outcome.Status = StatusOf([&] { outcome.Forms = ParseFldpFile(path, options); });
        outcome.Out = WithoutDirectory(out.Take());
        outcome.Error = WithoutDirectory(error.Take());
        return outcome;
    }

    /// The forms of a source that must be accepted without a message.
    RecordList Forms(std::string_view text, unsigned options = kDefaultConversionFlags) {
        Outcome outcome = Read(text, options);
        EXPECT_EQ(outcome.Status, -1) << text;
        EXPECT_EQ(outcome.Out, "") << text;
        EXPECT_EQ(outcome.Error, "") << text;
        return outcome.Forms ? std::move(outcome.Forms) : RecordList(ListCreate());
    }

    /// The error line of a source that must be refused.
    std::string ErrorLine(std::string_view text) {
        const Outcome outcome = Read(text);
        EXPECT_EQ(outcome.Status, 1) << text;
        EXPECT_EQ(outcome.Error, "") << text;
        return outcome.Out;
    }

    std::string WithoutDirectory(std::string text) const {
        const std::string prefix = m_directory.Path() + "/";
        for (auto at = text.find(prefix); at != std::string::npos; at = text.find(prefix))
            text.erase(at, prefix.size());
        return text;
    }

    TemporaryDirectory m_directory;
    ScopedHost m_host;
};

/// A form of the given statements. `InImage` and `InField` stand in a form and are followed by an
/// empty field, because finishing a form takes the last item away.
inline std::string InForm(const std::string& statements) {
    return "FORM\n" + statements + "\nEND_FORM\n";
}
inline std::string InImage(const std::string& statements) {
    return InForm("IMAGE\n" + statements + "\nEND_IMAGE\nFIELD\nEND_FIELD");
}
inline std::string InField(const std::string& statements) {
    return InForm("FIELD\n" + statements + "\nEND_FIELD\nFIELD\nEND_FIELD");
}

/// The first record of a list as what it must be.
inline Record& FirstOf(const List& list) {
    if (list.First == nullptr)
        throw std::runtime_error("an empty list");
    return *list.First->Data;
}
inline Record& FirstItemOf(const List& forms) {
    Record& form = FirstOf(forms);
    if (!form.Children)
        throw std::runtime_error("a form without items");
    return FirstOf(*form.Children);
}

/// Collects " Name=value" of the members that differ from a new record's.
class Difference {
public:
    void operator()(const char* name, const Text& is, const Text& was) {
        if (is != was)
            Add(name, is ? "'" + *is + "'" : "none");
    }
    void operator()(const char* name, std::int32_t is, std::int32_t was) {
        if (is != was)
            Add(name, std::to_string(is));
    }
    void operator()(const char* name, char is, char was) {
        if (is != was)
            Add(name, is == '\0' ? "NUL" : std::string(1, is));
    }
    std::string Take() { return m_text.empty() ? m_text : m_text.substr(1); }

private:
    void Add(const char* name, const std::string& value) {
        m_text += ' ';
        m_text += name;
        m_text += '=';
        m_text += value;
    }
    std::string m_text;
};

#define GROLOF_DIFFER(member) difference(#member, is.member, was.member)

inline std::string Described(const Form& is) {
    Form was{};
    was.Type = RecordType::Form;
    Difference difference;
    GROLOF_DIFFER(Name);
    difference("Group", is.Group == nullptr ? Text() : Text(is.Group), Text());
    GROLOF_DIFFER(ImageName);
    GROLOF_DIFFER(FunctionKeyName);
    GROLOF_DIFFER(InitialValue);
    GROLOF_DIFFER(Replenish);
    GROLOF_DIFFER(CopyName);
    GROLOF_DIFFER(Number);
    GROLOF_DIFFER(Height);
    GROLOF_DIFFER(Width);
    GROLOF_DIFFER(GeneratePrefix);
    GROLOF_DIFFER(NumericName);
    GROLOF_DIFFER(IgnoreCase);
    GROLOF_DIFFER(IgnoreJustification);
    GROLOF_DIFFER(_24x79Unprotected);
    GROLOF_DIFFER(InputBlankWhenZero);
    GROLOF_DIFFER(RedefInit);
    difference("FormType", static_cast<std::int32_t>(is.FormType), 1);
    GROLOF_DIFFER(Emphasis);
    GROLOF_DIFFER(Highlight);
    GROLOF_DIFFER(Intensity);
    GROLOF_DIFFER(MarkingChar);
    GROLOF_DIFFER(SoeChar);
    GROLOF_DIFFER(Colour);
    GROLOF_DIFFER(BackColour);
    return difference.Take();
}

inline std::string Described(const Field& is) {
    Field was{};
    Difference difference;
    GROLOF_DIFFER(Name);
    GROLOF_DIFFER(InitialValue);
    GROLOF_DIFFER(Replenish);
    GROLOF_DIFFER(Picin);
    GROLOF_DIFFER(Picout);
    GROLOF_DIFFER(Height);
    GROLOF_DIFFER(Width);
    GROLOF_DIFFER(Decimals);
    GROLOF_DIFFER(Column);
    GROLOF_DIFFER(Row);
    GROLOF_DIFFER(VariableColumn);
    GROLOF_DIFFER(VariableRow);
    GROLOF_DIFFER(BlankIsZero);
    GROLOF_DIFFER(MandatoryEntry);
    GROLOF_DIFFER(TabStop);
    GROLOF_DIFFER(Protected);
    GROLOF_DIFFER(SetModified);
    GROLOF_DIFFER(UsageOutput);
    GROLOF_DIFFER(FloatingCurrency);
    GROLOF_DIFFER(LeadingZeros);
    GROLOF_DIFFER(FloatingSign);
    GROLOF_DIFFER(TrailingSign);
    GROLOF_DIFFER(PositiveSign);
    GROLOF_DIFFER(CreditSign);
    GROLOF_DIFFER(BlankWhenZero);
    GROLOF_DIFFER(InsertDelimiters);
    GROLOF_DIFFER(ReplenishForBlanks);
    GROLOF_DIFFER(InitialCursor);
    GROLOF_DIFFER(Contents);
    GROLOF_DIFFER(Value);
    GROLOF_DIFFER(Emphasis);
    GROLOF_DIFFER(Highlight);
    GROLOF_DIFFER(Intensity);
    GROLOF_DIFFER(Justification);
    GROLOF_DIFFER(Case);
    GROLOF_DIFFER(DataType);
    GROLOF_DIFFER(Colour);
    GROLOF_DIFFER(BackColour);
    return difference.Take();
}

inline std::string Described(const Image& is) {
    Image was{};
    Difference difference;
    difference("Type", static_cast<std::int32_t>(is.Type), 3);
    GROLOF_DIFFER(Name);
    GROLOF_DIFFER(IndexName);
    GROLOF_DIFFER(Height);
    GROLOF_DIFFER(Width);
    GROLOF_DIFFER(Column);
    GROLOF_DIFFER(Row);
    GROLOF_DIFFER(Count);
    GROLOF_DIFFER(Spacing);
    GROLOF_DIFFER(Constants);
    GROLOF_DIFFER(VariableColumn);
    GROLOF_DIFFER(VariableRow);
    GROLOF_DIFFER(Linked);
    GROLOF_DIFFER(Direction);
    GROLOF_DIFFER(Contents);
    GROLOF_DIFFER(Highlight);
    GROLOF_DIFFER(Emphasis);
    GROLOF_DIFFER(Intensity);
    GROLOF_DIFFER(Colour);
    GROLOF_DIFFER(BackColour);
    return difference.Take();
}

#undef GROLOF_DIFFER

/// A heading as "row,column 'text'", with its width when it is not the length of the text.
inline std::string Described(const Heading& heading) {
    const std::string text = heading.InitialValue.value_or("none");
    std::string result =
        std::to_string(heading.Row) + "," + std::to_string(heading.Column) + " '" + text + "'";
    if (heading.Width != static_cast<std::int32_t>(text.size()))
        result += " Width=" + std::to_string(heading.Width);
    return result;
}

/// The shape of a list: F name, I name or R name with (items), H row,column 'text'.
inline std::string Shape(const List& list) {
    std::string shape;
    for (Record& record : list) {
        shape += shape.empty() ? "" : " ";
        switch (record.Type) {
        case RecordType::Form:
            shape += "Form " + AsForm(record).Name.value_or("-");
            break;
        case RecordType::Field:
            shape += "F " + AsField(record).Name.value_or("-");
            break;
        case RecordType::Image:
            shape += "I " + AsImage(record).Name.value_or("-");
            break;
        case RecordType::RepeatImage:
            shape += "R " + AsImage(record).Name.value_or("-");
            break;
        case RecordType::Heading:
            shape += "H " + Described(AsHeading(record));
            break;
        }
        if (record.Children)
            shape += "(" + Shape(*record.Children) + ")";
    }
    return shape;
}

} // namespace grolof::fldp_test
