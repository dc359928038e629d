// What the three report formats share: counts, names, types and the words
// for the model's codes.
#include "ModelReport.h"

#include <cstdio>

#include <VrnIntf.h>

std::vector<std::pair<std::string, std::size_t>> CountObjects(const CModel& model) {
    std::size_t columns = 0, primaryKeys = 0, indexes = 0;
    for (const CModelTable& table : model.tables) {
        columns += table.columns.size();
        primaryKeys += table.primaryKey >= 0 ? 1 : 0;
        indexes += table.indexes.size() - (table.primaryKey >= 0 ? 1 : 0);
    }
    return {
        {"tables", model.tables.size()},
        {"columns", columns},
        {"primary keys", primaryKeys},
        {"indexes", indexes},
        {"foreign keys", model.foreignKeys.size()},
        {"check constraints", model.checks.size()},
        {"defaults", model.defaults.size()},
        {"rules", model.rules.size()},
        {"user datatypes", model.userDatatypes.size()},
        {"triggers", model.triggers.size()},
        {"procedures", model.procedures.size()},
        {"packages", model.packages.size()},
        {"partitions", model.partitions.size()},
        {"storage objects", model.storageObjects.size()},
    };
}

std::string Counted(std::size_t count, const std::string& kind) {
    const std::string word = count != 1 ? kind : (kind == "indexes" ? "index" : kind.substr(0, kind.size() - 1));
    return std::to_string(count) + " " + word;
}

std::string PlatformLine(const CModel& model) {
    if (!model.hasPlatform) return "unknown (the file does not say)";
    const CPlatformInfo* platform = FindPlatform(model.platform);
    const std::string name = platform && *platform->name ? platform->name : "not in the platform table";
    return name + " (" + std::to_string(model.platform) + ")";
}

std::string DisplayName(const std::string& name) {
    bool plain = !name.empty();
    for (unsigned char ch : name) {
        const bool letterOrDigit = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9');
        if (!(letterOrDigit || ch == '_' || ch == '$' || ch == '#' || ch == '@' || ch >= 0x80)) plain = false;
    }
    if (plain) return name;
    std::string quoted = "\"";
    for (unsigned char ch : name) {
        if (ch == '"') {
            quoted += "\"\"";
        } else if (ch < 0x20 || ch == 0x7F) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", ch);
            quoted += escaped;
        } else {
            quoted += static_cast<char>(ch);
        }
    }
    return quoted + "\"";
}

std::string TrimmedOwner(const std::string& owner) {
    const std::size_t first = owner.find_first_not_of(' ');
    return first == std::string::npos ? "" : owner.substr(first, owner.find_last_not_of(' ') - first + 1);
}

std::string MarkupEscape(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (char ch : text) {
        switch (ch) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += ch;
        }
    }
    return out;
}

std::string QualifiedName(const std::string& owner, const std::string& name) {
    const std::string trimmed = TrimmedOwner(owner);
    return (trimmed.empty() ? "" : DisplayName(trimmed) + ".") + DisplayName(name);
}

std::string ColumnType(const CModel& model, const CModelColumn& column) {
    if (!column.userDatatype.empty()) return DisplayName(column.userDatatype);
    const ETypeDialect dialect = model.hasPlatform ? TypeDialectOf(model.platform) : ETypeDialect::Generic;
    return SqlTypeName(dialect, column.datatype, column.width, column.scale);
}

const char* ActionName(char action) {
    switch (action) {
        case 'C': return "CASCADE";
        case 'R': return "RESTRICT";
        case 'S': return "SET NULL";
        default: return "NO ACTION";
    }
}

std::string IndexColumnList(const CModelIndex& index) {
    std::string list;
    for (const CModelIndexColumn& column : index.columns) {
        if (!list.empty()) list += ", ";
        list += column.name.empty() ? "#" + std::to_string(column.attributeNo) : DisplayName(column.name);
        if (column.descending) list += " DESC";
    }
    return list;
}

const char* TriggerTiming(int kind) {
    switch (kind) {
        case 1: return "before";
        case 2: return "after";
        case 3: return "instead of";
        default: return "unknown timing";
    }
}

const char* StorageObjectKind(int kind) {
    switch (kind) {
        case 1: return "STOGROUP";
        case 2: return "DATABASE";
        case 3: return "TABLESPACE";
        case 4: return "BUFFERPOOL";
        default: return "STORAGE OBJECT";
    }
}
