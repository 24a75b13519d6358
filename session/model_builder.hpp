#pragma once

#include "model/model.hpp"
#include "session/exchange.hpp"

#include <cstdint>
#include <stdexcept>

namespace velm {

/// An answer that has no place in a model. what() says why.
class Misplaced : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Puts recorded answers where they belong in a model: the opposite of ModelAnswers. Items come into being when they
/// are first asked for, in the order of their numbers, so that a wrong count costs no memory; counts themselves are
/// not looked at. Where a datum is asked for twice the last answer stays.
class ModelBuilder {
public:
    /// Throws Misplaced for an item asked for before the one ahead of it, or a type whose ISC number is unknown.
    void take(const RecordedExchange& exchange);

    /// The model, with defaults where nothing was asked.
    [[nodiscard]] Model finish();

private:
    void take_time_function_used(const RecordedExchange& exchange);

    Model model_;
    std::int32_t time_function_count_ = 0; ///< of the type asked about last
    std::int32_t passes_over_flow_fields_ = 0;
};

} // namespace velm
