#include "DdlParser.h"

#include <cctype>
#include <cstdlib>
#include <utility>

#include "OptionKeywords.h"
#include "StatementParser.h"

namespace {

// The model builder's property codes that the parser sets itself; the
// physical options' codes are in the keyword tables (OptionKeywords.cpp).
constexpr int kIdentity = 82, kRowGuid = 83, kGenerated = 84, kNotLogged = 92, kForBitData = 97;
constexpr int kOnDeleteCascade = 77, kOnDeleteRestrict = 78, kOnDeleteSetNull = 79, kOnUpdateCascade = 80,
              kOnUpdateRestrict = 81;


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


// Multi-word datatype names: the words after the first that belong to it.
std::string ReadTypeName(CSqlCursor& cursor) {
    CQualifiedName qualified = cursor.ReadName();
    std::string name = qualified.Name();
    const std::string upper = UpperAscii(name);
    // A name of several words is spelled in upper case, as one name.
    auto extend = [&](std::initializer_list<const char*> words) {
        for (const char* word : words) {
            if (!cursor.IsWord(word)) continue;
            name = UpperAscii(name) + " " + UpperAscii(cursor.Next()->text);
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

// A length as a column's type gives it: a number, or a large object's
// length with K, M or G (CLOB(1M) is 1048576 long).
long Length(const std::string& text) { return SizeWithUnit(text, 1024); }

// The whole statement's text, from its first token to its last.
std::string WholeText(const CSqlCursor& cursor) { return cursor.SourceText(0, static_cast<std::size_t>(-1)); }

}  // namespace

void CStatementParser::Statement() {
    CSqlCursor& cursor = m_cursor;
    bool read = false;
    if (cursor.AcceptWord("CREATE")) {
        cursor.AcceptWords({"OR", "REPLACE"});
        cursor.AcceptWord("EDITIONABLE") || cursor.AcceptWord("NONEDITIONABLE");
        const std::string next = cursor.Peek() ? UpperAscii(cursor.Peek()->text) : std::string();
        if (cursor.IsAnyWord({"TABLE", "GLOBAL", "TEMPORARY"}) ||
            (cursor.IsWord("SUMMARY") && cursor.IsWord("TABLE", 1))) {
            m_result.kind = "CREATE TABLE";
            read = CreateTable();
        } else if (cursor.IsAnyWord({"INDEX", "UNIQUE", "CLUSTERED", "NONCLUSTERED", "BITMAP"})) {
            m_result.kind = "CREATE INDEX";
            read = CreateIndex();
        } else if (cursor.IsAnyWord({"VIEW", "FORCE", "NOFORCE"})) {
            m_result.kind = "CREATE VIEW";
            read = CreateView();
        } else if (cursor.IsAnyWord({"PROCEDURE", "PROC", "FUNCTION", "TRIGGER", "PACKAGE"}) ||
                   (cursor.IsWord("NO") && cursor.IsWord("CASCADE", 1))) {
            m_result.kind = "CREATE " + next;
            read = CreateCode();
        } else if (cursor.IsAnyWord({"STOGROUP", "DATABASE", "TABLESPACE", "BUFFERPOOL", "LOB"})) {
            m_result.kind = "CREATE " + next;
            read = CreateStorageObject();
        } else if (cursor.IsWord("DEFAULT") || cursor.IsWord("RULE")) {
            m_result.kind = "CREATE " + next;
            read = CreateDefaultOrRule();
        } else if (cursor.IsWord("TYPE") || cursor.IsWord("DISTINCT")) {
            m_result.kind = "CREATE TYPE";
            read = CreateType();
        } else {
            m_result.kind = "CREATE " + next;
        }
    } else if (cursor.AcceptWord("ALTER")) {
        m_result.kind = "ALTER " + (cursor.Peek() ? UpperAscii(cursor.Peek()->text) : std::string());
        if (cursor.IsWord("TABLE")) read = AlterTable();
    } else if (cursor.AcceptWord("DROP")) {
        m_result.kind = "DROP " + (cursor.Peek() ? UpperAscii(cursor.Peek()->text) : std::string());
        read = Drop();
    } else if (cursor.IsWord("COMMENT")) {
        m_result.kind = "COMMENT ON";
        read = CommentOn();
    } else if (cursor.IsWord("EXEC") || cursor.IsWord("EXECUTE") ||
               (cursor.Peek() && cursor.Peek()->kind == CTokenKind::Word &&
                UpperAscii(cursor.Peek()->text).rfind("SP_", 0) == 0)) {
        m_result.kind = "EXECUTE";
        read = SystemProcedure();
    } else if (cursor.Peek()) {
        m_result.kind = UpperAscii(cursor.Peek()->text);
    }
    if (!read) m_result.declaration = std::monostate();
    if (m_result.kind.empty()) m_result.kind = "(empty)";
}

// Client commands: only the ones that name the default owner declare anything.
void CStatementParser::LineCommand() {
    CSqlCursor& cursor = m_cursor;
    m_result.kind = cursor.Peek() ? UpperAscii(cursor.Peek()->text) : std::string("(empty)");
    if (!cursor.AcceptWord("SET")) return;
    const bool sqlId = cursor.AcceptWords({"CURRENT", "SQLID"}) || cursor.AcceptWords({"CURRENT", "SCHEMA"}) ||
                       cursor.AcceptWords({"CURRENT_SCHEMA"}) || cursor.AcceptWord("SCHEMA");
    if (!sqlId) return;
    cursor.AcceptSymbol('=');
    const CToken* value = cursor.Next();
    if (value && (value->kind == CTokenKind::String || value->IsName()))
        m_result.declaration = CSqlIdDecl{value->kind == CTokenKind::Word ? UpperAscii(value->text) : value->text};
}

bool CStatementParser::CreateTable() {
    CSqlCursor& cursor = m_cursor;
    cursor.AcceptWord("SUMMARY");
    cursor.AcceptWords({"GLOBAL", "TEMPORARY"}) || cursor.AcceptWord("TEMPORARY");
    if (!cursor.AcceptWord("TABLE")) return false;
    cursor.AcceptWords({"IF", "NOT", "EXISTS"});
    CTableDecl table;
    table.name = cursor.ReadName();
    if (!table.name.Empty() && cursor.AcceptWord("LIKE")) {
        table.like = cursor.ReadName();
        m_result.declaration = std::move(table);
        return true;
    }
    const bool objectTable = !table.name.Empty() && cursor.AcceptWord("OF");
    if (table.name.Empty() || (!objectTable && !cursor.IsSymbol('('))) {
        Warn("table definition without a column list skipped");
        return false;
    }
    if (objectTable) {
        // An Oracle object table: its columns are the attributes of its
        // object type; its own list, if any, holds constraints.
        table.ofType = cursor.ReadName().Name();
        if (cursor.IsSymbol('(')) table.elements = Elements();
    } else {
        table.elements = Elements();
    }
    TableOptions(table);
    m_result.declaration = std::move(table);
    return true;
}

// A table's parenthesised list of columns and constraints.
std::vector<CTableElement> CStatementParser::Elements() {
    CSqlCursor& cursor = m_cursor;
    std::vector<CTableElement> elements;
    cursor.AcceptSymbol('(');
    while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
        const std::size_t before = cursor.Position();
        TableElement(elements);
        while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')')) cursor.SkipItem();
        cursor.AcceptSymbol(',');
        if (cursor.Position() == before) cursor.Skip();
    }
    cursor.AcceptSymbol(')');
    return elements;
}

