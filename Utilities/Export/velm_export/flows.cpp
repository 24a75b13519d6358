#include "Utilities/Export/velm_export/field_names.hpp"
#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void flows(OutputChannel& out)
{
    constexpr std::string_view names[] = {
        "Surface Water Flow Field", "Porewater Flow Field", "Solids - 1", "Solids - 2", "Solids - 3",
        "Evap/Precip Flow Field"};
    write_free_record(out, literal<"======================== Flow Time Series ===================================">);
    announce(out, "Flows are being Exported</span></li>");

    request<"GNFIELD">(model.number_of_flow_fields);
    write_record<"(I5,15x,'Number of Flow Fields')">(out, model.number_of_flow_fields);

    Integer pairs = 0;
    Real time = 0;
    Real flow = 0;
    for (const Integer field : OneTo(model.number_of_flow_fields)) {
        write_free_record(out, field_name(names, "Flow Field", field));
        Integer& functions = model.flow_function_counts[field];
        request<"GNINQ">(field, functions);
        write_record<"(I5,15x,'Number of inflows')">(out, functions);
        if (functions <= 0) {
            continue;
        }
        request<"GSCALEQ">(field, model.flow_scale_factor);
        request<"GCONVQ">(field, model.flow_conversion_factor);
        write_record<"(2F14.6,2x,'Flow Scale & Conversion Factors')">(out, model.flow_scale_factor,
                                                                      model.flow_conversion_factor);
        for (const Integer function : OneTo(functions)) {
            request<"GFLOWFUNCDESC">(field, function, model.description);
            write_record<"(A30)">(out, model.description);
            request<"GNBRKQ">(field, function, pairs);
            write_record<"(I5,15x,'Number of Time Pairs')">(out, pairs);
            for (const Integer pair : OneTo(pairs)) {
                request<"GNOQFUNC">(field, function, pair, time, flow);
                write_free_record(out, time, flow);
            }
        }
    }
}
