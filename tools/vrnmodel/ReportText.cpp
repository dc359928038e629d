// The text report: a header with the model's platform and counts, one block
// per table (columns in aligned rows, then keys, indexes, foreign keys,
// checks, storage), then the catalog objects as readable lines.
#include <algorithm>
#include <ostream>
#include <unordered_map>

#include "ModelReport.h"

namespace {

// The name of a bound default or rule by its id: looked up per column, so
// built once rather than searched.
class CBoundNames {
public:
    explicit CBoundNames(const std::vector<CModelNamedText>& entries) {
        for (const CModelNamedText& entry : entries) m_names.emplace(entry.id, entry.name);
    }
    // The name of `id`, or null for 0 or an id the model does not hold.
    const std::string* Find(std::uint32_t id) const {
        const auto found = id == 0 ? m_names.end() : m_names.find(id);
        return found == m_names.end() ? nullptr : &found->second;
    }

private:
    std::unordered_map<std::uint32_t, std::string> m_names;
};

// The rows of a column block, aligned in columns of text.
void WriteAligned(std::ostream& out, const std::vector<std::vector<std::string>>& rows, const std::string& indent) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (widths.size() <= i) widths.push_back(0);
            widths[i] = std::max(widths[i], row[i].size());
        }
    for (const auto& row : rows) {
        std::string line = indent;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line += std::string(widths[i] - row[i].size() + 2, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << "\n";
    }
}

std::string ForeignKeyNames(const CModel& model, const std::vector<int>& foreignKeys) {
    std::string names;
    for (int index : foreignKeys) {
        const std::string& name = model.foreignKeys[index].name;
        names += (names.empty() ? "" : ", ") + (name.empty() ? "(unnamed)" : DisplayName(name));
    }
    return names;
}

std::string TableName(const CModel& model, int table) {
    return table < 0 ? "(unknown table)" : QualifiedName(model.tables[table].owner, model.tables[table].name);
}

void WriteColumns(std::ostream& out, const CModel& model, const CModelTable& table, const CBoundNames& defaults,
                  const CBoundNames& rules) {
    std::vector<std::vector<std::string>> rows;
    for (const CModelColumn& column : table.columns) {
        std::string notes;
        auto note = [&](const std::string& text) { notes += (notes.empty() ? "" : "  ") + text; };
        if (column.inPrimaryKey) note("PK");
        if (!column.foreignKeys.empty()) note("FK " + ForeignKeyNames(model, column.foreignKeys));
        if (column.identity) note("IDENTITY");
        if (!column.defaultText.empty()) note("DEFAULT " + column.defaultText);
        if (const std::string* bound = defaults.Find(column.defaultId)) note("default " + DisplayName(*bound));
        if (const std::string* bound = rules.Find(column.ruleId)) note("rule " + DisplayName(*bound));
        if (!column.checkText.empty()) note("CHECK " + column.checkText);
        if (!column.definition.empty()) note("-- " + column.definition);
        rows.push_back({DisplayName(column.name), ColumnType(model, column), column.nullable ? "NULL" : "NOT NULL", notes});
    }
    WriteAligned(out, rows, "    ");
}

void WriteTable(std::ostream& out, const CModel& model, const CModelTable& table, const CBoundNames& defaults,
                const CBoundNames& rules) {
    out << "\nTable " << QualifiedName(table.owner, table.name);
    if (!table.definition.empty()) out << "  -- " << table.definition;
    out << "\n";
    WriteColumns(out, model, table, defaults, rules);
    for (const CModelIndex& index : table.indexes) {
        const char* kind = index.keyType == 'P' ? "primary key" : (index.unique ? "unique index" : "index");
        out << "  " << kind << (index.name.empty() ? "" : " " + DisplayName(index.name)) << " ("
            << IndexColumnList(index) << ")" << (index.clustered ? " clustered" : "")
            << (index.storageSpace.empty() ? "" : " in " + index.storageSpace) << "\n";
    }
    for (int index : table.foreignKeys) {
        const CModelForeignKey& foreignKey = model.foreignKeys[index];
        std::string childColumns, parentColumns;
        for (const CModelColumnPair& pair : foreignKey.pairs) {
            childColumns += (childColumns.empty() ? "" : ", ") + DisplayName(pair.childColumn);
            parentColumns += (parentColumns.empty() ? "" : ", ") + DisplayName(pair.parentColumn);
        }
        out << "  foreign key" << (foreignKey.name.empty() ? "" : " " + DisplayName(foreignKey.name)) << " ("
            << childColumns << ") references " << TableName(model, foreignKey.parentTable) << " (" << parentColumns
            << ")" << (foreignKey.identifying ? " identifying" : "") << (foreignKey.optional ? " optional" : "");
        if (foreignKey.onDelete != 'N') out << " ON DELETE " << ActionName(foreignKey.onDelete);
        if (foreignKey.onUpdate != 'N') out << " ON UPDATE " << ActionName(foreignKey.onUpdate);
        out << "\n";
    }
    for (int index : table.checks) {
        const CModelCheck& check = model.checks[index];
        out << "  check" << (check.name.empty() ? "" : " " + DisplayName(check.name))
            << (check.column.empty() ? "" : " on " + DisplayName(check.column)) << ": " << check.text << "\n";
    }
    if (!table.storageSpace.empty()) out << "  stored in " << table.storageSpace << "\n";
    for (const CModelProperty& property : table.properties)
        out << "  option " << property.name << (property.value.empty() ? "" : " " + property.value)
            << (property.hasText ? " " + property.text : "") << "\n";
    for (int index : table.partitions) {
        const CModelPartition& partition = model.partitions[index];
        out << "  partition " << DisplayName(partition.name);
        for (const CModelProperty& property : partition.properties)
            out << "  " << property.name << (property.hasText ? " " + property.text : "");
        out << "\n";
    }
}