// One column or table constraint onto `elements`; false when there was none to read.
bool CStatementParser::TableElement(std::vector<CTableElement>& elements) {
    CSqlCursor& cursor = m_cursor;
    std::string constraintName;
    if (cursor.AcceptWord("CONSTRAINT")) {
        constraintName = cursor.ReadName().Name();
        // A named NOT NULL of its own (Oracle) has nothing to add.
        if (cursor.IsWord("NOT") || cursor.IsWord("NULL")) return false;
    }
    if (IsConstraintStart(cursor)) {
        CConstraintDecl constraint;
        if (!TableConstraint(constraintName, constraint)) {
            cursor.SkipItem();
            return false;
        }
        elements.emplace_back(std::move(constraint));
        return true;
    }
    const CToken* first = cursor.Peek();
    if (!first || !(first->IsName() || first->kind == CTokenKind::String)) return false;
    const std::string name = cursor.ReadName().Name();
    if (cursor.IsWord("AS") || cursor.IsWord("COMPUTED")) {
        Warn("computed column " + name + " skipped");
        return false;
    }
    elements.emplace_back(Column(name));
    return true;
}

// A column's type and everything after it, up to the next element.
CColumnDecl CStatementParser::Column(const std::string& name, bool inAlter) {
    CSqlCursor& cursor = m_cursor;
    CColumnDecl column;
    column.name = name;
    ColumnType(column);

    // Inline constraints are applied keys first, then checks, then the
    // reference. A CONSTRAINT name names the one constraint that follows it.
    std::vector<CConstraintDecl> keys, checks, references;
    std::string constraintName;
    while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')') &&
           !(inAlter && cursor.IsAnyWord({"ADD", "DROP", "ALTER", "MODIFY"}))) {
        if (cursor.AcceptWord("CONSTRAINT")) {
            constraintName = cursor.ReadName().Name();
        } else if (cursor.AcceptWords({"NOT", "NULL"})) {
            column.nullOption = 0;
            constraintName.clear();  // a named NOT NULL (Oracle) names no key or check
        } else if (cursor.AcceptWord("NULL")) {
            column.nullOption = 1;
        } else if (cursor.AcceptWords({"NOT", "LOGGED"})) {
            column.properties.emplace_back(kNotLogged, 0);
        } else if ((cursor.IsWord("PRIMARY") && cursor.IsWord("KEY", 1)) || cursor.IsWord("UNIQUE")) {
            CConstraintDecl key;
            key.kind = cursor.AcceptWord("UNIQUE") ? EConstraintKind::Unique : EConstraintKind::PrimaryKey;
            if (key.kind == EConstraintKind::PrimaryKey) cursor.AcceptWords({"PRIMARY", "KEY"});
            key.name = std::exchange(constraintName, std::string());
            key.columns = {name};
            key.clustered = cursor.AcceptWord("CLUSTERED");
            cursor.AcceptWord("NONCLUSTERED");
            // Saying PRIMARY KEY (or UNIQUE) twice of one column makes one key.
            bool seen = false;
            for (const CConstraintDecl& other : keys) seen = seen || other.kind == key.kind;
            if (!seen) keys.push_back(std::move(key));
        } else if (cursor.IsWord("REFERENCES")) {
            CConstraintDecl reference;
            reference.kind = EConstraintKind::ForeignKey;
            reference.name = constraintName;
            reference.reference.name = std::exchange(constraintName, std::string());
            reference.reference.childColumns = {name};
            References(reference.reference);
            references.assign(1, std::move(reference));
        } else if (cursor.AcceptWord("CHECK")) {
            CConstraintDecl check;
            check.name = std::exchange(constraintName, std::string());
            check.column = name;
            check.checkText = cursor.ReadParenthesized();
            checks.push_back(std::move(check));
        } else if (cursor.AcceptWord("DEFAULT") || cursor.AcceptWords({"WITH", "DEFAULT"})) {
            // DEFAULT NULL declares a default of its own; NULL after a default says the column is nullable.
            if (cursor.IsWord("NULL"))
                column.defaultText = cursor.Next()->text;
            else
                column.defaultText = cursor.ReadUntil([](const CToken& token) { return EndsDefault(token); });
        } else if (cursor.AcceptWord("IDENTITY") || cursor.AcceptWord("AUTOINCREMENT") ||
                   cursor.AcceptWord("AUTO_INCREMENT")) {
            column.properties.emplace_back(kIdentity, 0);
            if (cursor.IsSymbol('(')) cursor.SkipItem();
        } else if (cursor.AcceptWord("GENERATED")) {
            const bool always = cursor.AcceptWord("ALWAYS");
            cursor.AcceptWords({"BY", "DEFAULT"});
            if (cursor.AcceptWords({"AS", "IDENTITY"})) {
                column.properties.emplace_back(kIdentity, 0);
                column.properties.emplace_back(kGenerated, always ? 1 : 0);
            } else if (cursor.AcceptWord("AS") && cursor.IsSymbol('(')) {
                column.generatedExpression = cursor.ReadParenthesized();
                cursor.AcceptWord("STORED") || cursor.AcceptWord("VIRTUAL");
            }
            if (cursor.IsSymbol('(')) cursor.SkipItem();
        } else if (cursor.AcceptWords({"FOR", "BIT", "DATA"})) {
            column.properties.emplace_back(kForBitData, 0);
        } else if (cursor.AcceptWord("ROWGUIDCOL")) {
            column.properties.emplace_back(kRowGuid, 0);
        } else {
            cursor.SkipItem();
        }
    }
    for (auto* group : {&keys, &checks, &references})
        for (CConstraintDecl& constraint : *group) column.constraints.push_back(std::move(constraint));
    return column;
}

