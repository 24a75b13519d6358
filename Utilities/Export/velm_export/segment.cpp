#include "Utilities/Export/velm_export/one_to.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"
#include "record_output/write_record.hpp"

using namespace velm;

void segment(OutputChannel& out)
{
    write_free_record(out, literal<"======================== Segment Information ===================================">);
    announce(out, "Segment Information is being Exported</span></li>");

    request<"GNUMSEG">(model.number_of_segments);
    const Integer segments = model.number_of_segments; // of both loops, whatever becomes of the shared one
    write_record<"(I5,15x,'Number of Segments')">(out, model.number_of_segments);
    request<"GBEDOPT">(model.bed_volume_option);
    write_record<"(I5,15x,'Bed Volume Option')">(out, model.bed_volume_option);
    Real bed_compaction_time_step = 0;
    request<"GBEDDT">(bed_compaction_time_step);
    write_record<"(F10.3,10x,'Bed Compaction Time Step')">(out, bed_compaction_time_step);
    request<"GSCALV">(model.volume_scale_factor);
    request<"GCONVV">(model.volume_conversion_factor);
    write_record<"(2F14.6,2x,'Volume Scale & Conversion Factor')">(out, model.volume_scale_factor,
                                                                   model.volume_conversion_factor);

    write_record<"('  Segment   SegName')">(out);
    for (const Integer i : OneTo(segments)) {
        Text<40> name;
        reset<40>(name);
        request<"GSEGNAME">(i, name);
        end_with_nul(name);
        write_record<"(I5,5x,A40)">(out, i, name);
    }

    write_record<
        "(' Seg BotSeg iType IQOPT     Volume          VMult          Vexp          DMult           Dexp         "
        "Length',              '          Slope         Width           Rough         Depth_Q0       SurfElev    "
        "  SegBotElev    SegSideSlope',              '   SegInitDepth    WeirHeight       WeirType')">(out);
    model.flow_option_of_segment_1 = 0;
    for (const Integer i : OneTo(segments)) {
        Integer bottom_segment = 0;
        request<"GBOTSEG">(i, bottom_segment);
        Integer type = 0;
        request<"GSEGTYPE">(i, type);
        Integer flow_option = 0;
        request<"GIQOPT">(flow_option, i);
        if (i == 1) {
            model.flow_option_of_segment_1 = flow_option;
        }
        Real volume = 0;
        request<"GVOLUME">(i, volume);
        Real velocity_multiplier = 0;
        request<"GVMULT">(i, velocity_multiplier);
        Real velocity_exponent = 0;
        request<"GVEXP">(i, velocity_exponent);
        Real depth_multiplier = 0;
        request<"GDMULT">(i, depth_multiplier);
        Real depth_exponent = 0;
        request<"GDEXP">(i, depth_exponent);
        Real slope = 0; // asked for before the length, written behind it
        request<"GSEGSLOPE">(i, slope);
        Real length = 0;
        request<"GSEGLENGTH">(i, length);
        Real width = 0;
        request<"GSEGWIDTH">(i, width);
        Real roughness = 0;
        request<"GSEGROUGH">(i, roughness);
        Real minimum_depth = 0;
        request<"GSEGMINDEPTH">(i, minimum_depth);
        Real initial_surface_elevation = 0;
        request<"GINITIALSURFACEELEVATION">(i, initial_surface_elevation);
        Real bottom_elevation = 0;
        request<"GBOTTOMELEVATION">(i, bottom_elevation);
        Real side_slope = 0;
        request<"GSIDESLOPE">(i, side_slope);
        Real initial_depth = 0;
        request<"GINITIALDEPTH">(i, initial_depth);
        Real weir_height = 0;
        request<"GWEIRHEIGHT">(i, weir_height);
        Real weir_type = 0;
        request<"GWEIRTYPE">(i, weir_type);
        write_record<"(4(I5),16(F15.5))">(out, i, bottom_segment, type, flow_option, volume, velocity_multiplier,
                                          velocity_exponent, depth_multiplier, depth_exponent, length, slope, width,
                                          roughness, minimum_depth, initial_surface_elevation, bottom_elevation,
                                          side_slope, initial_depth, weir_height, weir_type);
    }
}
