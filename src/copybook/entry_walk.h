// The walk over the control entries of a DPS screen: its named fields and named plain images, in
// the order in which the field control area numbers them.
#pragma once

#include <cstdint>
#include <utility>

#include "model/positions.h"
#include "model/records.h"

namespace grolof {

/// Where the walk is when it shows a record.
struct EntryPlace {
    const Form* In;         ///< form whose width counts here
    Offset Base{};          ///< offset of the record's parent
    std::int64_t Index = 0; ///< 1-based number of the entry
    std::int64_t Times = 1; ///< how often it stands in the area
    bool Repeated = false;  ///< inside a repeat image
};

/// Shows a visitor every form and every entry, called as visit(Record&, const EntryPlace&). An
/// entry inside repeat images is shown once, where its first repetition stands; the index goes on
/// behind the last one.
template <class Visit>
class EntryWalk {
public:
    EntryWalk(const Form& first, Visit visit) : m_visit(std::move(visit)), m_place{&first} {}

    void Walk(const List* list) {
        if (list == nullptr)
            return;
        for (Record& record : *list)
            Enter(record);
    }

private:
    void Enter(Record& record) {
        switch (record.Type) {
        case RecordType::Form:
            m_place.In = &AsForm(record);
            m_visit(record, m_place);
            Walk(record.Children.get());
            break;
        case RecordType::Field:
            if (AsField(record).Name)
                Show(record);
            break;
        case RecordType::Image:
            if (AsImage(record).Name)
                Show(record);
            WalkAt(ImageOffset(AsImage(record), m_place.Base), AsImage(record));
            break;
        case RecordType::RepeatImage:
            Repeat(AsImage(record));
            break;
        case RecordType::Heading:
            break;
        }
    }

    void Show(Record& record) {
        ++m_place.Index;
        m_visit(record, m_place);
    }

    void WalkAt(Offset offset, const Image& image) {
        const Offset outer = std::exchange(m_place.Base, offset);
        Walk(image.Children.get());
        m_place.Base = outer;
    }

    void Repeat(const Image& image) {
        const std::int64_t count = TimesPlayed(image), before = m_place.Index;
        if (count == 0)
            return;
        const bool outside = !std::exchange(m_place.Repeated, true);
        const std::int64_t times = std::exchange(m_place.Times, m_place.Times * count);
        WalkAt(RepetitionOffset(image, m_place.Base, 0), image);
        m_place.Times = times;
        m_place.Repeated = !outside;
        m_place.Index += (m_place.Index - before) * (count - 1);
    }

    Visit m_visit;
    EntryPlace m_place;
};

/// Walks over the entries of a screen, which begins with a form.
template <class Visit>
void ForEachEntry(const List& screen, Visit visit) {
    EntryWalk<Visit>(*FormOf(screen), std::move(visit)).Walk(&screen);
}

} // namespace grolof
