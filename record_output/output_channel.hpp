#pragma once

#include "record_output/output_file.hpp"

#include <cstddef>
#include <memory>

namespace velm {

/// The one open output file of an export: records are appended to a buffer, and the buffer to the file when it is
/// full and before the host hears of them. Failures of the file are thrown as ExportFailure, and what they concern is
/// not tried again.
class OutputChannel {
public:
    static constexpr std::size_t buffer_size = std::size_t{256} * 1024;

    /// Takes a file that is open and must outlive the channel.
    explicit OutputChannel(OutputFile& file);
    OutputChannel(const OutputChannel&) = delete;
    OutputChannel& operator=(const OutputChannel&) = delete;
    OutputChannel(OutputChannel&&) = delete;
    OutputChannel& operator=(OutputChannel&&) = delete;
    /// Hands on what was appended and is not yet in the file: an export that stops half-way leaves its records behind.
    /// Failures are ignored.
    ~OutputChannel();

    /// Room for at least `size` characters (at most buffer_size) behind what was appended.
    char* room_for(std::size_t size)
    {
        if (static_cast<std::size_t>(buffer_.get() + buffer_size - end_) < size) {
            hand_on();
        }
        return end_;
    }

    /// What lies between the last room and `end` is now part of the file.
    void append_up_to(char* end) { end_ = end; }

    /// Writes what was appended so far to the file.
    void hand_on();

    /// Hands on what is left and closes the file.
    void close();

private:
    OutputFile& file_;
    std::unique_ptr<char[]> buffer_;
    char* end_;
};

} // namespace velm
