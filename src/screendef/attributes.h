// The attributes of the screen definition file: one table for each kind of record, in the order
// in which the writer puts them, and the same table for the reader to find them in.
//
// What an attribute is follows from the type of its member:
//
//   Text          text, written as it is; left out when there is none
//   int32_t       number, signed decimal; left out when 0
//   char          one character; left out when NUL
//   FormKind      a word or a number; left out when 0
//   const char*   borrowed text: written when it begins above the blank, never read back, because
//                 the group of a loaded form is the one of the run
//   StorageName   no member: never written, and when read only compared with the screen number
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>

#include "model/records.h"
#include "support/text.h"

namespace grolof {

/// Stands for the member of an attribute that is read but not kept.
struct StorageName {};

/// One attribute of a kind of record.
template <class Kind>
struct Attribute {
    std::string_view Name; ///< as it stands in the file, its '=' included
    std::variant<Text Kind::*, std::int32_t Kind::*, char Kind::*, FormKind Kind::*,
                 const char * Kind::*, StorageName>
        Member;
};

/// The attributes of a kind of record in written order, with a look-up by name.
template <class Kind, std::size_t Size>
class AttributeTable {
public:
    explicit constexpr AttributeTable(const std::array<Attribute<Kind>, Size>& attributes)
        : m_attributes(attributes) {
        m_firstOfLength.fill(Size);
        for (std::size_t i = Size; i-- > 0;) {
            std::uint8_t& first = m_firstOfLength[attributes[i].Name.size()];
            m_nextOfLength[i] = first;
            first = static_cast<std::uint8_t>(i);
        }
    }

    constexpr auto begin() const { return m_attributes.begin(); }
    constexpr auto end() const { return m_attributes.end(); }

    /// The attribute whose name, '=' included, a line begins with in any letter case; none when
    /// there is none. No name has an '=' before its end, so only names that are as long as the
    /// text up to the first '=' can match, and at most one of them does.
    const Attribute<Kind>* Find(std::string_view line) const {
        const std::size_t equals = line.substr(0, kLongestName).find('=');
        if (equals == std::string_view::npos)
            return nullptr;
        const std::string_view name = line.substr(0, equals + 1);
        const auto* exact = FirstWhere(name.size(), [&](std::string_view n) { return n == name; });
        if (exact != nullptr)
            return exact;
        return FirstWhere(name.size(), [&](std::string_view n) {
            return TextCompareNoCaseN(n, name, name.size()) == 0;
        });
    }

private:
    static constexpr std::size_t kLongestName = 20; // a longer one does not compile
    static_assert(Size < 256, "the look-up holds indices as bytes");

    template <class Matches>
    const Attribute<Kind>* FirstWhere(std::size_t length, Matches matches) const {
        for (std::size_t i = m_firstOfLength[length]; i < Size; i = m_nextOfLength[i])
            if (matches(m_attributes[i].Name))
                return &m_attributes[i];
        return nullptr;
    }

