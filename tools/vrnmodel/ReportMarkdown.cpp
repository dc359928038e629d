// The Markdown report: a data dictionary with one section per table (its
// columns as a table, then keys and relationships), readable as it renders
// on any Git host.
#include <ostream>

#include "ModelReport.h"

namespace {

// A cell of a Markdown table: pipes escaped, line ends as spaces.
std::string Cell(const std::string& text) {
    std::string cell;
    for (char ch : text) {
        if (ch == '|') cell += "\\|";
        else if (ch == '\n' || ch == '\r') cell += ' ';
        else cell += ch;
    }
    return cell;
}

// Code spans for names, so that underscores and asterisks stay as they are;
// pipes are escaped and line ends made spaces even there, since a table row
// ends at either.
std::string Code(const std::string& text) {
    const std::string cell = Cell(text);
    if (cell.find('`') == std::string::npos) return "`" + cell + "`";
    return "`` " + cell + " ``";
}

std::string Anchorless(const CModel& model, int table) {
    return table < 0 ? "(unknown table)" : Code(QualifiedName(model.tables[table].owner, model.tables[table].name));
}

void WriteTable(std::ostream& out, const CModel& model, const CModelTable& table) {
    out << "\n## " << QualifiedName(table.owner, table.name) << "\n\n";
    if (!table.definition.empty()) out << Cell(table.definition) << "\n\n";
    out << "| Column | Type | Null | Default | Key | Description |\n|---|---|---|---|---|---|\n";
    for (const CModelColumn& column : table.columns) {
        std::string key;
        if (column.inPrimaryKey) key = "PK";
        if (!column.foreignKeys.empty()) key += std::string(key.empty() ? "" : ", ") + "FK";
        if (column.identity) key += std::string(key.empty() ? "" : ", ") + "identity";
        out << "| " << Code(column.name) << " | " << Cell(ColumnType(model, column)) << " | "
            << (column.nullable ? "yes" : "no") << " | " << Cell(column.defaultText) << " | " << key << " | "
            << Cell(column.definition) << " |\n";
    }
    // One blank line between the column table and the list that follows it.
    bool listStarted = false;
    auto section = [&] {
        if (!listStarted) out << "\n";
        listStarted = true;
    };
    for (const CModelIndex& index : table.indexes) {
        section();
        const char* kind = index.keyType == 'P' ? "Primary key" : (index.unique ? "Unique index" : "Index");
        out << "- " << kind << (index.name.empty() ? "" : " " + Code(index.name)) << ": " << Cell(IndexColumnList(index))
            << "\n";
    }
    for (int index : table.foreignKeys) {
        section();
        const CModelForeignKey& foreignKey = model.foreignKeys[index];
        std::string columns;
        for (const CModelColumnPair& pair : foreignKey.pairs)
            columns += (columns.empty() ? "" : ", ") + Code(pair.childColumn) + " → " + Code(pair.parentColumn);
        out << "- References " << Anchorless(model, foreignKey.parentTable)
            << (foreignKey.name.empty() ? "" : " as " + Code(foreignKey.name)) << ": " << columns
            << (foreignKey.identifying ? " (identifying)" : "");
        if (foreignKey.onDelete != 'N') out << ", on delete " << ActionName(foreignKey.onDelete);
        if (foreignKey.onUpdate != 'N') out << ", on update " << ActionName(foreignKey.onUpdate);
        out << "\n";
    }
    for (int index : table.referencedBy) {
        section();
        out << "- Referenced by " << Anchorless(model, model.foreignKeys[index].childTable)
            << (model.foreignKeys[index].name.empty() ? "" : " as " + Code(model.foreignKeys[index].name)) << "\n";
    }
    for (int index : table.checks) {
        section();
        out << "- Check" << (model.checks[index].name.empty() ? "" : " " + Code(model.checks[index].name)) << ": "
            << Code(model.checks[index].text) << "\n";
    }
}

}  // namespace

void WriteMarkdownReport(const CModel& model, std::ostream& out) {
    out << "# Data dictionary of " << Code(model.path) << "\n\n";
    out << "Platform: " << PlatformLine(model) << "\n\n";
    out << "| Kind | Count |\n|---|---|\n";
    for (const auto& [kind, count] : CountObjects(model))
        if (count != 0) out << "| " << kind << " | " << count << " |\n";
    for (const CModelTable& table : model.tables) WriteTable(out, model, table);
    if (!model.triggers.empty() || !model.procedures.empty() || !model.packages.empty()) out << "\n## Code\n\n";
    for (const CModelCode& trigger : model.triggers)
        out << "- Trigger " << Code(QualifiedName(trigger.owner, trigger.name)) << " on "
            << Anchorless(model, trigger.table) << ", " << TriggerTiming(trigger.kind) << "\n";
    for (const CModelCode& procedure : model.procedures)
        out << "- " << (procedure.kind == 2 ? "Function " : "Procedure ") << Code(QualifiedName(procedure.owner, procedure.name))
            << "\n";
    for (const CModelCode& package : model.packages)
        out << "- Package " << Code(QualifiedName(package.owner, package.name)) << "\n";
}
