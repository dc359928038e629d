#include "DdlWriter.h"

#include <fnmatch.h>

#include <cctype>
#include <map>
#include <sstream>

#include <VrnIntf.h>

#include "Dialect.h"

namespace {

// Property and value numbers of column options in the model file.
constexpr int kGeneratedProperty = 48, kGeneratedAlways = 63;
constexpr int kNotLoggedProperty = 36, kRowGuidProperty = 41, kForBitDataProperty = 72;

bool HasProperty(const std::vector<CModelProperty>& properties, int propertyNo, int valueNo = 0) {
    for (const CModelProperty& property : properties)
        if (property.propertyNo == propertyNo && (valueNo == 0 || property.valueNo == valueNo)) return true;
    return false;
}

// Whether `text` holds a line that would end a statement of the script early
// (GO in T-SQL, "/" for SQL*Plus): such a text cannot be written as it is.
bool HoldsSeparatorLine(const std::string& text, EPlatformFamily family) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t first = line.find_first_not_of(" \t\r");
        const std::size_t last = line.find_last_not_of(" \t\r");
        if (first == std::string::npos) continue;
        const std::string word = line.substr(first, last - first + 1);
        if (family == EPlatformFamily::TransactSql && AfxCompareNoCase(word.c_str(), "GO") == 0) return true;
        if (family == EPlatformFamily::Oracle && word == "/") return true;
        if ((family == EPlatformFamily::Db2Luw || family == EPlatformFamily::Db2ZOs ||
             family == EPlatformFamily::As400) &&
            word.back() == '@')
            return true;
    }
    return false;
}

// The name of the default or rule `id`; null when the model has none of that number.
const std::string* NameOf(const std::vector<CModelNamedText>& list, std::uint32_t id) {
    for (const CModelNamedText& object : list)
        if (object.id == id) return &object.name;
    return nullptr;
}

// The type of a column as `types` spells it, in a spelling that reads back
// to the same datatype code on `platform` where the dialect has one: T-SQL
// spells both FLT and DBL "float", and "double precision" keeps DBL apart.
// Oracle takes none but its own names.
std::string TypeName(ETypeDialect types, int platform, const std::string& code, int width, int scale) {
    auto readsBack = [&](ETypeDialect dialect) {
        std::string bare = SqlTypeName(dialect, code, 0, 0);
        const std::size_t paren = bare.find('(');
        if (paren != std::string::npos) bare = bare.substr(0, bare.find_last_not_of(' ', paren - 1) + 1);
        const char* back = TranslateDatatypeName(bare.c_str(), platform);
        return back && code == back;
    };
    if (!readsBack(types) && types != ETypeDialect::Oracle && readsBack(ETypeDialect::Generic))
        return SqlTypeName(ETypeDialect::Generic, code, width, scale);
    return SqlTypeName(types, code, width, scale);
}

class CWriter {
public:
    CWriter(const CModel& model, const CDdlOptions& options, CDdlScript& script)
        : m_model(model), m_options(options), m_script(script),
          m_platform(options.platform >= 0 ? options.platform : model.platform),
          m_dialect(DialectOfPlatform(m_platform, false)), m_types(TypeDialectOf(m_platform)) {}

    void Write();

private:
    bool IsTransactSql() const { return m_dialect.family == EPlatformFamily::TransactSql; }
    bool IsOracle() const { return m_dialect.family == EPlatformFamily::Oracle; }
    bool IsDb2() const {
        return m_dialect.family == EPlatformFamily::Db2Luw || m_dialect.family == EPlatformFamily::Db2ZOs ||
               m_dialect.family == EPlatformFamily::As400;
    }
    bool IsGeneric() const { return m_dialect.family == EPlatformFamily::Other; }

    // One statement, ended as the platform's tools expect.
    void Statement(const std::string& text) { m_out << text << (IsTransactSql() ? "\nGO\n" : ";\n"); }
    // A block of procedural code, which holds ";" of its own.
    void CodeBlock(const std::string& text);
    // What the target cannot hold: a comment line in the script, counted for the warnings.
    void LeftOut(const std::string& what, const std::string& kind, const std::string& reason);

