#include "model_store/model_store.hpp"

#include <utility>

namespace velm {

namespace {

std::string joined(const std::vector<Finding>& problems, bool more)
{
    std::string lines;
    for (const Finding& problem : problems) {
        lines.append(lines.empty() ? "" : "\n").append(in_words(problem));
    }
    return more ? lines + "\nand more; put these right first" : lines;
}

} // namespace

Finding database_finding(const Address& address, std::string value, const std::string& message, std::string remedy)
{
    return {.rule = &database_row,
            .address = address,
            .message = (value.empty() ? "" : "'" + value + "' ") + message,
            .value = std::move(value),
            .remedy = std::move(remedy)};
}

StoreError::StoreError(std::vector<Finding> found, bool more_than_listed)
    : std::runtime_error(joined(found, more_than_listed)), problems(std::move(found)), more(more_than_listed)
{
}

} // namespace velm
