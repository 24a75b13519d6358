#include "Utilities/IMPORT/import_export.hpp"

namespace velm {

ModelState model; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): what hosts call has no arguments

} // namespace velm

void IMPORT_EXPORT() {}
