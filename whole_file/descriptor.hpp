#pragma once

#include <utility>

#include <unistd.h>

namespace velm {

/// An open file of the system; closed with the object.
class Descriptor {
public:
    explicit Descriptor(int opened) : number_(opened) {}
    ~Descriptor()
    {
        if (number_ >= 0) {
            close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }

    [[nodiscard]] bool valid() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

} // namespace velm
