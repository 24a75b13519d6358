#include "headless_host/headless_host.hpp"
#include "input_file/form_rules.hpp"
#include "model/words.hpp"
#include "model_check/export_losses.hpp"
#include "model_check/loss_rules.hpp"
#include "plain_text/plain_text.hpp"
#include "session/session_recorder.hpp"
#include "tool/commands/commands.hpp"
#include "tool/files/file_arguments.hpp"
#include "tool/files/file_kind.hpp"
#include "tool/files/file_name.hpp"
#include "tool/files/model_file.hpp"
#include "tool/plug_in/made_at.hpp"
#include "tool/plug_in/panel_page.hpp"
#include "tool/plug_in/plug_in.hpp"
#include "tool/plug_in/plug_in_run.hpp"
#include "tool/plug_in/written_file.hpp"
#include "tool/system/operating_system.hpp"
#include "tool/system/terminal.hpp"
#include "whole_file/whole_file.hpp"

#include <CLI/CLI.hpp>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <optional>
#include <utility>

namespace velm {
namespace {

struct ExportArguments {
    FileName model;
    FileName changes; ///< of SQL statements; empty: none
    FileName output;
    FileName panel;   ///< empty: not saved
    FileName session; ///< empty: not recorded
    FileName plug_in; ///< empty: the tool's own
    bool strict = false;
    bool allow_overflow = false;
    bool quiet = false;
};

void check(const ExportArguments& arguments)
{
    refuse_stream(arguments.output, "OUTPUT",
                  "an export replaces its file only when it is whole, which a stream cannot; give a file name");
    if (!arguments.panel.empty()) {
        refuse_stream(arguments.panel, "The panel's file", "the page is saved in a file; give a file name");
        refuse_to_replace_model(arguments.panel, false);
    }
    if (!arguments.session.empty()) {
        refuse_stream(arguments.session, "SESSION", "a session is recorded in a file of its own; give a file name");
        refuse_existing_session(arguments.session);
    }
    refuse_one_file({{"OUTPUT", arguments.output},
                     {"MODEL", arguments.model},
                     {"the file of --sql", arguments.changes},
                     {"the panel's file", arguments.panel},
                     {"SESSION", arguments.session}});
    refuse_to_replace_model(arguments.output, true);
}

/// The page of an export, which is saved whatever becomes of that.
class Panel {
public:
    explicit Panel(const ExportArguments& arguments)
        : outcome_{arguments.model.in_words(), arguments.output.in_words(), made_at()}
    {
        if (!arguments.panel.empty()) {
            file_.emplace(arguments.panel, Standing::replaced);
        }
    }

