#include "model_check/check_file.hpp"

#include "input_file/input_file.hpp"
#include "input_file/sections/section_of.hpp"
#include "model_check/check_values.hpp"
#include "model_check/field_finding.hpp"

#include <map>
#include <optional>
#include <system_error>
#include <utility>

namespace velm {

namespace {

/// Findings about values, whose places in the file are not known before it is read again.
class ValueFindings {
public:
    explicit ValueFindings(FindingList& list) : list_(list) {}

    void add(Finding finding)
    {
        if (++numbers_[finding.rule] > list_.most()) {
            list_.count(*finding.rule, 1);
            return;
        }
        finding.section = name_of(section_of(finding.address.table, finding.address.column));
        waiting_.emplace(finding.address.numbers, std::move(finding));
    }
    [[nodiscard]] bool empty() const { return waiting_.empty(); }

    /// Lists those about the field. Where a finding means a row, its first field counts.
    void list_those_of(const FieldText& field)
    {
        const auto [begin, end] = waiting_.equal_range(field.address.numbers);
        for (auto it = begin; it != end;) {
            const Address& address = it->second.address;
            if (address.table == field.address.table &&
                (address.column.empty() || address.column == field.address.column)) {
                it->second.place = field.place;
                list_.add(std::move(it->second));
                it = waiting_.erase(it);
            } else {
                ++it;
            }
        }
    }
    /// Those that no field is of.
    void list_the_rest()
    {
        for (auto& [numbers, finding] : waiting_) {
            list_.add(std::move(finding));
        }
    }

private:
    FindingList& list_;
    std::map<const FindingRule*, std::size_t> numbers_;
    std::multimap<RowNumbers, Finding> waiting_; ///< most fields have other numbers
};

/// Reads the file again, to say all in its order.
void list_in_order(const std::filesystem::path& file, FindingList& list, ValueFindings& values)
{
    ReadOptions reading;
    reading.most_problems = 0;
    reading.on_problem = [&](const Finding& problem) { list.add(problem); };
    reading.on_field = [&](const FieldText& field) {
        if (std::optional<Finding> finding = finding_of(field)) {
            list.add(*std::move(finding));
        }
        values.list_those_of(field);
    };
    static_cast<void>(read_input_file(file, reading));
    values.list_the_rest();
}

/// `model` is null, or becomes what the file holds, which is then read once only.
FileFindings check(const std::filesystem::path& file, const CheckOptions& options, Model* model)
{
    FileFindings result;
    result.file = file.string();
    FindingList list(result, options.most_of_a_rule, options.on_finding, options.ignored);
    ValueFindings values(list);
    std::error_code unknown;
    const std::uintmax_t size = std::filesystem::file_size(file, unknown);
    bool any_finding = false;
    bool any_problem = false;
    {
        ReadOptions reading;
        reading.most_problems = 0;
        reading.on_progress = [&](std::uint64_t bytes) {
            if (options.on_progress) {
                options.on_progress("check", bytes, unknown ? 0 : size);
            }
        };
        reading.on_field = [&](const FieldText& field) {
            if (std::optional<Finding> finding = finding_of(field)) {
                any_finding = true;
                if (model != nullptr) {
                    list.add(*std::move(finding));
                }
            }
        };
        if (model != nullptr) {
            reading.on_problem = [&](const Finding& problem) { list.add(problem); };
        }
        InputFile read = read_input_file(file, reading);
        any_problem = read.problem_count > 0;
        if (read.whole) { // with records missing, nothing can be said about how values belong together
            result.remarks =
                check_values(read.model, read.gaps, [&](Finding finding) { values.add(std::move(finding)); });
        }
        if (model != nullptr) {
            *model = std::move(read.model);
            values.list_the_rest();
            return result;
        }
    }
    if (any_problem || any_finding || !values.empty()) {
        list_in_order(file, list, values);
    }
    return result;
}

} // namespace

FileFindings check_input_file(const std::filesystem::path& file, const CheckOptions& options)
{
    return check(file, options, nullptr);
}

FileFindings check_and_read_input_file(const std::filesystem::path& file, Model& model)
{
    return check(file, {}, &model);
}

} // namespace velm
