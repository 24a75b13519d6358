#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace velm {

/// One line at the foot of the terminal: how far a work is, how fast it goes and how long it will take.
/// The line is removed when the bar goes.
class ProgressBar {
public:
    /// `whole` is how much there is to do; 0 when that is not known. The names outlive the bar. Nothing is drawn when
    /// `quiet`, nor where there is no terminal that can.
    ProgressBar(std::string_view work_name, std::string_view unit_name, std::uint64_t whole, bool quiet);
    ~ProgressBar();
    ProgressBar& operator=(ProgressBar&&) = delete; // neither copied nor moved

    /// Redraws when the last time is long enough ago.
    void show(std::uint64_t done);

private:
    using Clock = std::chrono::steady_clock;

    std::string_view work;
    std::string_view unit;
    std::uint64_t total;
    bool shown;
    Clock::time_point start = Clock::now();
    Clock::time_point next_drawing = start;
};

/// The bar's text: "export [########........]  50 %  1.2 M requests/s  0:03 left", at most `columns` characters.
[[nodiscard]] std::string progress_text(std::string_view work, std::string_view unit, std::uint64_t done,
                                        std::uint64_t total, double seconds, std::size_t columns);

} // namespace velm