    bool Included(const CModelTable& table) const {
        return m_options.tablePattern.empty() ||
               fnmatch(m_options.tablePattern.c_str(), table.name.c_str(), FNM_CASEFOLD) == 0;
    }
    std::string TableName(const CModelTable& table) const { return m_dialect.Qualified(table.owner, table.name); }
    std::string ColumnList(const std::vector<std::string>& names) const;

    void StorageObjects();
    void UserDatatypes();
    void DefaultsAndRules();
    void TypeBindings();
    void Table(const CModelTable& table);
    std::string ColumnDefinition(const CModelTable& table, const CModelColumn& column);
    std::string ForeignKeyClause(const CModelForeignKey& key);
    void TableStorage(const CModelTable& table, std::string& statement);
    void Indexes(const CModelTable& table);
    void Comments(const CModelTable& table);
    void Bindings(const CModelTable& table);
    void ForeignKeys();
    void Code();

    const CModel& m_model;
    const CDdlOptions& m_options;
    CDdlScript& m_script;
    const int m_platform;
    const CDialect m_dialect;
    const ETypeDialect m_types;
    std::ostringstream m_out;
    std::map<std::string, int> m_leftOut;  // "rules: T-SQL only" -> how many
};

void CWriter::CodeBlock(const std::string& text) {
    if (IsTransactSql()) {
        m_out << text << "\nGO\n";
    } else if (IsOracle()) {
        m_out << text << "\n/\n";
    } else if (IsDb2()) {
        // Code bodies hold ";": the statement ends at an "@" of its own.
        m_out << "--#SET TERMINATOR @\n" << text << "\n@\n--#SET TERMINATOR ;\n";
    } else {
        m_out << text << ";\n";
    }
}

void CWriter::LeftOut(const std::string& what, const std::string& kind, const std::string& reason) {
    m_out << "-- left out: " << what << " (" << reason << ")\n";
    ++m_leftOut[kind + " left out: " + reason];
}

std::string CWriter::ColumnList(const std::vector<std::string>& names) const {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + m_dialect.Quote(name);
    return "(" + list + ")";
}

void CWriter::Write() {
    const CPlatformInfo* platform = FindPlatform(m_platform);
    m_out << "-- " << (m_model.modelName.empty() ? std::string("Model") : m_model.modelName) << " for "
          << (platform && *platform->name ? platform->name : "generic SQL") << " (" << m_dialect.Name()
          << "), written by vrnmodel\n";
    if (m_options.storage) StorageObjects();
    UserDatatypes();
    DefaultsAndRules();
    TypeBindings();
    for (const CModelTable& table : m_model.tables) {
        if (!Included(table)) continue;
        Table(table);
        ++m_script.tables;
    }
    for (const CModelTable& table : m_model.tables) {
        if (!Included(table)) continue;
        Indexes(table);
        Comments(table);
        Bindings(table);
    }
    if (!IsGeneric()) ForeignKeys();
    if (m_options.code) Code();
    m_script.text = m_out.str();
    for (const auto& [what, count] : m_leftOut) m_script.warnings.push_back(std::to_string(count) + " " + what);
}

void CWriter::StorageObjects() {
    for (const CModelStorageObject& object : m_model.storageObjects) {
        if (IsDb2())
            Statement(object.text);
        else
            LeftOut("storage object " + object.name, "storage objects", std::string(m_dialect.Name()) + " has no such objects");
    }
}

void CWriter::UserDatatypes() {
    for (const CModelUserDatatype& type : m_model.userDatatypes) {
        const std::string base = TypeName(m_types, m_platform, type.datatype, type.length, type.scale);
        if (IsTransactSql())
            Statement("EXEC sp_addtype " + m_dialect.Quote(type.name) + ", " + CDialect::Literal(base));
        else if (IsDb2())
            Statement("CREATE DISTINCT TYPE " + m_dialect.Quote(type.name) + " AS " + base + " WITH COMPARISONS");
        else
            LeftOut("user datatype " + type.name + " (" + base + ")", "user datatypes",
                    std::string(m_dialect.Name()) + " writes their columns with the base type");
    }
}

