#include "model/tables.hpp"
#include "model/words.hpp"
#include "report/parts.hpp"

#include <initializer_list>
#include <type_traits>
#include <utility>

namespace velm {
namespace {

void put_cell(PageData& data, const std::string& text)
{
    data.put_latin1({}, text);
}
void put_cell(PageData& data, double number)
{
    data.put({}, number);
}

/// A table whose rows the page can be led to: "system,3".
class Table {
public:
    Table(PageData& data, std::string_view source, std::string_view title,
          std::initializer_list<std::string_view> columns)
        : data_(data)
    {
        data_.begin_object();
        data_.put_utf8("table", source);
        data_.put_utf8("title", title);
        data_.put_array("columns", columns, [&](std::string_view column) { data_.put_utf8({}, column); });
        data_.begin_array("rows");
    }
    ~Table()
    {
        data_.end_array();
        data_.end_object();
    }
    Table& operator=(Table&&) = delete; // neither copied nor moved

    template <class... Cells>
    void row(const std::string& address, const Cells&... cells)
    {
        data_.begin_object();
        data_.put_utf8("at", address);
        data_.begin_array("cells");
        (put_cell(data_, cells), ...);
        data_.end_array();
        data_.end_object();
    }

private:
    PageData& data_;
};

template <class Value>
auto cell_of(const Value& value)
{
    if constexpr (std::is_arithmetic_v<Value>) {
        return static_cast<double>(value);
    } else {
        return value;
    }
}

/// A column's unit and meaning in one text.
std::string meaning_of(const ColumnText& column)
{
    return std::string(column.unit) + (column.unit.empty() || column.meaning.empty() ? "" : ", ") +
           std::string(column.meaning);
}

/// "start date" of start_date_1 to start_date_3, which are one date; empty for other columns.
std::string name_of_triple(std::string_view column)
{
    const bool part = column.size() > 2 && column[column.size() - 2] == '_' && column.back() <= '3';
    return part ? name_in_words(column.substr(0, column.size() - 2)) : "";
}

void put_options(PageData& data, const Model& model)
{
    Table table(data, "model", "Options of the run", {"option", "value", "meaning"});
    std::string triple;
    for (const auto& column : tables::model.columns) {
        const std::string name = name_of_triple(column.name);
        with_value(column, model, [&](const auto& value) {
            if constexpr (std::is_integral_v<std::remove_cvref_t<decltype(value)>>) {
                if (!name.empty()) {
                    triple.append(triple.empty() ? "" : " ").append(std::to_string(value));
                    if (column.name.back() == '3') {
                        const std::string meaning = meaning_of(column);
                        table.row("", name, std::exchange(triple, {}), meaning.substr(0, meaning.find(", third")));
                    }
                    return;
                }
            }
            table.row("", name_in_words(column.name), cell_of(value), meaning_of(column));
        });
    }
}

void put_systems(PageData& data, const Model& model)
{
    Table table(data, "system", "Systems",
                {"system", "name", "tag", "boundaries", "scale factor", "conversion factor to mg/L", "loads",
                 "scale factor", "conversion factor to kg/day", "solids transport field", "density, g/mL",
                 "maximum concentration, mg/L"});
    for (std::size_t s = 0; s < model.systems.size(); ++s) {
        const System& system = model.systems[s];
        table.row("system," + std::to_string(s + 1), double(s + 1), system.name, system.tag,
                  double(system.boundaries.items.size()), double{system.boundaries.scale_factor},
                  double{system.boundaries.conversion_factor}, double(system.loads.items.size()),
                  double{system.loads.scale_factor}, double{system.loads.conversion_factor},
                  double(system.solids_transport_field), double{system.solids_density},
                  double{system.maximum_concentration});
    }
}

void put_fields(PageData& data, const Model& model)
{
    Table table(data, "flow_field", "Flow and exchange fields",
                {"field", "name", "functions", "scale factor", "conversion factor"});
    for (std::size_t f = 0; f < model.flow_fields.size(); ++f) {
        const FlowField& field = model.flow_fields[f];
        table.row("flow_field," + std::to_string(f + 1), "flow field " + std::to_string(f + 1), flow_field_name(f + 1),
                  double(field.functions.size()), double{field.scale_factor}, double{field.conversion_factor});
    }
    for (std::size_t f = 0; f < model.exchange_fields.size(); ++f) {
        const ExchangeField& field = model.exchange_fields[f];
        table.row("exchange_field," + std::to_string(f + 1), "exchange field " + std::to_string(f + 1),
                  exchange_field_name(f + 1), double(field.functions.size()), double{field.scale_factor},
                  double{field.conversion_factor});
    }
}

/// Rows of instances by type: `cells(instance)` is called with the row's address and the ISC number.
template <class Instance, class Put>
void for_each_instance(const std::vector<InstanceType<Instance>>& types, const std::string& source, const Put& put)
{
    for (std::size_t t = 0; t < types.size(); ++t) {
        for (std::size_t i = 0; i < types[t].instances.size(); ++i) {
            put(source + "," + std::to_string(t + 1) + "," + std::to_string(i + 1), double(types[t].isc), double(i + 1),
                types[t].instances[i]);
        }
    }
}

std::string yes_or_no(bool value)
{
    return value ? "yes" : "no";
}

void put_instances(PageData& data, const Model& model)
{
    {
        Table table(data, "constant", "Constants", {"ISC number", "number", "description", "value", "used"});
        for_each_instance(model.constant_types, "constant", [&](const auto& at, double isc, double i, const auto& one) {
            table.row(at, isc, i, one.description, double{one.value}, yes_or_no(one.used));
        });
    }
    {
        Table table(data, "parameter", "Parameters", {"ISC number", "number", "description", "scale factor", "used"});
        for_each_instance(model.parameter_types, "parameter",
                          [&](const auto& at, double isc, double i, const auto& one) {
                              table.row(at, isc, i, one.description, double{one.scale_factor}, yes_or_no(one.used));
                          });
    }
    Table table(data, "time_function", "Time functions", {"ISC number", "number", "description", "pairs", "used"});
    for_each_instance(model.time_function_types, "time_function_type",
                      [&](const auto& at, double isc, double i, const auto& one) {
                          table.row(at, isc, i, one.description, double(one.series.times.size()), yes_or_no(one.used));
                      });
}

} // namespace

void put_tables(PageData& data, const Model& model)
{
    data.begin_array("tables");
    put_options(data, model);
    put_systems(data, model);
    put_fields(data, model);
    put_instances(data, model);
    data.end_array();
}

} // namespace velm
