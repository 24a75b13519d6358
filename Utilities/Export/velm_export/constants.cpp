#include "Utilities/Export/velm_export/fetch_type.hpp"
#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void constants(OutputChannel& out)
{
    write_free_record(out, literal<"======================== Constants ===================================">);
    announce(out, "Constants are being Exported</span></li>");

    Integer types = 0;
    request<"GNUMCONST">(types);
    Integer used = 0;
    Integer instances_in_use = 0;
    for (const Integer type : OneTo(types)) {
        const auto [isc, instances] = fetch_type<"GCONSTTYPEISC", "GNUMCONSTBYISC">(type);
        for (const Integer instance : OneTo(instances)) {
            request<"GCONSTISUSED">(InPlace{isc}, instance, used);
            instances_in_use += used >= 1 ? 1 : 0;
        }
    }
    write_record<"(I5,15x,'Number of Constants')">(out, instances_in_use);

    Real value = 0;
    for (const Integer type : OneTo(types)) {
        const auto [isc, instances] = fetch_type<"GCONSTTYPEISC", "GNUMCONSTBYISC">(type);
        for (const Integer instance : OneTo(instances)) {
            request<"GCONSTISUSED">(InPlace{isc}, instance, used);
            if (used < 1) {
                continue;
            }
            request<"GCONSTVALUEBYISC">(InPlace{isc}, instance, value);
            Text<60> description;
            reset<40>(description);
            request<"GCONSTDESCBYISC">(InPlace{isc}, instance, description);
            end_with_nul(description); // over all 60 characters, of which the record shows 40
            write_record<"('ISC #: ',I5,' Instance: ',I5,' Value: ',f20.4,'  Desc: ',A40)">(out, isc, instance, value,
                                                                                            description);
        }
    }
}
