#include "DdlWriter.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>
#include <sstream>

#include <VrnIntf.h>

#include "DdlWriterCore.h"
#include "SqlLexer.h"

namespace {

// Property and value numbers of the model file that the writer reads itself.
constexpr int kGeneratedProperty = 48, kGeneratedAlways = 63;
constexpr int kPartitionColumnProperty = 7, kPartitionLimitProperty = 8, kStorageSpaceProperty = 9;
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

// A text for a comment line: a name or a default may hold line breaks,
// after which the rest would be read as SQL. Long texts are cut.
std::string OneLine(const std::string& text) {
    constexpr std::size_t kLongest = 200;
    std::string line;
    for (char ch : text) {
        if (line.size() >= kLongest) return line + "...";
        line += static_cast<unsigned char>(ch) < 0x20 ? ' ' : ch;
    }
    return line;
}

// Whether a column's default is a constant that any SQL takes, SQLite
// included: one string, a plain decimal number, NULL or the current date and
// time, in parentheses or not.
bool IsConstant(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" (");
    const std::size_t last = text.find_last_not_of(" )");
    if (first == std::string::npos || last == std::string::npos || last < first) return false;
    const std::string core = text.substr(first, last - first + 1);
    if (core.size() >= 2 && core.front() == '\'' && core.back() == '\'') {
        // One string: every quote inside is doubled.
        for (std::size_t i = 1; i + 1 < core.size(); ++i) {
            if (core[i] != '\'') continue;
            if (core[i + 1] != '\'' || i + 2 == core.size()) return false;
            ++i;
        }
        return true;
    }
    static const char* const kWords[] = {"NULL", "CURRENT_TIMESTAMP", "CURRENT_DATE", "CURRENT_TIME"};
    for (const char* word : kWords)
        if (AfxCompareNoCase(core.c_str(), word) == 0) return true;
    std::size_t i = core[0] == '-' || core[0] == '+' ? 1 : 0;
    bool digits = false, point = false;
    for (; i < core.size(); ++i) {
        if (std::isdigit(static_cast<unsigned char>(core[i]))) digits = true;
        else if (core[i] == '.' && !point) point = true;
        else return false;
    }
    return digits;
}

// Whether an index carries physical options of its own.
bool HasOptions(const CModelIndex& index) {
    if (index.clustered || !index.storageSpace.empty() || !index.properties.empty() || !index.partitions.empty())
        return true;
    for (int value : index.storageParams)
        if (value >= 0) return true;
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
    auto readBack = [&](ETypeDialect dialect) -> std::string {
        std::string bare = SqlTypeName(dialect, code, 0, 0);
        const std::size_t paren = bare.find('(');
        if (paren != std::string::npos) bare = bare.substr(0, bare.find_last_not_of(' ', paren - 1) + 1);
        const char* back = TranslateDatatypeName(bare.c_str(), platform);
        return back ? back : "";
    };
    // The standard name is taken instead only where the family has it
    // (DOUBLE PRECISION, REAL everywhere; BINARY in DB2), or for generic SQL:
    // MONEY or BIT would not be taken by DB2 or Oracle. Oracle's names of other codes (NUMBER(1)
    // for BIT) stay; its own names the model knows no code for
    // (BINARY_FLOAT) give way.
    static const char* const kEveryFamily[] = {"DOUBLE PRECISION", "REAL", "FLOAT", "DECIMAL", "NUMERIC",
                                               "INTEGER",          "SMALLINT", "CHAR", "VARCHAR"};
    static const char* const kDb2Too[] = {"BINARY", "VARBINARY", "BIGINT"};  // DB2 has these as well
    const std::string standard = SqlTypeName(ETypeDialect::Generic, code, 0, 0);
    const std::string bare = standard.substr(0, standard.find('('));
    bool everywhere = types == ETypeDialect::Generic;
    for (const char* name : kEveryFamily) everywhere = everywhere || bare == name;
    if (types == ETypeDialect::Db2Luw || types == ETypeDialect::Db2ZOs)
        for (const char* name : kDb2Too) everywhere = everywhere || bare == name;
    const std::string own = readBack(types);
    if (own != code && everywhere && (types != ETypeDialect::Oracle || own.empty()) &&
        readBack(ETypeDialect::Generic) == code)
        return SqlTypeName(ETypeDialect::Generic, code, width, scale);
    // T-SQL spells its largest variable lengths max.
    constexpr int kMax = 2147483647;
    if (types == ETypeDialect::TransactSql && width == kMax && (code == "VAR" || code == "VAN" || code == "VBN"))
        return SqlTypeName(types, code, 1, 0).replace(SqlTypeName(types, code, 1, 0).find("(1)"), 3, "(max)");
    std::string name = SqlTypeName(types, code, width, scale);
    // Large objects have a length of their own in DB2 and in standard SQL.
    // The model gives every column without one a width of 10, which no real
    // large object has.
    const bool sized = types == ETypeDialect::Db2Luw || types == ETypeDialect::Db2ZOs || types == ETypeDialect::Generic;
    if (sized && (name == "BLOB" || name == "CLOB" || name == "DBCLOB" || name == "NCLOB") && width > 0 && width != 10)
        name += "(" + std::to_string(width) + ")";
    return name;
}

}  // namespace

