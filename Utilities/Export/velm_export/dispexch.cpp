#include "Utilities/Export/velm_export/field_names.hpp"
#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void dispexch(OutputChannel& out)
{
    constexpr std::string_view names[] = {"Surface Water Flow Field", "Porewater Flow Field"};
    // engines look for this spelling
    write_free_record(
        out, literal<"======================== Segment Dispersion/Exhange ===================================">);
    announce(out, "Dispersive Exchanges are being Exported</span></li>");

    request<"GNRFLD">(model.number_of_exchange_fields);
    write_record<"(I5,15x,'Number of Exchange Fields')">(out, model.number_of_exchange_fields);

    Integer functions = 0;
    Integer segment_pairs = 0;
    Integer first_segment = 0;
    Integer second_segment = 0;
    Real area = 0;
    Real length = 0;
    Integer time_pairs = 0;
    Real time = 0;
    Real dispersion = 0;
    for (const Integer field : OneTo(model.number_of_exchange_fields)) {
        write_free_record(out, field_name(names, "Exchange Field", field));
        request<"GNTEX">(field, functions);
        write_record<"(I5,15x,'Number of Exchange Functions')">(out, functions);
        if (functions <= 0) {
            continue;
        }
        request<"GSCALER">(field, model.dispersion_scale_factor);
        request<"GCONVR">(field, model.dispersion_conversion_factor);
        write_record<"(2F14.6,2x,'Dispersion Scale & Conversion Factors')">(out, model.dispersion_scale_factor,
                                                                            model.dispersion_conversion_factor);
        for (const Integer function : OneTo(functions)) {
            request<"GEXCHANGEFUNCDESC">(field, function, model.description);
            write_free_record(out, model.description);
            request<"GNORS">(field, function, segment_pairs);
            write_record<"(I5,15x,'Number of segment exchange pairs')">(out, segment_pairs);
            for (const Integer pair : OneTo(segment_pairs)) {
                request<"GJRSEG">(field, function, pair, first_segment);
                request<"GIRSEG">(field, function, pair, second_segment);
                request<"GXAREA">(field, function, pair, area);
                request<"GLENGTH">(field, function, pair, length);
                write_free_record(out, first_segment, second_segment, area, length);
            }
            request<"GNOBRKS">(field, function, time_pairs);
            write_record<"(I5,15x,'Number of Time Pairs')">(out, time_pairs);
            for (const Integer pair : OneTo(time_pairs)) {
                request<"GNORFUNC">(field, function, pair, time, dispersion);
                write_free_record(out, time, dispersion);
            }
        }
    }
}