    void add(const std::string& said) { said_ = said; }
    void set_outcome(const std::string& word) { outcome_.word = word; }
    /// Throws ToolError when the page cannot be written.
    void write(const std::string& reason = {})
    {
        if (!file_) {
            return;
        }
        outcome_.reason = reason;
        std::ofstream page(file_->content(), std::ios::binary);
        page << panel_page(said_, outcome_);
        page.close();
        if (!page) {
            throw ToolError(ExitCode::failed, "the panel cannot be written to " + shown(file_->name()));
        }
    }
    void put_in_place()
    {
        if (file_) {
            file_->put_in_place();
        }
    }

private:
    std::optional<WholeFile> file_;
    ExportOutcome outcome_;
    std::string said_;
};

void print_summary(const FileName& output, const WrittenFile& written, double seconds)
{
    std::cerr << "velm: " << output << ": " << written.sections << " sections, " << written.records << " records, "
              << written.bytes << " bytes in " << std::fixed << std::setprecision(2) << seconds << " seconds\n";
}

std::uint64_t number_of(const ExportLosses& losses, const FindingRule& rule)
{
    const auto found = losses.found.counts.find(rule.code);
    return found == losses.found.counts.end() ? 0 : found->second.found;
}

/// "1 field overflows", "2 fields overflow"
std::string numbered(std::uint64_t count, const std::string& one, const std::string& verb)
{
    return counted(count, one) + ' ' + verb + (count != 1 ? "" : verb.ends_with("sh") ? "es" : "s");
}

/// What the file does not say of the model: "1 field overflows, 2 values vanish, 31 of 12345 values are shortened".
std::string losses_in_words(const ExportLosses& losses)
{
    const std::uint64_t overflows = number_of(losses, form_rules::field_overflow);
    const std::uint64_t vanished = number_of(losses, loss_rules::value_vanishes);
    const std::uint64_t changed = number_of(losses, loss_rules::value_changed);
    const std::uint64_t shortened = number_of(losses, loss_rules::digits_lost);
    const std::uint64_t cut = number_of(losses, loss_rules::text_cut);
    std::string words = overflows == 0 ? "no field overflows" : numbered(overflows, "field", "overflow");
    words += losses.whole ? "" : "; in its first " + std::to_string(sampled_bytes / 1'000'000) + " MB";
    bool is_first = !losses.whole;
    const auto add = [&](const std::string& part) { words += (std::exchange(is_first, false) ? " " : ", ") + part; };
    if (vanished > 0) {
        add(numbered(vanished, "value", "vanish"));
    }
    if (changed > 0) {
        add(numbered(changed, "value", "change") + " by more than 0.1 %");
    }
    if (shortened > 0) {
        add(std::to_string(shortened) + " of " + std::to_string(losses.reals) +
            (shortened == 1 ? " values is shortened" : " values are shortened"));
    }
    if (vanished + changed + shortened == 0) {
        add((overflows == 0 ? "all " : "the other ") + std::to_string(losses.reals) + " values keep their digits");
    }
    if (cut > 0) {
        add(counted(cut, "text") + (cut == 1 ? " is cut" : " are cut"));
    }
    return words;
}

void print_losses(const ExportArguments& arguments, const ExportLosses& losses)
{
    const std::string words = losses_in_words(losses);
    const bool is_complete = words.starts_with("no field overflows") && words.ends_with("keep their digits");
    std::cerr << "velm: " << arguments.output << ": " << words
              << (is_complete || !arguments.changes.empty()
                      ? ""
                      : "; velm check --show note " + arguments.model + " lists them")
              << '\n';
}

/// Throws ToolError for fields that overflow, unless they are allowed; when strict, also for values that vanish or
/// change. The first of them are named.
void refuse_losses(const ExportArguments& arguments, const ExportLosses& losses)
{
    std::string reasons;
    std::string list;
    const auto refuse = [&](const FindingRule& rule, const std::string& what, const std::string& verb) {
        if (const std::uint64_t count = number_of(losses, rule); count > 0) {
            reasons += (reasons.empty() ? "" : ", ") + numbered(count, what, verb);
            std::uint64_t others = count;
            for (const Finding& finding : losses.found.findings) {
                if (finding.rule->code == rule.code) {
                    list += "\n  " + in_words(finding);
                    --others;
                }
            }
            list += others == 0 ? "" : "\n  and " + std::to_string(others) + " more";
        }
    };
    if (!arguments.allow_overflow) {
        refuse(form_rules::field_overflow, "field", "overflow");
    }
    if (arguments.strict) {
        refuse(loss_rules::value_vanishes, "value", "vanish");
        refuse(loss_rules::value_changed, "value", "change");
    }
    if (!reasons.empty()) {
        const bool may_be_allowed = !arguments.strict;
        throw ToolError(ExitCode::findings,
                        "the export is refused, " + still(arguments.output) + ": " + reasons + list +
                            (may_be_allowed ? "\n  --allow-overflow writes asterisks all the same" : ""));
    }
}

/// Throws ToolError when the export fails or is refused; then `panel` knows which.
void export_model(const ExportArguments& arguments, WholeFile& output, Panel& panel)
{
    const auto start = std::chrono::steady_clock::now();
    const PlugIn plug_in(arguments.plug_in);
    panel.set_outcome("refused");
    ModelFileOptions reading;
    reading.quiet = arguments.quiet;
    reading.changes = arguments.changes;
    Model model = read_model_file(arguments.model, reading).model;
    HeadlessHost host(model, output.content().string());

    const auto recorder = arguments.session.empty() ? nullptr : new_session(arguments.session);

    panel.set_outcome("failed");
    std::string failure = run_export(plug_in, model, host, arguments.quiet, recorder.get());
    panel.add(host.panel());
    const WrittenFile written = read_written_file(output.content());
    if (failure.empty()) {
        failure = written.incompleteness();
    }
    if (recorder) {
        recorder->close();
        recorder->remove_if_failed();
        failure = failure.empty() ? recorder->failure() : failure;
    }
    if (!failure.empty()) {
        throw ToolError(ExitCode::failed, "the export failed, " + still(arguments.output) + ": " + failure);
    }
    panel.set_outcome("refused");
    const bool read_whole =
        arguments.strict || (written.has_asterisks && !(arguments.allow_overflow && arguments.quiet));
    const ExportLosses losses =
        read_whole || !arguments.quiet ? losses_of_export(model, output.content(), read_whole) : ExportLosses{};
    refuse_losses(arguments, losses);
    panel.set_outcome("done");
    panel.write();
    panel.set_outcome("failed");
    output.put_in_place();
    if (!arguments.quiet) {
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        print_summary(arguments.output, written, seconds.count());
        print_losses(arguments, losses);
    }
}

ExitCode export_with_panel(const ExportArguments& arguments)
{
    check(arguments);
    Panel panel(arguments);
    try {
        panel.set_outcome("failed");
        WholeFile output(arguments.output, Standing::replaced);
        refuse_long_path(output.content().string());
        export_model(arguments, output, panel);
    } catch (const std::exception& error) {
        try {
            panel.write(error.what());
            panel.put_in_place();
        } catch (const std::exception& other) {
            print_error(other.what());
        }
        throw;
    }
    panel.put_in_place();
    return ExitCode::done;
}

} // namespace

Command export_command(CLI::App& tool)
{
    auto values = std::make_shared<ExportArguments>();
    CLI::App* const arguments = tool.add_subcommand("export", "Write a model's input file through the export plug-in");
    arguments->add_option("MODEL", values->model, "Model database, or an input file to write anew")->required();
    arguments->add_option("OUTPUT", values->output, "Input file to write; replaced only by a complete one")->required();
    arguments
        ->add_option(
            "--sql", values->changes,
            "Export a private copy of MODEL that is changed by the UPDATE, INSERT and DELETE statements in FILE")
        ->type_name("FILE");
    arguments
        ->add_option("--panel", values->panel,
                     "Save what the plug-in says, and what becomes of the export, as a web page")
        ->type_name("FILE");
    arguments
        ->add_option("--record", values->session,
                     "Record what plug-in and host say to each other, in a new file; takes up to ten times as long")
        ->type_name("SESSION");
    arguments->add_option("--plugin", values->plug_in, "Run another build of the plug-in")->type_name("LIBRARY");
    CLI::Option* const strict =
        arguments->add_flag("--strict", values->strict,
                            "Refuse to replace OUTPUT also when a value vanishes or changes by more than 0.1 %");
    arguments
        ->add_flag("--allow-overflow", values->allow_overflow,
                   "Write asterisks for a value that is too wide for its field, which is refused else")
        ->excludes(strict);
    arguments->add_flag("--quiet", values->quiet, "Print nothing but errors");
    arguments->footer("Examples:\n"
                      "  velm export estuary.db estuary.inp\n"
                      "  velm export estuary.db estuary.inp --panel panel.html\n"
                      "  velm export estuary.db run.inp --sql changes.sql\n"
                      "  velm export estuary.db estuary.inp --record estuary.jsonl\n"
                      "  velm export estuary.db estuary.inp --plugin build/release/libvelm_export.so --quiet\n\n"
                      "Whatever fails, an existing OUTPUT stays as it was.");
    return {arguments, [values] { return export_with_panel(*values); }};
}

} // namespace velm
