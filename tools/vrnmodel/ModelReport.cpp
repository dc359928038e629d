#include "ModelReport.h"

#include "ModelQuery.h"

#include <cstdio>
#include <map>
#include <memory>
#include <vector>

namespace {

using CRow = std::map<std::string, std::string>;

// Every row of `sql` as column -> text ("" for NULL).
std::vector<CRow> Query(sqlite3* db, const std::string& sql) {
    const CQueryRows result = QueryRows(db, sql);
    std::vector<CRow> rows;
    for (const auto& values : result.rows) {
        CRow row;
        for (std::size_t i = 0; i < values.size(); ++i) row[result.columns[i]] = values[i];
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string JsonString(const std::string& text) {
    std::string out = "\"";
    for (unsigned char ch : text) {
        switch (ch) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (ch < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", ch);
                    out += escaped;
                } else {
                    out += static_cast<char>(ch);
                }
        }
    }
    return out + "\"";
}

// One section of the report after the tables: its key in the JSON document,
// its title in the text, and the SQL that yields its rows.
struct CSection {
    const char* key;
    const char* title;
    const char* sql;
};

const CSection kSections[] = {
    {"user_datatypes", "User datatypes",
     "SELECT user_datatype_id AS id, name, datatype, length, scale, default_id, rule_id FROM UserDatatype ORDER BY row_seq"},
    {"defaults", "Defaults", "SELECT default_id AS id, name, text FROM Defaults ORDER BY row_seq"},
    {"rules", "Rules", "SELECT rule_id AS id, name, text FROM Rules ORDER BY row_seq"},
    {"check_constraints", "Check constraints",
     "SELECT c.name, e.entity_name AS table_name, COALESCE(a.column_name, '') AS column_name, c.text FROM "
     "CheckConstraints c LEFT JOIN Entity e ON e.entity_key = c.entity_key LEFT JOIN Attribute a ON "
     "a.entity_key = c.entity_key AND a.attribute_no = c.attribute_no AND c.attribute_no <> 0 ORDER BY c.row_seq"},
    {"triggers", "Triggers",
     "SELECT t.owner, t.name, COALESCE(e.entity_name, '') AS table_name, t.kind, t.is_invalid FROM DbTrigger t "
     "LEFT JOIN Entity e ON e.entity_key = t.parent_value ORDER BY t.row_seq"},
    {"procedures", "Procedures", "SELECT owner, name, kind, is_invalid FROM Proc ORDER BY row_seq"},
    {"packages", "Packages",
     "SELECT owner, name, length(header_text) AS header_length, length(body_text) AS body_length FROM DbPackage "
     "ORDER BY row_seq"},
    {"partitions", "Partitions",
     "SELECT p.partition_key AS id, p.owner_kind, COALESCE(e.entity_name, i.index_name, '') AS owner_name, p.name "
     "FROM Partition p LEFT JOIN Entity e ON p.owner_kind = 'table' AND e.entity_key = p.owner_key LEFT JOIN "
     "Indexes i ON p.owner_kind = 'index' AND i.index_key = p.owner_key ORDER BY p.partition_key"},
    {"storage_objects", "Storage objects", "SELECT owner, name, kind FROM Storage_Object ORDER BY row_seq"},
};

void WriteRowsText(std::ostream& out, const std::vector<CRow>& rows) {
    for (const CRow& row : rows) {
        out << " ";
        for (const auto& [column, value] : row) out << " " << column << "=" << value;
        out << "\n";
    }
}

void WriteRowsJson(std::ostream& out, const std::vector<CRow>& rows) {
    out << "[";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        out << (i ? "," : "") << "{";
        bool first = true;
        for (const auto& [column, value] : rows[i]) {
            out << (first ? "" : ",") << JsonString(column) << ":" << JsonString(value);
            first = false;
        }
        out << "}";
    }
    out << "]";
}

}  // namespace