void CDdlWriter::CodeBlock(const std::string& text) {
    ++m_statements;
    if (IsTransactSql()) {
        Out() << text << "\nGO\n";
    } else if (IsOracle()) {
        Out() << text << "\n/\n";
    } else if (IsDb2()) {
        // Code bodies hold ";": the statement ends at an "@" of its own.
        Out() << "--#SET TERMINATOR @\n" << text << "\n@\n--#SET TERMINATOR ;\n";
    } else {
        Out() << text << ";\n";
    }
}

void CDdlWriter::LeftOut(const std::string& what, const std::string& kind, const std::string& reason, int count) {
    Out() << "-- left out: " << OneLine(what) << " (" << reason << ")\n";
    m_leftOut[{kind, reason}] += count;
}

std::string CDdlWriter::Target() const {
    const CPlatformInfo* platform = FindPlatform(m_platform);
    if (IsGeneric() || !platform || !*platform->name) return "generic SQL";
    return std::string(platform->name) + " (" + Family() + ")";
}

void CDdlWriter::Comment(const std::string& text) { Out() << "-- " << OneLine(text) << "\n"; }

std::string CDdlWriter::SourceFamily() const {
    const CDialect source = DialectOfPlatform(m_model.platform, false);
    return source.family == EPlatformFamily::Other ? "generic SQL" : source.Name();
}

std::string CDdlWriter::TableName(const CModelTable& table) const {
    if (!IsGeneric()) return m_dialect.Qualified(table.owner, table.name);
    return m_dialect.Quote(m_tableNames[static_cast<std::size_t>(&table - m_model.tables.data())]);
}

std::string CDdlWriter::IndexName(const CModelIndex& index) const {
    const auto named = m_indexNames.find(&index);
    return m_dialect.Quote(named == m_indexNames.end() ? index.name : named->second);
}

std::string CDdlWriter::QuotedParts(const std::string& dotted) const {
    std::string quoted;
    for (std::size_t from = 0;;) {
        const std::size_t dot = dotted.find('.', from);
        quoted += m_dialect.Quote(dotted.substr(from, dot == std::string::npos ? std::string::npos : dot - from));
        if (dot == std::string::npos) return quoted;
        quoted += ".";
        from = dot + 1;
    }
}

bool CDdlWriter::OptionsOnUniqueIndex(const CModelIndex& key) const {
    return m_options.storage && IsDb2() && PlatformHasRule(m_platform, kRuleConsolidatePrimaryKey) && HasOptions(key);
}

