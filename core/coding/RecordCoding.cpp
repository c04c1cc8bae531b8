#include "coding/RecordCoding.h"

#include "text/IsoDate.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

using nlohmann::json;
using std::chrono::system_clock;

template <typename E>
concept RawValued = std::is_enum_v<E> && requires(E value)
{
    rawValues<E>[0];
};

void memberIfPresent(JsonWriter& writer, JsonKey name, const auto& content)
{
    if (content) writer.member(name, *content);
}

void encode(JsonWriter& writer, const OS2Info& os2)
{
    writer.beginObject();
    writer.member("version", os2.version);
    writer.member("fsType", os2.fsType);
    memberIfPresent(writer, "vendorID", os2.vendorID);
    writer.endObject();
}

void arrayMember(JsonWriter& writer, JsonKey name, const auto& values)
{
    writer.key(name);
    writer.beginArray();
    for (const auto& value : values)
        writer.value(value);
    writer.endArray();
}

// One `read` per type of value: false, and the field in any state, when `source` does not hold one.
// They never throw, for they ask a value for its type before they take it.

bool read(const json& source, std::string& field)
{
    const auto* text = source.get_ptr<const std::string*>();
    if (text != nullptr) field = *text;
    return text != nullptr;
}

bool read(const json& source, bool& field)
{
    const auto* flag = source.get_ptr<const bool*>();
    if (flag != nullptr) field = *flag;
    return flag != nullptr;
}

template <std::integral Integer>
bool read(const json& source, Integer& field)
{
    // The unsigned type first: a number above the signed range would look negative as a signed one.
    if (const auto* large = source.get_ptr<const std::uint64_t*>(); large != nullptr) {
        field = static_cast<Integer>(*large);
        return std::in_range<Integer>(*large);
    }
    const auto* number = source.get_ptr<const std::int64_t*>();
    if (number == nullptr || !std::in_range<Integer>(*number)) return false;
    field = static_cast<Integer>(*number);
    return true;
}

template <RawValued E>
bool read(const json& source, E& field)
{
    const auto* raw = source.get_ptr<const std::string*>();
    const auto value = raw == nullptr ? std::nullopt : fromRawValue<E>(*raw);
    if (value) field = *value;
    return value.has_value();
}

bool read(const json& source, system_clock::time_point& field);
bool read(const json& source, OS2Info& os2);
bool read(const json& source, FontFacts& facts);
bool read(const json& source, Assessment& assessment);
bool read(const json& source, PDFFontInfo& info);
bool read(const json& source, AuditRow& row);
bool read(const json& source, DocumentAudit& audit);

template <typename Element>
bool read(const json& source, std::vector<Element>& field)
{
    if (!source.is_array()) return false;
    field.clear();
    return std::ranges::all_of(
        source, [&](const json& element) { return read(element, field.emplace_back()); });
}

template <typename Field>
bool readRequired(const json& object, const char* key, Field& field)
{
    const auto found = object.find(key);
    return found != object.end() && read(*found, field);
}

/// A missing key and a null both mean absent.
template <typename Field>
bool readOptional(const json& object, const char* key, std::optional<Field>& field)
{
    const auto found = object.find(key);
    return found == object.end() || found->is_null() || read(*found, field.emplace());
}

/// The reverse of encodeDate; that form only.
std::optional<system_clock::time_point> decodeDate(std::string_view text)
{
    using namespace std::chrono;
    const auto time = parseIsoDate(text);
    // The clock counts finer than seconds, so its years end long before the four digits do.
    if (!time || *time < ceil<seconds>(system_clock::time_point::min()) ||
        *time > floor<seconds>(system_clock::time_point::max()) || isoDate(*time) != text)
        return std::nullopt;
    return *time;
}

bool read(const json& source, system_clock::time_point& field)
{
    const auto* text = source.get_ptr<const std::string*>();
    const auto time = text == nullptr ? std::nullopt : decodeDate(*text);
    if (time) field = *time;
    return time.has_value();
}

bool read(const json& source, OS2Info& os2)
{
    return source.is_object() && readRequired(source, "version", os2.version) &&
           readRequired(source, "fsType", os2.fsType) &&
           readOptional(source, "vendorID", os2.vendorID);
}

bool read(const json& source, FontFacts& facts)
{
    return source.is_object() && readRequired(source, "postScriptName", facts.postScriptName) &&
           readRequired(source, "family", facts.family) &&
           readRequired(source, "style", facts.style) &&
           readOptional(source, "fullName", facts.fullName) &&
           readOptional(source, "copyright", facts.copyright) &&
           readOptional(source, "trademark", facts.trademark) &&
           readOptional(source, "manufacturer", facts.manufacturer) &&
           readOptional(source, "designer", facts.designer) &&
           readOptional(source, "vendorURL", facts.vendorURL) &&
           readOptional(source, "licenseDescription", facts.licenseDescription) &&
           readOptional(source, "licenseURL", facts.licenseURL) &&
           readOptional(source, "licenseFile", facts.licenseFile) &&
           readOptional(source, "os2", facts.os2) &&
           readOptional(source, "filePath", facts.filePath) &&
           readOptional(source, "format", facts.format) &&
           readRequired(source, "origin", facts.origin);
}