void CWriter::DefaultsAndRules() {
    for (const auto* list : {&m_model.defaults, &m_model.rules}) {
        const bool rules = list == &m_model.rules;
        for (const CModelNamedText& object : *list) {
            if (IsTransactSql())
                Statement(std::string(rules ? "CREATE RULE " : "CREATE DEFAULT ") + m_dialect.Quote(object.name) +
                          " AS " + object.text);
            else
                LeftOut(std::string(rules ? "rule " : "default ") + object.name, rules ? "rules" : "defaults",
                        "T-SQL only");
        }
    }
}

std::string CWriter::ColumnDefinition(const CModelTable& table, const CModelColumn& column) {
    std::string definition = m_dialect.Quote(column.name) + " ";
    if (!column.userDatatype.empty() && (IsTransactSql() || IsDb2()))
        definition += m_dialect.Quote(column.userDatatype);
    else
        definition += TypeName(m_types, m_platform, column.datatype, column.width, column.scale);
    if (IsDb2() && HasProperty(column.properties, kForBitDataProperty) &&
        SqlTypeName(m_types, column.datatype, 0, 0).find("FOR BIT DATA") == std::string::npos)
        definition += " FOR BIT DATA";
    if (!column.defaultText.empty()) definition += " DEFAULT " + column.defaultText;
    if (column.identity) {
        const bool always = HasProperty(column.properties, kGeneratedProperty, kGeneratedAlways);
        if (IsTransactSql())
            definition += " IDENTITY";
        else if (IsGeneric())
            LeftOut("identity of " + table.name + "." + column.name, "identity columns", "generic SQL has no identity");
        else
            definition += always ? " GENERATED ALWAYS AS IDENTITY" : " GENERATED BY DEFAULT AS IDENTITY";
    }
    if (IsTransactSql() && HasProperty(column.properties, kRowGuidProperty)) definition += " ROWGUIDCOL";
    if (IsDb2() && HasProperty(column.properties, kNotLoggedProperty)) definition += " NOT LOGGED";
    // NULL is said only where a column admits no nulls unless told.
    if (!column.nullable)
        definition += " NOT NULL";
    else if (!PlatformIsNullableByDefault(m_platform))
        definition += " NULL";
    return definition;
}

std::string CWriter::ForeignKeyClause(const CModelForeignKey& key) {
    const CModelTable& parent = m_model.tables[static_cast<std::size_t>(key.parentTable)];
    std::vector<std::string> childColumns, parentColumns;
    for (const CModelColumnPair& pair : key.pairs) {
        childColumns.push_back(pair.childColumn);
        parentColumns.push_back(pair.parentColumn);
    }
    std::string clause = (key.name.empty() ? std::string() : "CONSTRAINT " + m_dialect.Quote(key.name) + " ") +
                         "FOREIGN KEY " + ColumnList(childColumns) + " REFERENCES " + TableName(parent) + " " +
                         ColumnList(parentColumns);
    auto action = [&](char code, bool onDelete) -> std::string {
        switch (code) {
            case 'C': return "CASCADE";
            case 'S': return onDelete ? "SET NULL" : "";
            // T-SQL's NO ACTION is its restrict; Oracle restricts without being told.
            case 'R': return IsTransactSql() || IsOracle() ? "" : "RESTRICT";
            default: return "";
        }
    };
    const std::string onDelete = action(key.onDelete, true), onUpdate = action(key.onUpdate, false);
    if (!onDelete.empty()) clause += " ON DELETE " + onDelete;
    if (!onUpdate.empty()) {
        if (IsOracle())
            LeftOut("ON UPDATE " + onUpdate + " of foreign key " + key.name, "update actions", "Oracle has none");
        else
            clause += " ON UPDATE " + onUpdate;
    }
    return clause;
}

