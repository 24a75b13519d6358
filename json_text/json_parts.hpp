#pragma once

#include <rapidjson/stringbuffer.h>

#include <cmath>
#include <string_view>

namespace velm {

/// The parts of one JSON value, which `Writer`, one of RapidJSON's, writes: what every kind of text has.
template <class Writer>
class JsonParts {
public:
    /// Objects and arrays; with a name, as that member of the object that is open.
    void begin_object(std::string_view member = {})
    {
        name(member);
        json_.StartObject();
    }
    void end_object() { json_.EndObject(); }
    void begin_array(std::string_view member = {})
    {
        name(member);
        json_.StartArray();
    }
    void end_array() { json_.EndArray(); }

    /// An array; put_item(item) puts the value of each item.
    template <class List, class PutItem>
    void put_array(std::string_view member, const List& list, const PutItem& put_item)
    {
        begin_array(member);
        for (const auto& item : list) {
            put_item(item);
        }
        end_array();
    }
    /// An array of objects; put_members(item) puts what is in that of each item.
    template <class List, class PutMembers>
    void put_objects(std::string_view member, const List& list, const PutMembers& put_members)
    {
        put_array(member, list, [&](const auto& item) {
            begin_object();
            put_members(item);
            end_object();
        });
    }

    void put(std::string_view member, double value) ///< null for what is not finite
    {
        name(member);
        if (std::isfinite(value)) {
            json_.Double(value);
        } else {
            json_.Null();
        }
    }

protected:
    void name(std::string_view member)
    {
        if (!member.empty()) {
            json_.Key(member.data(), static_cast<rapidjson::SizeType>(member.size()));
        }
    }

    rapidjson::StringBuffer buffer_;
    Writer json_{buffer_};
};

} // namespace velm
