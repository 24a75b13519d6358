#pragma once

#include "Utilities/IMPORT/import_export.hpp"
#include "host_link/request.hpp"

namespace velm {

/// A type of time functions, parameters or constants: its entries in the shared tables.
struct InstanceType {
    Integer& isc;
    Integer& instances;
};

/// Asks for the ISC number of type `type`, then for the number of its instances. Sections ask in each of their passes.
template <FixedString isc_key, FixedString count_key>
InstanceType fetch_type(Integer type)
{
    Integer& isc = model.isc_numbers[type];
    request<isc_key>(type, isc);
    Integer& instances = model.instance_counts[type];
    request<count_key>(InPlace{isc}, instances);
    return {isc, instances};
}

} // namespace velm
