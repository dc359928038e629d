// The JSON report: one document with typed values (numbers as numbers,
// booleans as booleans, lists as arrays), every field the reader has, and a
// "format" version for tools. docs/vrnmodel.md describes it field by field.
#include <cstdio>
#include <ostream>
#include <vector>

#include <VrnIntf.h>

#include "ModelReport.h"

namespace {

// A streaming writer that places the commas: Begin/End open and close
// objects and arrays, Key names the next value inside an object.
class CJsonWriter {
public:
    explicit CJsonWriter(std::ostream& out) : m_out(out) {}

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    void Key(const char* key) {
        Separate();
        String(key);
        m_out << ':';
        m_afterKey = true;
    }
    void Value(const std::string& text) {
        Separate();
        String(text);
    }
    void Value(const char* text) { Value(std::string(text)); }
    void Value(long long number) {
        Separate();
        m_out << number;
    }
    void Value(int number) { Value(static_cast<long long>(number)); }
    void Value(unsigned number) { Value(static_cast<long long>(number)); }
    void Bool(bool value) {
        Separate();
        m_out << (value ? "true" : "false");
    }
    void Null() {
        Separate();
        m_out << "null";
    }
    // Key and value in one call.
    template <class T>
    void Field(const char* key, const T& value) {
        Key(key);
        Value(value);
    }
    void BoolField(const char* key, bool value) {
        Key(key);
        Bool(value);
    }

private:
    void Open(char bracket) {
        Separate();
        m_out << bracket;
        m_first.push_back(true);
    }
    void Close(char bracket) {
        m_out << bracket;
        m_first.pop_back();
    }
    void Separate() {
        if (m_afterKey) {
            m_afterKey = false;
            return;
        }
        if (!m_first.empty()) {
            if (!m_first.back()) m_out << ',';
            m_first.back() = false;
        }
    }
    // Texts are written as UTF-8, as JSON must be: a byte that is not part
    // of a valid UTF-8 sequence (a Latin-1 script's é) is written as the
    // character of that number (\u00e9), so no byte is lost.
    void String(const std::string& text) {
        m_out << '"';
        for (std::size_t i = 0; i < text.size(); ++i) {
            const unsigned char ch = static_cast<unsigned char>(text[i]);
            if (ch >= 0x80) {
                const std::size_t length = Utf8SequenceLength(text, i);
                if (length == 0) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", ch);
                    m_out << escaped;
                } else {
                    m_out.write(text.data() + i, static_cast<std::streamsize>(length));
                    i += length - 1;
                }
                continue;
            }
            switch (ch) {
                case '"': m_out << "\\\""; break;
                case '\\': m_out << "\\\\"; break;
                case '\n': m_out << "\\n"; break;
                case '\r': m_out << "\\r"; break;
                case '\t': m_out << "\\t"; break;
                default:
                    if (ch < 0x20 || ch == 0x7F) {
                        char escaped[8];
                        std::snprintf(escaped, sizeof escaped, "\\u%04x", ch);
                        m_out << escaped;
                    } else {
                        m_out << static_cast<char>(ch);
                    }
            }
        }
        m_out << '"';
    }
    // The length of the well-formed UTF-8 sequence at `at`, or 0.
    static std::size_t Utf8SequenceLength(const std::string& text, std::size_t at) {
        const unsigned char lead = static_cast<unsigned char>(text[at]);
        std::size_t length = 0;
        unsigned code = 0;
        if (lead >= 0xC2 && lead <= 0xDF) length = 2, code = lead & 0x1F;
        else if (lead >= 0xE0 && lead <= 0xEF) length = 3, code = lead & 0x0F;
        else if (lead >= 0xF0 && lead <= 0xF4) length = 4, code = lead & 0x07;
        else return 0;
        if (at + length > text.size()) return 0;
        for (std::size_t k = 1; k < length; ++k) {
            const unsigned char next = static_cast<unsigned char>(text[at + k]);
            if ((next & 0xC0) != 0x80) return 0;
            code = code << 6 | (next & 0x3F);
        }
        // No overlong forms, surrogates or code points beyond U+10FFFF.
        if ((length == 3 && code < 0x800) || (length == 4 && (code < 0x10000 || code > 0x10FFFF)) ||
            (code >= 0xD800 && code <= 0xDFFF))
            return 0;
        return length;
    }

    std::ostream& m_out;
    std::vector<bool> m_first;
    bool m_afterKey = false;
};

void WriteProperties(CJsonWriter& json, const std::vector<CModelProperty>& properties) {
    json.Key("properties");
    json.BeginArray();
    for (const CModelProperty& property : properties) {
        json.BeginObject();
        json.Field("property_no", property.propertyNo);
        json.Field("name", property.name);
        json.Field("value_no", property.valueNo);
        json.Field("value", property.value);
        json.Key("text");
        if (property.hasText) json.Value(property.text);
        else json.Null();
        json.Field("int_arg", property.intArg);
        json.EndObject();
    }
    json.EndArray();
}

