#include "DdlImporter.h"

#include <cctype>
#include <cstdlib>

#include <VrnReader.h>

#include "OptionKeywords.h"

namespace {

// Property codes of the model builder that the importer sets itself; the
// physical options' codes are in the keyword tables (OptionKeywords.cpp).
namespace code {
constexpr int kStorageSpace = 15, kUnique = 34, kCluster = 40, kPartitionLimit = 54;
constexpr int kDefinition = 2, kDefaultText = 9;  // entity and attribute texts
constexpr int kIdentity = 82, kRowGuid = 83, kGenerated = 84, kNotLogged = 92, kForBitData = 97;
constexpr int kComputedExpression = 87;  // attribute text
constexpr int kOnDeleteCascade = 77, kOnDeleteRestrict = 78, kOnDeleteSetNull = 79, kOnUpdateCascade = 80,
              kOnUpdateRestrict = 81;
}  // namespace code

// Where options read by the keyword tables go.
class CEntityOptions final : public COptionTarget {
public:
    CEntityOptions(CVrnAPI& builder, unsigned long entity) : m_builder(builder), m_entity(entity) {}
    void Number(int code, long value) override { m_builder.SetEntityProperty(m_entity, code, value); }
    void Text(int code, const std::string& text) override { m_builder.SetEntityStringProperty(m_entity, code, text.c_str()); }

private:
    CVrnAPI& m_builder;
    unsigned long m_entity;
};

class CIndexOptions final : public COptionTarget {
public:
    CIndexOptions(CVrnAPI& builder, unsigned long index) : m_builder(builder), m_index(index) {}
    void Number(int code, long value) override { m_builder.SetIndexProperty(m_index, code, value); }
    void Text(int code, const std::string& text) override { m_builder.SetIndexStringProperty(m_index, code, text.c_str()); }

private:
    CVrnAPI& m_builder;
    unsigned long m_index;
};

// A partition the builder refused (0) takes no options.
class CPartitionOptions final : public COptionTarget {
public:
    CPartitionOptions(CVrnAPI& builder, unsigned long partition) : m_builder(builder), m_partition(partition) {}
    void Number(int code, long value) override {
        if (m_partition) m_builder.SetPartitionProperty(m_partition, code, value);
    }
    void Text(int code, const std::string& text) override {
        if (m_partition) m_builder.SetPartitionStringProperty(m_partition, code, text.c_str());
    }

private:
    CVrnAPI& m_builder;
    unsigned long m_partition;
};

// Storage object kinds, the client's own numbering.
constexpr int kStorageGroup = 1, kDatabase = 2, kTablespace = 3, kBufferPoolObject = 4;

// Trigger kinds and procedure kinds, the client's own numbering.
constexpr int kTriggerBefore = 1, kTriggerAfter = 2, kTriggerInstead = 3;
constexpr int kProcedure = 1, kFunction = 2;

std::string Upper(std::string text) {
    for (char& ch : text) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    return text;
}

// Keywords that end a column's DEFAULT expression.
bool EndsDefault(const CToken& token) {
    static const char* const kWords[] = {"NOT",    "NULL",      "CONSTRAINT", "PRIMARY", "UNIQUE",  "REFERENCES",
                                         "CHECK",  "COLLATE",   "IDENTITY",   "GENERATED", "FOR",   "ENABLE",
                                         "DISABLE", "ROWGUIDCOL", "AUTO_INCREMENT", "AUTOINCREMENT", "LOGGED", "COMPACT"};
    if (token.IsSymbol(',')) return true;
    for (const char* word : kWords)
        if (token.IsWord(word)) return true;
    return false;
}

bool IsConstraintStart(const CSqlCursor& cursor) {
    return cursor.IsAnyWord({"CONSTRAINT", "PRIMARY", "UNIQUE", "FOREIGN", "CHECK"});
}

// Multi-word datatype names: the words after the first that belong to it.
std::string ReadTypeName(CSqlCursor& cursor) {
    CQualifiedName qualified = cursor.ReadName();
    std::string name = qualified.Name();
    const std::string upper = Upper(name);
    auto extend = [&](std::initializer_list<const char*> words) {
        for (const char* word : words) {
            if (!cursor.IsWord(word)) continue;
            name += " " + Upper(cursor.Next()->text);
            return true;
        }
        return false;
    };
    if (upper == "DOUBLE") {
        extend({"PRECISION"});
    } else if (upper == "LONG") {
        extend({"RAW", "VARCHAR", "VARBINARY", "BINARY", "VARGRAPHIC"});
    } else if (upper == "CHARACTER" || upper == "CHAR" || upper == "NCHAR") {
        if (!extend({"VARYING"}) && cursor.AcceptWords({"LARGE", "OBJECT"})) name = upper == "NCHAR" ? "NCLOB" : "CLOB";
    } else if (upper == "NATIONAL") {
        extend({"CHARACTER", "CHAR"});
        extend({"VARYING"});
    } else if (upper == "BINARY" && cursor.AcceptWords({"LARGE", "OBJECT"})) {
        name = "BLOB";
    }
    return name;
}

}  // namespace

struct CDdlImporter::CContext {
    std::string where;  // "file:line"
};

void CDdlImporter::Warn(const CContext& context, const std::string& text) {
    m_report.warnings.push_back(context.where + ": " + text);
}

unsigned long CDdlImporter::FindTable(const CQualifiedName& name) {
    if (name.Empty()) return 0;
    const std::string owner = name.Owner();
    return m_builder.FindEntity(name.Name().c_str(), owner.empty() ? nullptr : owner.c_str(), 0);
}

void CDdlImporter::ImportScript(const std::string& sourceName, const std::string& text, const CDialect* dialect) {
    std::vector<std::string> unresolved;
    const std::string prepared = PrepareScriptText(text, m_tags, unresolved);
    for (const std::string& tag : unresolved)
        m_report.warnings.push_back(sourceName + ": template tag &$" + tag + ". replaced by its name " + tag);
    const CDialect chosen = dialect ? *dialect : DialectOfPlatform(m_builder.GetDbType(), false);
    CSqlScript script = SplitScript(prepared, chosen.EndsStatementsAtNextStart());
    // The statements' tokens point into the text the splitter read.
    const auto source = std::make_shared<const std::string>(std::move(script.source));
    for (const CSqlStatement& statement : script.statements) ImportStatement(statement, sourceName, source);
}

