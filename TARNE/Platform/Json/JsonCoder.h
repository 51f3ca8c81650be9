#pragma once

#include "JsonReader.h"
#include "JsonWriter.h"

#include <QStringList>

#include <tuple>

/// The JSON forms of records, for reading and writing alike.
///
/// A record type says its form once, by a specialisation beside its codec:
///
///     template <>
///     struct JsonForm<SessionGoal> {
///         static constexpr std::tuple members{member("id", &SessionGoal::id), ...};
///         static SessionGoal blank();
///     };
///
/// A member of type `std::optional` may be missing or null and is left out when it is absent; every
/// other one must be there with the right type. Unknown members are ignored, of a repeated one the
/// last counts. `blank()` is what reading begins with; it avoids defaults that cost something, such
/// as a new id. A form that is only read may pass members by, which have to be valid all the same:
/// `passed<QString>("text")`. An enumeration has functions `jsonText(value)` and
/// `fromJsonText(text, value)`.
namespace tarne::json {

template <class Record>
struct JsonForm;

template <class Type>
inline constexpr bool isOptional = false;
template <class Type>
inline constexpr bool isOptional<std::optional<Type>> = true;

template <class Record, class Type>
struct Member {
    static constexpr bool mayBeMissing = isOptional<Type>;
    std::string_view name;
    Type Record::*field;
};

template <class Record, class Type>
constexpr Member<Record, Type> member(std::string_view name, Type Record::*field) {
    return {name, field};
}

/// A member that is read like one of type `Type` and not kept.
template <class Type>
struct PassedMember {
    static constexpr bool mayBeMissing = isOptional<Type>;
    std::string_view name;
};

template <class Type>
constexpr PassedMember<Type> passed(std::string_view name) {
    return {name};
}

template <class Type>
concept HasForm = requires {
    JsonForm<Type>::members;
};

template <class Type>
concept HasText = requires(Type value, QUtf8StringView text) {
    { jsonText(value) } -> std::convertible_to<QString>;
    { fromJsonText(text, value) } -> std::same_as<bool>;
};

template <HasText Type>
[[nodiscard]] bool read(Value value, Type &result);
template <class Type>
[[nodiscard]] bool read(Value value, std::optional<Type> &result);
template <class Type>
[[nodiscard]] bool read(Value value, std::vector<Type> &result);
template <HasForm Record>
[[nodiscard]] bool read(Value value, Record &result);

template <class Type>
[[nodiscard]] Type blank() {
    if constexpr (HasForm<Type>)
        return JsonForm<Type>::blank();
    else
        return Type();
}

template <HasText Type>
bool read(Value value, Type &result) {
    std::string_view text;
    return read(value, text) && fromJsonText(QUtf8StringView(text), result);
}

template <class Type>
bool read(Value value, std::optional<Type> &result) {
    if (isNull(value)) {
        result.reset();
        return true;
    }
    result.emplace(blank<Type>());
    return read(value, *result);
}

/// Reads a list; `List` is a vector or QStringList.
template <class List>
[[nodiscard]] bool readList(Value value, List &result) {
    simdjson::ondemand::array array;
    if (value.get_array().get(array))
        return false;
    result.clear();
    for (auto item : array) {
        Value element;
        if (item.get(element))
            return false;
        // Most lists are short ones of a few goals: room for these at once, not one after another.
        if (result.capacity() == 0)
            result.reserve(4);
        result.push_back(blank<typename List::value_type>());
        if (!read(element, result.back()))
            return false;
    }
    return true;
}

template <class Type>
bool read(Value value, std::vector<Type> &result) {
    return readList(value, result);
}

[[nodiscard]] inline bool read(Value value, QStringList &result) {
    return readList(value, result);
}

/// Whether the value reads as a `Type`.
template <class Type>
[[nodiscard]] bool pass(Value value) {
    if constexpr (std::is_same_v<Type, QString>) {
        return passText(value);
    } else {
        Type dropped = blank<Type>();
        return read(value, dropped);
    }
}

/// Reads an object into a record, member by member, in whatever order they stand.
template <HasForm Record>
class RecordReader {
    static constexpr auto &members = JsonForm<Record>::members;
    using Members = std::remove_cvref_t<decltype(members)>;
    static constexpr std::size_t count = std::tuple_size_v<Members>;
    using Indices = std::make_index_sequence<count>;

public:
    explicit RecordReader(Record &record) : m_record(record) {}

