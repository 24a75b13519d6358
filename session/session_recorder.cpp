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
    if (file_ == nullptr || !failure_.empty()) {
        return;
    }
    try {
        work();
    } catch (const std::exception& error) {
        try {
            failure_ = error.what();
        } catch (const std::exception&) {
            failure_ = "no memory"; // short enough to need none
        }
    }
}

SessionRecorder::SessionRecorder(const std::filesystem::path& file) : name_(file), file_(create_new_file(file))
{
    if (!is_written("{\"velm_session\":" + std::to_string(session_version) + "}\n")) {
        const int reason = errno;
        remove_new_file(file_, file);
        throw std::system_error(reason, std::generic_category(), "cannot write " + shown(file));
    }
}

SessionRecorder::~SessionRecorder()
{
    close();
    if (file_ != nullptr) {
        (void)std::fclose(file_); // what failed to be written is all that is left
    }
}

void SessionRecorder::remove_if_failed() noexcept
{
    if (file_ != nullptr && !failure_.empty()) {
        remove_new_file(std::exchange(file_, nullptr), name_);
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

bool SessionRecorder::is_written(const std::string& line) const
{
    return std::fwrite(line.data(), 1, line.size(), file_) == line.size() && std::fflush(file_) == 0;
}

void SessionRecorder::write(const std::string& line) const
{
    if (!is_written(line)) {
        throw std::system_error(errno, std::generic_category(), "the session " + shown(name_) + " cannot be written");
    }
}

} // namespace velm
