// The JSON form of the records: keys are the fields' names in declaration order, enumerations their
// raw values, absent values left out, dates ISO 8601 in UTC.
#pragma once

#include "assessment/Assessment.h"
#include "coding/JsonWriter.h"
#include "fontfile/FontFacts.h"
#include "pdf/AuditRow.h"
#include "pdf/PDFFontInfo.h"
#include "pdf/PDFFontScanner.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillmark {

void encode(JsonWriter& writer, const FontFacts& facts);
void encode(JsonWriter& writer, const Assessment& assessment);
void encode(JsonWriter& writer, const PDFFontInfo& info);
/// Facts and assessment only: what a PDF says about a font is not kept.
void encode(JsonWriter& writer, const AuditRow& row);
void encode(JsonWriter& writer, const DocumentAudit& audit);

/// `time` as "2026-11-21T04:00:00Z".
[[nodiscard]] std::string encodeDate(std::chrono::system_clock::time_point time);

/// The record written in `json`; absent when it is not JSON, a required key is missing, or a value
/// has another type or is no case of its enumeration. Unknown keys are passed over.
template <typename Record>
[[nodiscard]] std::optional<Record> decode(std::string_view json);

template <>
std::optional<FontFacts> decode<FontFacts>(std::string_view json);
template <>
std::optional<Assessment> decode<Assessment>(std::string_view json);
template <>
std::optional<PDFFontInfo> decode<PDFFontInfo>(std::string_view json);
template <>
std::optional<AuditRow> decode<AuditRow>(std::string_view json);
template <>
std::optional<DocumentAudit> decode<DocumentAudit>(std::string_view json);

} // namespace quillmark