bool CStatementParser::ColumnType(CColumnDecl& column) {
    CSqlCursor& cursor = m_cursor;
    const CToken* typeToken = cursor.Peek();
    if (!typeToken || !typeToken->IsName() || EndsDefault(*typeToken) || typeToken->IsWord("DEFAULT")) return false;
    column.datatype = ReadTypeName(cursor);
    if (cursor.AcceptSymbol('(')) {
        int position = 0;
        while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
            const CToken* token = cursor.Next();
            if (token->IsSymbol(',')) {
                ++position;
            } else if (token->kind == CTokenKind::Number) {
                (position == 0 ? column.width : column.scale) = Length(token->text);
            } else if (token->IsWord("MAX")) {
                column.width = 2147483647;
            }
        }
        cursor.AcceptSymbol(')');
    }
    // Type suffixes that are not constraints.
    cursor.AcceptWords({"WITH", "LOCAL", "TIME", "ZONE"}) || cursor.AcceptWords({"WITH", "TIME", "ZONE"});
    cursor.AcceptWord("UNSIGNED");
    return true;
}

void CStatementParser::References(CForeignKeyDecl& reference) {
    CSqlCursor& cursor = m_cursor;
    cursor.AcceptWord("REFERENCES");
    reference.parent = cursor.ReadName();
    if (cursor.IsSymbol('(')) cursor.ReadColumnList(reference.parentColumns);
    while (cursor.AcceptWord("ON")) {
        const bool onDelete = cursor.AcceptWord("DELETE");
        if (!onDelete) cursor.AcceptWord("UPDATE");
        int action = 0;
        if (cursor.AcceptWord("CASCADE")) action = onDelete ? kOnDeleteCascade : kOnUpdateCascade;
        else if (cursor.AcceptWord("RESTRICT")) action = onDelete ? kOnDeleteRestrict : kOnUpdateRestrict;
        else if (cursor.AcceptWords({"SET", "NULL"})) action = onDelete ? kOnDeleteSetNull : 0;
        else if (cursor.AcceptWords({"NO", "ACTION"}) || cursor.AcceptWords({"SET", "DEFAULT"})) action = 0;
        (onDelete ? reference.onDelete : reference.onUpdate) = action;
    }
}

