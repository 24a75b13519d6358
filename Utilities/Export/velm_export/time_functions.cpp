#include "Utilities/Export/velm_export/fetch_type.hpp"
#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

namespace {

/// A host that reports no function of a type means one.
InstanceType fetch_time_function_type(Integer type)
{
    const InstanceType fetched = fetch_type<"GTFISC", "GNUMTIMEFUNC">(type);
    if (fetched.instances == 0) {
        fetched.instances = 1;
    }
    return fetched;
}

} // namespace

void time_functions(OutputChannel& out)
{
    constexpr std::size_t usual_types = 1000;
    constexpr Integer in_use = 1; // and no other value
    model.isc_numbers.assign(usual_types, 0);
    model.instance_counts.assign(usual_types, 0);
    write_free_record(out, literal<"======================== Time Functions ===================================">);
    announce("Time Functions are being Exported</span></li>");

    request<"GNUMTFTYPE">(model.number_of_time_function_types);
    Integer used = 0;
    Integer functions_in_use = 0;
    for (const Integer type : OneTo(model.number_of_time_function_types)) {
        const auto [isc, functions] = fetch_time_function_type(type);
        for (const Integer function : OneTo(functions)) {
            request<"GTFISUSED">(InPlace{isc}, function, used);
            functions_in_use += used == in_use ? 1 : 0;
        }
    }
    write_record<"(I5,15x,'Number of Time Functions')">(out, functions_in_use);

    // the host is asked anew, and may answer otherwise than before
    Real time = 0;
    Real value = 0;
    for (const Integer type : OneTo(model.number_of_time_function_types)) {
        const auto [isc, functions] = fetch_time_function_type(type);
        for (const Integer function : OneTo(functions)) {
            request<"GTFISUSED">(InPlace{isc}, function, used);
            if (used != in_use) {
                continue;
            }
            reset<40>(model.description);
            request<"GTFDESC">(InPlace{isc}, function, model.description);
            write_record<"(5X,I3,5x,I3,5X,A40)">(out, isc, function, model.description);
            Integer pairs = 0;
            request<"GNBRKTF">(InPlace{isc}, function, pairs);
            if (pairs <= 0) {
                continue;
            }
            write_record<"(I5,15x,'Number of Time Pairs')">(out, pairs);
            for (const Integer pair : OneTo(pairs)) {
                request<"GBRKTF">(InPlace{isc}, function, pair, time, value);
                write_record<"(F10.4,5X,F10.4)">(out, time, value);
            }
        }
    }
}
