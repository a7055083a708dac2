// Random screens for property tests: the same seed and shape give the same model on every
// machine and library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "model/records.h"

namespace grolof::testing_support {

/// A small generator of its own, because the library's distributions differ between libraries.
class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : m_state(seed) {}

    /// 64 random bits.
    std::uint64_t Next() {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t bits = m_state;
        bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
        bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
        return bits ^ (bits >> 31);
    }

    /// A number from `least` to `most`, both included; `least` when the range is empty.
    std::int32_t Between(std::int32_t least, std::int32_t most) {
        if (most <= least)
            return least;
        const auto span = static_cast<std::uint64_t>(std::int64_t{most} - least + 1);
        return static_cast<std::int32_t>(least + static_cast<std::int64_t>(Next() % span));
    }

    /// True once in `n` times.
    bool OneIn(std::int32_t n) { return Between(1, n) == 1; }

    /// One of the characters of a text that is not empty.
    char OneOf(std::string_view choice) {
        return choice[static_cast<std::size_t>(
            Between(0, static_cast<std::int32_t>(choice.size()) - 1))];
    }

private:
    std::uint64_t m_state;
};

/// What a random screen looks like.
struct RandomShape {
    std::uint64_t Seed = 1;
    std::int32_t MostRecords = 12;  ///< records of one list
    std::int32_t DeepestImages = 3; ///< images within images
    std::int32_t MostRepeats = 5;   ///< occurrences of a repeat image
    std::int32_t Height = 24;       ///< rows of the screen
    std::int32_t Width = 80;        ///< columns of the screen
    std::int32_t LongestText = 30;  ///< bytes of a heading or a value
    FormKind Kind = FormKind::Dps;  ///< Bms: flat, fields and headings follow the form
    bool AnyNumbers = false;        ///< positions, sizes, counts and codes out of any range
    bool AnyBytes = false;          ///< texts of any byte but NUL, '"' and line ends
    bool OptionalAttributes = true; ///< texts, switches and codes that may as well be absent
};

/// Makes random screens of one shape. Images play at most MostRepeats times unless AnyNumbers.
class RandomModel {
public:
    explicit RandomModel(const RandomShape& shape) : m_shape(shape), m_random(shape.Seed) {}

    /// One screen: its form heads the list.
    RecordList Screen() {
        RecordList screen(ListCreate());
        AppendScreen(*screen);
        return screen;
    }

    /// Appends a form, and for BMS its records, to a list that may hold screens already.
    void AppendScreen(List& list) {
        Form* form = NewForm();
        ListAppend(list, form);
        if (m_shape.Kind == FormKind::Bms)
            Fill(list, 0);
        else
            Fill(ChildrenOf(*form), m_shape.DeepestImages);
    }

private:
    void Fill(List& list, std::int32_t imageLevels) {
        for (auto left = m_random.Between(0, m_shape.MostRecords); left > 0; --left)
            ListAppend(list, NewRecord(imageLevels));
    }

    Record* NewRecord(std::int32_t imageLevels) {
        const auto draw = m_random.Between(1, 10);
        if (draw <= 2 && imageLevels > 0)
            return NewImage(imageLevels - 1);
        return draw <= 6 ? static_cast<Record*>(NewField()) : NewHeading();
    }

    Form* NewForm() {
        Form* form = CreateForm();
        form->FormType = m_shape.Kind;
        form->Name = Name();
        form->Number = m_random.Between(1, 99999);
        form->Height = m_shape.Height;
        form->Width = m_shape.Width;
        if (!m_shape.OptionalAttributes)
            return form;
        form->ImageName = Maybe(Name());
        form->FunctionKeyName = Maybe(Name());
        form->CopyName = Maybe(Name());
        form->InitialValue = Maybe(Value());
        form->Replenish = Maybe(Value());
        for (auto member : {&Form::GeneratePrefix, &Form::NumericName, &Form::IgnoreCase,
                            &Form::IgnoreJustification, &Form::_24x79Unprotected, &Form::RedefInit,
                            &Form::InputBlankWhenZero})
            form->*member = Number(0, 1);
        for (auto member : {&Form::Emphasis, &Form::Highlight, &Form::Intensity})
            form->*member = Number(1, 4);
        form->Colour = Colour();
        form->BackColour = Colour();
        form->MarkingChar = m_random.OneIn(2) ? '\0' : m_random.OneOf("*_#.");
        form->SoeChar = m_random.OneIn(2) ? '\0' : m_random.OneOf(">?:");
        return form;
    }

