// The JSON report: one document with typed values (numbers as numbers,
// booleans as booleans, lists as arrays), every field the reader has, and a
// "format" version for tools. docs/vrnmodel.md describes it field by field.
#include <cstdio>
#include <ostream>
#include <vector>

#include <VrnIntf.h>

#include "JsonWriter.h"
#include "ModelReport.h"

namespace {

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