// PRIMARY KEY / UNIQUE / FOREIGN KEY / CHECK after an optional name.
bool CStatementParser::TableConstraint(const std::string& name, CConstraintDecl& constraint) {
    CSqlCursor& cursor = m_cursor;
    constraint.name = name;
    const bool primary = cursor.AcceptWords({"PRIMARY", "KEY"});
    if (primary || cursor.AcceptWord("UNIQUE")) {
        constraint.kind = primary ? EConstraintKind::PrimaryKey : EConstraintKind::Unique;
        cursor.AcceptWord("KEY");
        constraint.clustered = cursor.AcceptWord("CLUSTERED");
        cursor.AcceptWord("NONCLUSTERED");
        return cursor.ReadColumnList(constraint.columns);
    }
    if (cursor.AcceptWords({"FOREIGN", "KEY"})) {
        constraint.kind = EConstraintKind::ForeignKey;
        constraint.reference.name = name;
        if (!cursor.ReadColumnList(constraint.reference.childColumns)) return false;
        References(constraint.reference);
        return true;
    }
    if (cursor.AcceptWord("CHECK")) {
        constraint.kind = EConstraintKind::Check;
        constraint.checkText = cursor.ReadParenthesized();
        return true;
    }
    Warn("table element skipped");
    return false;
}

