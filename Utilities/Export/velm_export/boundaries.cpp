#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/Export/velm_export/time_pair_room.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "host_link/request.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void boundaries(OutputChannel& out)
{
    model.series_times.assign(time_pair_room, 0);
    model.series_values.assign(time_pair_room, 0);
    write_free_record(out,
                      literal<"======================== Boundary Information ===================================">);
    // the one section that is not announced

    write_record<"(I5,15x,'Number of Systems')">(out, model.number_of_systems);
    Integer boundary_count = 0;
    Integer boundary_segment = 0;
    Integer pairs = 0;
    for (const Integer system : OneTo(model.number_of_systems)) {
        write_free_record(out, model.system_names[system]);
        request<"GNOBC">(system, boundary_count);
        write_record<"(I5,15x,'Number of boundaries')">(out, boundary_count);
        if (boundary_count <= 0) {
            continue;
        }
        Real scale_factor = 0;
        request<"GSCALB">(system, scale_factor);
        Real conversion_factor = 0;
        request<"GCONVB">(system, conversion_factor);
        write_record<"(2F14.6,2x,'Boundary Scale & Conversion Factors')">(out, scale_factor, conversion_factor);
        for (const Integer boundary : OneTo(boundary_count)) {
            request<"GIBC">(system, boundary, boundary_segment);
            request<"GNBFP">(system, boundary, pairs);
            write_record<"(I5,15x,'Boundary Segment Number')">(out, boundary_segment);
            const Integer bound = pairs; // the host may write into what it filled once
            write_record<"(I5,15x,'Number of Time Pairs')">(out, bound);
            refuse_more_than_the_room(bound, "boundary", system, boundary);
            request<"GALLBOUNDFUNC">(system, boundary, model.series_times, model.series_values);
            const auto times = first_entries(model.series_times, bound);
            const auto values = first_entries(model.series_values, bound);
            for (std::size_t pair = 0; pair < times.size(); ++pair) {
                write_free_record(out, times[pair], values[pair]);
            }
        }
    }
}
