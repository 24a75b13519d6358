#include "headless_host/headless_host.hpp"

#include <exception>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace velm {

namespace {

constexpr std::uint64_t requests_between_progress = 65'536;
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
    try {
        self.serve(Request(*request));
    } catch (const std::exception& failure) {
        self.record_fault(failure.what());
    }
    if (self.requests_ % requests_between_progress == 0 && self.on_progress) {
        self.on_progress(self.requests_);
    }
}

void HeadlessHost::serve(const Request& request)
{
    switch (request.key_position()) {
    case "GFILENAME"_key: return request.put_text(0, output_file_name_);
    case "PINFOHTML"_key: return append_to_panel(request.text(0));
    case "PPROGRESS"_key: progress_ = request.integer(0); return;
    default: model_answers_.answer(request);
    }
}

void HeadlessHost::append_to_panel(std::string_view fragment)
{
    panel_ += fragment;
    export_completed_ = fragment == "File Export is Complete</span></li>";
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

} // namespace velm