void CStatementParser::TableOptions(CTableDecl& table) {
    CSqlCursor& cursor = m_cursor;
    while (!cursor.AtEnd()) {
        if (cursor.AcceptWords({"INDEX", "IN"}) || cursor.AcceptWords({"LONG", "IN"})) {
            // DB2's spaces for a table's indexes and large objects: the model
            // keeps one storage space a table, the one its rows are in.
            cursor.ReadName();
        } else if (cursor.AcceptWord("TABLESPACE") || cursor.AcceptWord("ON") || cursor.AcceptWord("IN")) {
            const CQualifiedName space = cursor.ReadName();
            std::string text;
            for (const std::string& part : space.parts) text += (text.empty() ? "" : ".") + part;
            if (!text.empty()) table.storageSpace = text;
        } else if (cursor.AcceptWord("STORAGE")) {
            StorageClause(table.options);
        } else if (cursor.AcceptWords({"PARTITION", "BY"})) {
            TablePartitions(table);
        } else if (!ReadOption(cursor, kTableOptions, table.options)) {
            cursor.SkipItem();
        }
    }
}

// STORAGE ( INITIAL n NEXT n MINEXTENTS n MAXEXTENTS n PCTINCREASE n FREELISTS n FREELIST GROUPS n BUFFER_POOL x )
// of a table, an index or a partition.
void CStatementParser::StorageClause(COptionList& options) {
    CSqlCursor& cursor = m_cursor;
    if (!cursor.AcceptSymbol('(')) return;
    while (!cursor.AtEnd() && !cursor.IsSymbol(')'))
        if (!ReadOption(cursor, kStorageOptions, options)) cursor.SkipItem();
    cursor.AcceptSymbol(')');
}

// PARTITION BY RANGE|LIST|HASH (columns) then PARTITIONS n, or a list of partitions.
void CStatementParser::TablePartitions(CTableDecl& table) {
    CSqlCursor& cursor = m_cursor;
    cursor.AcceptWord("RANGE") || cursor.AcceptWord("LIST") || cursor.AcceptWord("HASH");
    cursor.ReadColumnList(table.partitionColumns);
    // Oracle's interval partitioning: the server makes the later partitions itself.
    if (cursor.AcceptWord("INTERVAL")) cursor.SkipItem();
    if (cursor.AcceptWords({"STORE", "IN"})) cursor.SkipItem();
    long count = 0;
    if (cursor.AcceptWord("PARTITIONS") && cursor.ReadNumber(count) && !cursor.IsSymbol('(')) {
        // Hash partitions by number are named as the server names them: P1, P2, ...
        constexpr long kMostPartitions = 4096;
        for (long i = 1; i <= count && i <= kMostPartitions; ++i) {
            CPartitionDecl partition;
            partition.name = "P" + std::to_string(i);
            table.partitions.push_back(std::move(partition));
        }
        return;
    }
    table.partitions = PartitionList();
}

