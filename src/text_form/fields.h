#pragma once

#include "text_form/problem.h"
#include "text_form/values.h"

// A record is described once: a function names its fields, one after the other, to whoever walks
// it, which is a writer, a reader, or the maker of the schema. Each of them takes
//
//     fields(key, value, kind)                  a field that always stands in the text
//     fields.when(applies, key, value, kind)    one that may be absent, as zero, unless it applies
//     fields.carried(key, value)                bytes without a meaning: absent where zero
//     fields.list(key, slots, count, kind)      the first `count` of some slots
//
// where the kind is one of values.h, or a Record.

namespace korvane::text_form {

// A kind that looks at what it reads place by place, and names the wrong one itself.
template <class Kind>
concept Structured = requires {
    typename Kind::Places;
};

template <class Kind, class T>
void readPlace(const Kind& kind, const Json& json, T& value, const std::string& place) {
    if constexpr (Structured<Kind>) {
        kind.read(json, value, place);
    } else {
        try {
            kind.read(json, value);
        } catch (const WrongValue& wrong) {
            throw Problem{place, wrong.reason};
        }
    }
}

template <class Kind, class T>
Json schemaOf(const Kind& kind, const T& value, Json& definitions) {
    if constexpr (Structured<Kind>)
        return kind.schema(value, definitions);
    else
        return kind.schema(value);
}

// A list: the first `count` of some slots.
template <class Slots, class Count, class Kind>
Json writeSlots(const Slots& slots, Count count, const Kind& kind) {
    Json items = Json::array();
    for (std::size_t i = 0; i < std::min<std::size_t>(count, slots.size()); ++i)
        items.push_back(kind.write(slots[i]));
    return items;
}

// Throws for what is no list, or longer than that.
void requireList(const Json& json, std::size_t most, const std::string& place);

template <class Slots, class Count, class Kind>
void readSlots(const Json& json, Slots& slots, Count& count, const Kind& kind,
               const std::string& place) {
    requireList(json, slots.size(), place);
    for (std::size_t i = 0; i < json.size(); ++i)
        readPlace(kind, json[i], slots[i], place + '[' + std::to_string(i) + ']');
    count = static_cast<Count>(json.size());
}

template <class Slots, class Kind>
Json slotsSchema(const Slots& slots, const Kind& kind, Json& definitions) {
    return {{"type", "array"},
            {"maxItems", slots.size()},
            {"items", schemaOf(kind, slots[0], definitions)}};
}

class FieldWriter {
  public:
    template <class T, class Kind>
    void operator()(const char* key, const T& value, const Kind& kind) {
        json_[key] = kind.write(value);
    }
    template <class T, class Kind>
    void when(bool applies, const char* key, const T& value, const Kind& kind) {
        Json json = kind.write(value);
        if (applies || json != kind.write(T{})) json_[key] = std::move(json);
    }
    template <class T, class Kind = Hex>
    void carried(const char* key, const T& value, const Kind& kind = hex) {
        when(false, key, value, kind);
    }
    template <class Slots, class Count, class Kind>
    void list(const char* key, const Slots& slots, Count count, const Kind& kind) {
        json_[key] = writeSlots(slots, count, kind);
    }
    Json take() { return std::move(json_); }

  private:
    Json json_ = Json::object();
};

// Reads into records that are zero.
class FieldReader {
  public:
    FieldReader(const Json& json, const std::string& place);

    template <class T, class Kind>
    void operator()(const char* key, T& value, const Kind& kind) {
        when(true, key, value, kind);
    }
    template <class T, class Kind>
    void when(bool required, const char* key, T& value, const Kind& kind) {
        if (const Json* json = find(key, required)) readPlace(kind, *json, value, placeOf(key));
    }
    template <class T, class Kind = Hex>
    void carried(const char* key, T& value, const Kind& kind = hex) {
        when(false, key, value, kind);
    }
    template <class Slots, class Count, class Kind>
    void list(const char* key, Slots& slots, Count& count, const Kind& kind) {
        readSlots(*find(key, true), slots, count, kind, placeOf(key));
    }
    // Throws when there is a key that nobody asked for.
    void finish() const;

  private:
    std::string placeOf(std::string_view key) const;
    const Json* find(const char* key, bool required);

    const Json& json_;
    const std::string& place_;
    std::vector<std::string_view> known_;
};

class FieldSchema {
  public:
    explicit FieldSchema(Json& definitions) : definitions_(definitions) {}

    template <class T, class Kind>
    void operator()(const char* key, const T& value, const Kind& kind) {
        add(key, schemaOf(kind, value, definitions_));
    }
    template <class T, class Kind>
    void when(bool, const char* key, const T& value, const Kind& kind) {
        properties_[key] = schemaOf(kind, value, definitions_);
    }
    template <class T, class Kind = Hex>
    void carried(const char* key, const T& value, const Kind& kind = hex) {
        when(false, key, value, kind);
    }
    template <class Slots, class Count, class Kind>
    void list(const char* key, const Slots& slots, Count, const Kind& kind) {
        add(key, slotsSchema(slots, kind, definitions_));
    }
    Json take();

  private:
    void add(const char* key, Json schema);

    Json& definitions_;
    Json properties_ = Json::object(), required_ = Json::array();
};

// An object of the text: what `describe` names of it to each of these.
template <class Describe>
struct Record {
    using Places = void;
    const char* name;  // in the schema
    Describe describe;

    template <class T>
    Json write(const T& record) const {
        FieldWriter fields;
        describe(fields, record);
        return fields.take();
    }
    template <class T>
    void read(const Json& json, T& record, const std::string& place) const {
        FieldReader fields(json, place);
        describe(fields, record);
        fields.finish();
    }
    template <class T>
    Json schema(const T& record, Json& definitions) const {
        if (!definitions.contains(name)) {
            FieldSchema fields(definitions);
            describe(fields, record);
            definitions[name] = fields.take();
        }
        return {{"$ref", std::string("#/$defs/") + name}};
    }
};
template <class Describe>
Record(const char*, Describe) -> Record<Describe>;

}  // namespace korvane::text_form
