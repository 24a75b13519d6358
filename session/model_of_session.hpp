#pragma once

#include "model/model.hpp"

#include <cstdint>
#include <filesystem>
#include <stdexcept>

namespace velm {

/// A recording whose answers no model gives. what() names file, line, exchange and request, and says why.
class NoModel : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The model that was exported while `session` was recorded: exporting it asks the same requests and gives the same
/// file. What an export does not ask for, such as the values of an unused parameter, has its default.
/// `export_number` counts from 1.
///
/// Reads the session twice: once to collect the answers, once to compare each of them with what the model says.
/// Throws NoModel, SessionError and std::system_error.
[[nodiscard]] Model model_of_session(const std::filesystem::path& session, std::uint64_t export_number);

} // namespace velm
