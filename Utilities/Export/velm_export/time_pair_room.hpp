#pragma once

#include "Utilities/IMPORT/import_export.hpp"

namespace velm {

/// Ends the export, naming the item, when its series would not fit the tables that the host writes into. `kind` is
/// "boundary" or "load".
void refuse_more_than_the_room(Integer pairs, const char* kind, Integer system, Integer item);

} // namespace velm
