#pragma once

// The text fields of records by name. `fieldsOf` has those of each record.

#include <map>
#include <string>
#include <vector>

template <typename Record>
struct NamedField {
    const char *name;
    std::string Record::*member;
};

template <typename Record>
using NamedFields = std::vector<NamedField<Record>>;

// NOLINTNEXTLINE(bugprone-macro-parentheses): a member's name cannot stand in parentheses
#define NAMED(Record, member)                                                                      \
    {                                                                                              \
#member, &Record::member                                                                   \
    }

using FieldTexts = std::map<std::string, std::string>;

template <typename Record>
FieldTexts textsOf(const Record &record)
{
    FieldTexts texts;
    for (const auto &field : fieldsOf(record))
        texts[field.name] = record.*field.member;
    return texts;
}
