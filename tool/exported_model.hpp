#pragma once

#include "model/model.hpp"
#include "tool/plug_in.hpp"

#include <filesystem>

namespace velm {

/// A model's input file as the plug-in writes it, for as long as it is looked at: it lies in the directory for
/// temporary files and goes with the object.
class ExportedModel {
public:
    /// Throws ToolError (failed) when the export fails.
    ExportedModel(const PlugIn& plug_in, const Model& model, bool quiet);
    ~ExportedModel();
    ExportedModel(const ExportedModel&) = delete;
    ExportedModel& operator=(const ExportedModel&) = delete;
    ExportedModel(ExportedModel&&) = delete;
    ExportedModel& operator=(ExportedModel&&) = delete;

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

private:
    std::filesystem::path file_;
};

} // namespace velm