void WriteStorage(CJsonWriter& json, const std::string& space, const std::array<int, 11>& params) {
    json.Field("storage_space", space);
    json.Key("storage_params");
    json.BeginArray();
    for (int param : params) {
        if (param == -1) json.Null();
        else json.Value(param);
    }
    json.EndArray();
}

std::string ForeignKeyName(const CModel& model, int index) { return index < 0 ? "" : model.foreignKeys[index].name; }

void WriteColumn(CJsonWriter& json, const CModel& model, const CModelTable& table, const CModelColumn& column) {
    json.BeginObject();
    json.Field("name", column.name);
    json.Field("attribute_no", column.attributeNo);
    json.Field("attribute_name", column.attributeName);
    json.Field("type", ColumnType(model, column));
    json.Field("datatype", column.datatype);
    json.Field("width", column.width);
    json.Field("scale", column.scale);
    json.BoolField("nullable", column.nullable);
    json.BoolField("primary_key", column.inPrimaryKey);
    json.BoolField("identity", column.identity);
    json.Field("default", column.defaultText);
    json.Field("check", column.checkText);
    json.Field("definition", column.definition);
    json.Field("role_name", column.roleName);
    json.Field("user_datatype", column.userDatatype);
    json.Field("bound_default_id", column.defaultId);
    json.Field("bound_rule_id", column.ruleId);
    json.Key("foreign_keys");
    json.BeginArray();
    for (int index : column.foreignKeys) json.Value(ForeignKeyName(model, index));
    json.EndArray();
    if (column.isCopy) {
        const CModelColumn* original = table.FindColumn(column.copyOf);
        json.Field("copy_of", original ? original->name : "");
        json.Field("copy_for_foreign_key", ForeignKeyName(model, column.copyFor));
    }
    WriteProperties(json, column.properties);
    json.EndObject();
}

void WriteIndex(CJsonWriter& json, const CModel& model, const CModelIndex& index) {
    json.BeginObject();
    json.Field("name", index.name);
    json.Field("kind", index.keyType == 'P' ? "primary key" : (index.keyType == 'A' ? "alternate key" : "index"));
    json.BoolField("unique", index.unique);
    json.BoolField("clustered", index.clustered);
    json.Key("columns");
    json.BeginArray();
    for (const CModelIndexColumn& column : index.columns) {
        json.BeginObject();
        json.Field("name", column.name);
        json.BoolField("descending", column.descending);
        json.EndObject();
    }
    json.EndArray();
    WriteStorage(json, index.storageSpace, index.storageParams);
    WriteProperties(json, index.properties);
    json.Key("partitions");
    json.BeginArray();
    for (int partition : index.partitions) json.Value(model.partitions[partition].name);
    json.EndArray();
    json.EndObject();
}

void WritePartition(CJsonWriter& json, const CModelPartition& partition) {
    json.BeginObject();
    json.Field("name", partition.name);
    json.Field("of", partition.ofIndex ? "index" : "table");
    WriteProperties(json, partition.properties);
    json.EndObject();
}

void WriteTable(CJsonWriter& json, const CModel& model, const CModelTable& table) {
    json.BeginObject();
    json.Field("owner", table.owner);
    json.Field("name", table.name);
    json.Field("definition", table.definition);
    WriteStorage(json, table.storageSpace, table.storageParams);
    WriteProperties(json, table.properties);
    json.Key("columns");
    json.BeginArray();
    for (const CModelColumn& column : table.columns) WriteColumn(json, model, table, column);
    json.EndArray();
    json.Key("column_copies");
    json.BeginArray();
    for (const CModelColumn& column : table.copies) WriteColumn(json, model, table, column);
    json.EndArray();
    json.Key("primary_key");
    if (table.primaryKey >= 0) WriteIndex(json, model, table.indexes[table.primaryKey]);
    else json.Null();
    json.Key("indexes");
    json.BeginArray();
    for (std::size_t i = 0; i < table.indexes.size(); ++i)
        if (static_cast<int>(i) != table.primaryKey) WriteIndex(json, model, table.indexes[i]);
    json.EndArray();
    json.Key("foreign_keys");
    json.BeginArray();
    for (int index : table.foreignKeys) {
        const CModelForeignKey& foreignKey = model.foreignKeys[index];
        json.BeginObject();
        json.Field("name", foreignKey.name);
        json.Key("parent");
        if (foreignKey.parentTable >= 0) {
            json.BeginObject();
            json.Field("owner", model.tables[foreignKey.parentTable].owner);
            json.Field("name", model.tables[foreignKey.parentTable].name);
            json.EndObject();
        } else {
            json.Null();
        }
        json.BoolField("identifying", foreignKey.identifying);
        json.BoolField("optional", foreignKey.optional);
        json.Field("on_delete", ActionName(foreignKey.onDelete));
        json.Field("on_update", ActionName(foreignKey.onUpdate));
        json.BoolField("references_alternate_key", foreignKey.referencedKey != 0);
        json.Key("columns");
        json.BeginArray();
        for (const CModelColumnPair& pair : foreignKey.pairs) {
            json.BeginObject();
            json.Field("child", pair.childColumn);
            json.Field("parent", pair.parentColumn);
            json.EndObject();
        }
        json.EndArray();
        json.EndObject();
    }
    json.EndArray();
    json.Key("checks");
    json.BeginArray();
    for (int index : table.checks) {
        json.BeginObject();
        json.Field("name", model.checks[index].name);
        json.Field("column", model.checks[index].column);
        json.Field("text", model.checks[index].text);
        json.EndObject();
    }
    json.EndArray();
    json.Key("partitions");
    json.BeginArray();
    for (int index : table.partitions) WritePartition(json, model.partitions[index]);
    json.EndArray();
    json.EndObject();
}

