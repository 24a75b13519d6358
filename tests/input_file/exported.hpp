#pragma once

#include "input_file/input_file.hpp"
#include "model/model.hpp"

#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace velm {

/// What the plug-in writes when a headless host serves the model.
std::string exported(const Model& model);

InputFile read_text(const std::string& bytes, const ReadOptions& options = {});

/// The problems, a line each; empty when there are none.
std::string problems_of(const InputFile& file);

std::string bytes_of(const std::filesystem::path& file);
/// The files of the golden models.
std::vector<std::filesystem::path> golden_files();

/// A model that a file says in full: short reals, no unused instance at the end of a type, texts of any bytes.
Model random_model(std::mt19937& random);

} // namespace velm
