#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void flowpath(OutputChannel& out)
{
    constexpr Integer flows_from_hydrodynamic_file = 3;
    write_free_record(out,
                      literal<"======================== Flow Path Information ===================================">);
    announce(out, "Flow Paths are being Exported</span></li>");

    write_record<"(15x,'Flow Pathways')">(out);
    request<"GNFIELD">(model.number_of_flow_fields);
    write_record<"(I5,15x,'Number of flow fields')">(out, model.number_of_flow_fields);

    model.flow_function_counts.make(0);
    Integer first_segment = 0;
    Integer second_segment = 0;
    Real fraction = 0;
    for (const Integer field : OneTo(model.number_of_flow_fields)) {
        write_free_record(out, literal<"    Flow Field ">, field);
        if (field == 1 && model.flow_option_of_segment_1 == flows_from_hydrodynamic_file) {
            request<"GHYDROFILE">(model.hydrodynamic_file_name);
            write_free_record(out, model.hydrodynamic_file_name);
        }
        Integer& functions = model.flow_function_counts[field];
        request<"GNINQ">(field, functions);
        write_record<"(I5,15x,'Number of Flow Functions for Flow Field')">(out, functions);
        for (const Integer function : OneTo(functions)) {
            Integer paths = 0;
            request<"GNOQS">(field, function, paths);
            request<"GFLOWFUNCDESC">(field, function, model.description);
            write_free_record(out, model.description);
            write_free_record(out, paths);
            for (const Integer path : OneTo(paths)) {
                request<"GJQ">(field, function, path, first_segment);
                request<"GIQ">(field, function, path, second_segment);
                request<"GBQ">(field, function, path, fraction);
                write_record<"(I4,2X,I4,F15.2)">(out, first_segment, second_segment, fraction);
            }
        }
    }
}
