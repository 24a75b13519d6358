#pragma once

#include "model/model.hpp"
#include "tool/files/file_name.hpp"
#include "tool/plug_in/plug_in.hpp"
#include "whole_file/whole_file.hpp"

#include <filesystem>

namespace velm {

/// A model's input file as the plug-in writes it, for as long as it is looked at: it lies
/// among the temporary files, without a name, and goes with the object.
class ExportedModel {
public:
    /// Throws ToolError (failed) when the export fails.
    ExportedModel(const PlugIn& plug_in, const Model& model, bool quiet);

    [[nodiscard]] const std::filesystem::path& file() const { return file_.content(); }

private:
    WholeFile file_;
};

/// The model that the input file of a database's model shows; messages call the database `file`. Throws ToolError.
[[nodiscard]] Model model_as_exported(const PlugIn& plug_in, const Model& model, const FileName& file, bool quiet);

} // namespace velm
