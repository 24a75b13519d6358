#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void initial_conditions(OutputChannel& out)
{
    write_free_record(out, literal<"======================== Initial Conditions ===================================">);
    announce(out, "Initial concentrations are being Exported</span></li>");

    write_record<"(I5)">(out, model.number_of_systems);
    write_record<"(I5)">(out, model.number_of_segments);
    Real concentration = 0;
    Real dissolved_fraction = 0;
    for (const Integer system : OneTo(model.number_of_systems)) {
        write_record<"(5x,'Initial conditions for system',I3,1x,A15)">(out, system, model.system_names[system]);
        Integer solids_transport_field = 0;
        request<"GIFIELD">(system, solids_transport_field);
        Real solids_density = 0;
        request<"GDENSITY">(system, solids_density);
        Real maximum_concentration = 0;
        request<"GCMAX">(system, maximum_concentration);
        write_record<"(I5,15x,'Solids Transport Field')">(out, solids_transport_field);
        write_record<"(F10.3,10x,'Solids Density, g/mL')">(out, solids_density);
        write_record<"(F15.4,5x,'Maximum Allowed Concentration')">(out, maximum_concentration);
        write_record<"('  Seg   Conc   DissF')">(out);
        for (const Integer segment : OneTo(model.number_of_segments)) {
            request<"GINITC">(system, segment, concentration);
            request<"GFDISS">(system, segment, dissolved_fraction);
            write_free_record(out, segment, concentration, dissolved_fraction);
        }
    }
}
