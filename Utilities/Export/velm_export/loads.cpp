#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/Export/velm_export/time_pair_room.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void loads(OutputChannel& out)
{
    write_free_record(out, literal<"======================== Load Information ===================================">);
    announce(out, "Loadings are being Exported</span></li>");

    request<"GLOPT">(model.nps_option);
    write_record<"(I5,15x,'NPS Input Option (0=No, 1=Yes)',16x,'LOADFILE')">(out, model.nps_option);
    if (model.nps_option > 0) {
        request<"GNPSFILE">(model.nps_file_name);
        write_record<"(A512)">(out, model.nps_file_name);
    }

    write_record<"(I5,15x,'Number of Systems')">(out, model.number_of_systems);
    Integer load_count = 0;
    Integer load_segment = 0;
    Integer pairs = 0;
    for (const Integer system : OneTo(model.number_of_systems)) {
        write_free_record(out, model.system_names[system]);
        request<"GNOWK">(system, load_count);
        write_record<"(I5,15x,'Number of Loadings')">(out, load_count);
        if (load_count <= 0) {
            continue;
        }
        Real scale_factor = 0;
        request<"GSCALW">(system, scale_factor);
        Real conversion_factor = 0;
        request<"GCONVW">(system, conversion_factor);
        write_record<"(2F14.6,2x,'Loading Scale & Conversion Factors')">(out, scale_factor, conversion_factor);
        for (const Integer load : OneTo(load_count)) {
            request<"GIWK">(system, load, load_segment);
            request<"GNBWK">(system, load, pairs);
            write_record<"(I5,15x,'Loading Segment Number')">(out, load_segment);
            const Integer bound = pairs; // the host may write into what it filled once
            write_record<"(I5,15x,'Number of Time Pairs')">(out, bound);
            refuse_more_than_the_room(bound, "load", system, load);
            request<"GALLLOADFUNC">(system, load, model.series_times, model.series_values);
            const auto times = first_entries(model.series_times, bound);
            const auto values = first_entries(model.series_values, bound);
            for (std::size_t pair = 0; pair < times.size(); ++pair) {
                write_record<"(F10.4,5x,F10.4)">(out, times[pair], values[pair]);
            }
        }
    }
}
