#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void sys_info(OutputChannel& out)
{
    announce(out, "System Information is being Exported</span></li>");

    constexpr Integer version = 3;
    request<"GMODELTYPE">(model.model_type);
    write_record<"(I5,5x,I2,10x,'Module Type, Version')">(out, model.model_type, version);
    write_free_record(out,
                      literal<"======================== Model Parameterization ===================================">);

    // the time is asked for before the date, and written behind it
    request<"GSEEDTIME">(model.start_time[0], model.start_time[1], model.start_time[2]);
    request<"GSEEDDATE">(model.start_date[0], model.start_date[1], model.start_date[2]);
    write_record<"(6I5,5x,'Start date and time')">(out, model.start_date[0], model.start_date[1], model.start_date[2],
                                                   model.start_time[0], model.start_time[1], model.start_time[2]);
    request<"GHYDSKIPDATE">(model.skip_date[0], model.skip_date[1], model.skip_date[2]);
    request<"GHYDSKIPTIME">(model.skip_time[0], model.skip_time[1], model.skip_time[2]);
    write_record<"(6I5,5x,'Skip date and time')">(out, model.skip_date[0], model.skip_date[1], model.skip_date[2],
                                                  model.skip_time[0], model.skip_time[1], model.skip_time[2]);
    request<"GENDJULIAN">(model.julian_end_time);
    write_record<"(F10.1,10x,'Julian end time')">(out, model.julian_end_time);

    request<"GNUMSYS">(model.number_of_systems);
    write_record<"(I5,15x,'Number of Systems')">(out, model.number_of_systems);
    request<"GJMAS">(model.mass_balance_table_output);
    write_record<"(I5,15x,'Mass Balance Table Output')">(out, model.mass_balance_table_output);
    request<"GSOLUTIONTYPE">(model.solution_technique);
    write_record<"(I5,15x,'Solution Technique Option')">(out, model.solution_technique);
    request<"GNEGSLN">(model.negative_solution);
    write_record<"(I5,15x,'Negative Solution Option')">(out, model.negative_solution);
    request<"GICRD">(model.restart);
    write_record<"(I5,15x,'Restart Option')">(out, model.restart);
    request<"GINTYP">(model.time_optimization);
    write_record<"(I5,15x,'Time Optimization Option')">(out, model.time_optimization);
    request<"GVELMTOVELMLINK">(model.water_quality_linkage);
    write_record<"(I5,15x,'WQ Module Linkage Option')">(out, model.water_quality_linkage);

    request<"GFRACMAXTS">(model.topt_factor);
    write_record<"(F10.4,10x,'TOPT Factor')">(out, model.topt_factor);
    // the maximum is asked for first, the minimum written first
    request<"GMAXDT">(model.maximum_time_step);
    request<"GMINDT">(model.minimum_time_step);
    write_record<"(F8.6,1x,F6.3,5x,'Min and Max Timestep')">(out, model.minimum_time_step, model.maximum_time_step);
    request<"GMODELOUTPUTINTERVAL">(model.print_interval);
    write_record<"(F10.4,5x,'Time and Print Interval')">(out, model.print_interval);

    model.system_names.make(0);
    for (const Integer system : OneTo(model.number_of_systems)) {
        Text<30>& name = model.system_names[system];
        reset<30>(name);
        Text<5> tag;
        reset<5>(tag);
        request<"GSYSNAME">(system, name, tag);
        end_with_nul(name);
        write_record<"(A5,5X,A30)">(out, tag, name);
    }
    out.hand_on();
    request<"PPROGRESS">(Integer{0});
}