void CWriter::Table(const CModelTable& table) {
    std::vector<std::string> elements;
    for (const CModelColumn& column : table.columns) {
        std::string definition = ColumnDefinition(table, column);
        for (int check : table.checks) {
            const CModelCheck& constraint = m_model.checks[static_cast<std::size_t>(check)];
            if (AfxCompareNoCase(constraint.column.c_str(), column.name.c_str()) != 0 || constraint.column.empty())
                continue;
            definition += (constraint.name.empty() ? std::string() : " CONSTRAINT " + m_dialect.Quote(constraint.name)) +
                          " CHECK (" + constraint.text + ")";
        }
        elements.push_back(definition);
    }
    if (table.primaryKey >= 0) {
        const CModelIndex& key = table.indexes[static_cast<std::size_t>(table.primaryKey)];
        std::vector<std::string> columns;
        for (const CModelIndexColumn& column : key.columns) columns.push_back(column.name);
        std::string clause = key.name.empty() ? std::string() : "CONSTRAINT " + m_dialect.Quote(key.name) + " ";
        clause += "PRIMARY KEY";
        if (IsTransactSql()) clause += key.clustered ? " CLUSTERED" : " NONCLUSTERED";
        elements.push_back(clause + " " + ColumnList(columns));
    }
    for (int check : table.checks) {
        const CModelCheck& constraint = m_model.checks[static_cast<std::size_t>(check)];
        if (!constraint.column.empty()) continue;
        elements.push_back((constraint.name.empty() ? std::string() : "CONSTRAINT " + m_dialect.Quote(constraint.name) + " ") +
                           "CHECK (" + constraint.text + ")");
    }
    // SQLite adds no constraint to a table that exists: its foreign keys go with the table.
    if (IsGeneric()) {
        for (int key : table.foreignKeys) {
            const CModelForeignKey& foreignKey = m_model.foreignKeys[static_cast<std::size_t>(key)];
            if (foreignKey.parentTable >= 0) elements.push_back(ForeignKeyClause(foreignKey));
        }
    }
    std::string statement = "CREATE TABLE " + TableName(table) + " (\n";
    for (std::size_t i = 0; i < elements.size(); ++i)
        statement += "  " + elements[i] + (i + 1 < elements.size() ? ",\n" : "\n");
    statement += ")";
    TableStorage(table, statement);
    Statement(statement);
}

void CWriter::TableStorage(const CModelTable& table, std::string& statement) {
    if (!m_options.storage || table.storageSpace.empty()) return;
    if (IsTransactSql())
        statement += " ON " + m_dialect.Quote(table.storageSpace);
    else if (IsOracle())
        statement += " TABLESPACE " + m_dialect.Quote(table.storageSpace);
    else if (IsDb2())
        statement += " IN " + table.storageSpace;  // db.ts, as the catalog names it
    else
        LeftOut("storage space " + table.storageSpace + " of " + table.name, "storage spaces", "generic SQL has none");
}

void CWriter::Indexes(const CModelTable& table) {
    for (std::size_t i = 0; i < table.indexes.size(); ++i) {
        if (static_cast<int>(i) == table.primaryKey) continue;
        const CModelIndex& index = table.indexes[i];
        std::string statement = "CREATE ";
        if (index.unique) statement += "UNIQUE ";
        if (IsTransactSql()) statement += index.clustered ? "CLUSTERED " : "NONCLUSTERED ";
        statement += "INDEX " + m_dialect.Quote(index.name) + " ON " + TableName(table) + " (";
        for (std::size_t c = 0; c < index.columns.size(); ++c)
            statement += (c ? ", " : "") + m_dialect.Quote(index.columns[c].name) + (index.columns[c].descending ? " DESC" : "");
        statement += ")";
        if (m_options.storage && !index.storageSpace.empty()) {
            if (IsTransactSql()) statement += " ON " + m_dialect.Quote(index.storageSpace);
            else if (IsOracle() || IsDb2()) statement += " TABLESPACE " + m_dialect.Quote(index.storageSpace);
        }
        Statement(statement);
    }
}