std::string CDdlWriter::ColumnName(const CModelTable& table, const std::string& name) const {
    const auto renamed = m_columnNames.find({&table, name});
    return m_dialect.Quote(renamed == m_columnNames.end() ? name : renamed->second);
}

std::string CDdlWriter::ColumnList(const CModelTable& table, const std::vector<std::string>& names) const {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + ColumnName(table, name);
    return "(" + list + ")";
}

void CDdlWriter::Prepare() {
    if (IsGeneric()) NameTablesAndIndexes();
}

void CDdlWriter::Finish() {
    m_script.text = m_out.str();
    for (const auto& [what, count] : m_leftOut)
        m_script.warnings.push_back(what.first + " left out (" + std::to_string(count) + "): " + what.second);
}

void CDdlWriter::Write() {
    Out() << "-- " << (m_model.modelName.empty() ? std::string("Model") : OneLine(m_model.modelName)) << " for "
          << Target() << ", written by vrnmodel\n";
    // SQL*Plus would read an & in a text as the start of a variable to ask for.
    if (IsOracle()) Out() << "SET DEFINE OFF\n";
    if (IsGeneric()) {
        int owned = 0;
        for (const CModelTable& table : m_model.tables)
            owned += Included(table) && table.owner.find_first_not_of(' ') != std::string::npos ? 1 : 0;
        if (owned > 0)
            LeftOut("the owners of " + std::to_string(owned) + " tables", "owners of tables", "generic SQL names tables alone",
                    owned);
    }
    Prepare();
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
    Finish();
}

// Storage objects and code are kept as their statements' text, in the
// dialect of the model's platform: they are written for that family only.
bool CDdlWriter::SameFamily() const {
    return DialectOfPlatform(m_model.platform, false).family == m_dialect.family;
}

std::string CDdlWriter::Expression(const std::string& text) const {
    if (SameFamily()) return text;
    std::string out;
    std::size_t at = 0;
    for (const CToken& token : Tokenize(text)) {
        out.append(text, at, token.begin - at);
        if (token.kind == CTokenKind::QuotedIdent)
            out += m_dialect.Quote(token.text);
        else if (token.kind == CTokenKind::String)
            out += CDialect::Literal(token.text);
        else
            out.append(text, token.begin, token.end - token.begin);
        at = token.end;
    }
    return out + text.substr(std::min(at, text.size()));
}

// SQLite keeps tables and indexes in one name space, without owners: a
// name taken already is written with its owner (a table) or its table (an
// index) joined to it, and that is said.
void CDdlWriter::NameTablesAndIndexes() {
    std::map<std::string, int> taken;  // upper-cased name -> times used
    auto take = [&](const std::string& name) { return taken[UpperAscii(name)]++ == 0; };
    // `base`, or `base` with a suffix, whichever is free first.
    auto free = [&](const std::string& base, std::map<std::string, int>& names) {
        std::string name = base;
        for (int n = 2; names[UpperAscii(name)]++ != 0; ++n) name = base + "_" + std::to_string(n);
        return name;
    };
    m_tableNames.resize(m_model.tables.size());
    for (std::size_t i = 0; i < m_model.tables.size(); ++i) {
        const CModelTable& table = m_model.tables[i];
        m_tableNames[i] = table.name;
        if (!Included(table)) continue;
        const bool reserved = UpperAscii(table.name).rfind("SQLITE_", 0) == 0;  // SQLite's own
        if (!reserved && take(table.name)) continue;
        const std::size_t end = table.owner.find_last_not_of(' ');
        m_tableNames[i] = free((end == std::string::npos ? std::string("T") : table.owner.substr(0, end + 1)) + "_" +
                                   table.name, taken);
        LeftOut("the name " + table.name + " of " + m_dialect.Qualified(table.owner, table.name) + ", written " +
                    m_tableNames[i],
                "names of tables", "another table has it, or SQLite keeps it for itself");
    }
    for (std::size_t i = 0; i < m_model.tables.size(); ++i) {
        const CModelTable& table = m_model.tables[i];
        if (!Included(table)) continue;
        for (std::size_t k = 0; k < table.indexes.size(); ++k) {
            const CModelIndex& index = table.indexes[k];
            if (static_cast<int>(k) == table.primaryKey || take(index.name)) continue;
            const std::string name = free(index.name + "_" + m_tableNames[i], taken);
            m_indexNames[&index] = name;
            LeftOut("the name " + index.name + " of an index of " + table.name + ", written " + name, "names of indexes",
                    "a table or another index has it");
        }
        // Column names differ in SQLite only when they differ without regard to case.
        std::map<std::string, int> columns;
        for (const CModelColumn& column : table.columns) {
            const std::string name = free(column.name, columns);
            if (name == column.name) continue;
            m_columnNames[{&table, column.name}] = name;
            LeftOut("the name " + column.name + " of a column of " + table.name + ", written " + name, "names of columns",
                    "another column differs from it in letter case only");
        }
    }
}