    [[nodiscard]] bool read(Value value) {
        simdjson::ondemand::object object;
        if (value.get_object().get(object))
            return false;
        for (auto item : object) {
            simdjson::ondemand::field field;
            if (std::move(item).get(field) || !readField(field, Indices()))
                return false;
        }
        return hasAllRequired(Indices());
    }

private:
    template <std::size_t... I>
    bool readField(simdjson::ondemand::field &field, std::index_sequence<I...>) {
        bool wasRead = false;
        // Our own documents have the members in their order, so the first comparison is the next
        // member's.
        Key key(field);
        const auto readIf = [&]<std::size_t Index>(bool matches) {
            if (matches)
                wasRead = readMember<Index>(field.value());
            return matches;
        };
        if ((readIf.template operator()<I>(I == m_next &&
                                           key.isWrittenAs(std::get<I>(members).name)) ||
             ...))
            return wasRead;
        const std::optional<std::string_view> name = key.text();
        if (!name)
            return false;
        if ((readIf.template operator()<I>(*name == std::get<I>(members).name) || ...))
            return wasRead;
        return skip(field.value());
    }

    template <std::size_t Index>
    bool readMember(Value value) {
        m_seen |= 1U << Index;
        m_next = Index + 1;
        return readInto(value, std::get<Index>(members));
    }

    template <class Type>
    bool readInto(Value value, const Member<Record, Type> &member) {
        return json::read(value, m_record.*member.field);
    }
    template <class Type>
    bool readInto(Value value, const PassedMember<Type> &) {
        return pass<Type>(value);
    }

    template <std::size_t... I>
    [[nodiscard]] bool hasAllRequired(std::index_sequence<I...>) const {
        return (((m_seen & 1U << I) != 0 || std::tuple_element_t<I, Members>::mayBeMissing) && ...);
    }

    Record &m_record;
    unsigned m_seen = 0; ///< One bit a member.
    std::size_t m_next = 0;
};

template <HasForm Record>
bool read(Value value, Record &result) {
    return RecordReader<Record>(result).read(value);
}

template <class Type>
[[nodiscard]] bool write(Writer &writer, const Type &value);

template <class List>
[[nodiscard]] bool writeList(Writer &writer, const List &list) {
    writer.punctuate('[');
    bool first = true;
    for (const auto &element : list) {
        if (!std::exchange(first, false))
            writer.punctuate(',');
        if (!write(writer, element))
            return false;
    }
    writer.punctuate(']');
    return true;
}

template <HasForm Record>
[[nodiscard]] bool writeRecord(Writer &writer, const Record &record) {
    char separator = '{';
    const auto writeMember = [&](const auto &member) {
        const auto &value = record.*member.field;
        if constexpr (isOptional<std::remove_cvref_t<decltype(value)>>) {
            if (!value)
                return true;
        }
        writer.punctuate(std::exchange(separator, ','));
        writer.key(member.name);
        return write(writer, value);
    };
    const bool written =
        std::apply([&](const auto &...member) { return (writeMember(member) && ...); },
                   JsonForm<Record>::members);
    if (separator == '{')
        writer.punctuate('{');
    writer.punctuate('}');
    return written;
}

template <class Type>
bool write(Writer &writer, const Type &value) {
    if constexpr (isOptional<Type>)
        return write(writer, *value);
    else if constexpr (HasForm<Type>)
        return writeRecord(writer, value);
    else if constexpr (HasText<Type>)
        return writer.write(jsonText(value));
    else if constexpr (requires { writer.write(value); })
        return writer.write(value);
    else
        return writeList(writer, value);
}

/// The value of a whole document, or none when it is unreadable: on the first violation of its
/// form, on invalid JSON or UTF-8, and on anything but white space behind it.
template <class Type>
[[nodiscard]] std::optional<Type> decode(const QByteArray &document) {
    std::optional<Type> result(blank<Type>());
    const auto readResult = [&result](Value value) { return read(value, *result); };
    if (!readDocument(document, readResult))
        result.reset();
    return result;
}

/// The document of a value, or none when it has no JSON form: it holds a number that is not finite.
/// `expectedSize` in bytes saves growing.
template <class Type>
[[nodiscard]] std::optional<QByteArray> encode(const Type &value, qsizetype expectedSize = 256) {
    Writer writer(expectedSize);
    if (!write(writer, value))
        return std::nullopt;
    return writer.take();
}

} // namespace tarne::json
