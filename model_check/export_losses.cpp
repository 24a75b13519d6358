#include "model_check/export_losses.hpp"

#include "input_file/form_rules.hpp"
#include "input_file/input_file.hpp"
#include "model_check/losses.hpp"

#include <fstream>
#include <sstream>
#include <string>
#include <utility>

namespace velm {

std::uint64_t count_overflows(const std::filesystem::path& file, std::uint64_t lines_with_asterisks)
{
    std::uint64_t count = 0;
    if (lines_with_asterisks > 0) {
        ReadOptions options;
        options.most_problems = 0;
        options.on_problem = [&](const Finding& problem) {
            count += problem.rule == &form_rules::field_overflow ? 1 : 0;
        };
        options.on_field = [&](const FieldText& field) { // of a series, the number of its pairs
            count += field.address.column.empty() && !field.text.empty() ? 1 : 0;
        };
        static_cast<void>(read_input_file(file, options));
    }
    return count;
}

LossSample sample_losses(Model& model, const std::filesystem::path& file)
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
