#include "Utilities/Export/velm_export/fetch_type.hpp"
#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void parameters(OutputChannel& out)
{
    write_free_record(out, literal<"======================== Segment Parameters ===================================">);
    announce(out, "Parameter Values are being Exported</span></li>");

    write_record<"(I5,15x,'Number of Segments')">(out, model.number_of_segments);
    request<"GNUMPARAMTYPE">(model.number_of_parameter_types);
    Integer used = 0;
    Integer instances_in_use = 0;
    for (const Integer type : OneTo(model.number_of_parameter_types)) {
        const auto [isc, instances] = fetch_type<"GPARAMISC", "GNUMPARAMBYISC">(type);
        for (const Integer instance : OneTo(instances)) {
            request<"GPARAMISUSED">(InPlace{isc}, instance, used);
            instances_in_use += used >= 1 ? 1 : 0;
        }
    }
    write_record<"(I5,15x,'Number of Segment Parameters')">(out, instances_in_use);

    write_record<"('======================== Scale Factors ====================================')">(out);
    Real scale_factor = 0;
    for (const Integer type : OneTo(model.number_of_parameter_types)) {
        const auto [isc, instances] = fetch_type<"GPARAMISC", "GNUMPARAMBYISC">(type);
        Text<60> description{};
        for (const Integer instance : OneTo(instances)) {
            request<"GPARAMISUSED">(InPlace{isc}, instance, used);
            if (used < 1) {
                continue;
            }
            request<"GDESCPARAM">(InPlace{isc}, instance, description);
            request<"GSCALEPARAMBYISC">(InPlace{isc}, instance, scale_factor);
            write_record<"('ISC #: ',I5,' Instance: ',I3,' Scale: ',F10.4,' Description:',A40 )">(
                out, isc, instance, scale_factor, description);
        }
    }

    // ISC numbers and counts stay as the scale factors have left them
    write_record<"('======================== Segment Assignments ====================================')">(out);
    Real value = 0;
    for (const Integer segment : OneTo(model.number_of_segments)) {
        write_record<"(I5,5X,'Segment')">(out, segment);
        for (const Integer type : OneTo(model.number_of_parameter_types)) {
            Integer& isc = model.isc_numbers[type];
            for (const Integer instance : OneTo(model.instance_counts[type])) {
                request<"GPARAMISUSED">(InPlace{isc}, instance, used);
                if (used < 1) {
                    continue;
                }
                request<"GCONSTPARAM">(segment, InPlace{isc}, instance, value);
                write_record<"('Parameter: ',I5,5X,' Instance: ',I3,'  Value: ',F20.4)">(out, isc, instance, value);
            }
        }
    }
}
