#include "headless_host/headless_host.hpp"

#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace velm {

namespace {

constexpr std::size_t most_faults_kept = 100;
constexpr std::size_t longest_file_name = 512;

} // namespace

HeadlessHost::HeadlessHost(const Model& model, std::string output_file_name)
    : model_answers_(model), output_file_name_(std::move(output_file_name))
{
    const std::string& name = output_file_name_;
    if (name.empty() || name.size() > longest_file_name) {
        throw std::invalid_argument("output file name of " + std::to_string(name.size()) +
                                    " bytes; it must have 1 to 512");
    }
    if (name.back() == ' ' || name.find('\0') != std::string::npos) {
        throw std::invalid_argument("output file name '" + name +
                                    "': it must not contain a NUL or end in a blank, which the plug-in cuts off");
    }
}

void HeadlessHost::answer(void* host, const velm_host_request* request) noexcept
{
    auto& self = *static_cast<HeadlessHost*>(host);
    ++self.requests_;
    ++self.values_;
    try {
        self.serve(Request(*request));
    } catch (const std::exception& failure) {
        self.record_fault(failure.what());
    }
    if (self.values_ >= self.next_progress_ && self.on_progress) {
        self.next_progress_ = self.values_ + values_between_progress;
        self.on_progress(self.values_);
    }
}

void HeadlessHost::serve(const Request& request)
{
    switch (request.key_position()) {
    case "GFILENAME"_key: return request.put(0, output_file_name_);
    case "PINFOHTML"_key: return append_to_panel(request.text(0));
    case "PPROGRESS"_key: progress_ = request.integer(0); return;
    case "GNBFP"_key:
    case "GNBWK"_key: return serve_pair_count(request);
    default: model_answers_.answer(request);
    }
}

/// The series itself is fetched next, whole.
void HeadlessHost::serve_pair_count(const Request& request)
{
    model_answers_.answer(request);
    values_ += static_cast<std::uint64_t>(request.integer(2));
}

void HeadlessHost::append_to_panel(std::string_view fragment)
{
    panel_ += fragment;
    export_completed_ = is_completion_message(fragment);
}

void HeadlessHost::record_fault(const char* words) noexcept
{
    ++fault_count_;
    try {
        if (faults_.size() < most_faults_kept) {
            faults_.emplace_back(words);
        }
    } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): the fault is counted all the same
    }
}

bool is_completion_message(std::string_view fragment)
{
    return fragment.substr(0, fragment.find('\0')) == "File Export is Complete</span></li>";
}

} // namespace velm
