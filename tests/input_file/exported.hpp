#pragma once

#include "input_file/input_file.hpp"
#include "model/model.hpp"
#include "tests/support/test_folder.hpp"

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

/// The files of the golden models.
std::vector<std::filesystem::path> golden_files();

/// What the plug-in writes for a host that answers at random, but as one that has a model.
std::string random_file(std::mt19937& random);

} // namespace velm