bool read(const json& source, Assessment& assessment)
{
    return source.is_object() && readRequired(source, "verdict", assessment.verdict) &&
           readRequired(source, "headline", assessment.headline) &&
           readRequired(source, "reasons", assessment.reasons) &&
           readRequired(source, "license", assessment.license) &&
           readRequired(source, "appleBundled", assessment.appleBundled);
}

bool read(const json& source, PDFFontInfo& info)
{
    return source.is_object() && readRequired(source, "pdfNames", info.pdfNames) &&
           readRequired(source, "subtype", info.subtype) &&
           readRequired(source, "program", info.program) &&
           readRequired(source, "subset", info.subset) &&
           readRequired(source, "pages", info.pages) &&
           readOptional(source, "matchedPath", info.matchedPath) &&
           readRequired(source, "matchedByFamily", info.matchedByFamily) &&
           readRequired(source, "readEmbeddedData", info.readEmbeddedData);
}

bool read(const json& source, AuditRow& row)
{
    return source.is_object() && readRequired(source, "facts", row.facts) &&
           readRequired(source, "assessment", row.assessment);
}

bool read(const json& source, DocumentAudit& audit)
{
    return source.is_object() && readRequired(source, "path", audit.path) &&
           readRequired(source, "fileName", audit.fileName) &&
           readRequired(source, "pageCount", audit.pageCount) &&
           readRequired(source, "checkedAt", audit.checkedAt) &&
           readRequired(source, "rows", audit.rows);
}

template <typename Record>
std::optional<Record> decodeRecord(std::string_view text)
{
    // Without exceptions, what is no JSON parses to a "discarded" value, which is no object.
    const json parsed = json::parse(text, nullptr, false);
    Record record;
    if (!read(parsed, record)) return std::nullopt;
    return record;
}

} // namespace

void encode(JsonWriter& writer, const FontFacts& facts)
{
    writer.beginObject();
    writer.member("postScriptName", facts.postScriptName);
    writer.member("family", facts.family);
    writer.member("style", facts.style);
    memberIfPresent(writer, "fullName", facts.fullName);
    memberIfPresent(writer, "copyright", facts.copyright);
    memberIfPresent(writer, "trademark", facts.trademark);
    memberIfPresent(writer, "manufacturer", facts.manufacturer);
    memberIfPresent(writer, "designer", facts.designer);
    memberIfPresent(writer, "vendorURL", facts.vendorURL);
    memberIfPresent(writer, "licenseDescription", facts.licenseDescription);
    memberIfPresent(writer, "licenseURL", facts.licenseURL);
    memberIfPresent(writer, "licenseFile", facts.licenseFile);
    if (facts.os2) {
        writer.key("os2");
        encode(writer, *facts.os2);
    }
    memberIfPresent(writer, "filePath", facts.filePath);
    memberIfPresent(writer, "format", facts.format);
    writer.member("origin", rawValue(facts.origin));
    writer.endObject();
}

void encode(JsonWriter& writer, const Assessment& assessment)
{
    writer.beginObject();
    writer.member("verdict", rawValue(assessment.verdict));
    writer.member("headline", assessment.headline);
    arrayMember(writer, "reasons", assessment.reasons);
    writer.member("license", rawValue(assessment.license));
    writer.member("appleBundled", assessment.appleBundled);
    writer.endObject();
}

void encode(JsonWriter& writer, const PDFFontInfo& info)
{
    writer.beginObject();
    arrayMember(writer, "pdfNames", info.pdfNames);
    writer.member("subtype", info.subtype);
    writer.member("program", rawValue(info.program));
    writer.member("subset", info.subset);
    arrayMember(writer, "pages", info.pages);
    memberIfPresent(writer, "matchedPath", info.matchedPath);
    writer.member("matchedByFamily", info.matchedByFamily);
    writer.member("readEmbeddedData", info.readEmbeddedData);
    writer.endObject();
}

void encode(JsonWriter& writer, const AuditRow& row)
{
    writer.beginObject();
    writer.key("facts");
    encode(writer, row.facts);
    writer.key("assessment");
    encode(writer, row.assessment);
    writer.endObject();
}

void encode(JsonWriter& writer, const DocumentAudit& audit)
{
    writer.beginObject();
    writer.member("path", audit.path);
    writer.member("fileName", audit.fileName);
    writer.member("pageCount", audit.pageCount);
    writer.member("checkedAt", encodeDate(audit.checkedAt));
    writer.key("rows");
    writer.beginArray();
    for (const auto& row : audit.rows)
        encode(writer, row);
    writer.endArray();
    writer.endObject();
}

std::string encodeDate(system_clock::time_point time)
{
    return isoDate(std::chrono::floor<std::chrono::seconds>(time));
}

template <>
std::optional<FontFacts> decode<FontFacts>(std::string_view json)
{
    return decodeRecord<FontFacts>(json);
}

template <>
std::optional<Assessment> decode<Assessment>(std::string_view json)
{
    return decodeRecord<Assessment>(json);
}

template <>
std::optional<PDFFontInfo> decode<PDFFontInfo>(std::string_view json)
{
    return decodeRecord<PDFFontInfo>(json);
}

template <>
std::optional<AuditRow> decode<AuditRow>(std::string_view json)
{
    return decodeRecord<AuditRow>(json);
}

template <>
std::optional<DocumentAudit> decode<DocumentAudit>(std::string_view json)
{
    return decodeRecord<DocumentAudit>(json);
}

} // namespace quillmark
