#include "model_check/check_file.hpp"
#include "model_check/report.hpp"
#include "model_store/model_store.hpp"
#include "plain_text/plain_text.hpp"
#include "tool/commands.hpp"
#include "tool/exported_model.hpp"
#include "tool/file_kind.hpp"
#include "tool/file_name.hpp"
#include "tool/model_file.hpp"
#include "tool/terminal.hpp"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace velm {
namespace {

struct CheckArguments {
    std::vector<FileName> files;
    std::string fail_on = "error";
    std::size_t most = CheckOptions{}.most_of_a_rule;
    FileName plug_in; ///< empty: the tool's own
    bool json = false;
    bool sarif = false;
    bool quiet = false;
};

FileFindings check_file(const FileName& file, const CheckArguments& arguments, FindingReport& report)
{
    const CheckOptions options{arguments.most, [&](const Finding& finding) { report.add(finding); }};
    const bool is_database = kind_of_file(file) == FileKind::database;
    report.begin_file(file.text(), is_database);
    if (!is_database) {
        return check_input_file(file, options);
    }
    std::optional<ExportedModel> exported;
    const auto write = [&](const Model& model) {
        const PlugIn plug_in(arguments.plug_in.empty() ? default_plug_in() : std::filesystem::path(arguments.plug_in));
        return exported.emplace(plug_in, model, arguments.quiet).file();
    };
    return check_database(file, write, options);
}

/// Checks what can be read; false when something cannot.
bool check_files(const CheckArguments& arguments, FindingReport& report, std::vector<FileFindings>& findings)
{
    bool all_read = true;
    const auto complain = [&](const std::string& words) {
        print_error(words);
        all_read = false;
    };
    for (const FileName& file : arguments.files) {
        try {
            findings.push_back(check_file(file, arguments, report));
            report.end_file(findings.back());
        } catch (const StoreError& error) {
            complain(error.what());
        } catch (const std::system_error& error) {
            complain(error.what());
        } catch (const ToolError& error) {
            if (error.code != ExitCode::model_unreadable) {
                throw;
            }
            complain(error.what());
        }
    }
    return all_read;
}

void print_summary(const std::vector<FileFindings>& findings)
{
    for (const FileFindings& file : findings) {
        for (const std::string& remark : file.remarks) {
            std::cerr << "velm: " << printable(file.file) << ": " << remark << '\n';
        }
    }
    std::cerr << "velm: checked " << findings.size() << (findings.size() == 1 ? " file: " : " files: ")
              << counts_in_words(findings) << '\n';
}

bool has_reached(const std::vector<FileFindings>& files, const std::string& level)
{
    std::uint64_t count = 0;
    for (const Level one : {Level::error, Level::warning, Level::note}) {
        for (const FileFindings& file : files) {
            count += file.count(one);
        }
        if (name_of(one) == level) {
            return count > 0;
        }
    }
    return false;
}

ExitCode check(const CheckArguments& arguments)
{
    const std::unique_ptr<FindingReport> report = arguments.json    ? json_report(std::cout)
                                                  : arguments.sarif ? sarif_report(std::cout, VELM_VERSION)
                                                                    : text_report(std::cout);
    std::vector<FileFindings> findings;
    const bool all_read = check_files(arguments, *report, findings);
    report->end();
    if (!arguments.quiet) {
        print_summary(findings);
    }
    if (!all_read) {
        return ExitCode::model_unreadable;
    }
    return has_reached(findings, arguments.fail_on) ? ExitCode::findings : ExitCode::done;
}

} // namespace

Command check_command(CLI::App& tool)
{
    auto values = std::make_shared<CheckArguments>();
    CLI::App* const arguments = tool.add_subcommand("check", "Say what is wrong with input files and model databases");
    arguments->add_option("FILE", values->files, "Input files and model databases, told apart by their content")
        ->required();
    arguments
        ->add_option("--fail-on", values->fail_on,
                     "The least level of findings that makes the exit code 1; error when not given")
        ->check(CLI::IsMember({"note", "warning", "error", "never"}))
        ->type_name("LEVEL");
    arguments->add_option("--most", values->most, "How many findings of a rule to list for a file; 20 when not given")
        ->check(CLI::Range(0, 1'000'000'000))
        ->type_name("NUMBER");
    CLI::Option* const json = arguments->add_flag("--json", values->json, "Print the findings as JSON");
    arguments->add_flag("--sarif", values->sarif, "Print the findings as SARIF 2.1.0, for editors and CI")
        ->excludes(json);
    arguments->add_option("--plugin", values->plug_in, "Look for losses in the export of another build of the plug-in")
        ->type_name("LIBRARY");
    arguments->add_flag("--quiet", values->quiet, "Print nothing but findings and errors");
    arguments->footer(
        "Examples:\n"
        "  velm check estuary.inp\n"
        "  velm check estuary.db other.inp --fail-on warning\n"
        "  velm check estuary.db --sarif > findings.sarif\n\n"
        "Of a database, it also tells which values its input file will hold in fewer digits. Exit codes:\n"
        "0 nothing found, 1 findings, 2 usage, 3 a file cannot be read. docs/findings.md explains each\n"
        "finding.");
    return {arguments, [values] { return check(*values); }};
}

} // namespace velm
