#include "model_store/model_store.hpp"

#include <utility>

namespace velm {

namespace {

std::string joined(const std::vector<StoreProblem>& problems, bool more)
{
    std::string lines;
    for (const StoreProblem& problem : problems) {
        lines.append(lines.empty() ? "" : "\n").append(problem.text());
    }
    return more ? lines + "\nand more; put these right first" : lines;
}

} // namespace

std::string StoreProblem::text() const
{
    std::string place;
    const auto append = [&place](const char* kind, const std::string& part) {
        if (!part.empty()) {
            place.append(place.empty() ? "" : ", ").append(kind).append(part);
        }
    };
    append("table ", table);
    append("", row);
    append("column ", column);

    std::string line = place.empty() ? "" : place + ": ";
    if (!value.empty()) {
        line += "'" + value + "' ";
    }
    line += message;
    return remedy.empty() ? line : line + "; " + remedy;
}

StoreError::StoreError(std::vector<StoreProblem> found, bool more_than_listed)
    : std::runtime_error(joined(found, more_than_listed)), problems(std::move(found)), more(more_than_listed)
{
}

} // namespace velm
