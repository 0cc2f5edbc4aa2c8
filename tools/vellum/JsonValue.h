#pragma once
// A small JSON document: objects keep their members in the order they were set.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace VellumTool
{
class JsonValue
{
public:
    JsonValue() : type_(Null) {}

    static JsonValue null() { return JsonValue(); }
    static JsonValue boolean(bool value) { return raw(Bool, value ? "true" : "false"); }
    static JsonValue number(std::int64_t value) { return raw(Number, std::to_string(value)); }
    static JsonValue unsignedNumber(std::uint64_t value) { return raw(Number, std::to_string(value)); }
    static JsonValue text(std::string const & value) { return raw(String, value); }
    static JsonValue object() { return raw(Object, std::string()); }
    static JsonValue array() { return raw(Array, std::string()); }

    // Object members; a second set of the same name adds a second member (avoid it).
    JsonValue & set(std::string const & name, JsonValue const & value)
    {
        members_.push_back(std::make_pair(name, value));
        return *this;
    }
    JsonValue & push(JsonValue const & value)
    {
        members_.push_back(std::make_pair(std::string(), value));
        return *this;
    }
    bool empty() const { return members_.empty(); }

    // The document as text, indented by two spaces a level, with a final newline at depth 0.
    std::string write(unsigned depth = 0) const;
    static std::string quote(std::string const & text);

private:
    enum Type
    {
        Null,
        Bool,
        Number,
        String,
        Object,
        Array
    };
    static JsonValue raw(Type type, std::string const & text)
    {
        JsonValue v;
        v.type_ = type;
        v.text_ = text;
        return v;
    }

    Type type_;
    std::string text_;
    std::vector<std::pair<std::string, JsonValue>> members_;
};

inline std::string JsonValue::quote(std::string const & text)
{
    std::string out = "\"";
    for (unsigned char c : text)
    {
        switch (c)
        {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20)
            {
                static char const digits[] = "0123456789abcdef";
                out += "\\u00";
                out += digits[c >> 4];
                out += digits[c & 15];
            }
            else
                out += char(c);
        }
    }
    return out + "\"";
}

inline std::string JsonValue::write(unsigned depth) const
{
    switch (type_)
    {
    case Null:
        return "null";
    case Bool:
    case Number:
        return text_;
    case String:
        return quote(text_);
    case Object:
    case Array:
        break;
    }
    bool const isObject = type_ == Object;
    if (members_.empty())
        return isObject ? "{}" : "[]";
    std::string const inner(2 * (depth + 1), ' ');
    // Arrays of plain values stay on one line.
    bool flat = !isObject;
    for (auto const & m : members_)
        flat = flat && m.second.type_ != Object && m.second.type_ != Array;
    std::string out = isObject ? "{" : "[";
    for (size_t i = 0; i < members_.size(); ++i)
    {
        out += i != 0 ? (flat ? ", " : ",\n") : (flat ? "" : "\n");
        if (!flat)
            out += inner;
        if (isObject)
            out += quote(members_[i].first) + ": ";
        out += members_[i].second.write(depth + 1);
    }
    if (!flat)
        out += "\n" + std::string(2 * depth, ' ');
    out += isObject ? "}" : "]";
    return out;
}
} // namespace VellumTool