    Field* NewField() {
        Field* field = CreateField();
        Place(*field);
        field->Width = Number(1, m_shape.LongestText);
        field->Name = Maybe(Name());
        field->InitialValue = Maybe(Value());
        if (m_random.OneIn(3))
            field->Picout = field->Picin = "9(" + std::to_string(m_random.Between(1, 9)) + ")";
        if (!m_shape.OptionalAttributes)
            return field;
        field->Replenish = Maybe(Value());
        field->Height = Number(1, 2);
        field->Decimals = Number(0, 3);
        for (auto member :
             {&Field::BlankIsZero, &Field::MandatoryEntry, &Field::TabStop, &Field::Protected,
              &Field::SetModified, &Field::UsageOutput, &Field::FloatingCurrency,
              &Field::LeadingZeros, &Field::FloatingSign, &Field::TrailingSign,
              &Field::PositiveSign, &Field::BlankWhenZero, &Field::InsertDelimiters,
              &Field::ReplenishForBlanks, &Field::InitialCursor})
            field->*member = Number(0, 1);
        for (auto member : {&Field::VariableColumn, &Field::VariableRow, &Field::Contents,
                            &Field::Value, &Field::Emphasis, &Field::Highlight, &Field::Intensity,
                            &Field::Justification, &Field::Case, &Field::DataType})
            field->*member = Number(1, 4);
        field->Colour = Colour();
        field->BackColour = Colour();
        return field;
    }

    Image* NewImage(std::int32_t imageLevels) {
        Image* image = CreateImage();
        Place(*image);
        image->Name = Maybe(Name());
        image->Height = Number(1, 3);
        image->Width = Number(1, m_shape.Width);
        if (m_random.OneIn(2)) {
            image->Count = Number(1, m_shape.MostRepeats);
            image->Direction = Number(1, 2);
            image->Spacing = Number(0, 3);
            image->IndexName = Maybe(Name());
            image->Type = image->Count > 0 ? RecordType::RepeatImage : RecordType::Image;
        }
        if (m_shape.OptionalAttributes) {
            image->Constants = Number(0, 1);
            image->Linked = Number(0, 1);
            for (auto member : {&Image::VariableColumn, &Image::VariableRow, &Image::Contents,
                                &Image::Highlight, &Image::Emphasis, &Image::Intensity})
                image->*member = Number(1, 4);
            image->Colour = Colour();
            image->BackColour = Colour();
        }
        Fill(ChildrenOf(*image), imageLevels);
        return image;
    }

    Heading* NewHeading() {
        Heading* heading = CreateHeading();
        Place(*heading);
        heading->InitialValue = Value(m_shape.AnyNumbers ? 0 : 1);
        heading->Width = static_cast<std::int32_t>(heading->InitialValue->size());
        if (m_shape.AnyNumbers && m_random.OneIn(2))
            heading->Width = Number(1, m_shape.Width);
        if (m_shape.OptionalAttributes) {
            heading->Highlight = Number(1, 4);
            heading->Intensity = Number(1, 4);
        }
        return heading;
    }

    template <class Kind>
    void Place(Kind& record) {
        record.Row = Number(1, m_shape.Height);
        record.Column = Number(1, m_shape.Width);
    }

    // A number from a sensible range or, when any will do, now and then an awkward one.
    std::int32_t Number(std::int32_t least, std::int32_t most) {
        constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
        constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
        constexpr std::array<std::int32_t, 12> kAwkward = {
            0, -1, -2, 80, 81, 255, 256, 32767, 65536, kHighest - 1, kHighest, kLowest};
        if (!m_shape.AnyNumbers || m_random.OneIn(2))
            return m_random.Between(least, most);
        if (m_random.OneIn(4))
            return static_cast<std::int32_t>(static_cast<std::uint32_t>(m_random.Next()));
        return kAwkward[static_cast<std::size_t>(
            m_random.Between(0, static_cast<std::int32_t>(kAwkward.size()) - 1))];
    }

    std::int32_t Colour() { return m_random.OneIn(2) ? 0 : m_random.OneOf("BCGKMRWY"); }

    Text Maybe(Text text) { return m_random.OneIn(3) ? Text() : text; }

    std::string Name() {
        std::string name(1, m_random.OneOf("ABCDEFGHIJKLMNOPQRSTUVWXYZ"));
        for (auto left = m_random.Between(0, 11); left > 0; --left)
            name += m_random.OneOf("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-");
        return name;
    }

    std::string Value(std::int32_t shortest = 0) {
        std::string value;
        for (auto left = m_random.Between(shortest, m_shape.LongestText); left > 0; --left)
            value += Character();
        return value;
    }

    char Character() {
        if (!m_shape.AnyBytes)
            return m_random.OneOf("ABCDEFGHIJ KLMNOPQRST UVWXYZ 0123456789 .,:/'()");
        for (;;) {
            const char c = static_cast<char>(static_cast<unsigned char>(m_random.Between(1, 255)));
            if (c != '"' && c != '\n' && c != '\r')
                return c;
        }
    }

    RandomShape m_shape;
    RandomNumbers m_random;
};

/// One random screen of a shape.
inline RecordList RandomScreen(const RandomShape& shape) {
    return RandomModel(shape).Screen();
}

} // namespace grolof::testing_support
