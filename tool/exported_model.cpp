#include "tool/exported_model.hpp"

#include "headless_host/headless_host.hpp"
#include "tool/exit_code.hpp"
#include "tool/operating_system.hpp"
#include "tool/plug_in_run.hpp"
#include "tool/written_file.hpp"

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
        throw ToolError(ExitCode::failed, "the model cannot be exported to a temporary file in " +
                                              file.parent_path().string() + ": " + failure);
    }
}

} // namespace

ExportedModel::ExportedModel(const PlugIn& plug_in, const Model& model, bool quiet)
    : file_(create_temporary_file(std::filesystem::temp_directory_path() / "velm-", false))
{
    try {
        write(plug_in, model, file_, quiet);
    } catch (...) {
        discard(file_);
        throw;
    }
}

ExportedModel::~ExportedModel()
{
    discard(file_);
}

} // namespace velm
