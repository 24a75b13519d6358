#include "tool/system/progress_bar.hpp"

#include "tool/system/operating_system.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

namespace velm {
namespace {

constexpr auto time_between_drawings = std::chrono::milliseconds(100);

template <class... Values>
std::string formatted(const char* format, Values... values)
{
    std::array<char, 64> text{};
    (void)std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

/// "950", "1.2 k", "12.0 M"
std::string short_number(double number)
{
    if (number < 1e3) {
        return formatted("%.0f", number);
    }
    return number < 1e6 ? formatted("%.1f k", number / 1e3) : formatted("%.1f M", number / 1e6);
}

/// "0:07", "12:30", "1:02:30"
std::string clock_time(double seconds)
{
    const auto whole = static_cast<long>(std::min(seconds, 359'999.0));
    const auto minutes = whole / 60 % 60;
    return whole < 3600 ? formatted("%ld:%02ld", minutes, whole % 60)
                        : formatted("%ld:%02ld:%02ld", whole / 3600, minutes, whole % 60);
}

} // namespace

std::string progress_text(std::string_view work, std::string_view unit, std::uint64_t done, std::uint64_t total,
                          double seconds, std::size_t columns)
{
    std::string text(work);
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    if (total > 0) {
        constexpr std::size_t width = 24;
        const double part = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
        std::string bar(width, '.');
        bar.replace(0, static_cast<std::size_t>(part * width), static_cast<std::size_t>(part * width), '#');
        text.append(" [").append(bar).append("] ") += formatted("%3d %%", static_cast<int>(part * 100));
    } else {
        text.append(" ").append(short_number(static_cast<double>(done))).append(" ").append(unit);
    }
    if (rate > 0) {
        text.append("  ").append(short_number(rate)).append(" ").append(unit).append("/s");
    }
    if (rate > 0 && total > 0) {
        const double left = static_cast<double>(total - std::min(done, total)) / rate;
        text.append("  ").append(clock_time(left)).append(" left");
    }
    return text.substr(0, columns);
}

ProgressBar::ProgressBar(std::string_view work_name, std::string_view unit_name, std::uint64_t whole, bool quiet)
    : work(work_name), unit(unit_name), total(whole), shown(!quiet && has_capable_terminal())
{
}

ProgressBar::~ProgressBar()
{
    if (shown) {
        std::cerr << '\r' << std::string(terminal_columns() - 1, ' ') << '\r' << std::flush;
    }
}

void ProgressBar::show(std::uint64_t done)
{
    const auto now = Clock::now();
    if (!shown || now < next_drawing) {
        return;
    }
    next_drawing = now + time_between_drawings;
    const std::size_t columns = terminal_columns() - 1; // a full line would move the cursor to the next
    std::string text =
        progress_text(work, unit, done, total, std::chrono::duration<double>(now - start).count(), columns);
    text.resize(columns, ' ');
    std::cerr << '\r' << text << std::flush;
}

} // namespace velm
