#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velm {

/// A table whose entries are counted from 1 and zero at first. Entries beyond those that it is made with take room when
/// they are not zero, and only then: a host that announces many items and says nothing of them costs nothing.
template <class Entry>
class Table {
public:
    /// Forgets all entries and makes room for `entries`.
    void make(std::size_t entries)
    {
        entries_.assign(entries, Entry{});
        beyond_ = {};
    }

    /// Entry `number`, 1 or more. The reference holds until another entry is asked for.
    Entry& operator[](std::int32_t number)
    {
        const auto position = static_cast<std::size_t>(number) - 1;
        return position < entries_.size() ? entries_[position] : entry_beyond(position);
    }

private:
    /// The last entry that was asked for beyond the others; it joins them when the next one is, if it is not zero.
    [[gnu::noinline]] Entry& entry_beyond(std::size_t position)
    {
        if (position != beyond_position_) {
            if (beyond_ != Entry{}) {
                entries_.resize(beyond_position_ + 1);
                entries_.back() = beyond_;
            }
            beyond_ = {};
            beyond_position_ = position;
        }
        return position < entries_.size() ? entries_[position] : beyond_;
    }

    std::vector<Entry> entries_;
    Entry beyond_{};
    std::size_t beyond_position_ = 0;
};

} // namespace velm
