#pragma once

#include "model_store/model_store.hpp"
#include "tests/support/test_folder.hpp"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace velm {

/// A model that has something of its own in every field. Segments 1 to 3, systems 1 and 2.
Model full_model();

/// A folder of its own for each test, removed with its files.
class StoreTest : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path file(const std::string& name) const { return folder_.path / name; }
    [[nodiscard]] std::vector<std::string> names_in_folder() const;
    /// The full model, saved.
    [[nodiscard]] std::filesystem::path good_database() const;

private:
    TestFolder folder_;
};

/// Runs SQL that may break every promise of the schema.
void spoil(const std::filesystem::path& database, const std::string& sql);
/// The first column of all rows.
std::vector<std::string> query(const std::filesystem::path& database, const std::string& sql);

/// What StoreError::what() says, or "no error".
std::string error_of(const std::function<void()>& action);
std::string load_error(const std::filesystem::path& database, const LoadOptions& options = {});

/// The path as errors show it.
std::string quoted(const std::filesystem::path& file);

} // namespace velm
