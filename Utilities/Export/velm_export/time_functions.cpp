#include "Utilities/Export/velm_export/fetch_type.hpp"
#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

namespace {

constexpr Integer usual_types = 1000;

struct TimeFunctionType {
    Integer& isc;
    Integer functions;
};

/// A host that reports no function of a type means one. The table says so too, where it has an entry for the type
/// whatever the host reports.
TimeFunctionType fetch_time_function_type(Integer type)
{
    const auto [isc, functions] = fetch_type<"GTFISC", "GNUMTIMEFUNC">(type);
    if (functions == 0 && type <= usual_types) {
        functions = 1;
    }
    return {isc, functions == 0 ? 1 : functions};
}

} // namespace

void time_functions(OutputChannel& out)
{
    constexpr Integer in_use = 1; // and no other value
    model.isc_numbers.make(usual_types);
    model.instance_counts.make(usual_types);
    write_free_record(out, literal<"======================== Time Functions ===================================">);
    announce(out, "Time Functions are being Exported</span></li>");

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