void CDdlWriter::StorageObjects() {
    for (const CModelStorageObject& object : m_model.storageObjects) {
        if (SameFamily())
            Statement(object.text);
        else
            LeftOut("storage object " + object.name, "storage objects",
                    "written in " + SourceFamily());
    }
}

void CDdlWriter::UserDatatypes() {
    for (const CModelUserDatatype& type : m_model.userDatatypes) {
        const std::string base = TypeName(m_types, m_platform, type.datatype, type.length, type.scale);
        if (IsTransactSql())
            Statement("EXEC sp_addtype " + CDialect::Literal(type.name) + ", " + CDialect::Literal(base));
        else if (IsDb2())
            Statement("CREATE DISTINCT TYPE " + m_dialect.Quote(type.name) + " AS " + base + " WITH COMPARISONS");
        else
            LeftOut("user datatype " + type.name + " (" + base + ")", "user datatypes",
                    Family() + " writes their columns with the base type");
    }
}

void CDdlWriter::DefaultsAndRules() {
    for (const auto* list : {&m_model.defaults, &m_model.rules}) {
        const bool rules = list == &m_model.rules;
        for (const CModelNamedText& object : *list) {
            if (IsTransactSql() && HoldsSeparatorLine(object.text, m_dialect.family))
                LeftOut(std::string(rules ? "rule " : "default ") + object.name, rules ? "rules" : "defaults",
                        "a line of the text would end the statement early");
            else if (IsTransactSql())
                Statement(std::string(rules ? "CREATE RULE " : "CREATE DEFAULT ") + m_dialect.Quote(object.name) +
                          " AS " + object.text);
            else
                LeftOut(std::string(rules ? "rule " : "default ") + object.name, rules ? "rules" : "defaults",
                        "T-SQL only");
        }
    }
}

std::string CDdlWriter::ColumnType(const CModelColumn& column) const {
    std::string type = !column.userDatatype.empty() && (IsTransactSql() || IsDb2())
                           ? m_dialect.Quote(column.userDatatype)
                           : TypeName(m_types, m_platform, column.datatype, column.width, column.scale);
    if (IsDb2() && HasProperty(column.properties, kForBitDataProperty) &&
        SqlTypeName(m_types, column.datatype, 0, 0).find("FOR BIT DATA") == std::string::npos)
        type += " FOR BIT DATA";
    return type;
}

