#include "model_store/model_store.hpp"

namespace velm {

extern const std::string_view schema_sql; // the bytes of schema.sql, which the build puts in

std::string_view model_schema()
{
    return schema_sql;
}

} // namespace velm
