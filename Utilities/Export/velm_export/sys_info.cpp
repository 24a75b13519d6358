#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void sys_info(OutputChannel& out)
{
    announce("System Information is being Exported</span></li>");

    constexpr Integer version = 3;
    Integer model_type = 0;
    request<"GMODELTYPE">(model_type);
    write_record<"(I5,5x,I2,10x,'Module Type, Version')">(out, model_type, version);
    write_free_record(out,
                      literal<"======================== Model Parameterization ===================================">);

    // the time is asked for before the date, and written behind it
    Integer start_time[3] = {};
    request<"GSEEDTIME">(start_time[0], start_time[1], start_time[2]);
    Integer start_date[3] = {};
    request<"GSEEDDATE">(start_date[0], start_date[1], start_date[2]);
    write_record<"(6I5,5x,'Start date and time')">(out, start_date[0], start_date[1], start_date[2], start_time[0],
                                                   start_time[1], start_time[2]);
    Integer skip_date[3] = {};
    request<"GHYDSKIPDATE">(skip_date[0], skip_date[1], skip_date[2]);
    Integer skip_time[3] = {};
    request<"GHYDSKIPTIME">(skip_time[0], skip_time[1], skip_time[2]);
    write_record<"(6I5,5x,'Skip date and time')">(out, skip_date[0], skip_date[1], skip_date[2], skip_time[0],
                                                  skip_time[1], skip_time[2]);
    Real julian_end_time = 0;
    request<"GENDJULIAN">(julian_end_time);
    write_record<"(F10.1,10x,'Julian end time')">(out, julian_end_time);

    request<"GNUMSYS">(model.number_of_systems);
    write_record<"(I5,15x,'Number of Systems')">(out, model.number_of_systems);
    Integer mass_balance_table_output = 0;
    request<"GJMAS">(mass_balance_table_output);
    write_record<"(I5,15x,'Mass Balance Table Output')">(out, mass_balance_table_output);
    Integer solution_technique = 0;
    request<"GSOLUTIONTYPE">(solution_technique);
    write_record<"(I5,15x,'Solution Technique Option')">(out, solution_technique);
    Integer negative_solution = 0;
    request<"GNEGSLN">(negative_solution);
    write_record<"(I5,15x,'Negative Solution Option')">(out, negative_solution);
    Integer restart = 0;
    request<"GICRD">(restart);
    write_record<"(I5,15x,'Restart Option')">(out, restart);
    Integer time_optimization = 0;
    request<"GINTYP">(time_optimization);
    write_record<"(I5,15x,'Time Optimization Option')">(out, time_optimization);
    Integer water_quality_linkage = 0;
    request<"GVELMTOVELMLINK">(water_quality_linkage);
    write_record<"(I5,15x,'WQ Module Linkage Option')">(out, water_quality_linkage);

    Real topt_factor = 0;
    request<"GFRACMAXTS">(topt_factor);
    write_record<"(F10.4,10x,'TOPT Factor')">(out, topt_factor);
    // the maximum is asked for first, the minimum written first
    Real maximum_time_step = 0;
    request<"GMAXDT">(maximum_time_step);
    Real minimum_time_step = 0;
    request<"GMINDT">(minimum_time_step);
    write_record<"(F8.6,1x,F6.3,5x,'Min and Max Timestep')">(out, minimum_time_step, maximum_time_step);
    Real print_interval = 0;
    request<"GMODELOUTPUTINTERVAL">(print_interval);
    write_record<"(F10.4,5x,'Time and Print Interval')">(out, print_interval);

    model.system_names.clear();
    for (const Integer system : OneTo(model.number_of_systems)) {
        Text<30>& name = entry_of(model.system_names, system);
        reset<30>(name);
        Text<5> tag;
        reset<5>(tag);
        request<"GSYSNAME">(system, name, tag);
        end_with_nul(name);
        write_record<"(A5,5X,A30)">(out, tag, name);
    }
    request<"PPROGRESS">(Integer{0});
}