bool WriteModelReport(const std::string& path, bool json, std::ostream& out, std::string& error) {
    const CModelDatabase db = OpenModelFile(path, error);
    if (!db) return false;

    const std::vector<CRow> entities = Query(
        db.get(), "SELECT entity_key, owner, entity_name, definition FROM Entity ORDER BY row_seq");
    const std::string columnSql =
        "SELECT attribute_no, column_name, attribute_name, datatype, width, scale, null_option, default_text, "
        "user_datatype_id, rule_id, default_id, relation_key, (SELECT count(*) FROM PrimaryKey p WHERE "
        "p.entity_key = a.entity_key AND p.attribute_no = a.attribute_no) AS in_primary_key FROM Attribute a "
        "WHERE entity_key = ";
    const std::string indexSql =
        "SELECT i.index_key, i.index_name, i.key_type, i.is_unique, i.cluster_flag, (SELECT group_concat(n, ', ') "
        "FROM (SELECT a.column_name || CASE c.sort_order WHEN 'D' THEN ' DESC' ELSE '' END AS n FROM IndexColumn c "
        "JOIN Attribute a ON a.entity_key = c.entity_key AND a.attribute_no = c.attribute_no WHERE c.index_key = "
        "i.index_key ORDER BY c.row_seq)) AS columns FROM Indexes i WHERE i.entity_key = ";
    const std::string foreignKeySql =
        "SELECT f.fk_key, f.name, f.relationship_type, COALESCE(p.entity_name, '') AS parent, f.t13 AS on_update, "
        "f.t14 AS on_delete, (SELECT group_concat(n, ', ') FROM (SELECT ca.column_name || ' -> ' || "
        "COALESCE(pa.column_name, '?') AS n FROM ForeignKeyColumn c LEFT JOIN Attribute ca ON ca.entity_key = "
        "c.child_entity_key AND ca.attribute_no = c.child_attribute_no LEFT JOIN Attribute pa ON pa.entity_key = "
        "c.parent_entity_key AND pa.attribute_no = c.parent_attribute_no WHERE c.fk_key = f.fk_key ORDER BY "
        "c.row_seq)) AS columns FROM ForeignKey f LEFT JOIN Entity p ON p.entity_key = f.parent_entity_key WHERE "
        "f.child_entity_key = ";

    if (json) out << "{\"file\":" << JsonString(path) << ",\"tables\":[";
    for (std::size_t t = 0; t < entities.size(); ++t) {
        const CRow& entity = entities[t];
        const std::string key = entity.at("entity_key");
        const auto columns = Query(db.get(), columnSql + key + " GROUP BY attribute_no ORDER BY attribute_no");
        const auto indexes = Query(db.get(), indexSql + key + " ORDER BY i.row_seq");
        const auto foreignKeys = Query(db.get(), foreignKeySql + key + " ORDER BY f.row_seq");
        if (json) {
            out << (t ? "," : "") << "{\"owner\":" << JsonString(entity.at("owner"))
                << ",\"name\":" << JsonString(entity.at("entity_name"))
                << ",\"definition\":" << JsonString(entity.at("definition")) << ",\"columns\":";
            WriteRowsJson(out, columns);
            out << ",\"indexes\":";
            WriteRowsJson(out, indexes);
            out << ",\"foreign_keys\":";
            WriteRowsJson(out, foreignKeys);
            out << "}";
            continue;
        }
        out << "Table " << (entity.at("owner").empty() ? "" : entity.at("owner") + ".") << entity.at("entity_name");
        if (!entity.at("definition").empty()) out << "  -- " << entity.at("definition");
        out << "\n";
        for (const CRow& column : columns) {
            out << "  " << column.at("column_name") << " " << column.at("datatype");
            if (column.at("width") != "0" || column.at("scale") != "0")
                out << "(" << column.at("width") << (column.at("scale") != "0" ? "," + column.at("scale") : "") << ")";
            out << (column.at("null_option") == "0" ? " NOT NULL" : " NULL");
            if (column.at("in_primary_key") != "0") out << " PK";
            if (!column.at("default_text").empty()) out << " DEFAULT " << column.at("default_text");
            if (column.at("user_datatype_id") != "0") out << " [user datatype " << column.at("user_datatype_id") << "]";
            if (column.at("rule_id") != "0") out << " [rule " << column.at("rule_id") << "]";
            if (column.at("default_id") != "0") out << " [default " << column.at("default_id") << "]";
            out << "\n";
        }
        for (const CRow& index : indexes)
            out << "  " << (index.at("key_type") == "P" ? "primary key" : "index")
                << (index.at("index_name").empty() ? "" : " " + index.at("index_name")) << " ("
                << index.at("columns") << ")" << (index.at("is_unique") == "Y" ? " unique" : "")
                << (index.at("cluster_flag") == "C" ? " clustered" : "") << "\n";
        for (const CRow& foreignKey : foreignKeys)
            out << "  foreign key" << (foreignKey.at("name").empty() ? "" : " " + foreignKey.at("name")) << " ("
                << foreignKey.at("columns") << ") references "
                << foreignKey.at("parent") << (foreignKey.at("relationship_type") == "I" ? " identifying" : "")
                << "\n";
    }
    if (json) out << "]";
    else if (entities.empty()) out << "(no tables)\n";

    for (const CSection& section : kSections) {
        const std::vector<CRow> rows = Query(db.get(), section.sql);
        if (json) {
            out << "," << JsonString(section.key) << ":";
            WriteRowsJson(out, rows);
        } else if (!rows.empty()) {
            out << section.title << "\n";
            WriteRowsText(out, rows);
        }
    }
    if (json) out << "}\n";
    return true;
}
