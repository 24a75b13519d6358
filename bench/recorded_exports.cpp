// Exports one workload through the headless host, plain and recorded in turn, round after round, and prints a line of
// JSON for each round: what recording costs.
#include "bench/measuring.hpp"
#include "bench/workloads.hpp"
#include "headless_host/headless_host.hpp"
#include "session/session_recorder.hpp"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <string>

namespace velm::bench {
namespace {

constexpr int tries_of_a_round = 3;

struct Cost {
    double cpu = 0; ///< seconds of the processor in this process, the system's among them
    double wall = 0;
};

Cost least(const Cost& one, const Cost& other)
{
    return {std::min(one.cpu, other.cpu), std::min(one.wall, other.wall)};
}

double cpu_seconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Work>
Cost cost_of(Work work)
{
    const double before = cpu_seconds();
    const double wall = seconds_of(work);
    return {cpu_seconds() - before, wall};
}

class Exporter {
public:
    Exporter(const std::string& plug_in, const Model& model, const std::string& output, const std::string& session)
        : importexport_(importexport_of(plug_in)), host_(model, output), output_(output), session_(session)
    {
    }
    ~Exporter() { remove_files(); }
    Exporter(const Exporter&) = delete;
    Exporter& operator=(const Exporter&) = delete;
    Exporter(Exporter&&) = delete;
    Exporter& operator=(Exporter&&) = delete;

    Cost plain()
    {
        remove_files();
        velm_host_attach(&HeadlessHost::answer, &host_);
        return cost_of(importexport_);
    }

    /// From the session's first byte to its last.
    Cost recorded()
    {
        remove_files();
        return cost_of([this] {
            SessionRecorder recorder(session_);
            recorder_ = &recorder;
            velm_host_attach(&Exporter::answer, this);
            importexport_();
            recorder.close();
            if (!recorder.failure().empty()) {
                throw std::runtime_error(recorder.failure());
            }
        });
    }

private:
    static void answer(void* exporter, const velm_host_request* request)
    {
        auto& self = *static_cast<Exporter*>(exporter);
        self.recorder_->record(*request, [&] { HeadlessHost::answer(&self.host_, request); });
    }

    void remove_files() const
    {
        unlink(output_.c_str());
        unlink(session_.c_str());
    }

    void (*importexport_)();
    HeadlessHost host_;
    SessionRecorder* recorder_ = nullptr;
    std::string output_;
    std::string session_;
};

void run(const std::string& plug_in, const std::string& workload_name, const std::string& output, int rounds)
{
    const std::string session = output + ".jsonl";
    const Model model = workload(workload_name);
    Exporter exporter(plug_in, model, output, session);
    exporter.plain();
    for (int round = 0; round < rounds; ++round) {
        Cost plain = exporter.plain();
        Cost recorded = exporter.recorded();
        for (int i = 1; i < tries_of_a_round; ++i) {
            plain = least(plain, exporter.plain());
            recorded = least(recorded, exporter.recorded());
        }
        std::printf("{\"plain cpu\": %.9f, \"recorded cpu\": %.9f, \"plain wall\": %.9f, \"recorded wall\": %.9f, "
                    "\"bytes\": %zu, \"session bytes\": %zu}\n",
                    plain.cpu, recorded.cpu, plain.wall, recorded.wall, size_of_file(output), size_of_file(session));
        std::fflush(stdout);
    }
}

} // namespace
} // namespace velm::bench

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fputs("Usage: bench_recording PLUG_IN WORKLOAD OUTPUT ROUNDS\n", stderr);
        return 2;
    }
    velm::bench::run(argv[1], argv[2], argv[3], std::stoi(argv[4]));
}
