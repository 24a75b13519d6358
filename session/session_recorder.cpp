#include "session/session_recorder.hpp"

#include "headless_host/request.hpp"
#include "plain_text/plain_text.hpp"
#include "session/exchange.hpp"
#include "session/system.hpp"

#include <cerrno>
#include <cstring>
#include <exception>
#include <system_error>
#include <utility>

namespace velm {

template <class Work>
void SessionRecorder::attempt(Work work) noexcept
{
    if (file_ == nullptr) {
        return;
    }
    try {
        work();
    } catch (const std::exception& error) {
        failed_ = std::exchange(file_, nullptr);
        try {
            failure_ = error.what();
        } catch (const std::exception&) {
            failure_ = "no memory"; // short enough to need none
        }
    }
}

SessionRecorder::SessionRecorder(const std::filesystem::path& file)
    : name_(file), file_(create_new_file(file, "{\"velm_session\":" + std::to_string(session_version) + "}\n"))
{
}

SessionRecorder::~SessionRecorder()
{
    close();
    if (failed_ != nullptr) {
        (void)std::fclose(failed_); // what failed to be written is all that is left
    }
}

void SessionRecorder::remove_if_failed() noexcept
{
    if (failed_ != nullptr) {
        remove_new_file(std::exchange(failed_, nullptr), name_);
    }
}

void SessionRecorder::close() noexcept
{
    attempt([this] {
        write("{\"end\":" + std::to_string(exchanges_) + "}\n");
        (void)std::fclose(std::exchange(file_, nullptr)); // nothing is left to be written
    });
}

void SessionRecorder::before_answer(const velm_host_request& request) noexcept
{
    attempt([&] {
        const auto bytes = bytes_of(request);
        constexpr std::size_t series_bytes = Request::series_entries * sizeof(float);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const bool is_counted = before_.counted_pairs && bytes[i].size() == series_bytes;
            before_.bytes[i].assign(is_counted ? std::string_view() : bytes[i]);
        }
    });
}

void SessionRecorder::after_answer(const velm_host_request& request) noexcept
{
    attempt([&] {
        write(exchange_line(exchanges_ + 1, request, before_));
        ++exchanges_;
        before_.counted_pairs.reset();
        const bool is_count = request.key_position == "GNBFP"_key || request.key_position == "GNBWK"_key;
        if (is_count && key_of(request) != nullptr) {
            std::memcpy(&before_.counted_pairs.emplace(), request.values[2], sizeof(std::int32_t));
        }
    });
}

void SessionRecorder::write(const std::string& line)
{
    if (std::fwrite(line.data(), 1, line.size(), file_) != line.size() || std::fflush(file_) != 0) {
        throw std::system_error(errno, std::generic_category(), "the session " + shown(name_) + " cannot be written");
    }
}

} // namespace velm
