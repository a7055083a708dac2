#include "support/environment.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <set>

#include <unistd.h>

extern "C" char** environ; // NOLINT(readability-redundant-declaration): POSIX leaves it to us

namespace grolof {

void* (*EnvironmentRealloc)(void* table, std::size_t bytes) = std::realloc;

namespace {

constexpr std::size_t kSpareEntries = 9;

// The owned table: entries ended by none. Never released at exit, since it is the environment
// that exit handlers see.
struct OwnedTable {
    char** Entries = nullptr;
    std::size_t Capacity = 0; // entries without the end mark
};
OwnedTable s_table;

std::size_t CountEntries() {
    std::size_t count = 0;
    while (environ != nullptr && environ[count] != nullptr)
        ++count;
    return count;
}

// Somebody (setenv, clearenv) may have given the process another environment since.
void ForgetAbandonedTable() {
    if (s_table.Entries == nullptr || environ == s_table.Entries)
        return;
    std::free(s_table.Entries);
    s_table = {};
}

// Makes or enlarges the table to `capacity` entries, of which `count` are in use; the rest and
// the end mark are cleared. False, and nothing changed, without memory.
bool Enlarge(std::size_t count, std::size_t capacity) {
    const bool isNew = s_table.Entries == nullptr;
    void* memory = EnvironmentRealloc(s_table.Entries, (capacity + 1) * sizeof(char*));
    if (memory == nullptr)
        return false;
    auto** entries = static_cast<char**>(memory);
    if (isNew && count != 0)
        std::copy_n(environ, count, entries);
    std::fill(entries + count, entries + capacity + 1, nullptr);
    s_table = {entries, capacity};
    environ = entries;
    return true;
}

// Makes the owned table the environment, with room for one more entry and its end mark.
bool OwnTable() {
    ForgetAbandonedTable();
    const std::size_t count = CountEntries();
    if (s_table.Entries != nullptr && s_table.Capacity >= count + 2)
        return true;
    return Enlarge(count, count + kSpareEntries);
}

bool IsEntryOf(const char* entry, const char* name) {
    while (*name != '\0' && *name != '=' && *entry == *name) {
        ++entry;
        ++name;
    }
    return (*name == '\0' || *name == '=') && *entry == '=';
}

// The slot of a name, or the end mark, and then errno says so, also to a putenv that succeeds.
char** FindSlot(const char* name) {
    char** slot = s_table.Entries;
    while (*slot != nullptr && !IsEntryOf(*slot, name))
        ++slot;
    if (*slot == nullptr)
        errno = ENOENT;
    return slot;
}

} // namespace

int EnvironmentPut(const std::string& entry) {
    // Not destroyed at exit: the environment points into it.
    static auto& texts = *new std::set<std::string>;
    return putenv(const_cast<char*>(texts.insert(entry).first->c_str()));
}

std::size_t EnvironmentCapacity() {
    return environ == s_table.Entries ? s_table.Capacity : 0;
}

} // namespace grolof

extern "C" int putenv(char* entry) noexcept {
    if (!grolof::OwnTable())
        return -1;
    *grolof::FindSlot(entry) = entry; // what follows the last entry is cleared already
    return 0;
}

extern "C" int unsetenv(const char* name) noexcept {
    if (!grolof::OwnTable())
        return -1;
    char** slot = grolof::FindSlot(name);
    if (*slot == nullptr)
        return -1;
    do
        slot[0] = slot[1];
    while (*slot++ != nullptr);
    return 0;
}