// ( PARTITION name [VALUES [LESS THAN] (...)] [options], ... ) of a table, or an index's LOCAL list.
std::vector<CPartitionDecl> CStatementParser::PartitionList() {
    CSqlCursor& cursor = m_cursor;
    std::vector<CPartitionDecl> partitions;
    if (!cursor.AcceptSymbol('(')) return partitions;
    while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
        if (!cursor.AcceptWord("PARTITION")) {
            cursor.SkipItem();
            continue;
        }
        CPartitionDecl partition;
        partition.name = cursor.ReadName().Name();
        while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')')) {
            if (cursor.AcceptWord("VALUES")) {
                cursor.AcceptWords({"LESS", "THAN"});
                partition.limit = cursor.ReadParenthesized();
            } else if (cursor.AcceptWord("TABLESPACE")) {
                partition.storageSpace = cursor.ReadName().Name();
            } else if (cursor.AcceptWord("STORAGE")) {
                StorageClause(partition.options);
            } else if (!ReadOption(cursor, kPartitionOptions, partition.options)) {
                cursor.SkipItem();
            }
        }
        cursor.AcceptSymbol(',');
        partitions.push_back(std::move(partition));
    }
    cursor.AcceptSymbol(')');
    return partitions;
}

bool CStatementParser::CreateIndex() {
    CSqlCursor& cursor = m_cursor;
    CIndexDecl index;
    for (;;) {
        if (cursor.AcceptWord("UNIQUE")) index.unique = true;
        else if (cursor.AcceptWord("CLUSTERED")) index.clustered = 1;
        else if (cursor.AcceptWord("NONCLUSTERED")) index.clustered = 0;
        else if (!cursor.AcceptWord("BITMAP")) break;
    }
    if (!cursor.AcceptWord("INDEX")) return false;
    index.name = cursor.ReadName().Name();
    if (!cursor.AcceptWord("ON")) return false;
    index.table = cursor.ReadName();
    const std::size_t listStart = cursor.Position();
    index.expression = IndexExpression();
    if (!index.expression.empty()) {
        m_result.declaration = std::move(index);
        return true;
    }
    cursor.Seek(listStart);
    cursor.ReadColumnList(index.columns, &index.descending);
    IndexOptions(index);
    m_result.declaration = std::move(index);
    return true;
}

