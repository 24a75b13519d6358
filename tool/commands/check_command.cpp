#include "model/words.hpp"
#include "model_check/check_file.hpp"
#include "model_check/report.hpp"
#include "model_check/rules.hpp"
#include "model_store/model_store.hpp"
#include "plain_text/plain_text.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_kind.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"
#include "tool/plug_in/exported_model.hpp"
#include "tool/system/progress_bar.hpp"
#include "tool/system/terminal.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace velm {
namespace {

constexpr std::size_t most_to_list = 1'000'000'000; ///< of a rule; no model has more values

struct CheckArguments {
    std::vector<FileName> files;
    std::string fail_on = "error";
    std::string show = "warning";
    std::vector<std::string> ignored; ///< codes
    std::optional<std::size_t> most;  ///< all for a program, a few for people
    FileName plug_in;                 ///< empty: the tool's own
    bool json = false;
    bool sarif = false;
    bool quiet = false;
};

FileFindings check_file(const FileName& file, const CheckArguments& arguments, FindingReport& report)
{
    std::optional<ProgressBar> bar;
    std::string_view work;
    CheckOptions options;
    const bool for_program = arguments.json || arguments.sarif;
    const std::size_t most = arguments.most.value_or(for_program ? most_to_list : options.most_of_a_rule);
    options.most_of_a_rule = most == most_to_list ? all_findings : most;
    options.ignored = {arguments.ignored.begin(), arguments.ignored.end()};
    options.on_finding = [&](const Finding& finding) {
        bar.reset();
        work = "done"; // what is printed from here on is not to be mixed with a bar
        report.add(finding);
    };
    options.on_progress = [&](std::string_view what, std::uint64_t done, std::uint64_t all) {
        if (work != what && work != "done") {
            work = what;
            bar.reset();
            bar.emplace(what, all == 0 ? "rows" : "bytes", all, arguments.quiet);
        }
        if (bar) {
            bar->show(done);
        }
    };
    const bool is_database = kind_of_file(file) == FileKind::database;
    report.begin_file(file.text(), is_database);
    if (!is_database) {
        return check_input_file(file, options);
    }
    std::optional<ExportedModel> exported;
    const auto write = [&](const Model& model) {
        bar.reset();
        const PlugIn plug_in(arguments.plug_in);
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

Level level_named(const std::string& name)
{
    return name == "note" ? Level::note : name == "warning" ? Level::warning : Level::error;
}

/// How many findings the text leaves out for their level.
std::uint64_t hidden(const std::vector<FileFindings>& findings, const CheckArguments& arguments)
{
    std::uint64_t count = 0;
    for (const Level level : {Level::note, Level::warning}) {
        for (const FileFindings& file : findings) {
            count += level < level_named(arguments.show) ? file.count(level) : 0;
        }
    }
    return arguments.json || arguments.sarif ? 0 : count;
}

void print_summary(const std::vector<FileFindings>& findings, const CheckArguments& arguments)
{
    for (const FileFindings& file : findings) {
        for (const std::string& remark : file.remarks) {
            std::cerr << "velm: " << printable(file.file) << ": " << remark << '\n';
        }
    }
    std::cerr << "velm: checked " << findings.size() << (findings.size() == 1 ? " file: " : " files: ")
              << counts_in_words(findings) << '\n';
    if (const std::uint64_t count = hidden(findings, arguments); count > 0) {
        std::cerr << "velm: " << counted(count, arguments.show == "error" ? "finding" : "note")
                  << (count == 1 ? " is" : " are") << " not shown; --show note lists all\n";
    }
}

bool has_reached(const std::vector<FileFindings>& files, const std::string& level)
{
    return level != "never" && std::any_of(files.begin(), files.end(), [&](const FileFindings& file) {
               return std::any_of(file.counts.begin(), file.counts.end(),
                                  [&](const auto& count) { return count.second.rule->level >= level_named(level); });
           });
}

ExitCode check(const CheckArguments& arguments)
{
    const std::unique_ptr<FindingReport> report = arguments.json ? json_report(std::cout)
                                                  : arguments.sarif
                                                      ? sarif_report(std::cout, VELM_VERSION)
                                                      : text_report(std::cout, level_named(arguments.show));
    std::vector<FileFindings> findings;
    const bool all_read = check_files(arguments, *report, findings);
    report->end();
    if (!arguments.quiet) {
        print_summary(findings, arguments);
    }
    if (!all_read) {
        return ExitCode::model_unreadable;
    }
    return has_reached(findings, arguments.fail_on) ? ExitCode::findings : ExitCode::done;
}

/// Why a code is refused; empty for one that there is.
std::string known_code(const std::string& code)
{
    const auto rules = finding_rules();
    return std::ranges::find(rules, code, &FindingRule::code) != rules.end() ? "" : "there is no finding " + code;
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
    arguments
        ->add_option("--show", values->show, "The least level of findings to print as text; warning when not given")
        ->check(CLI::IsMember({"note", "warning", "error"}))
        ->type_name("LEVEL");
    arguments
        ->add_option("--ignore", values->ignored, "Codes of findings to leave out wholly, with commas between them")
        ->delimiter(',')
        ->allow_extra_args(false) // what follows are files
        ->check(known_code)
        ->type_name("CODE");
    arguments
        ->add_option(
            "--most", values->most,
            "How many findings of a code to list for a file; when not given 20, or all with --json and --sarif; with 0 "
            "a line for each code")
        ->check(CLI::Range(std::size_t{0}, most_to_list))
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
        "  velm check estuary.db --show note --ignore V105,V304\n"
        "  velm check estuary.db --sarif > findings.sarif\n\n"
        "Of a database, it also tells which values its input file will hold in fewer digits. Exit codes:\n"
        "0 nothing found, 1 findings, 2 usage, 3 a file cannot be read. velm explain CODE explains a\n"
        "finding.");
    return {arguments, [values] { return check(*values); }};
}

} // namespace velm
