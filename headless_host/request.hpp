#pragma once

#include "headless_host/key_lookup.hpp"
#include "headless_host/prevelmwdll.h"
#include "host_link/host_keys.hpp"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// "GVOLUME"_key is the key's position in host_keys; a name that is no key does not compile.
consteval std::int32_t operator""_key(const char* name, std::size_t characters)
{
    const std::int32_t position = find_key(name, static_cast<std::int32_t>(characters + 1));
    return position != velm_unknown_key ? position : throw std::logic_error("no such host key");
}

/// A request that has no answer. what() says which and why: "GVOLUME(segment 41): the model has 40 segments".
class Unanswerable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A sound request: a known key in its own call form with its own text lengths. Arguments count from 0;
/// those named below must be of the kind that the key has there.
class Request {
public:
    /// What each of the two time-series tables of the plug-in holds.
    static constexpr std::size_t series_entries = 100'000;

    /// Throws Unanswerable when `passed` is not sound.
    explicit Request(const velm_host_request& passed);

    [[nodiscard]] std::int32_t key_position() const { return passed_.key_position; }

    [[nodiscard]] std::int32_t integer(std::size_t argument) const
    {
        std::int32_t value = 0;
        std::memcpy(&value, passed_.values[argument], sizeof value);
        return value;
    }
    void put(std::size_t argument, std::int32_t value) const
    {
        std::memcpy(passed_.values[argument], &value, sizeof value);
    }
    void put(std::size_t argument, float value) const { std::memcpy(passed_.values[argument], &value, sizeof value); }

    /// The text that the plug-in passes, the key's only one, up to its first NUL and at most its length.
    [[nodiscard]] std::string_view text(std::size_t argument) const;
    /// Fills the whole field, with blanks after `text`. Throws Unanswerable for a text longer than the field.
    void put(std::size_t argument, const std::string& text) const;
    /// Throws Unanswerable when there are more than series_entries.
    void put_series(std::size_t argument, const std::vector<float>& series) const;

    /// The item whose number is `argument`, counted from 1. Throws Unanswerable when there is none: "the flow field has
    /// 2 flow functions".
    template <class Item>
    [[nodiscard]] const Item& pick(const std::vector<Item>& items, std::size_t argument) const
    {
        const std::int32_t number = integer(argument);
        if (number < 1 || static_cast<std::size_t>(number) > items.size()) {
            no_such_item(items.size(), argument);
        }
        return items[static_cast<std::size_t>(number) - 1];
    }

    [[noreturn]] void unanswerable(const std::string& reason) const;

    /// What is asked, as people read it: GVOLUME(segment 41), PINFOHTML("<li>" of length 5).
    [[nodiscard]] std::string in_words() const;

private:
    [[noreturn]] void no_such_item(std::size_t count, std::size_t argument) const;

    const velm_host_request& passed_;
};

/// In quotes, up to the first NUL and of a long text the beginning; what is not printable ASCII becomes a question
/// mark.
[[nodiscard]] std::string quoted_text(std::string_view text);

/// The request in words; of an unsound one, what is wrong with it.
[[nodiscard]] std::string request_in_words(const velm_host_request& passed);

} // namespace velm