std::string CDdlWriter::ColumnDefinition(const CModelTable& table, const CModelColumn& column) {
    std::string definition = ColumnName(table, column.name) + " " + ColumnType(column);
    if (!column.defaultText.empty()) {
        const std::string defaultText = Expression(column.defaultText);
        if (HoldsSeparatorLine(column.defaultText, m_dialect.family))
            LeftOut("default of " + table.name + "." + column.name, "defaults of columns",
                    "a line of the text would end the statement early");
        else if (!IsGeneric() || IsConstant(defaultText))
            definition += " DEFAULT " + defaultText;
        else
            LeftOut("default " + column.defaultText + " of " + table.name + "." + column.name, "defaults of columns",
                    "generic SQL takes constant defaults only");
    }
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

std::string CDdlWriter::ForeignKeyClause(const CModelForeignKey& key) {
    const CModelTable& parent = m_model.tables[static_cast<std::size_t>(key.parentTable)];
    std::vector<std::string> childColumns, parentColumns;
    for (const CModelColumnPair& pair : key.pairs) {
        childColumns.push_back(pair.childColumn);
        parentColumns.push_back(pair.parentColumn);
    }
    std::string clause = (key.name.empty() ? std::string() : "CONSTRAINT " + m_dialect.Quote(key.name) + " ") +
                         "FOREIGN KEY " + ColumnList(m_model.tables[static_cast<std::size_t>(key.childTable)], childColumns) +
                         " REFERENCES " + TableName(parent) + " " + ColumnList(parent, parentColumns);
    auto action = [&](char code) -> std::string {
        switch (code) {
            case 'C': return "CASCADE";
            case 'S': return "SET NULL";
            // T-SQL's NO ACTION is its restrict; Oracle restricts without being told.
            case 'R': return IsTransactSql() || IsOracle() ? "" : "RESTRICT";
            default: return "";
        }
    };
    const std::string onDelete = action(key.onDelete), onUpdate = action(key.onUpdate);
    if (!onDelete.empty()) clause += " ON DELETE " + onDelete;
    if (!onUpdate.empty()) {
        if (IsOracle())
            LeftOut("ON UPDATE " + onUpdate + " of foreign key " + key.name, "update actions", "Oracle has none");
        else
            clause += " ON UPDATE " + onUpdate;
    }
    return clause;
}

// A check's condition is written as the model holds it, unless a line of it
// would end the statement early; then it is left out, and that is said.
bool CDdlWriter::Writable(const CModelCheck& check) {
    if (!HoldsSeparatorLine(check.text, m_dialect.family)) return true;
    LeftOut("check " + (check.name.empty() ? std::string("of ") : check.name + " of ") +
                m_model.tables[static_cast<std::size_t>(check.table)].name,
            "checks", "a line of the text would end the statement early");
    return false;
}

// Whether a key or index names every one of its columns; one that names a
// column the model does not hold (or none) is left out, and said once
// (`what` empty: already said).
bool CDdlWriter::Whole(const CModelIndex& index, const CModelTable& table, const std::string& what) {
    bool whole = !index.columns.empty();
    for (const CModelIndexColumn& column : index.columns) whole = whole && !column.name.empty();
    if (!whole && !what.empty())
        LeftOut(what + " " + index.name + " of " + table.name, "keys and indexes",
                "it names a column the model does not hold");
    return whole;
}

bool CDdlWriter::Whole(const CModelForeignKey& key, const CModelTable& child) {
    bool whole = !key.pairs.empty();
    for (const CModelColumnPair& pair : key.pairs) whole = whole && !pair.childColumn.empty() && !pair.parentColumn.empty();
    if (!whole)
        LeftOut("foreign key " + key.name + " of " + child.name, "foreign keys",
                "it names a column the model does not hold");
    return whole;
}

std::string CDdlWriter::ColumnElement(const CModelTable& table, const CModelColumn& column) {
    std::string definition = ColumnDefinition(table, column);
    for (int check : table.checks) {
        const CModelCheck& constraint = m_model.checks[static_cast<std::size_t>(check)];
        if (constraint.column != column.name || constraint.column.empty() || !Writable(constraint)) continue;
        definition += " " + CheckClause(constraint);
    }
    return definition;
}

std::string CDdlWriter::PrimaryKeyClause(const CModelTable& table, const CModelIndex& key) const {
    std::vector<std::string> columns;
    for (const CModelIndexColumn& column : key.columns) columns.push_back(column.name);
    // A key whose options go on its own unique index (DB2) is left
    // unnamed: the index, written after the table, gives it its name.
    const bool namedByIndex = OptionsOnUniqueIndex(key);
    std::string clause = key.name.empty() || namedByIndex ? std::string() : "CONSTRAINT " + m_dialect.Quote(key.name) + " ";
    clause += "PRIMARY KEY";
    if (IsTransactSql()) clause += key.clustered ? " CLUSTERED" : " NONCLUSTERED";
    return clause + " " + ColumnList(table, columns);
}

std::string CDdlWriter::CheckClause(const CModelCheck& check) const {
    return (check.name.empty() ? std::string() : "CONSTRAINT " + m_dialect.Quote(check.name) + " ") + "CHECK (" +
           Expression(check.text) + ")";
}

void CDdlWriter::Table(const CModelTable& table, const std::string& as) {
    if (table.columns.empty()) {
        LeftOut("table " + table.name, "tables without columns", "no SQL creates a table without columns");
        return;
    }
    std::vector<std::string> elements;
    for (const CModelColumn& column : table.columns) elements.push_back(ColumnElement(table, column));
    if (table.primaryKey >= 0 && Whole(table.indexes[static_cast<std::size_t>(table.primaryKey)], table, "primary key"))
        elements.push_back(PrimaryKeyClause(table, table.indexes[static_cast<std::size_t>(table.primaryKey)]));
    for (int check : table.checks) {
        const CModelCheck& constraint = m_model.checks[static_cast<std::size_t>(check)];
        if (!constraint.column.empty() || !Writable(constraint)) continue;
        elements.push_back(CheckClause(constraint));
    }
    // SQLite adds no constraint to a table that exists: its foreign keys go with the table.
    if (IsGeneric()) {
        for (int key : table.foreignKeys) {
            const CModelForeignKey& foreignKey = m_model.foreignKeys[static_cast<std::size_t>(key)];
            if (foreignKey.parentTable >= 0 && Whole(foreignKey, table))
                elements.push_back(ForeignKeyClause(foreignKey));
            else if (foreignKey.parentTable >= 0)
                continue;
            else
                LeftOut("foreign key " + foreignKey.name + " of " + table.name, "foreign keys",
                        "the model names no parent table");
        }
    }
    std::string statement = "CREATE TABLE " + (as.empty() ? TableName(table) : as) + " (\n";
    for (std::size_t i = 0; i < elements.size(); ++i)
        statement += "  " + elements[i] + (i + 1 < elements.size() ? ",\n" : "\n");
    statement += ")";
    TableStorage(table, statement);
    Statement(statement);
}

void CDdlWriter::TableStorage(const CModelTable& table, std::string& statement) {
    if (!m_options.storage) return;
    if (!table.storageSpace.empty()) {
        if (IsTransactSql())
            statement += " ON " + m_dialect.Quote(table.storageSpace);
        else if (IsOracle())
            statement += " TABLESPACE " + m_dialect.Quote(table.storageSpace);
        else if (IsDb2())
            statement += " IN " + QuotedParts(table.storageSpace);  // db.ts, as the catalog names it
        else
            LeftOut("storage space " + table.storageSpace + " of " + table.name, "storage spaces", "generic SQL has none");
    }
    Options(EOptionOwner::Table, &table.storageParams, table.properties, "table " + table.name, statement);
    Partitions(table, table.partitions, true, statement);
}

void CDdlWriter::Options(EOptionOwner owner, const std::array<int, 11>* slots,
                      const std::vector<CModelProperty>& properties, const std::string& of, std::string& statement) {
    const CWrittenOptions written = WriteOptions(owner, slots, properties, m_dialect.family);
    statement += written.clauses;
    for (const std::string& option : written.leftOut)
        LeftOut("physical option " + option + " of " + of, "physical options",
                Family() + " has no form for them");
}

// PARTITION BY RANGE (columns) (PARTITION p VALUES LESS THAN (...) ...) of a
// table, LOCAL (PARTITION p ...) of an index. The model keeps no partitioning
// method: partitions with limits are written as ranges, others by hash.
void CDdlWriter::Partitions(const CModelTable& table, const std::vector<int>& partitions, bool ofTable,
                         std::string& statement) {
    if (partitions.empty()) return;
    if (!IsOracle()) {
        LeftOut(std::to_string(partitions.size()) + " partitions of " + table.name, "partitioned objects",
                Family() + " partitions are not written");
        return;
    }
    bool limits = false;
    std::vector<std::string> clauses;
    for (int at : partitions) {
        const CModelPartition& partition = m_model.partitions[static_cast<std::size_t>(at)];
        std::string clause = "PARTITION " + m_dialect.Quote(partition.name);
        std::vector<CModelProperty> options;
        std::string space;
        for (const CModelProperty& property : partition.properties) {
            if (property.propertyNo == kPartitionLimitProperty) {
                clause += " VALUES LESS THAN (" + property.text + ")";
                limits = true;
            } else if (property.propertyNo == kStorageSpaceProperty) {
                space = " TABLESPACE " + m_dialect.Quote(property.text);
            } else {
                options.push_back(property);
            }
        }
        clause += space;
        Options(EOptionOwner::Partition, nullptr, options, "partition " + partition.name, clause);
        clauses.push_back(clause);
    }
    if (ofTable) {
        std::vector<std::pair<int, std::string>> columns;  // sequence, name
        for (const CModelProperty& property : table.properties) {
            if (property.propertyNo != kPartitionColumnProperty) continue;
            const CModelColumn* column =
                table.FindColumn(static_cast<std::uint32_t>(std::strtoul(property.text.c_str(), nullptr, 10)));
            if (column) columns.emplace_back(property.intArg, column->name);
        }
        std::sort(columns.begin(), columns.end());
        std::vector<std::string> names;
        for (const auto& column : columns) names.push_back(column.second);
        statement += std::string(" PARTITION BY ") + (limits ? "RANGE " : "HASH ") + ColumnList(table, names);
    } else {
        statement += " LOCAL";
    }
    statement += " (";
    for (std::size_t i = 0; i < clauses.size(); ++i) statement += (i ? ", " : "") + clauses[i];
    statement += ")";
}

void CDdlWriter::Indexes(const CModelTable& table) {
    for (std::size_t i = 0; i < table.indexes.size(); ++i) Index(table, i);
}

void CDdlWriter::Index(const CModelTable& table, std::size_t i) {
    const CModelIndex& index = table.indexes[i];
    if (static_cast<int>(i) != table.primaryKey && !Whole(index, table, "index")) return;
    if (static_cast<int>(i) == table.primaryKey) {
        if (index.columns.empty() || !Whole(index, table, "")) return;
        // The options of a primary key's index: DB2 builds the key on a
        // unique index of its columns, which a model of DB2 takes as the
        // key's own. Elsewhere the key has no index statement to hold them.
        if (!m_options.storage || !HasOptions(index) || (IsTransactSql() && index.storageSpace.empty() &&
                                                        index.properties.empty() && index.partitions.empty()))
            return;
        if (!OptionsOnUniqueIndex(index)) {
            LeftOut("the physical options of primary key " + index.name + " of " + table.name,
                    "options of primary keys", Family() + " writes none for a primary key");
            return;
        }
    }
    std::string statement = "CREATE ";
    if (index.unique) statement += "UNIQUE ";
    if (IsTransactSql()) statement += index.clustered ? "CLUSTERED " : "NONCLUSTERED ";
    statement += "INDEX " + IndexName(index) + " ON " + TableName(table) + " (";
    for (std::size_t c = 0; c < index.columns.size(); ++c)
        statement += (c ? ", " : "") + ColumnName(table, index.columns[c].name) + (index.columns[c].descending ? " DESC" : "");
    statement += ")";
    if (IsDb2() && index.clustered) statement += " CLUSTER";
    if (m_options.storage) {
        if (!index.storageSpace.empty()) {
            if (IsTransactSql()) statement += " ON " + m_dialect.Quote(index.storageSpace);
            else if (IsOracle() || IsDb2()) statement += " TABLESPACE " + m_dialect.Quote(index.storageSpace);
            else LeftOut("storage space " + index.storageSpace + " of index " + index.name, "storage spaces",
                         "generic SQL has none");
        }
        Options(EOptionOwner::Index, &index.storageParams, index.properties, "index " + index.name, statement);
        Partitions(table, index.partitions, false, statement);
    }
    Statement(statement);
}

void CDdlWriter::Comments(const CModelTable& table) {
    std::vector<std::pair<std::string, std::string>> comments;  // target, text
    if (!table.definition.empty()) comments.emplace_back("TABLE " + TableName(table), table.definition);
    for (const CModelColumn& column : table.columns)
        if (!column.definition.empty())
            comments.emplace_back("COLUMN " + TableName(table) + "." + ColumnName(table, column.name), column.definition);
    for (const auto& [target, text] : comments) CommentOn(target, text);
}

void CDdlWriter::CommentOn(const std::string& target, const std::string& text) {
    if (HoldsSeparatorLine(text, m_dialect.family))
        LeftOut("comment on " + target, "comments", "a line of the text would end the statement early");
    else if (IsOracle() || IsDb2())
        Statement("COMMENT ON " + target + " IS " + CDialect::Literal(text));
    else
        LeftOut("comment on " + target, "comments", Family() + " has no COMMENT ON");
}

void CDdlWriter::Bindings(const CModelTable& table) {
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
            const std::size_t end = table.owner.find_last_not_of(' ');
            const std::string target =
                (end == std::string::npos ? std::string() : table.owner.substr(0, end + 1) + ".") + table.name + "." +
                column.name;
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
void CDdlWriter::TypeBindings() {
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

void CDdlWriter::ForeignKeys() {
    for (const CModelForeignKey& key : m_model.foreignKeys) ForeignKey(key);
}

void CDdlWriter::ForeignKey(const CModelForeignKey& key) {
    if (key.childTable < 0) return;
    const CModelTable& child = m_model.tables[static_cast<std::size_t>(key.childTable)];
    if (!Included(child)) return;
    if (key.parentTable < 0) {
        LeftOut("foreign key " + key.name + " of " + child.name, "foreign keys", "the model names no parent table");
        return;
    }
    if (!Included(m_model.tables[static_cast<std::size_t>(key.parentTable)])) {
        LeftOut("foreign key " + key.name + " of " + child.name, "foreign keys", "its parent is not written");
        return;
    }
    if (Whole(key, child)) Statement("ALTER TABLE " + TableName(child) + " ADD " + ForeignKeyClause(key));
}

void CDdlWriter::CodeObject(const std::string& kind, const std::string& name, const std::string& text) {
    if (text.empty()) return;
    if (!SameFamily())
        LeftOut(kind + " " + name, kind + "s", "written in " + SourceFamily());
    else if (HoldsSeparatorLine(text, m_dialect.family))
        LeftOut(kind + " " + name, kind + "s", "a line of the text would end the statement early");
    else
        CodeBlock(text);
}

void CDdlWriter::Code() {
    for (const CModelCode& trigger : m_model.triggers) {
        if (trigger.table >= 0 && !Included(m_model.tables[static_cast<std::size_t>(trigger.table)])) continue;
        CodeObject("trigger", trigger.name, trigger.text);
    }
    for (const CModelCode& procedure : m_model.procedures) CodeObject("procedure", procedure.name, procedure.text);
    for (const CModelCode& package : m_model.packages) {
        CodeObject("package", package.name, package.text);
        CodeObject("package", package.name, package.body);
    }
}

CDdlScript WriteDdl(const CModel& model, const CDdlOptions& options) {
    CDdlScript script;
    CDdlWriter(model, options, script).Write();
    return script;
}