void WriteCodeObjects(CJsonWriter& json, const CModel& model, const char* key, const std::vector<CModelCode>& objects) {
    const std::string kind = key;
    json.Key(key);
    json.BeginArray();
    for (const CModelCode& object : objects) {
        json.BeginObject();
        json.Field("owner", object.owner);
        json.Field("name", object.name);
        if (kind == "triggers") {
            json.Field("table", object.table >= 0 ? model.tables[object.table].name : "");
            json.Field("timing", TriggerTiming(object.kind));
        }
        if (kind == "procedures") json.Field("kind", object.kind == 2 ? "function" : "procedure");
        if (kind != "packages") json.BoolField("invalid", object.invalid);
        json.Field(kind == "packages" ? "header" : "text", object.text);
        if (kind == "packages") json.Field("body", object.body);
        json.EndObject();
    }
    json.EndArray();
}

void WriteNamedTexts(CJsonWriter& json, const char* key, const std::vector<CModelNamedText>& entries) {
    json.Key(key);
    json.BeginArray();
    for (const CModelNamedText& entry : entries) {
        json.BeginObject();
        json.Field("id", entry.id);
        json.Field("name", entry.name);
        json.Field("text", entry.text);
        json.EndObject();
    }
    json.EndArray();
}

}  // namespace

void WriteJsonReport(const CModel& model, std::ostream& out) {
    CJsonWriter json(out);
    json.BeginObject();
    json.Field("format", kReportJsonFormat);
    json.Field("file", model.path);
    json.Field("file_format_version", model.formatVersion);
    json.Key("platform");
    if (model.hasPlatform) {
        json.BeginObject();
        json.Field("code", model.platform);
        const CPlatformInfo* platform = FindPlatform(model.platform);
        json.Field("name", platform ? platform->name : "");
        json.Field("dialect", TypeDialectName(TypeDialectOf(model.platform)));
        json.EndObject();
    } else {
        json.Null();
    }
    json.Field("product", model.product);
    json.Field("created", model.created);
    json.Field("modified", model.modified);
    json.Key("counts");
    json.BeginObject();
    for (const auto& [kind, count] : CountObjects(model)) {
        std::string key = kind;
        for (char& ch : key)
            if (ch == ' ') ch = '_';
        json.Field(key.c_str(), static_cast<long long>(count));
    }
    json.EndObject();
    json.Key("tables");
    json.BeginArray();
    for (const CModelTable& table : model.tables) WriteTable(json, model, table);
    json.EndArray();
    json.Key("user_datatypes");
    json.BeginArray();
    for (const CModelUserDatatype& type : model.userDatatypes) {
        json.BeginObject();
        json.Field("id", type.id);
        json.Field("name", type.name);
        json.Field("datatype", type.datatype);
        json.Field("length", type.length);
        json.Field("scale", type.scale);
        json.Field("bound_default_id", type.defaultId);
        json.Field("bound_rule_id", type.ruleId);
        json.EndObject();
    }
    json.EndArray();
    WriteNamedTexts(json, "defaults", model.defaults);
    WriteNamedTexts(json, "rules", model.rules);
    WriteCodeObjects(json, model, "triggers", model.triggers);
    WriteCodeObjects(json, model, "procedures", model.procedures);
    WriteCodeObjects(json, model, "packages", model.packages);
    json.Key("storage_objects");
    json.BeginArray();
    for (const CModelStorageObject& object : model.storageObjects) {
        json.BeginObject();
        json.Field("kind", StorageObjectKind(object.kind));
        json.Field("owner", object.owner);
        json.Field("name", object.name);
        json.Field("text", object.text);
        json.EndObject();
    }
    json.EndArray();
    json.Key("referenced_objects");
    json.BeginArray();
    for (const CModelReferencedObject& object : model.referencedObjects) {
        json.BeginObject();
        json.Key("values");
        json.BeginArray();
        for (std::uint32_t value : object.values) json.Value(value);
        json.EndArray();
        json.Field("meta_table_key", object.metaTableKey);
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    out << "\n";
}