bool CDdlImporter::DeferOrWarn(const CContext& context, const std::string& text) {
    if (m_retrying)
        Warn(context, text);
    else
        m_deferRequested = true;
    return false;
}

void CDdlImporter::ImportStatement(const CSqlStatement& statement, const std::string& source,
                                   const std::shared_ptr<const std::string>& text) {
    if (!m_retrying) ++m_report.statements;
    CContext context{source + ":" + std::to_string(statement.line)};
    CSqlCursor cursor(statement.tokens, *text);
    m_deferRequested = false;
    if (statement.lineCommand) {
        LineCommand(cursor);
        return;
    }
    bool handled = false;
    std::string kind;
    if (cursor.AcceptWord("CREATE")) {
        cursor.AcceptWords({"OR", "REPLACE"});
        cursor.AcceptWord("EDITIONABLE") || cursor.AcceptWord("NONEDITIONABLE");
        const std::size_t at = cursor.Position();
        if (cursor.IsAnyWord({"TABLE", "GLOBAL", "TEMPORARY"}) ||
            (cursor.IsWord("SUMMARY") && cursor.IsWord("TABLE", 1))) {
            kind = "CREATE TABLE";
            handled = CreateTable(cursor, context);
        } else if (cursor.IsAnyWord({"INDEX", "UNIQUE", "CLUSTERED", "NONCLUSTERED", "BITMAP"})) {
            kind = "CREATE INDEX";
            handled = CreateIndex(cursor, context);
        } else if (cursor.IsAnyWord({"VIEW", "FORCE", "NOFORCE"})) {
            kind = "CREATE VIEW";
            handled = CreateView(cursor);
        } else if (cursor.IsAnyWord({"PROCEDURE", "PROC", "FUNCTION", "TRIGGER", "PACKAGE"}) ||
                   (cursor.IsWord("NO") && cursor.IsWord("CASCADE", 1))) {
            kind = "CREATE " + Upper(cursor.Peek()->text);
            handled = CreateCode(cursor, context);
        } else if (cursor.IsAnyWord({"STOGROUP", "DATABASE", "TABLESPACE", "BUFFERPOOL", "LOB"})) {
            kind = "CREATE " + Upper(cursor.Peek()->text);
            handled = CreateStorageObject(cursor);
        } else if (cursor.IsWord("DEFAULT") || cursor.IsWord("RULE")) {
            kind = "CREATE " + Upper(cursor.Peek()->text);
            handled = CreateDefaultOrRule(cursor, cursor.IsWord("RULE"));
        } else if (cursor.IsWord("TYPE") || cursor.IsWord("DISTINCT")) {
            kind = "CREATE TYPE";
            handled = CreateType(cursor, context);
        } else {
            cursor.Seek(at);
            kind = "CREATE " + (cursor.Peek() ? Upper(cursor.Peek()->text) : std::string());
        }
    } else if (cursor.AcceptWord("ALTER")) {
        kind = "ALTER " + (cursor.Peek() ? Upper(cursor.Peek()->text) : std::string());
        if (cursor.IsWord("TABLE")) handled = AlterTable(cursor, context);
    } else if (cursor.IsWord("COMMENT")) {
        kind = "COMMENT ON";
        handled = CommentOn(cursor, context);
    } else if (cursor.IsWord("EXEC") || cursor.IsWord("EXECUTE") ||
               (cursor.Peek() && cursor.Peek()->kind == CTokenKind::Word &&
                Upper(cursor.Peek()->text).rfind("SP_", 0) == 0)) {
        kind = "EXECUTE";
        handled = SystemProcedure(cursor, context);
    } else if (cursor.Peek()) {
        kind = Upper(cursor.Peek()->text);
    }
    if (m_deferRequested) {
        m_deferred.push_back(CDeferred{text, statement, source});
        return;
    }
    if (!handled) m_report.Skip(kind.empty() ? "(empty)" : kind, context.where);
}

// Client commands: only the ones that name the default owner matter.
void CDdlImporter::LineCommand(CSqlCursor& cursor) {
    if (!cursor.AcceptWord("SET")) return;
    const bool sqlId = cursor.AcceptWords({"CURRENT", "SQLID"}) || cursor.AcceptWords({"CURRENT", "SCHEMA"}) ||
                       cursor.AcceptWords({"CURRENT_SCHEMA"}) || cursor.AcceptWord("SCHEMA");
    if (!sqlId) return;
    cursor.AcceptSymbol('=');
    if (const CToken* value = cursor.Next()) {
        if (value->kind == CTokenKind::String || value->IsName()) {
            const std::string id = value->kind == CTokenKind::Word ? Upper(value->text) : value->text;
            m_builder.SetDB2SqlId(id.c_str());
        }
    }
}

