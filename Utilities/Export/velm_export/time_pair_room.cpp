#include "Utilities/Export/velm_export/time_pair_room.hpp"

#include "record_output/output_file.hpp"

#include <string>

namespace velm {

void refuse_more_than_the_room(Integer pairs, const char* kind, Integer system, Integer item)
{
    if (pairs <= static_cast<Integer>(time_pair_room)) {
        return;
    }
    const std::string message = "system " + std::to_string(system) + ", " + kind + " " + std::to_string(item) +
                                " has " + std::to_string(pairs) + " time pairs; at most " +
                                std::to_string(time_pair_room) + " can be exported";
    throw ExportFailure("EXPORT", message.c_str());
}

} // namespace velm