// The first element of an index's column list that is an expression rather
// than a column with its sort order ("lower(name)", "(a + b)"), or "".
std::string CStatementParser::IndexExpression() {
    CSqlCursor& cursor = m_cursor;
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

void CStatementParser::IndexOptions(CIndexDecl& index) {
    CSqlCursor& cursor = m_cursor;
    while (!cursor.AtEnd()) {
        if (cursor.IsWord("WHERE")) {
            // A partial index's condition, which runs to the next option (T-SQL puts WITH and ON after it).
            const std::size_t from = cursor.Position();
            cursor.Skip();
            cursor.ReadUntil([](const CToken& token) {
                return token.IsWord("ON") || token.IsWord("WITH") || token.IsWord("INCLUDE") || token.IsWord("TABLESPACE");
            });
            index.condition = cursor.SourceText(from, cursor.Position());
        } else if (cursor.AcceptWord("TABLESPACE") || cursor.AcceptWord("ON")) {
            index.storageSpace = cursor.ReadName().Name();
        } else if (cursor.AcceptWord("STORAGE")) {
            StorageClause(index.options);
        } else if (cursor.AcceptWord("LOCAL")) {
            index.local = true;
            if (cursor.IsSymbol('(')) index.partitions = PartitionList();
        } else if (!ReadOption(cursor, kIndexOptions, index.options)) {
            cursor.SkipItem();
        }
    }
}

bool CStatementParser::CreateView() {
    CSqlCursor& cursor = m_cursor;
    cursor.AcceptWord("FORCE") || cursor.AcceptWord("NOFORCE");
    if (!cursor.AcceptWord("VIEW")) return false;
    CViewDecl view;
    view.name = cursor.ReadName();
    if (view.name.Empty()) return false;
    view.text = WholeText(cursor);
    m_result.declaration = std::move(view);
    return true;
}

bool CStatementParser::CreateCode() {
    CSqlCursor& cursor = m_cursor;
    CCodeDecl code;
    code.text = WholeText(cursor);
    if (cursor.AcceptWord("PACKAGE")) {
        code.kind = cursor.AcceptWord("BODY") ? ECodeKind::PackageBody : ECodeKind::Package;
        code.name = cursor.ReadName();
    } else if (cursor.AcceptWord("TRIGGER")) {
        code.kind = ECodeKind::Trigger;
        code.name = cursor.ReadName();
        while (!cursor.AtEnd() && !cursor.IsAnyWord({"BEGIN", "DECLARE", "AS"})) {
            if (cursor.AcceptWord("BEFORE") || cursor.AcceptWords({"NO", "CASCADE", "BEFORE"}))
                code.triggerKind = ETriggerKind::Before;
            else if (cursor.AcceptWord("INSTEAD"))
                code.triggerKind = ETriggerKind::InsteadOf;
            else if (code.table.Empty() && cursor.AcceptWord("ON"))
                code.table = cursor.ReadName();
            else
                cursor.SkipItem();
        }
    } else {
        const bool function = cursor.AcceptWord("FUNCTION");
        if (!function && !cursor.AcceptWord("PROCEDURE") && !cursor.AcceptWord("PROC")) return false;
        code.kind = function ? ECodeKind::Function : ECodeKind::Procedure;
        code.name = cursor.ReadName();
    }
    m_result.declaration = std::move(code);
    return true;
}

bool CStatementParser::CreateStorageObject() {
    CSqlCursor& cursor = m_cursor;
    CStorageObjectDecl object;
    object.text = WholeText(cursor);
    if (cursor.AcceptWord("STOGROUP")) {
        object.kind = EStorageObjectKind::StorageGroup;
    } else if (cursor.AcceptWord("DATABASE")) {
        object.kind = EStorageObjectKind::Database;
    } else if (cursor.AcceptWord("BUFFERPOOL")) {
        object.kind = EStorageObjectKind::BufferPool;
    } else {
        cursor.AcceptWord("LOB");
        cursor.AcceptWord("TABLESPACE");
    }
    object.name = cursor.ReadName().Name();
    if (object.name.empty()) return false;
    if (object.kind == EStorageObjectKind::Tablespace && cursor.AcceptWord("IN")) object.database = cursor.ReadName().Name();
    m_result.declaration = std::move(object);
    return true;
}

bool CStatementParser::CreateDefaultOrRule() {
    CSqlCursor& cursor = m_cursor;
    CDefaultOrRuleDecl object;
    object.rule = cursor.IsWord("RULE");
    cursor.Skip();
    object.name = cursor.ReadName().Name();
    if (!cursor.AcceptWord("AS")) return false;
    object.text = cursor.SourceText(cursor.Position(), static_cast<std::size_t>(-1));
    m_result.declaration = std::move(object);
    return true;
}

// CREATE TYPE name FROM base [NULL | NOT NULL] (T-SQL), CREATE [DISTINCT] TYPE name AS base (DB2),
// CREATE TYPE name AS OBJECT (attributes) (Oracle).
bool CStatementParser::CreateType() {
    CSqlCursor& cursor = m_cursor;
    cursor.AcceptWord("DISTINCT");
    if (!cursor.AcceptWord("TYPE")) return false;
    const std::string name = cursor.ReadName().Name();
    const std::size_t afterName = cursor.Position();
    if ((cursor.AcceptWord("AS") || cursor.AcceptWord("IS")) && cursor.AcceptWord("OBJECT")) {
        if (!cursor.IsSymbol('(')) return false;
        m_result.declaration = CObjectTypeDecl{name, Elements()};
        return true;
    }
    cursor.Seek(afterName);
    if (!cursor.AcceptWord("FROM") && !cursor.AcceptWord("AS")) return false;  // other kinds of types are not datatypes
    if (cursor.IsWord("TABLE")) return false;  // T-SQL table types are no datatype of a column
    const std::size_t from = cursor.Position();
    ReadTypeName(cursor);
    if (cursor.IsSymbol('(')) cursor.SkipItem();
    // "[tinyint]" and the like: the base type without its brackets.
    std::string base;
    for (char ch : cursor.SourceText(from, cursor.Position()))
        if (ch != '[' && ch != ']' && ch != '"') base += ch;
    m_result.declaration = CUserTypeDecl{name, base};
    return true;
}

// COMMENT ON TABLE t IS '...' / COMMENT ON COLUMN t.c IS '...'
bool CStatementParser::CommentOn() {
    CSqlCursor& cursor = m_cursor;
    if (!cursor.AcceptWords({"COMMENT", "ON"})) return false;
    const bool column = cursor.AcceptWord("COLUMN");
    if (!column && !cursor.AcceptWord("TABLE")) return false;
    CCommentDecl comment;
    comment.table = cursor.ReadName();
    if (!cursor.AcceptWord("IS")) return false;
    const CToken* text = cursor.Next();
    if (!text || text->kind != CTokenKind::String) return false;
    comment.text = text->text;
    if (column) {
        if (comment.table.parts.size() < 2) return false;
        comment.column = comment.table.parts.back();
        comment.table.parts.pop_back();
    }
    m_result.declaration = std::move(comment);
    return true;
}

// EXEC sp_addtype / sp_bindefault / sp_bindrule, with positional or @named arguments.
bool CStatementParser::SystemProcedure() {
    CSqlCursor& cursor = m_cursor;
    cursor.AcceptWord("EXEC") || cursor.AcceptWord("EXECUTE");
    const std::string procedure = UpperAscii(cursor.ReadName().Name());
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
    if (procedure.rfind("SP_", 0) == 0) m_result.kind = "EXECUTE " + procedure;
    if (arguments.size() < 2) return false;
    if (procedure == "SP_ADDTYPE") {
        std::string base = arguments[1];
        if (base.size() > 1 && (base[0] == 'N' || base[0] == 'n') && base[1] == '\'') base.erase(0, 1);
        if (base.size() >= 2 && base.front() == '\'' && base.back() == '\'') base = base.substr(1, base.size() - 2);
        m_result.declaration = CUserTypeDecl{arguments[0], base};
        return true;
    }
    if (procedure == "SP_BINDRULE" || procedure == "SP_BINDEFAULT") {
        m_result.declaration = CBindingDecl{procedure == "SP_BINDRULE", arguments[0], arguments[1]};
        return true;
    }
    return false;
}

bool IsConstraintStart(const CSqlCursor& cursor) {
    return cursor.IsAnyWord({"CONSTRAINT", "PRIMARY", "UNIQUE", "FOREIGN", "CHECK"});
}

CStatementDecl ParseStatement(const CSqlStatement& statement, const std::string& source) {
    CStatementDecl result;
    result.line = statement.line;
    CSqlCursor cursor(statement.tokens, source);
    CStatementParser parser(cursor, result);
    if (statement.lineCommand)
        parser.LineCommand();
    else
        parser.Statement();
    return result;
}

std::vector<CStatementDecl> ParseScript(const std::string& text, const CDialect& dialect) {
    std::vector<std::string> unresolved;
    std::vector<CStatementDecl> statements;
    ForEachStatement(PrepareScriptText(text, {}, unresolved), dialect.EndsStatementsAtNextStart(),
                     [&](const CSqlStatement& statement, const std::string& source) {
                         statements.push_back(ParseStatement(statement, source));
                     });
    return statements;
}
