// A map as text, one record a line with what differs from an unprotected field or a normal
// constant, for comparison.
#pragma once

#include <string>
#include <vector>

#include "model/records.h"

namespace grolof::testing_support {

inline std::string Quoted(const Text& text) {
    return text ? "'" + *text + "'" : "-";
}

inline std::string PlaceOf(std::int32_t row, std::int32_t column, std::int32_t width) {
    return " " + std::to_string(row) + "," + std::to_string(column) + " *" + std::to_string(width);
}

inline std::string Named(const char* name, std::int32_t value, std::int32_t usual) {
    return value == usual ? "" : std::string(" ") + name + "=" + std::to_string(value);
}

inline std::string Named(const char* name, const Text& text) {
    return text ? std::string(" ") + name + "=" + Quoted(text) : "";
}

inline std::string LineOf(const Form& form) {
    return "map " + Quoted(form.Name) + " of " + Quoted(form.CopyName) +
           Named("ImageName", form.ImageName) + "\n";
}

inline std::string LineOf(const Field& field) {
    return "  " + field.Name.value_or("-") + PlaceOf(field.Row, field.Column, field.Width) +
           Named("TabStop", field.TabStop, 1) + Named("Protected", field.Protected, 0) +
           Named("SetModified", field.SetModified, 0) + Named("Intensity", field.Intensity, 1) +
           Named("Justification", field.Justification, 1) + Named("DataType", field.DataType, 1) +
           Named("BlankWhenZero", field.BlankWhenZero, 0) +
           Named("InitialCursor", field.InitialCursor, 0) + Named("Picin", field.Picin) +
           Named("Picout", field.Picout) + Named("InitialValue", field.InitialValue) + "\n";
}

inline std::string LineOf(const Heading& heading) {
    return "  " + Quoted(heading.InitialValue) +
           PlaceOf(heading.Row, heading.Column, heading.Width) +
           Named("Intensity", heading.Intensity, 1) + "\n";
}

/// The lines of all maps.
inline std::string ListingOf(const std::vector<RecordList>& maps) {
    std::string text;
    for (const RecordList& map : maps)
        for (Record& record : *map)
            text += record.Type == RecordType::Form    ? LineOf(AsForm(record))
                    : record.Type == RecordType::Field ? LineOf(AsField(record))
                                                       : LineOf(AsHeading(record));
    return text;
}

} // namespace grolof::testing_support
