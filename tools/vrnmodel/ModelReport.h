// What `vrnmodel show` prints: a model, as read by the model reader, as a
// report people read (text), a document tools consume (JSON) or a data
// dictionary that renders on any Git host (Markdown).
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <VrnReader.h>

struct CReportOptions {
    bool code = false;  // text: print the code objects' text under their lines
};

void WriteTextReport(const CModel& model, const CReportOptions& options, std::ostream& out);
void WriteJsonReport(const CModel& model, std::ostream& out);
void WriteMarkdownReport(const CModel& model, std::ostream& out);

// The version of the JSON document's layout; tools check it.
constexpr int kReportJsonFormat = 1;

// Shared by the formats.

// How many objects of each kind the model holds, as (kind, count) in report order.
std::vector<std::pair<std::string, std::size_t>> CountObjects(const CModel& model);
// "1 table", "3 tables", "1 index": a count with its kind, one in the singular.
std::string Counted(std::size_t count, const std::string& kind);
// The platform as "Name (code)", or "unknown" for files that do not say.
std::string PlatformLine(const CModel& model);
// A name as it can be read back: as it stands when it is a plain identifier,
// else in double quotes with quotes doubled and control characters escaped.
std::string DisplayName(const std::string& name);
// An owner without the padding fixed-width catalogs give it.
std::string TrimmedOwner(const std::string& owner);
// Text for XML, HTML and Graphviz's HTML-like labels: & < > " escaped.
std::string MarkupEscape(const std::string& text);
// owner.name, the owner trimmed of the padding fixed-width catalogs give it.
std::string QualifiedName(const std::string& owner, const std::string& name);
// A column's type as the model's platform writes it (its user datatype's
// name when it has one).
std::string ColumnType(const CModel& model, const CModelColumn& column);
// Referential actions by their letter: "NO ACTION", "CASCADE", "RESTRICT", "SET NULL".
const char* ActionName(char action);
// An index's column list as "a, b DESC".
std::string IndexColumnList(const CModelIndex& index);
// Trigger timing by kind: "before", "after", "instead of".
const char* TriggerTiming(int kind);
// Storage object kinds: "STOGROUP", "DATABASE", "TABLESPACE", "BUFFERPOOL".
const char* StorageObjectKind(int kind);