bool CDdlImporter::CreateTable(CSqlCursor& cursor, CContext& context) {
    cursor.AcceptWord("SUMMARY");
    cursor.AcceptWords({"GLOBAL", "TEMPORARY"}) || cursor.AcceptWord("TEMPORARY");
    if (!cursor.AcceptWord("TABLE")) return false;
    cursor.AcceptWords({"IF", "NOT", "EXISTS"});
    const CQualifiedName name = cursor.ReadName();
    if (!name.Empty() && cursor.AcceptWord("LIKE")) return CreateTableLike(cursor, name, context);
    const bool objectTable = !name.Empty() && cursor.AcceptWord("OF");
    if (name.Empty() || (!objectTable && !cursor.IsSymbol('('))) {
        Warn(context, "table definition without a column list skipped");
        return false;
    }
    const std::string owner = name.Owner();
    const unsigned long entity =
        m_builder.AddEntity(name.Name().c_str(), owner.empty() ? nullptr : owner.c_str(), 0, 0);
    if (!entity) return false;
    m_report.Count("tables");
    if (objectTable) {
        // An Oracle object table: its columns are the attributes of its
        // object type; its own list, if any, holds constraints.
        const std::string type = cursor.ReadName().Name();
        const auto attributes = m_objectTypes.find(Upper(type));
        if (attributes == m_objectTypes.end()) {
            Warn(context, "table " + name.Name() + " is of object type " + type +
                              ", which the script does not create: it has no columns");
        } else {
            const std::vector<CToken> tokens = Tokenize(attributes->second);
            CSqlCursor typeCursor(tokens, attributes->second);
            Elements(typeCursor, entity, context);
        }
        if (cursor.IsSymbol('(')) Elements(cursor, entity, context);
    } else {
        Elements(cursor, entity, context);
    }
    TableOptions(cursor, entity);
    return true;
}

// A table's parenthesised list of columns and constraints.
void CDdlImporter::Elements(CSqlCursor& cursor, unsigned long entity, CContext& context) {
    cursor.AcceptSymbol('(');
    while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
        const std::size_t before = cursor.Position();
        TableElement(cursor, entity, context);
        while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')')) cursor.SkipItem();
        cursor.AcceptSymbol(',');
        if (cursor.Position() == before) cursor.Skip();
    }
    cursor.AcceptSymbol(')');
}

// CREATE TABLE name LIKE other (DB2): the columns of `other` when the model
// has it; without it (a catalog table, say) the table is made without
// columns, and that is said.
bool CDdlImporter::CreateTableLike(CSqlCursor& cursor, const CQualifiedName& name, CContext& context) {
    const CQualifiedName other = cursor.ReadName();
    const std::string owner = name.Owner(), otherOwner = other.Owner();
    const unsigned long entity = m_builder.AddEntity(name.Name().c_str(), owner.empty() ? nullptr : owner.c_str(), 0, 0);
    if (!entity) return false;
    m_report.Count("tables");
    const unsigned long source =
        m_builder.FindEntity(other.Name().c_str(), otherOwner.empty() ? nullptr : otherOwner.c_str(), 0);
    CVrnApiEntity* model = source ? m_builder.GetEntityPtr(source) : nullptr;
    if (!model) {
        Warn(context, "table " + name.Name() + " is like " + other.Name() +
                          ", which the model does not hold: it has no columns");
        return true;
    }
    // Each column by the name the model's own spelling of its type reads
    // back to the same datatype code, with its width, scale and nullability.
    auto& columns = model->GetAttrPtrList();
    for (POSITION pos = columns.GetHeadPosition(); pos;) {
        CVrnApiAttribute* column = columns.GetNext(pos);
        const CTypeNameRow* type = FindTypeName(column->GetDatatype());
        const std::string typeName =
            type ? type->spellings[static_cast<int>(ETypeDialect::Generic)].name : column->GetDatatype();
        m_builder.AddAttribute(entity, column->GetColumnName(), typeName.c_str(), column->m_width, column->m_scale,
                               column->m_nullOption, 0);
        m_report.Count("columns");
    }
    return true;
}

void CDdlImporter::TableElement(CSqlCursor& cursor, unsigned long entity, CContext& context) {
    std::string constraintName;
    if (cursor.AcceptWord("CONSTRAINT")) {
        constraintName = cursor.ReadName().Name();
        // A named NOT NULL of its own (Oracle) has nothing to add.
        if (cursor.IsWord("NOT") || cursor.IsWord("NULL")) return;
    }
    if (IsConstraintStart(cursor)) {
        if (!TableConstraint(cursor, entity, constraintName, context)) cursor.SkipItem();
        return;
    }
    Column(cursor, entity, context);
}

