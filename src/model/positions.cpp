#include "model/positions.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace grolof {

namespace {

struct Collector {
    FieldPositions Found;
    std::int32_t FormWidth = 0;
    std::int64_t MostTimes = kMostRecords; ///< repetitions of an image that are looked at
    std::int64_t Left = kMostRecords;      ///< records that may still be looked at
};

void Collect(Collector& collector, const List* list, Offset base);

void CollectRepetitions(Collector& collector, const Image& image, Offset base) {
    const std::int64_t times = std::min(TimesPlayed(image), collector.MostTimes);
    for (std::int64_t i = 0; i < times && collector.Left > 0; ++i)
        Collect(collector, image.Children.get(), RepetitionOffset(image, base, i));
}

void Collect(Collector& collector, const List* list, Offset base) {
    if (list == nullptr)
        return;
    for (Record& record : *list) {
        if (--collector.Left < 0)
            return;
        switch (record.Type) {
        case RecordType::Form:
            collector.FormWidth = AsForm(record).Width;
            Collect(collector, record.Children.get(), base);
            break;
        case RecordType::Field: {
            if (collector.FormWidth == 0)
                break;
            const Field& field = AsField(record);
            collector.Found.Starts.insert(
                WrappedPosition(base, field.Row, field.Column, collector.FormWidth));
            break;
        }
        case RecordType::Image:
            Collect(collector, record.Children.get(), ImageOffset(AsImage(record), base));
            break;
        case RecordType::RepeatImage:
            CollectRepetitions(collector, AsImage(record), base);
            break;
        case RecordType::Heading:
            break;
        }
    }
}

// True when the second heading continues the first after one free column.
bool Continues(const FieldPositions& fields, const Heading& first, const Heading& second) {
    const std::int64_t gap = std::int64_t{first.Column} + first.Width;
    return first.Row == second.Row && gap + 1 == second.Column &&
           !FieldAtPosition(fields, first.Row, gap);
}

void Join(Heading& first, const Heading& second) {
    first.InitialValue = first.InitialValue.value_or("") + " " + TextOf(second.InitialValue);
    first.Width = static_cast<std::int32_t>(std::int64_t{first.Width} + 1 + second.Width);
}

// Lists that the position walk enters. Merging is the same at every repetition, so a repeat
// image is entered once.
bool IsEntered(Record& record) {
    switch (record.Type) {
    case RecordType::Form:
    case RecordType::Image:
        return record.Children != nullptr;
    case RecordType::RepeatImage:
        return TimesPlayed(AsImage(record)) > 0;
    default:
        return false;
    }
}

void Merge(const FieldPositions& fields, List& list) {
    for (Record* record = ListFirst(list); record != nullptr; record = ListNext(list)) {
        if (IsEntered(*record))
            Merge(fields, *record->Children);
        if (record->Type != RecordType::Heading)
            continue;
        for (Record* next = ListPeekNext(list);
             next != nullptr && next->Type == RecordType::Heading &&
             Continues(fields, AsHeading(*record), AsHeading(*next));
             next = ListPeekNext(list)) {
            Join(AsHeading(*record), AsHeading(*next));
            DestroyRecord(ListRemoveAfterCursor(list));
        }
    }
}

} // namespace

std::int64_t ExpandedCount(const List& list) {
    std::int64_t count = 0;
    for (Record& record : list) {
        ++count;
        if (record.Children) {
            const bool repeats = record.Type == RecordType::RepeatImage;
            const std::int64_t times = repeats ? TimesPlayed(AsImage(record)) : 1;
            // Both factors are bounded (the inner count just above the limit, the times by 32
            // bits), so the product fits.
            count += times * (1 + ExpandedCount(*record.Children));
        }
        if (count > kMostRecords)
            return kMostRecords + 1;
    }
    return count;
}

FieldPositions CollectFieldPositions(const List& screen) {
    Collector collector;
    Collect(collector, &screen, {});
    if (collector.Left <= 0) { // what stands behind the repetitions counts all the same
        collector.MostTimes = 1;
        collector.Left = std::numeric_limits<std::int64_t>::max();
        Collect(collector, &screen, {});
    }
    return std::move(collector.Found);
}

bool FieldAtPosition(const FieldPositions& positions, std::int64_t row, std::int64_t column) {
    return positions.Starts.contains({row, column});
}

bool FieldAtPosition(const List& screen, std::int64_t row, std::int64_t column) {
    return FieldAtPosition(CollectFieldPositions(screen), row, column);
}

void MergeHeadings(List& screen) {
    Merge(CollectFieldPositions(screen), screen);
}

} // namespace grolof
