#include "record_output/output_channel.hpp"

#include <cstring>

namespace velm {

ExportFailure::ExportFailure(const char* operation, const char* message) noexcept : operation_(operation)
{
    std::strncpy(message_, message, message_room - 1);
}

OutputChannel::OutputChannel(OutputFile& file)
    : file_(file), buffer_(std::make_unique<char[]>(buffer_size)), end_(buffer_.get())
{
}

OutputChannel::~OutputChannel()
{
    try {
        hand_on();
    } catch (const ExportFailure&) { // NOLINT(bugprone-empty-catch): the export has failed already
    }
}

void OutputChannel::hand_on()
{
    const auto size = static_cast<std::size_t>(end_ - buffer_.get());
    end_ = buffer_.get(); // first: what could not be written is not tried again
    if (size != 0) {
        file_.write(buffer_.get(), size);
    }
}

void OutputChannel::close()
{
    hand_on();
    file_.close();
}

} // namespace velm