void CDdlImporter::Column(CSqlCursor& cursor, unsigned long entity, CContext& context) {
    const CToken* first = cursor.Peek();
    if (!first || !(first->IsName() || first->kind == CTokenKind::String)) return;
    const std::string column = cursor.ReadName().Name();
    if (cursor.IsWord("AS") || cursor.IsWord("COMPUTED")) {
        Warn(context, "computed column " + column + " skipped");
        return;
    }
    std::string datatype;
    long width = -1;
    long scale = -1;
    const CToken* typeToken = cursor.Peek();
    if (typeToken && (typeToken->IsName()) && !EndsDefault(*typeToken) && !typeToken->IsWord("DEFAULT")) {
        datatype = ReadTypeName(cursor);
        if (cursor.AcceptSymbol('(')) {
            int position = 0;
            while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
                const CToken* token = cursor.Next();
                if (token->IsSymbol(',')) {
                    ++position;
                } else if (token->kind == CTokenKind::Number) {
                    (position == 0 ? width : scale) = std::strtol(token->text.c_str(), nullptr, 10);
                } else if (token->IsWord("MAX")) {
                    width = 2147483647;
                }
            }
            cursor.AcceptSymbol(')');
        }
        // Type suffixes that are not constraints.
        cursor.AcceptWords({"WITH", "LOCAL", "TIME", "ZONE"}) || cursor.AcceptWords({"WITH", "TIME", "ZONE"});
        cursor.AcceptWord("UNSIGNED");
    }

    int nullOption = m_builder.GetNullableDefault();
    std::string defaultText;
    std::vector<int> attributeCodes;
    std::string generatedExpression;  // GENERATED ALWAYS AS (expression)
    std::vector<std::pair<std::string, std::string>> checks;  // name, text
    bool primary = false;
    bool unique = false;
    bool clustered = false;
    std::string primaryName, uniqueName;
    std::string constraintName;
    CForeignKeyDecl reference;
    bool hasReference = false;
    while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')')) {
        if (cursor.AcceptWord("CONSTRAINT")) {
            constraintName = cursor.ReadName().Name();
        } else if (cursor.AcceptWords({"NOT", "NULL"})) {
            nullOption = 0;
        } else if (cursor.AcceptWord("NULL")) {
            nullOption = 1;
        } else if (cursor.AcceptWords({"NOT", "LOGGED"})) {
            attributeCodes.push_back(code::kNotLogged);
        } else if (cursor.AcceptWords({"PRIMARY", "KEY"})) {
            primary = true;
            primaryName = constraintName;
            clustered = cursor.AcceptWord("CLUSTERED");
            cursor.AcceptWord("NONCLUSTERED");
        } else if (cursor.AcceptWord("UNIQUE")) {
            unique = true;
            uniqueName = constraintName;
            cursor.AcceptWord("CLUSTERED") || cursor.AcceptWord("NONCLUSTERED");
        } else if (cursor.IsWord("REFERENCES")) {
            reference.name = constraintName;
            reference.child = entity;
            reference.childColumns.push_back(column);
            ReferencesClause(cursor, reference);
            hasReference = true;
        } else if (cursor.AcceptWord("CHECK")) {
            checks.emplace_back(constraintName, cursor.ReadParenthesized());
        } else if (cursor.AcceptWord("DEFAULT") || cursor.AcceptWords({"WITH", "DEFAULT"})) {
            defaultText = cursor.ReadUntil([](const CToken& token) { return EndsDefault(token); });
        } else if (cursor.AcceptWord("IDENTITY") || cursor.AcceptWord("AUTOINCREMENT") ||
                   cursor.AcceptWord("AUTO_INCREMENT")) {
            attributeCodes.push_back(code::kIdentity);
            if (cursor.IsSymbol('(')) cursor.SkipItem();
        } else if (cursor.AcceptWord("GENERATED")) {
            const bool always = cursor.AcceptWord("ALWAYS");
            cursor.AcceptWords({"BY", "DEFAULT"});
            if (cursor.AcceptWords({"AS", "IDENTITY"})) {
                attributeCodes.push_back(code::kIdentity);
                attributeCodes.push_back(always ? -code::kGenerated : code::kGenerated);
            } else if (cursor.AcceptWord("AS") && cursor.IsSymbol('(')) {
                generatedExpression = cursor.ReadParenthesized();
                cursor.AcceptWord("STORED") || cursor.AcceptWord("VIRTUAL");
            }
            if (cursor.IsSymbol('(')) cursor.SkipItem();
        } else if (cursor.AcceptWords({"FOR", "BIT", "DATA"})) {
            attributeCodes.push_back(code::kForBitData);
        } else if (cursor.AcceptWord("ROWGUIDCOL")) {
            attributeCodes.push_back(code::kRowGuid);
        } else {
            cursor.SkipItem();
        }
    }

    const unsigned long attribute = m_builder.AddAttribute(entity, column.c_str(), datatype.empty() ? nullptr : datatype.c_str(),
                                                           width, scale, nullOption, 0);
    if (!attribute) return;
    m_report.Count("columns");
    if (!defaultText.empty()) m_builder.SetAttributeStringProperty(attribute, code::kDefaultText, defaultText.c_str());
    for (int propertyCode : attributeCodes)
        m_builder.SetAttributeProperty(attribute, propertyCode < 0 ? -propertyCode : propertyCode, propertyCode < 0 ? 1 : 0);
    if (!generatedExpression.empty()) {
        m_builder.SetAttributeStringProperty(attribute, code::kComputedExpression, generatedExpression.c_str());
        Warn(context, "generated column " + column + ": kept with its expression " + generatedExpression +
                          " as its computed expression");
    }
    if (primary) AddUniqueIndex(entity, primaryName, {column}, true, clustered);
    if (unique) AddUniqueIndex(entity, uniqueName, {column}, false, false);
    for (const auto& [name, text] : checks) {
        m_builder.AddCheckConstraint(name.empty() ? nullptr : name.c_str(), text.c_str(), entity, column.c_str(), 0);
        m_report.Count("check constraints");
    }
    if (hasReference) m_foreignKeys.push_back(reference);
}

void CDdlImporter::ReferencesClause(CSqlCursor& cursor, CForeignKeyDecl& decl) {
    cursor.AcceptWord("REFERENCES");
    decl.parent = cursor.ReadName();
    if (cursor.IsSymbol('(')) cursor.ReadColumnList(decl.parentColumns);
    while (cursor.AcceptWord("ON")) {
        const bool onDelete = cursor.AcceptWord("DELETE");
        if (!onDelete) cursor.AcceptWord("UPDATE");
        int action = 0;
        if (cursor.AcceptWord("CASCADE")) action = onDelete ? code::kOnDeleteCascade : code::kOnUpdateCascade;
        else if (cursor.AcceptWord("RESTRICT")) action = onDelete ? code::kOnDeleteRestrict : code::kOnUpdateRestrict;
        else if (cursor.AcceptWords({"SET", "NULL"})) action = onDelete ? code::kOnDeleteSetNull : 0;
        else if (cursor.AcceptWords({"NO", "ACTION"}) || cursor.AcceptWords({"SET", "DEFAULT"})) action = 0;
        (onDelete ? decl.onDelete : decl.onUpdate) = action;
    }
}

unsigned long CDdlImporter::AddUniqueIndex(unsigned long entity, const std::string& name,
                                           const std::vector<std::string>& columns, bool primary, bool clustered) {
    unsigned long index = 0;
    if (primary) {
        if (m_builder.GetPrimaryKeyIndexId(entity) != 0) return 0;  // a second primary key is not one
        m_builder.AddPrimaryKey(entity, name.empty() ? nullptr : name.c_str());
        for (const std::string& column : columns) m_builder.AddPrimaryKeyColumn(entity, column.c_str(), 0);
        index = m_builder.GetPrimaryKeyIndexId(entity);
        m_report.Count("primary keys");
    } else {
        index = m_builder.AddIndex(entity, name.empty() ? nullptr : name.c_str());
        for (const std::string& column : columns) m_builder.AddIndexColumn(index, column.c_str(), 0, 0);
        m_builder.SetIndexProperty(index, code::kUnique, 1);
        m_report.Count("indexes");
    }
    if (clustered) m_builder.SetIndexProperty(index, code::kCluster, 1);
    return index;
}

