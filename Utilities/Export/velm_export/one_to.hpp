#pragma once

#include <cstdint>

namespace velm {

/// The numbers from 1 to `count`, none for a count below 1. The count is taken once; the greatest integer is a count
/// like any other.
///
///     for (const Integer segment : OneTo(model.number_of_segments)) ...
class OneTo {
public:
    explicit OneTo(std::int32_t count) : last_(count < 1 ? 0 : count) {}

    class Iterator {
    public:
        explicit Iterator(std::int64_t number) : number_(number) {}
        std::int32_t operator*() const { return static_cast<std::int32_t>(number_); }
        Iterator& operator++()
        {
            ++number_;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

    private:
        std::int64_t number_;
    };

    [[nodiscard]] static Iterator begin() { return Iterator(1); }
    [[nodiscard]] Iterator end() const { return Iterator(last_ + 1); }

private:
    std::int64_t last_;
};

} // namespace velm
