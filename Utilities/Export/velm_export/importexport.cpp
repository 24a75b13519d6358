#include "Utilities/Export/velm_export/export_to.hpp"
#include "Utilities/Export/velm_export/export_under_way.hpp"
#include "Utilities/Export/velm_export/panel.hpp"
#include "Utilities/Export/velm_export/sections.hpp"
#include "Utilities/IMPORT/import_export.hpp"

#include <algorithm>
#include <cxxabi.h>
#include <memory>
#include <new>
#include <string>

using namespace velm;

namespace {

/// A text in a buffer of its own: what is said about a failure must not need storage.
struct FailureText {
    char characters[5 * ExportFailure::message_room + 96] = {}; // every character may have to be spelt &amp;
    char* end = characters;

    FailureText& add(const char* text)
    {
        for (; *text != '\0' && end != std::end(characters) - 1; ++text) {
            *end++ = *text;
        }
        return *this;
    }

    /// A text that is not ours, for a page: it must not open a tag there.
    FailureText& add_to_page(const char* text)
    {
        for (; *text != '\0'; ++text) {
            const char character[] = {*text, '\0'};
            add(*text == '<' ? "&lt;" : *text == '>' ? "&gt;" : *text == '&' ? "&amp;" : character);
        }
        return *this;
    }
};

void post_failure(const char* operation, const char* message)
{
    FailureText closing;
    closing.add("File Export failed: ")
        .add_to_page(message)
        .add(" (")
        .add(operation)
        .add(" error on channel 5)</span></li>");
    request<"PINFOHTML">(R"(<li><span style="font-weight: bold; color: red;">)");
    request<"PINFOHTML">(NulEndedText{closing.characters, static_cast<Integer>(closing.end - closing.characters) + 1});
}

void report(const char* operation, const char* message)
{
    FailureText lines;
    lines.add("? ").add(message).add("\n? ").add(operation).add(" error on channel 5\n");
    write_to_standard_error(lines.characters);
    try {
        post_failure(operation, message);
    } catch (abi::__forced_unwind&) {
        throw;      // the host ends its thread
    } catch (...) { // NOLINT(bugprone-empty-catch): a host that throws here cannot be told anything
    }
}

void open_output(OutputFile& file)
{
    const auto& field = model.output_file_name;
    const std::string path(field.begin(), std::find(field.begin(), field.end(), '\0'));
    if (path.empty()) {
        throw ExportFailure("OPEN", "no output file name");
    }
    file.open(path.c_str());
}

} // namespace

void velm::export_to(OutputFile& file)
{
    request<"GFILENAME">(model.output_file_name);
    end_with_nul(model.output_file_name);
    intro();
    open_output(file);
    {
        OutputChannel out(file);
        sys_info(out);
        segment(out);
        flowpath(out);
        flows(out);
        dispexch(out);
        boundaries(out);
        loads(out);
        time_functions(out);
        parameters(out);
        constants(out);
        initial_conditions(out);
        out.close();
    }
    announce("File Export is Complete</span></li>");
}

void velm::export_and_report(OutputFile& file)
{
    const ExportUnderWay under_way(reinterpret_cast<void (*)()>(&export_and_report), __builtin_frame_address(0));
    if (!under_way.permitted()) {
        report("EXPORT", "another export is under way");
        return;
    }
    file.let_go(); // an export that the host has left by longjmp may have it open
    const std::unique_ptr<OutputFile, void (*)(OutputFile*)> open(&file, [](OutputFile* used) { used->let_go(); });
    try {
        export_to(file);
    } catch (const ExportFailure& failure) {
        report(failure.operation(), failure.what());
    } catch (const std::bad_alloc&) {
        report("EXPORT", "storage cannot be obtained");
    } catch (const std::exception& unexpected) {
        report("EXPORT", ExportFailure("EXPORT", unexpected.what()).what()); // cut to its room
    } catch (abi::__forced_unwind&) {
        throw; // the host ends its thread
    } catch (...) {
        report("EXPORT", "the host has thrown an exception");
    }
}

void importexport()
{
    static SystemFile file; // not on the stack, which a host may leave by longjmp
    export_and_report(file);
}