bool CDdlImporter::TableConstraint(CSqlCursor& cursor, unsigned long entity, const std::string& name,
                                   CContext& context) {
    const bool primary = cursor.AcceptWords({"PRIMARY", "KEY"});
    if (primary || cursor.AcceptWord("UNIQUE")) {
        cursor.AcceptWord("KEY");
        const bool clustered = cursor.AcceptWord("CLUSTERED");
        cursor.AcceptWord("NONCLUSTERED");
        std::vector<std::string> columns;
        if (!cursor.ReadColumnList(columns)) return false;
        AddUniqueIndex(entity, name, columns, primary, clustered);
        return true;
    }
    if (cursor.AcceptWords({"FOREIGN", "KEY"})) {
        CForeignKeyDecl decl;
        decl.child = entity;
        decl.name = name;
        if (!cursor.ReadColumnList(decl.childColumns)) return false;
        ReferencesClause(cursor, decl);
        m_foreignKeys.push_back(decl);
        return true;
    }
    if (cursor.AcceptWord("CHECK")) {
        const std::string text = cursor.ReadParenthesized();
        m_builder.AddCheckConstraint(name.empty() ? nullptr : name.c_str(), text.c_str(), entity, nullptr, 0);
        m_report.Count("check constraints");
        return true;
    }
    Warn(context, "table element skipped");
    return false;
}

void CDdlImporter::TableOptions(CSqlCursor& cursor, unsigned long entity) {
    CEntityOptions options(m_builder, entity);
    while (!cursor.AtEnd()) {
        if (cursor.AcceptWord("TABLESPACE") || cursor.AcceptWord("ON") || cursor.AcceptWord("IN")) {
            const CQualifiedName space = cursor.ReadName();
            std::string text;
            for (const std::string& part : space.parts) text += (text.empty() ? "" : ".") + part;
            if (!text.empty()) m_builder.SetEntityStringProperty(entity, code::kStorageSpace, text.c_str());
        } else if (cursor.AcceptWord("STORAGE")) {
            StorageClause(cursor, entity, 0, 0);
        } else if (cursor.AcceptWords({"PARTITION", "BY"})) {
            Partitions(cursor, entity, 0);
        } else if (!ReadOption(cursor, kTableOptions, options)) {
            cursor.SkipItem();
        }
    }
}

// STORAGE ( INITIAL n NEXT n MINEXTENTS n MAXEXTENTS n PCTINCREASE n FREELISTS n FREELIST GROUPS n BUFFER_POOL x )
// for a table, an index or a partition.
void CDdlImporter::StorageClause(CSqlCursor& cursor, unsigned long entity, unsigned long index,
                                 unsigned long partition) {
    if (!cursor.AcceptSymbol('(')) return;
    CEntityOptions toEntity(m_builder, entity);
    CIndexOptions toIndex(m_builder, index);
    CPartitionOptions toPartition(m_builder, partition);
    COptionTarget& target = partition ? static_cast<COptionTarget&>(toPartition)
                                      : index ? static_cast<COptionTarget&>(toIndex) : toEntity;
    while (!cursor.AtEnd() && !cursor.IsSymbol(')'))
        if (!ReadOption(cursor, kStorageOptions, target)) cursor.SkipItem();
    cursor.AcceptSymbol(')');
}

// PARTITION BY RANGE|LIST|HASH (columns) [PARTITIONS n] ( PARTITION name VALUES ... [options], ... )
// for a table, or the LOCAL ( PARTITION name [options], ... ) list of an index.
void CDdlImporter::Partitions(CSqlCursor& cursor, unsigned long entity, unsigned long index) {
    if (!index) {
        cursor.AcceptWord("RANGE") || cursor.AcceptWord("LIST") || cursor.AcceptWord("HASH");
        std::vector<std::string> columns;
        cursor.ReadColumnList(columns);
        for (const std::string& column : columns) m_builder.AddTablePartitionColumn(entity, column.c_str(), 0);
        long count = 0;
        if (cursor.AcceptWord("PARTITIONS") && cursor.ReadNumber(count) && !cursor.IsSymbol('(')) {
            for (long i = 1; i <= count && i <= 4096; ++i) {
                const std::string name = "P" + std::to_string(i);
                if (m_builder.AddTablePartition(entity, name.c_str())) m_report.Count("partitions");
            }
            return;
        }
    }
    if (!cursor.AcceptSymbol('(')) return;
    while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
        if (!cursor.AcceptWord("PARTITION")) {
            cursor.SkipItem();
            continue;
        }
        const std::string name = cursor.ReadName().Name();
        const unsigned long partition = index ? m_builder.AddIndexPartition(index, name.c_str())
                                              : m_builder.AddTablePartition(entity, name.c_str());
        if (partition) {
            m_report.Count("partitions");
            if (!index) m_tablePartitions[entity].push_back(name);
        }
        CPartitionOptions options(m_builder, partition);
        while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')')) {
            if (cursor.AcceptWord("VALUES")) {
                cursor.AcceptWords({"LESS", "THAN"});
                const std::string limit = cursor.ReadParenthesized();
                if (partition) m_builder.SetPartitionStringProperty(partition, code::kPartitionLimit, limit.c_str());
            } else if (cursor.AcceptWord("TABLESPACE")) {
                const std::string space = cursor.ReadName().Name();
                if (partition) m_builder.SetPartitionStringProperty(partition, code::kStorageSpace, space.c_str());
            } else if (cursor.AcceptWord("STORAGE")) {
                StorageClause(cursor, entity, index, partition);
            } else if (!ReadOption(cursor, kPartitionOptions, options)) {
                cursor.SkipItem();
            }
        }
        cursor.AcceptSymbol(',');
    }
    cursor.AcceptSymbol(')');
}

