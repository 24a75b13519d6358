#pragma once

#include "model/model.hpp"

namespace velm {

/// A small model in which no two data are equal where they could be mistaken for each other.
Model sample_model();

} // namespace velm