void WriteCode(std::ostream& out, const std::string& text, const CReportOptions& options) {
    if (!options.code || text.empty()) return;
    out << text << (text.back() == '\n' ? "" : "\n");
}

}  // namespace

void WriteTextReport(const CModel& model, const CReportOptions& options, std::ostream& out) {
    out << "Model file " << model.path << "\n";
    out << "Platform   " << PlatformLine(model) << "\n";
    if (!model.product.empty() || !model.modified.empty())
        out << "Saved      " << model.modified << (model.product.empty() ? "" : " by " + model.product) << "\n";
    std::string counts;
    for (const auto& [kind, count] : CountObjects(model)) {
        if (count == 0 && kind != "tables") continue;
        counts += (counts.empty() ? "" : ", ") + Counted(count, kind);
    }
    out << "Holds      " << counts << "\n";

    const CBoundNames defaults(model.defaults), rules(model.rules);
    for (const CModelTable& table : model.tables) WriteTable(out, model, table, defaults, rules);

    if (!model.userDatatypes.empty()) out << "\nUser datatypes\n";
    for (const CModelUserDatatype& type : model.userDatatypes) {
        CModelColumn asColumn;
        asColumn.datatype = type.datatype;
        asColumn.width = type.length;
        asColumn.scale = type.scale;
        out << "  " << DisplayName(type.name) << " " << ColumnType(model, asColumn);
        if (const std::string* bound = defaults.Find(type.defaultId)) out << "  default " << DisplayName(*bound);
        if (const std::string* bound = rules.Find(type.ruleId)) out << "  rule " << DisplayName(*bound);
        out << "\n";
    }
    if (!model.defaults.empty()) out << "\nDefaults\n";
    for (const CModelNamedText& entry : model.defaults) out << "  " << DisplayName(entry.name) << ": " << entry.text << "\n";
    if (!model.rules.empty()) out << "\nRules\n";
    for (const CModelNamedText& entry : model.rules) out << "  " << DisplayName(entry.name) << ": " << entry.text << "\n";
    if (!model.triggers.empty()) out << "\nTriggers\n";
    for (const CModelCode& trigger : model.triggers) {
        out << "  TRIGGER " << QualifiedName(trigger.owner, trigger.name) << " ON " << TableName(model, trigger.table)
            << " (" << TriggerTiming(trigger.kind) << ")" << (trigger.invalid ? " invalid" : "") << "\n";
        WriteCode(out, trigger.text, options);
    }
    if (!model.procedures.empty()) out << "\nProcedures and functions\n";
    for (const CModelCode& procedure : model.procedures) {
        out << "  " << (procedure.kind == 2 ? "FUNCTION " : "PROCEDURE ") << QualifiedName(procedure.owner, procedure.name)
            << (procedure.invalid ? " invalid" : "") << "\n";
        WriteCode(out, procedure.text, options);
    }
    if (!model.packages.empty()) out << "\nPackages\n";
    for (const CModelCode& package : model.packages) {
        out << "  PACKAGE " << QualifiedName(package.owner, package.name) << " (header " << package.text.size()
            << " bytes, body " << package.body.size() << " bytes)\n";
        WriteCode(out, package.text, options);
        WriteCode(out, package.body, options);
    }
    if (!model.storageObjects.empty()) out << "\nStorage objects\n";
    for (const CModelStorageObject& object : model.storageObjects) {
        out << "  " << StorageObjectKind(object.kind) << " " << QualifiedName(object.owner, object.name) << "\n";
        WriteCode(out, object.text, options);
    }
}