bool CDdlImporter::CreateIndex(CSqlCursor& cursor, CContext& context) {
    bool unique = false;
    int clustered = -1;
    for (;;) {
        if (cursor.AcceptWord("UNIQUE")) unique = true;
        else if (cursor.AcceptWord("CLUSTERED")) clustered = 1;
        else if (cursor.AcceptWord("NONCLUSTERED")) clustered = 0;
        else if (!cursor.AcceptWord("BITMAP")) break;
    }
    if (!cursor.AcceptWord("INDEX")) return false;
    const std::string name = cursor.ReadName().Name();
    if (!cursor.AcceptWord("ON")) return false;
    const CQualifiedName table = cursor.ReadName();
    const unsigned long entity = FindTable(table);
    if (!entity) return DeferOrWarn(context, "index " + name + " on unknown table " + table.Name() + " skipped");
    // The model keeps indexes on columns: one on expressions is not written
    // with a column list it does not have.
    const std::size_t listStart = cursor.Position();
    const std::string expression = IndexExpression(cursor);
    if (!expression.empty()) {
        Warn(context, "index " + name + " on " + table.Name() + " skipped: it indexes the expression " + expression +
                          ", and a model keeps indexes on columns only");
        return true;
    }
    cursor.Seek(listStart);
    const unsigned long index = m_builder.AddIndex(entity, name.c_str());
    std::vector<std::string> columns;
    std::vector<bool> descending;
    cursor.ReadColumnList(columns, &descending);
    if (cursor.IsWord("WHERE")) {
        const std::size_t from = cursor.Position();
        while (!cursor.AtEnd()) cursor.SkipItem();
        Warn(context, "index " + name + ": its condition (" + cursor.SourceText(from, cursor.Position()) +
                          ") is not kept: a model has no partial indexes");
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!m_builder.AddIndexColumn(index, columns[i].c_str(), 0, descending[i] ? 1 : 0))
            Warn(context, "index " + name + ": column " + columns[i] + " not found");
    }
    m_builder.SetIndexProperty(index, code::kUnique, unique ? 1 : 0);
    if (clustered >= 0) m_builder.SetIndexProperty(index, code::kCluster, clustered);
    m_report.Count("indexes");
    IndexOptions(cursor, index, entity);
    return true;
}

// The first element of an index's column list that is an expression rather
// than a column with its sort order ("lower(name)", "(a + b)"), or "".
std::string CDdlImporter::IndexExpression(CSqlCursor& cursor) {
    if (!cursor.AcceptSymbol('(')) return std::string();
    while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
        const std::size_t from = cursor.Position();
        bool expression = !cursor.Peek()->IsName() && cursor.Peek()->kind != CTokenKind::String;
        if (!expression) {
            cursor.ReadName();
            // A name followed by "(": a function call, unless a prefix length "(10)".
            const CToken* inside = cursor.Peek(1);
            expression = cursor.IsSymbol('(') && inside && !inside->IsSymbol(')') && inside->kind != CTokenKind::Number;
        }
        while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')')) {
            if (cursor.Peek()->kind == CTokenKind::Symbol && !cursor.IsSymbol('(')) expression = true;
            cursor.SkipItem();
        }
        if (expression) return cursor.SourceText(from, cursor.Position());
        cursor.AcceptSymbol(',');
    }
    return std::string();
}

bool CDdlImporter::IndexOptions(CSqlCursor& cursor, unsigned long index, unsigned long entity) {
    CIndexOptions options(m_builder, index);
    while (!cursor.AtEnd()) {
        if (cursor.AcceptWord("TABLESPACE") || cursor.AcceptWord("ON")) {
            const std::string space = cursor.ReadName().Name();
            m_builder.SetIndexStringProperty(index, code::kStorageSpace, space.c_str());
        } else if (cursor.AcceptWord("STORAGE")) {
            StorageClause(cursor, entity, index, 0);
        } else if (cursor.AcceptWord("LOCAL")) {
            if (cursor.IsSymbol('(')) {
                Partitions(cursor, entity, index);
            } else {
                // A local index without its own list follows the table's partitions.
                for (const std::string& partition : m_tablePartitions[entity])
                    if (m_builder.AddIndexPartition(index, partition.c_str())) m_report.Count("partitions");
            }
        } else if (!ReadOption(cursor, kIndexOptions, options)) {
            cursor.SkipItem();
        }
    }
    return true;
}

bool CDdlImporter::AlterTable(CSqlCursor& cursor, CContext& context) {
    cursor.AcceptWord("TABLE");
    cursor.AcceptWord("ONLY");
    const CQualifiedName table = cursor.ReadName();
    const unsigned long entity = FindTable(table);
    if (!entity) return DeferOrWarn(context, "ALTER TABLE of unknown table " + table.Name() + " skipped");
    bool handled = false;
    while (!cursor.AtEnd()) {
        cursor.AcceptWords({"WITH", "NOCHECK"}) || cursor.AcceptWords({"WITH", "CHECK"});
        if (!cursor.AcceptWord("ADD")) {
            cursor.SkipItem();
            continue;
        }
        const bool parenthesized = cursor.AcceptSymbol('(');
        do {
            std::string name;
            if (cursor.AcceptWord("CONSTRAINT")) name = cursor.ReadName().Name();
            if (cursor.AcceptWord("DEFAULT")) {
                // T-SQL: ADD [CONSTRAINT n] DEFAULT expr FOR column
                const std::string text = cursor.ReadUntil([](const CToken& token) { return token.IsWord("FOR"); });
                cursor.AcceptWord("FOR");
                const std::string column = cursor.ReadName().Name();
                const unsigned long attribute = m_builder.FindAttribute(entity, column.c_str());
                if (attribute) handled = m_builder.SetAttributeStringProperty(attribute, code::kDefaultText, text.c_str());
            } else if (IsConstraintStart(cursor)) {
                handled = TableConstraint(cursor, entity, name, context) || handled;
            } else {
                cursor.AcceptWord("COLUMN");
                Column(cursor, entity, context);
                handled = true;
            }
            // Constraint states (RELY, ENABLE, VALIDATE, USING INDEX ...) up to the next element.
            while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')') && !cursor.IsWord("ADD"))
                cursor.SkipItem();
        } while (cursor.AcceptSymbol(','));
        if (parenthesized) cursor.AcceptSymbol(')');
    }
    return handled;
}

