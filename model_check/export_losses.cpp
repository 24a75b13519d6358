#include "model_check/export_losses.hpp"

#include "input_file/input_file.hpp"
#include "model_check/check_meaning.hpp"
#include "model_check/finding_parts.hpp"
#include "model_check/losses.hpp"

#include <algorithm>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <utility>

namespace velm {

std::uint64_t count_overflows(const Model& model, const std::filesystem::path& file, std::uint64_t lines_with_asterisks)
{
    std::uint64_t counts = 0; // of pairs, which the reader of the file makes out without their field
    check_meaning(model, [&](FindingKind kind, const Address& /*address*/, const std::string& /*message*/) {
        counts += kind == FindingKind::field_overflow ? 1 : 0;
    });
    if (lines_with_asterisks == counts) {
        return counts;
    }
    ReadOptions options;
    options.most_problems = std::numeric_limits<std::size_t>::max();
    const InputFile read = read_input_file(file, options);
    return counts + static_cast<std::uint64_t>(
                        std::count_if(read.problems.begin(), read.problems.end(), [](const InputProblem& problem) {
                            return finding_of(problem).kind == FindingKind::field_overflow;
                        }));
}

LossSample sample_losses(const Model& model, const std::filesystem::path& file)
{
    std::string beginning(sampled_bytes, '\0');
    std::ifstream input(file, std::ios::binary);
    input.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    beginning.resize(static_cast<std::size_t>(input.gcount()));
    const bool whole = input.peek() == std::ifstream::traits_type::eof();
    if (!whole) {
        beginning.resize(beginning.rfind('\n') + 1);
    }
    std::istringstream sample(std::move(beginning));
    LossCount losses(model, 0);
    ReadOptions options;
    options.most_problems = 0;
    options.on_field = [&](const FieldText& field) { losses.see(field); };
    static_cast<void>(read_input_file(sample, options));
    const Losses found = losses.result();
    return {found.reals, found.lossy(), whole};
}

} // namespace velm
