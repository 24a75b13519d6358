#include "headless_host/headless_host.hpp"
#include "tool/commands.hpp"
#include "tool/model_file.hpp"
#include "tool/operating_system.hpp"
#include "tool/panel_page.hpp"
#include "tool/plug_in.hpp"
#include "tool/plug_in_run.hpp"
#include "tool/replaced_file.hpp"
#include "tool/written_file.hpp"

#include <CLI/CLI.hpp>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <system_error>

namespace velm {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t longest_file_name = 512; // the plug-in's field

struct ExportArguments {
    std::string model;
    std::string output;
    std::string panel;   ///< empty: not saved
    std::string plug_in; ///< empty: the tool's own
    bool quiet = false;
};

void refuse_same_file(const std::string& one, const std::string& other, const std::string& which)
{
    std::error_code unresolved; // a path that leads nowhere is no other file; its use will say what is wrong
    const fs::path resolved = fs::weakly_canonical(fs::absolute(one), unresolved);
    if (!resolved.empty() && resolved == fs::weakly_canonical(fs::absolute(other), unresolved)) {
        throw ToolError(ExitCode::usage, which + " are the same file, " + one + "; one would replace the other");
    }
}

void check(const ExportArguments& arguments)
{
    refuse_stream(arguments.output, "OUTPUT",
                  "an export replaces its file only when it is whole, which a stream cannot; give a file name");
    refuse_same_file(arguments.output, arguments.model, "OUTPUT and MODEL");
    if (!arguments.panel.empty()) {
        refuse_stream(arguments.panel, "The panel's file", "the page is saved in a file; give a file name");
        refuse_same_file(arguments.panel, arguments.output, "The panel's file and OUTPUT");
        refuse_same_file(arguments.panel, arguments.model, "The panel's file and MODEL");
    }
}

void check_length(const std::string& file_name)
{
    if (file_name.size() > longest_file_name) {
        throw ToolError(ExitCode::usage, "the path " + file_name + " takes " + std::to_string(file_name.size()) +
                                             " bytes, the plug-in has room for " + std::to_string(longest_file_name) +
                                             "; run velm in OUTPUT's directory and give the file name alone");
    }
}

/// Saves the page; returns what kept it from that, empty when nothing.
std::string save_panel(ReplacedFile& file, const HeadlessHost& host)
{
    try {
        std::ofstream page(file.temporary(), std::ios::binary);
        page << panel_page(host.panel());
        page.close();
        if (!page) {
            return "the panel cannot be written to " + file.temporary().string();
        }
        file.put_in_place();
        return {};
    } catch (const std::exception& error) {
        return std::string("the panel cannot be saved: ") + error.what();
    }
}

void print_summary(const std::string& output, const WrittenFile& written, double seconds)
{
    std::cerr << "velm: " << output << ": " << written.sections << " sections, " << written.records << " records, "
              << written.bytes << " bytes in " << std::fixed << std::setprecision(2) << seconds << " seconds\n";
}

ExitCode export_model(const ExportArguments& arguments)
{
    const auto start = std::chrono::steady_clock::now();
    check(arguments);
    ReplacedFile output(arguments.output);
    check_length(output.temporary().string());
    std::optional<ReplacedFile> panel;
    if (!arguments.panel.empty()) {
        panel.emplace(arguments.panel);
    }
    const PlugIn plug_in(arguments.plug_in.empty() ? default_plug_in() : fs::path(arguments.plug_in));
    const Model model = read_model_file(arguments.model, arguments.quiet);
    HeadlessHost host(model, output.temporary().string());

    std::string failure = run_export(plug_in, model, host, arguments.quiet);
    const WrittenFile written = read_written_file(output.temporary());
    if (failure.empty()) {
        failure = written.incompleteness();
    }
    if (panel) {
        const std::string panel_failure = save_panel(*panel, host);
        failure = failure.empty() ? panel_failure : failure;
    }
    if (!failure.empty()) {
        throw ToolError(ExitCode::failed, "the export failed, " + arguments.output + " is as it was: " + failure);
    }
    output.put_in_place();
    if (!arguments.quiet) {
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        print_summary(arguments.output, written, seconds.count());
    }
    return ExitCode::done;
}

} // namespace

Command export_command(CLI::App& tool)
{
    auto values = std::make_shared<ExportArguments>();
    CLI::App* const arguments = tool.add_subcommand("export", "Write a model's input file through the export plug-in");
    arguments->add_option("MODEL", values->model, "Model database")->required();
    arguments->add_option("OUTPUT", values->output, "Input file to write; replaced only by a complete one")->required();
    arguments->add_option("--panel", values->panel, "Save the plug-in's messages as a web page, also after a failure")
        ->type_name("FILE");
    arguments->add_option("--plugin", values->plug_in, "Run another build of the plug-in")->type_name("LIBRARY");
    arguments->add_flag("--quiet", values->quiet, "Print nothing but errors");
    arguments->footer("Examples:\n"
                      "  velm export estuary.db estuary.inp\n"
                      "  velm export estuary.db estuary.inp --panel panel.html\n"
                      "  velm export estuary.db estuary.inp --plugin build/release/libvelm_export.so --quiet\n\n"
                      "Whatever fails, an existing OUTPUT stays as it was.");
    return {arguments, [values] { return export_model(*values); }};
}

} // namespace velm