bool CDdlImporter::CreateView(CSqlCursor& cursor) {
    cursor.AcceptWord("FORCE") || cursor.AcceptWord("NOFORCE");
    if (!cursor.AcceptWord("VIEW")) return false;
    const CQualifiedName name = cursor.ReadName();
    const std::string owner = name.Owner();
    const unsigned long entity = m_builder.AddEntity(name.Name().c_str(), owner.empty() ? nullptr : owner.c_str(), 0, 1);
    if (!entity) return false;
    m_builder.GetEntityPtr(entity)->SetViewSQL(CString(cursor.SourceText(0, static_cast<std::size_t>(-1))));
    m_report.Count("views");
    return true;
}

bool CDdlImporter::CreateCode(CSqlCursor& cursor, CContext& context) {
    const std::string text = cursor.SourceText(0, static_cast<std::size_t>(-1));
    if (cursor.AcceptWord("PACKAGE")) {
        const bool body = cursor.AcceptWord("BODY");
        const CQualifiedName name = cursor.ReadName();
        m_builder.AddPackage(name.Name().c_str(), name.Owner().c_str(), text.c_str(), body);
        m_report.Count(body ? "package bodies" : "packages");
        return true;
    }
    if (cursor.AcceptWord("TRIGGER")) {
        const CQualifiedName name = cursor.ReadName();
        int kind = kTriggerAfter;
        unsigned long table = 0;
        while (!cursor.AtEnd() && !cursor.IsAnyWord({"BEGIN", "DECLARE", "AS"})) {
            if (cursor.AcceptWord("BEFORE") || cursor.AcceptWords({"NO", "CASCADE", "BEFORE"})) kind = kTriggerBefore;
            else if (cursor.AcceptWord("INSTEAD")) kind = kTriggerInstead;
            else if (cursor.AcceptWord("ON") && !table) {
                table = FindTable(cursor.ReadName());
                continue;
            } else cursor.SkipItem();
        }
        if (!table && !m_retrying) {
            m_deferRequested = true;  // its table may come in a later source
            return false;
        }
        if (!table) Warn(context, "trigger " + name.Name() + ": its table is unknown");
        m_builder.AddTrigger(name.Name().c_str(), name.Owner().c_str(), text.c_str(), kind, table);
        m_report.Count("triggers");
        return true;
    }
    const bool function = cursor.AcceptWord("FUNCTION");
    if (!function && !cursor.AcceptWord("PROCEDURE") && !cursor.AcceptWord("PROC")) return false;
    const CQualifiedName name = cursor.ReadName();
    m_builder.AddProcedure(name.Name().c_str(), name.Owner().c_str(), text.c_str(), function ? kFunction : kProcedure);
    m_report.Count(function ? "functions" : "procedures");
    return true;
}

bool CDdlImporter::CreateStorageObject(CSqlCursor& cursor) {
    const std::string text = cursor.SourceText(0, static_cast<std::size_t>(-1));
    int kind = kTablespace;
    if (cursor.AcceptWord("STOGROUP")) kind = kStorageGroup;
    else if (cursor.AcceptWord("DATABASE")) kind = kDatabase;
    else if (cursor.AcceptWord("BUFFERPOOL")) kind = kBufferPoolObject;
    else {
        cursor.AcceptWord("LOB");
        cursor.AcceptWord("TABLESPACE");
    }
    const CQualifiedName name = cursor.ReadName();
    if (name.Empty()) return false;
    std::string owner;
    if (kind == kTablespace && cursor.AcceptWord("IN")) owner = cursor.ReadName().Name();  // its database
    m_builder.AddStorageObject(name.Name().c_str(), owner.empty() ? nullptr : owner.c_str(), text.c_str(), kind);
    m_report.Count("storage objects");
    return true;
}

bool CDdlImporter::CreateDefaultOrRule(CSqlCursor& cursor, bool isRule) {
    cursor.Skip();
    const std::string name = cursor.ReadName().Name();
    if (!cursor.AcceptWord("AS")) return false;
    const std::string text = cursor.SourceText(cursor.Position(), static_cast<std::size_t>(-1));
    if (isRule) m_builder.AddRule(name.c_str(), text.c_str(), nullptr);
    else m_builder.AddDefault(name.c_str(), text.c_str(), nullptr);
    m_report.Count(isRule ? "rules" : "defaults");
    return true;
}

// CREATE TYPE name FROM base [NULL | NOT NULL] (T-SQL), CREATE [DISTINCT] TYPE name AS base (DB2).
bool CDdlImporter::CreateType(CSqlCursor& cursor, CContext& context) {
    cursor.AcceptWord("DISTINCT");
    if (!cursor.AcceptWord("TYPE")) return false;
    const std::string name = cursor.ReadName().Name();
    const std::size_t afterName = cursor.Position();
    if ((cursor.AcceptWord("AS") || cursor.AcceptWord("IS")) && cursor.AcceptWord("OBJECT")) {
        // An Oracle object type is no datatype of a column, but the columns
        // of the tables made OF it: its attribute list is kept for them.
        if (!cursor.IsSymbol('(')) return false;
        const std::size_t from = cursor.Position();
        cursor.SkipItem();
        m_objectTypes[Upper(name)] = cursor.SourceText(from, cursor.Position());
        m_report.Count("object types");
        return true;
    }
    cursor.Seek(afterName);
    if (!cursor.AcceptWord("FROM") && !cursor.AcceptWord("AS")) return false;  // other kinds of types are not datatypes
    const std::size_t from = cursor.Position();
    ReadTypeName(cursor);
    if (cursor.IsSymbol('(')) cursor.SkipItem();
    std::string base = cursor.SourceText(from, cursor.Position());
    // "[tinyint]" and the like: the base type without its brackets.
    std::string plain;
    for (char ch : base)
        if (ch != '[' && ch != ']' && ch != '"') plain += ch;
    if (!m_builder.AddUserType(name.c_str(), plain.c_str())) {
        Warn(context, "user datatype " + name + ": base type " + plain + " has no datatype code");
        return false;
    }
    m_report.Count("user datatypes");
    return true;
}