    std::array<Attribute<Kind>, Size> m_attributes;
    std::array<std::uint8_t, kLongestName + 1> m_firstOfLength{}; // Size: none
    std::array<std::uint8_t, Size> m_nextOfLength{};              // Size: none
};

inline constexpr AttributeTable kFormAttributes(std::to_array<Attribute<Form>>({
    {"Name=", &Form::Name},
    {"Group=", &Form::Group},
    {"ImageName=", &Form::ImageName},
    {"FunctionKeyName=", &Form::FunctionKeyName},
    {"CopyName=", &Form::CopyName},
    {"InitialValue=", &Form::InitialValue},
    {"Replenish=", &Form::Replenish},
    {"FormType=", &Form::FormType},
    {"Number=", &Form::Number},
    {"Height=", &Form::Height},
    {"Width=", &Form::Width},
    {"GeneratePrefix=", &Form::GeneratePrefix},
    {"NumericName=", &Form::NumericName},
    {"IgnoreCase=", &Form::IgnoreCase},
    {"IgnoreJustification=", &Form::IgnoreJustification},
    {"24x79Unprotected=", &Form::_24x79Unprotected},
    {"RedefInit=", &Form::RedefInit},
    {"InputBlankWhenZero=", &Form::InputBlankWhenZero},
    {"Emphasis=", &Form::Emphasis},
    {"Highlight=", &Form::Highlight},
    {"Intensity=", &Form::Intensity},
    {"Colour=", &Form::Colour},
    {"BackColour=", &Form::BackColour},
    {"MarkingChar=", &Form::MarkingChar},
    {"SoeChar=", &Form::SoeChar},
    {"NewName=", StorageName{}},
}));

// CreditSign is recorded from a source only; the file does not carry it.
inline constexpr AttributeTable kFieldAttributes(std::to_array<Attribute<Field>>({
    {"Name=", &Field::Name},
    {"InitialValue=", &Field::InitialValue},
    {"Replenish=", &Field::Replenish},
    {"Picin=", &Field::Picin},
    {"Picout=", &Field::Picout},
    {"Height=", &Field::Height},
    {"Width=", &Field::Width},
    {"Decimals=", &Field::Decimals},
    {"Column=", &Field::Column},
    {"Row=", &Field::Row},
    {"VariableColumn=", &Field::VariableColumn},
    {"VariableRow=", &Field::VariableRow},
    {"BlankIsZero=", &Field::BlankIsZero},
    {"MandatoryEntry=", &Field::MandatoryEntry},
    {"TabStop=", &Field::TabStop},
    {"Protected=", &Field::Protected},
    {"SetModified=", &Field::SetModified},
    {"UsageOutput=", &Field::UsageOutput},
    {"FloatingCurrency=", &Field::FloatingCurrency},
    {"LeadingZeros=", &Field::LeadingZeros},
    {"FloatingSign=", &Field::FloatingSign},
    {"TrailingSign=", &Field::TrailingSign},
    {"PositiveSign=", &Field::PositiveSign},
    {"BlankWhenZero=", &Field::BlankWhenZero},
    {"InsertDelimiters=", &Field::InsertDelimiters},
    {"ReplenishForBlanks=", &Field::ReplenishForBlanks},
    {"InitialCursor=", &Field::InitialCursor},
    {"Value=", &Field::Value},
    {"Emphasis=", &Field::Emphasis},
    {"Highlight=", &Field::Highlight},
    {"Intensity=", &Field::Intensity},
    {"Colour=", &Field::Colour},
    {"BackColour=", &Field::BackColour},
    {"Justification=", &Field::Justification},
    {"Case=", &Field::Case},
    {"DataType=", &Field::DataType},
    {"Contents=", &Field::Contents},
}));

inline constexpr AttributeTable kImageAttributes(std::to_array<Attribute<Image>>({
    {"Name=", &Image::Name},
    {"IndexName=", &Image::IndexName},
    {"Height=", &Image::Height},
    {"Width=", &Image::Width},
    {"Column=", &Image::Column},
    {"Row=", &Image::Row},
    {"Spacing=", &Image::Spacing},
    {"Constants=", &Image::Constants},
    {"VariableColumn=", &Image::VariableColumn},
    {"VariableRow=", &Image::VariableRow},
    {"Linked=", &Image::Linked},
    {"Direction=", &Image::Direction},
    {"Contents=", &Image::Contents},
    {"Emphasis=", &Image::Emphasis},
    {"Highlight=", &Image::Highlight},
    {"Intensity=", &Image::Intensity},
    {"Colour=", &Image::Colour},
    {"BackColour=", &Image::BackColour},
    {"Count=", &Image::Count},
}));

inline constexpr AttributeTable kHeadingAttributes(std::to_array<Attribute<Heading>>({
    {"Height=", &Heading::Height},
    {"Width=", &Heading::Width},
    {"Column=", &Heading::Column},
    {"Row=", &Heading::Row},
    {"Highlight=", &Heading::Highlight},
    {"Intensity=", &Heading::Intensity},
    {"InitialValue=", &Heading::InitialValue},
}));

/// The table that serves a record, chosen by the record's C++ type.
constexpr const auto& AttributesOf(const Form&) {
    return kFormAttributes;
}
constexpr const auto& AttributesOf(const Field&) {
    return kFieldAttributes;
}
constexpr const auto& AttributesOf(const Image&) {
    return kImageAttributes;
}
constexpr const auto& AttributesOf(const Heading&) {
    return kHeadingAttributes;
}

/// A word that may stand for a form type. Only DPS and BMS are written as words.
struct FormTypeWord {
    std::string_view Word;
    FormKind Kind;
    bool IsWritten;
};

/// The words in the order in which the reader tries them.
inline constexpr std::array<FormTypeWord, 4> kFormTypeWords = {{
    {"DPS", FormKind::Dps, true},
    {"BMS", FormKind::Bms, true},
    {"MCS", FormKind::Mcs, false},
    {"SFS", FormKind::Sfs, false},
}};

/// A visitor made of one lambda for each type of member.
template <class... Cases>
struct MemberCases : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
MemberCases(Cases...) -> MemberCases<Cases...>;

} // namespace grolof
