#include "model_check/check_file.hpp"
#include "plain_text/plain_text.hpp"
#include "report/report.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/files/file_kind.hpp"
#include "tool/files/model_file.hpp"
#include "tool/plug_in/exported_model.hpp"
#include "tool/plug_in/made_at.hpp"
#include "tool/system/operating_system.hpp"
#include "whole_file/whole_file.hpp"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>

namespace velm {
namespace {

namespace fs = std::filesystem;

struct ReportArguments {
    std::string model;
    std::string output;  ///< empty: the model's name with .html
    std::string against; ///< empty: nothing
    std::string title;   ///< empty: the model's name
    bool open = false;
    bool quiet = false;
};

/// A page of another origin is not replaced unless it was named.
void refuse_other_page(const fs::path& page)
{
    std::error_code unknown; // then it cannot be made either
    if (!fs::is_regular_file(page, unknown)) {
        return; // nothing, or what no page replaces
    }
    std::ifstream file(page, std::ios::binary);
    std::string beginning(400, '\0');
    file.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    if (beginning.find("content=\"velm report\"") == std::string::npos) {
        throw ToolError(ExitCode::usage, shown(page) + " exists and is no report of velm; name the page to write");
    }
}

std::string output_of(const ReportArguments& arguments)
{
    if (!arguments.output.empty()) {
        refuse_stream(arguments.output, "OUT", "the page is replaced only when it is whole; give a file name");
        refuse_to_replace_model(arguments.output, false);
        return arguments.output;
    }
    const fs::path output = fs::path(arguments.model).replace_extension(".html");
    refuse_other_page(output);
    return output.string();
}

std::vector<SegmentPlace> segment_places(const std::string& database)
{
    try {
        return load_segment_places(database);
    } catch (const StoreError& error) {
        throw ToolError(ExitCode::model_unreadable, problems_text(shown(database) + " cannot be read:", error));
    }
}

/// All losses of a model with so many reals are a matter of a moment.
constexpr std::size_t most_reals_of_a_check = 200'000;

/// Reads the model that a report is about. An input file is checked by the way, a database when the report asks.
Model read_reported_model(const ReportArguments& arguments, Report& report)
{
    Model model;
    if (kind_of_file(arguments.model) == FileKind::input_file) {
        try {
            report.check = [found = check_and_read_input_file(arguments.model, model)] { return found; };
        } catch (const std::system_error& error) {
            throw ToolError(ExitCode::model_unreadable, error.what());
        }
        return model;
    }
    ModelFileOptions reading;
    reading.quiet = arguments.quiet;
    model = read_model_file(arguments.model, reading).model;
    report.database = true;
    report.places = segment_places(arguments.model);
    const auto beginning = std::make_shared<std::optional<Model>>(beginning_of(model, most_reals_of_a_check));
    report.check = [&report, beginning, quiet = arguments.quiet] {
        std::optional<ExportedModel> exported;
        const auto write_input_file = [&](const Model& copy) { return exported.emplace(PlugIn(), copy, quiet).file(); };
        return check_loaded_model(*report.model, *beginning, write_input_file);
    };
    return model;
}

/// What a model is compared with. As in `velm diff`, a database counts beside an input file as what it exports.
struct Comparison {
    ModelFile other;
    std::optional<Model> exported; ///< of the one that is a database, when the other is none
};

void read_other_model(const ReportArguments& arguments, Report& report, Comparison& comparison)
{
    ModelFileOptions reading;
    reading.quiet = arguments.quiet;
    reading.unsure_values = true;
    comparison.other = read_model_file(arguments.against, reading);
    report.old_model = &comparison.other.model;
    report.old_file = shown(fs::path(arguments.against).filename());
    if (report.database != (comparison.other.kind == FileKind::database)) {
        const bool is_new = report.database;
        comparison.exported = model_as_exported(PlugIn(), is_new ? *report.model : comparison.other.model,
                                                is_new ? arguments.model : arguments.against, arguments.quiet);
        (is_new ? report.compared_model : report.old_model) = &*comparison.exported;
    }
}

ExitCode write(const ReportArguments& arguments)
{
    const std::string output = output_of(arguments);
    refuse_one_file({{"OUT", output}, {"MODEL", arguments.model}});
    refuse_one_file({{"OUT", output}, {"OTHER", arguments.against}});
    WholeFile file(output, Standing::replaced);
    Report report;
    const Model model = read_reported_model(arguments, report);
    report.model = &model;
    report.file = shown(fs::path(arguments.model).filename());
    report.title = arguments.title.empty()    ? shown(fs::path(arguments.model).stem())
                   : is_utf8(arguments.title) ? arguments.title
                                              : printable(arguments.title);
    report.bytes = fs::file_size(arguments.model);
    report.made = made_at();
    report.program = "velm " VELM_VERSION;
    Comparison comparison;
    if (!arguments.against.empty()) {
        read_other_model(arguments, report, comparison);
    }
    std::ofstream page(file.content(), std::ios::binary);
    write_report(page, report);
    page.close();
    if (!page) {
        throw ToolError(ExitCode::failed, shown(output) + " cannot be written; is the disk full?");
    }
    file.put_in_place();
    if (!arguments.quiet) {
        std::cerr << "velm: " << shown(output) << ": " << fs::file_size(output) << " bytes; open it with a browser\n";
    }
    if (arguments.open) {
        open_in_browser(output);
    }
    return ExitCode::done;
}

} // namespace

Command report_command(CLI::App& tool)
{
    auto values = std::make_shared<ReportArguments>();
    CLI::App* const arguments = tool.add_subcommand("report", "Write a web page that shows a model");
    arguments->add_option("MODEL", values->model, "Model database or input file")->required();
    arguments->add_option("OUT", values->output, "Page to write; MODEL's name with .html when not given");
    arguments->add_option("--against", values->against, "Also show in what MODEL differs from another")
        ->type_name("OTHER");
    arguments->add_option("--title", values->title, "Heading of the page; MODEL's name when not given")
        ->type_name("TEXT");
    arguments->add_flag("--open", values->open, "Open the page in the browser");
    arguments->add_flag("--quiet", values->quiet, "Print nothing but errors");
    arguments->footer("Examples:\n"
                      "  velm report estuary.db\n"
                      "  velm report estuary.inp page.html --title \"Alder estuary, 2023\"\n"
                      "  velm report after.db --against before.db --open\n\n"
                      "The page is one file that needs nothing else: a map of the network, all time series, the\n"
                      "water's balance, tables and findings. It asks nothing of any network.");
    return {arguments, [values] { return write(*values); }};
}

} // namespace velm