// COMMENT ON TABLE t IS '...' / COMMENT ON COLUMN t.c IS '...'
bool CDdlImporter::CommentOn(CSqlCursor& cursor, CContext& context) {
    if (!cursor.AcceptWords({"COMMENT", "ON"})) return false;
    const bool column = cursor.AcceptWord("COLUMN");
    if (!column && !cursor.AcceptWord("TABLE")) return false;
    CQualifiedName name = cursor.ReadName();
    if (!cursor.AcceptWord("IS")) return false;
    const CToken* text = cursor.Next();
    if (!text || text->kind != CTokenKind::String) return false;
    if (!column) {
        const unsigned long entity = FindTable(name);
        if (!entity) return DeferOrWarn(context, "comment on unknown table " + name.Name() + " skipped");
        return m_builder.SetEntityStringProperty(entity, code::kDefinition, text->text.c_str());
    }
    if (name.parts.size() < 2) return false;
    const std::string columnName = name.parts.back();
    name.parts.pop_back();
    const unsigned long entity = FindTable(name);
    if (!entity) return DeferOrWarn(context, "comment on a column of unknown table " + name.Name() + " skipped");
    const unsigned long attribute = entity ? m_builder.FindAttribute(entity, columnName.c_str()) : 0;
    return attribute && m_builder.SetAttributeStringProperty(attribute, code::kDefinition, text->text.c_str());
}

// EXEC sp_addtype / sp_bindefault / sp_bindrule, with positional or @named arguments.
bool CDdlImporter::SystemProcedure(CSqlCursor& cursor, CContext& context) {
    cursor.AcceptWord("EXEC") || cursor.AcceptWord("EXECUTE");
    const std::string procedure = Upper(cursor.ReadName().Name());
    std::vector<std::string> arguments;  // as written, decorations included
    while (!cursor.AtEnd()) {
        const CToken* token = cursor.Peek();
        if (token->kind == CTokenKind::Word && token->text[0] == '@' && cursor.IsSymbol('=', 1)) {
            cursor.Skip();
            cursor.Skip();
            continue;
        }
        if (token->IsSymbol(',')) {
            cursor.Skip();
            continue;
        }
        const std::size_t from = cursor.Position();
        cursor.ReadName();  // a name, or a string, with any qualification
        if (cursor.Position() == from) cursor.Skip();
        arguments.push_back(cursor.SourceText(from, cursor.Position()));
    }
    auto unquoted = [](const std::string& argument) {
        std::string text = argument;
        if (!text.empty() && (text[0] == 'N' || text[0] == 'n') && text.size() > 1 && text[1] == '\'') text.erase(0, 1);
        if (text.size() >= 2 && text.front() == '\'' && text.back() == '\'') text = text.substr(1, text.size() - 2);
        return text;
    };
    if (procedure == "SP_ADDTYPE" && arguments.size() >= 2) {
        if (!m_builder.AddUserType(arguments[0].c_str(), unquoted(arguments[1]).c_str())) {
            Warn(context, "user datatype " + arguments[0] + ": base type has no datatype code");
            return false;
        }
        m_report.Count("user datatypes");
        return true;
    }
    if ((procedure == "SP_BINDRULE" || procedure == "SP_BINDEFAULT") && arguments.size() >= 2) {
        const bool rule = procedure == "SP_BINDRULE";
        const unsigned long bound = rule ? m_builder.BindRule(arguments[0].c_str(), arguments[1].c_str())
                                         : m_builder.BindDefault(arguments[0].c_str(), arguments[1].c_str());
        if (!bound) {
            Warn(context, std::string(rule ? "rule " : "default ") + arguments[0] + " could not be bound to " +
                              arguments[1]);
            return false;
        }
        m_report.Count("bindings");
        return true;
    }
    return false;
}

void CDdlImporter::Finish() {
    m_retrying = true;
    std::vector<CDeferred> deferred;
    deferred.swap(m_deferred);
    for (const CDeferred& entry : deferred) ImportStatement(entry.statement, entry.source, entry.text);
    m_retrying = false;

    bool anyPending = false;
    for (const CForeignKeyDecl& decl : m_foreignKeys) {
        const unsigned long parent = FindTable(decl.parent);
        const std::string parentName = decl.parent.Name();
        const std::string parentOwner = decl.parent.Owner();
        const unsigned long key =
            m_builder.AddForeignKey(parent, decl.child, decl.name.empty() ? nullptr : decl.name.c_str(),
                                    parentName.c_str(), parentOwner.empty() ? nullptr : parentOwner.c_str());
        if (!key) continue;
        anyPending = anyPending || parent == 0;
        for (std::size_t i = 0; i < decl.childColumns.size(); ++i) {
            const bool named = i < decl.parentColumns.size();
            // Without parent columns the parent's primary key columns are taken in order.
            const char* parentColumn = named ? decl.parentColumns[i].c_str() : (parent ? nullptr : "");
            m_builder.AddForeignKeyColumnPair(key, parentColumn, decl.childColumns[i].c_str(), 0);
        }
        if (decl.onDelete) m_builder.SetForeignKeyProperty(key, decl.onDelete, 1);
        if (decl.onUpdate) m_builder.SetForeignKeyProperty(key, decl.onUpdate, 1);
        m_report.Count("foreign keys");
    }
    m_foreignKeys.clear();
    if (!anyPending) return;
    CStringList messages;
    m_builder.ResolveForeignKeyConstraints(messages);
    for (POSITION pos = messages.GetHeadPosition(); pos;) m_report.messages.push_back(messages.GetNext(pos).str());
}
