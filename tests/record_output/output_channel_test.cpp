#include "record_output/write_record.hpp"

#include "tests/support/scripted_file.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

constexpr std::int32_t records = 40'000; // of 20 or some 50 bytes: six buffers

/// The record that write() appends, by other means.
std::string line(std::int32_t number)
{
    const std::string text = std::to_string(number);
    return (number % 3 == 0 ? std::string(18 - text.size(), ' ') : ' ' + std::string(40, 'x') + "  ") + text + "\r\n";
}

void write(OutputChannel& out, std::int32_t from, std::int32_t to)
{
    std::array<char, 40> text{};
    text.fill('x');
    for (std::int32_t i = from; i <= to; ++i) {
        if (i % 3 == 0) {
            write_record<"(I18)">(out, i);
        } else {
            write_free_record(out, text, i);
        }
    }
}

const std::string& all_lines()
{
    static const std::string all = [] {
        std::string lines;
        for (std::int32_t i = 1; i <= records; ++i) {
            lines += line(i);
        }
        return lines;
    }();
    return all;
}

TEST(OutputChannel, takes_a_record_that_fills_its_buffer_to_the_last_byte)
{
    ScriptedFile file;
    OutputChannel out(file);
    for (std::size_t size : {OutputChannel::buffer_size, std::size_t{1}, OutputChannel::buffer_size}) {
        char* room = out.room_for(size);
        std::memset(room, 'a', size);
        out.append_up_to(room + size);
    }
    out.close();
    EXPECT_EQ(file.content, std::string(2 * OutputChannel::buffer_size + 1, 'a'));
}

TEST(OutputChannel, touches_the_file_no_more_after_its_nth_operation_has_failed)
{
    for (int n = 1;; ++n) {
        ScriptedFile file;
        file.failing_operation = n;
        std::string failure;
        try {
            OutputChannel out(file);
            write(out, 1, records);
            out.close();
        } catch (const ExportFailure& thrown) {
            failure = thrown.operation();
        }
        if (failure.empty()) { // nothing is lost or out of order where a buffer ends
            EXPECT_TRUE(file.content == all_lines());
            EXPECT_GT(n, 5) << "writes and a close were to fail";
            break;
        }
        EXPECT_EQ(file.operations.size(), static_cast<std::size_t>(n));
        EXPECT_EQ(file.operations.back(), failure);
        EXPECT_EQ(file.content, all_lines().substr(0, file.content.size()));
    }
}

TEST(OutputChannel, hands_on_what_was_appended_when_an_export_stops_half_way)
{
    ScriptedFile file;
    try {
        OutputChannel out(file);
        write(out, 1, records / 2);
        throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
    }
    EXPECT_TRUE(file.content == all_lines().substr(0, file.content.size()));
    EXPECT_EQ(file.content.substr(file.content.size() - line(records / 2).size()), line(records / 2));
    EXPECT_EQ(file.operations.back(), "WRITE") << "closing is left to the file";
}

} // namespace
} // namespace velm
