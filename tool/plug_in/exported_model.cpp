#include "tool/plug_in/exported_model.hpp"

#include "headless_host/headless_host.hpp"
#include "tool/exit_code.hpp"
#include "tool/files/model_file.hpp"
#include "tool/plug_in/plug_in_run.hpp"
#include "tool/plug_in/written_file.hpp"

#include <string>

namespace velm {
namespace {

void write(const PlugIn& plug_in, const Model& model, const std::filesystem::path& file, bool quiet)
{
    HeadlessHost host(model, file.string());
    std::string failure = run_export(plug_in, model, host, quiet);
    if (failure.empty()) {
        failure = read_written_file(file).incompleteness();
    }
    if (!failure.empty()) {
        throw ToolError(ExitCode::failed, "the model cannot be exported to a temporary file: " + failure);
    }
}

} // namespace

ExportedModel::ExportedModel(const PlugIn& plug_in, const Model& model, bool quiet)
{
    write(plug_in, model, file_.content(), quiet);
}

Model model_as_exported(const PlugIn& plug_in, const Model& model, const FileName& file, bool quiet)
{
    return read_input_model(ExportedModel(plug_in, model, quiet).file(), "the input file of " + file, {.quiet = quiet})
        .model;
}

} // namespace velm