void CWriter::Comments(const CModelTable& table) {
    std::vector<std::pair<std::string, std::string>> comments;  // target, text
    if (!table.definition.empty()) comments.emplace_back("TABLE " + TableName(table), table.definition);
    for (const CModelColumn& column : table.columns)
        if (!column.definition.empty())
            comments.emplace_back("COLUMN " + TableName(table) + "." + m_dialect.Quote(column.name), column.definition);
    for (const auto& [target, text] : comments) {
        if (IsOracle() || IsDb2())
            Statement("COMMENT ON " + target + " IS " + CDialect::Literal(text));
        else
            LeftOut("comment on " + target, "comments", std::string(m_dialect.Name()) + " has no COMMENT ON");
    }
}

void CWriter::Bindings(const CModelTable& table) {
    for (const CModelColumn& column : table.columns) {
        // A column of a bound user datatype is bound through its type.
        const CModelUserDatatype* type = nullptr;
        for (const CModelUserDatatype& candidate : m_model.userDatatypes)
            if (candidate.id == column.userDatatypeId && column.userDatatypeId != 0) type = &candidate;
        for (const bool rule : {false, true}) {
            const std::uint32_t id = rule ? column.ruleId : column.defaultId;
            if (id == 0 || (type && id == (rule ? type->ruleId : type->defaultId))) continue;
            const std::string* name = NameOf(rule ? m_model.rules : m_model.defaults, id);
            if (!name) continue;
            const std::string target = table.name + "." + column.name;
            if (IsTransactSql())
                Statement(std::string(rule ? "EXEC sp_bindrule " : "EXEC sp_bindefault ") + CDialect::Literal(*name) +
                          ", " + CDialect::Literal(target));
            else
                LeftOut(std::string(rule ? "rule " : "default ") + *name + " bound to " + target, "bindings",
                        "T-SQL only");
        }
    }
}

// Defaults and rules bound to user datatypes, once both exist; outside T-SQL
// neither is written.
void CWriter::TypeBindings() {
    if (!IsTransactSql()) return;
    for (const CModelUserDatatype& type : m_model.userDatatypes) {
        for (const bool rule : {false, true}) {
            const std::uint32_t id = rule ? type.ruleId : type.defaultId;
            const std::string* name = id ? NameOf(rule ? m_model.rules : m_model.defaults, id) : nullptr;
            if (!name) continue;
            Statement(std::string(rule ? "EXEC sp_bindrule " : "EXEC sp_bindefault ") + CDialect::Literal(*name) +
                      ", " + CDialect::Literal(type.name));
        }
    }
}

void CWriter::ForeignKeys() {
    for (const CModelForeignKey& key : m_model.foreignKeys) {
        if (key.childTable < 0) continue;
        const CModelTable& child = m_model.tables[static_cast<std::size_t>(key.childTable)];
        if (!Included(child)) continue;
        if (key.parentTable < 0) {
            LeftOut("foreign key " + key.name + " of " + child.name, "foreign keys", "the model names no parent table");
            continue;
        }
        Statement("ALTER TABLE " + TableName(child) + " ADD " + ForeignKeyClause(key));
    }
}

void CWriter::Code() {
    auto write = [&](const std::string& kind, const std::string& name, const std::string& text) {
        if (text.empty()) return;
        if (HoldsSeparatorLine(text, m_dialect.family))
            LeftOut(kind + " " + name, kind + "s", "its text holds a line that would end the statement early");
        else
            CodeBlock(text);
    };
    for (const CModelCode& trigger : m_model.triggers) {
        if (trigger.table >= 0 && !Included(m_model.tables[static_cast<std::size_t>(trigger.table)])) continue;
        write("trigger", trigger.name, trigger.text);
    }
    for (const CModelCode& procedure : m_model.procedures) write("procedure", procedure.name, procedure.text);
    for (const CModelCode& package : m_model.packages) {
        write("package", package.name, package.text);
        write("package", package.name, package.body);
    }
}

}  // namespace

CDdlScript WriteDdl(const CModel& model, const CDdlOptions& options) {
    CDdlScript script;
    CWriter(model, options, script).Write();
    return script;
}
