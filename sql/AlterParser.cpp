// ALTER TABLE and DROP: the statements that change or remove what earlier
// statements declared. Each dialect's forms are read into the same items:
//   ADD [COLUMN] c ... | ADD [CONSTRAINT n] ... | ADD DEFAULT x FOR c (T-SQL)
//   DROP [COLUMN] c [, c] | DROP (c, c) (Oracle) | DROP CONSTRAINT n |
//     DROP PRIMARY KEY | DROP FOREIGN KEY n | DROP UNIQUE n | DROP CHECK n
//   ALTER [COLUMN] c type [NULL | NOT NULL] (T-SQL) |
//     ALTER [COLUMN] c SET DATA TYPE t | TYPE t | SET / DROP NOT NULL |
//     SET [WITH] DEFAULT x | DROP DEFAULT (DB2, PostgreSQL)
//   MODIFY c ... | MODIFY (c ..., c ...) (Oracle, MySQL)
//   CHANGE [COLUMN] c n ... (MySQL) | RENAME TO n | RENAME COLUMN c TO n
#include <utility>

#include <VrnIntf.h>

#include "StatementParser.h"

namespace {

// Words that start an action of ALTER TABLE, where a list of names stops.
bool IsAlterAction(const CToken* token) {
    return token && (token->IsWord("ADD") || token->IsWord("DROP") || token->IsWord("ALTER") ||
                     token->IsWord("MODIFY") || token->IsWord("CHANGE") || token->IsWord("RENAME"));
}

// What a column's definition in MODIFY or CHANGE says, as a change: the
// parts it leaves out stay as they were. DEFAULT NULL is how Oracle takes a
// default away.
CColumnChangeDecl ChangeOf(const CColumnDecl& column) {
    CColumnChangeDecl change;
    change.column = column.name;
    change.typeGiven = !column.datatype.empty();
    change.datatype = column.datatype;
    change.width = column.width;
    change.scale = column.scale;
    change.nullOption = column.nullOption;
    if (!column.defaultText.empty()) {
        const bool null = AfxCompareNoCase(column.defaultText.c_str(), "NULL") == 0;
        change.defaultChange = null ? CColumnChangeDecl::EDefault::Drop : CColumnChangeDecl::EDefault::Set;
        if (!null) change.defaultText = column.defaultText;
    }
    return change;
}

}  // namespace

bool CStatementParser::AlterTable() {
    CSqlCursor& cursor = m_cursor;
    cursor.AcceptWord("TABLE");
    cursor.AcceptWord("ONLY");
    CAlterDecl alter;
    alter.table = cursor.ReadName();
    while (!cursor.AtEnd()) {
        cursor.AcceptWords({"WITH", "NOCHECK"}) || cursor.AcceptWords({"WITH", "CHECK"});
        if (cursor.AcceptWord("ADD")) AlterAdd(alter.items);
        else if (cursor.AcceptWord("DROP")) AlterDrop(alter.items);
        else if (cursor.AcceptWord("ALTER")) AlterColumn(alter.items);
        else if (cursor.AcceptWord("MODIFY")) ModifyColumns(alter.items, false);
        else if (cursor.AcceptWord("CHANGE")) ModifyColumns(alter.items, true);
        else if (cursor.AcceptWord("RENAME")) Rename(alter.items);
        else cursor.SkipItem();
    }
    if (alter.items.empty()) return false;
    m_result.declaration = std::move(alter);
    return true;
}

void CStatementParser::AlterAdd(std::vector<CAlterItem>& items) {
    CSqlCursor& cursor = m_cursor;
    const bool parenthesized = cursor.AcceptSymbol('(');
    do {
        if (IsAlterAction(cursor.Peek())) return;  // ADD a int, ADD b int
        std::string name;
        if (cursor.AcceptWord("CONSTRAINT")) name = cursor.ReadName().Name();
        if (cursor.AcceptWord("DEFAULT")) {
            CColumnDefaultDecl columnDefault;
            columnDefault.text = cursor.ReadUntil([](const CToken& token) { return token.IsWord("FOR"); });
            cursor.AcceptWord("FOR");
            columnDefault.column = cursor.ReadName().Name();
            items.emplace_back(std::move(columnDefault));
        } else if (IsConstraintStart(cursor)) {
            CConstraintDecl constraint;
            if (TableConstraint(name, constraint)) items.emplace_back(std::move(constraint));
        } else {
            cursor.AcceptWord("COLUMN");
            cursor.AcceptWords({"IF", "NOT", "EXISTS"});
            const CToken* first = cursor.Peek();
            if (first && (first->IsName() || first->kind == CTokenKind::String)) {
                const std::string column = cursor.ReadName().Name();
                if (cursor.IsWord("AS") || cursor.IsWord("COMPUTED"))
                    Warn("computed column " + column + " skipped");
                else
                    items.emplace_back(Column(column, true));
            }
        }
        // Constraint states (RELY, ENABLE, VALIDATE, USING INDEX ...) up to the next element.
        while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')') && !cursor.IsWord("ADD"))
            cursor.SkipItem();
    } while (cursor.AcceptSymbol(','));
    if (parenthesized) cursor.AcceptSymbol(')');
}

void CStatementParser::AlterDrop(std::vector<CAlterItem>& items) {
    CSqlCursor& cursor = m_cursor;
    if (cursor.AcceptWords({"PRIMARY", "KEY"})) {
        items.emplace_back(CDropConstraintDecl{std::string(), true});
    } else if (cursor.AcceptWord("CONSTRAINT") || cursor.AcceptWords({"FOREIGN", "KEY"}) || cursor.AcceptWord("UNIQUE") ||
               cursor.AcceptWord("CHECK") || cursor.AcceptWord("INDEX") || cursor.AcceptWord("KEY")) {
        cursor.AcceptWords({"IF", "EXISTS"});
        const std::string name = cursor.ReadName().Name();
        if (!name.empty()) items.emplace_back(CDropConstraintDecl{name, false});
    } else if (cursor.AcceptSymbol('(')) {
        // Oracle: DROP (a, b)
        while (!cursor.AtEnd() && !cursor.IsSymbol(')')) {
            const std::string name = cursor.ReadName().Name();
            if (!name.empty()) items.emplace_back(CDropColumnDecl{name});
            if (!cursor.AcceptSymbol(',') && !cursor.IsSymbol(')')) cursor.Skip();
        }
        cursor.AcceptSymbol(')');
    } else if (cursor.IsAnyWord({"UNUSED", "PARTITION", "PERIOD", "SYSTEM", "DEFAULT", "ROWGUIDCOL"})) {
        cursor.SkipItem();  // nothing the model holds
    } else {
        // DROP [COLUMN] [IF EXISTS] a [, b] (T-SQL lists several after one COLUMN).
        cursor.AcceptWord("COLUMN");
        cursor.AcceptWords({"IF", "EXISTS"});
        for (;;) {
            const CToken* first = cursor.Peek();
            if (!first || !(first->IsName() || first->kind == CTokenKind::String)) break;
            items.emplace_back(CDropColumnDecl{cursor.ReadName().Name()});
            const CToken* next = cursor.Peek(1);
            if (!cursor.IsSymbol(',') || IsAlterAction(next) || (next && next->IsWord("COLUMN"))) break;
            cursor.Skip();
        }
    }
    cursor.AcceptWords({"CASCADE", "CONSTRAINTS"}) || cursor.AcceptWord("CASCADE") || cursor.AcceptWord("RESTRICT");
    cursor.AcceptSymbol(',');
}

void CStatementParser::AlterColumn(std::vector<CAlterItem>& items) {
    CSqlCursor& cursor = m_cursor;
    if (cursor.IsAnyWord({"CONSTRAINT", "INDEX", "PARTITION", "FOREIGN", "CHECK", "PRIMARY"})) {
        cursor.SkipItem();
        return;
    }
    cursor.AcceptWord("COLUMN");
    const CToken* first = cursor.Peek();
    if (!first || !(first->IsName() || first->kind == CTokenKind::String)) return;
    CColumnChangeDecl change;
    change.column = cursor.ReadName().Name();
    CColumnDecl type;
    while (!cursor.AtEnd() && !cursor.IsSymbol(',')) {
        if (cursor.AcceptWords({"SET", "DATA", "TYPE"}) || cursor.AcceptWord("TYPE")) {
            change.typeGiven = ColumnType(type);
        } else if (cursor.AcceptWords({"SET", "NOT", "NULL"})) {
            change.nullOption = 0;
        } else if (cursor.AcceptWords({"DROP", "NOT", "NULL"})) {
            change.nullOption = 1;
        } else if (cursor.AcceptWords({"SET", "WITH", "DEFAULT"}) || cursor.AcceptWords({"SET", "DEFAULT"})) {
            change.defaultChange = CColumnChangeDecl::EDefault::Set;
            change.defaultText = cursor.ReadUntil([](const CToken& token) { return token.IsSymbol(',') || IsAlterAction(&token); });
        } else if (cursor.AcceptWords({"DROP", "DEFAULT"})) {
            change.defaultChange = CColumnChangeDecl::EDefault::Drop;
        } else if (IsAlterAction(cursor.Peek())) {
            break;
        } else if (cursor.AcceptWords({"NOT", "NULL"})) {
            change.nullOption = 0;
        } else if (cursor.AcceptWord("NULL")) {
            change.nullOption = 1;
        } else if (!change.typeGiven && cursor.Peek()->IsName()) {
            change.typeGiven = ColumnType(type);  // T-SQL: ALTER COLUMN c type
            if (!change.typeGiven) cursor.SkipItem();
        } else {
            cursor.SkipItem();  // USING, COLLATE, ...
        }
    }
    if (change.typeGiven) {
        change.datatype = type.datatype;
        change.width = type.width;
        change.scale = type.scale;
    }
    cursor.AcceptSymbol(',');
    items.emplace_back(std::move(change));
}

// MODIFY [COLUMN] c ..., MODIFY (c ..., d ...), CHANGE [COLUMN] c n ...
void CStatementParser::ModifyColumns(std::vector<CAlterItem>& items, bool renaming) {
    CSqlCursor& cursor = m_cursor;
    const bool parenthesized = cursor.AcceptSymbol('(');
    do {
        if (IsAlterAction(cursor.Peek())) return;
        cursor.AcceptWord("COLUMN");
        const CToken* first = cursor.Peek();
        if (!first || !(first->IsName() || first->kind == CTokenKind::String)) break;
        const std::string name = cursor.ReadName().Name();
        std::string newName;
        if (renaming) newName = cursor.ReadName().Name();
        CColumnChangeDecl change = ChangeOf(Column(renaming ? newName : name, true));
        change.column = name;
        if (renaming && newName != name) change.newName = newName;
        items.emplace_back(std::move(change));
        while (!cursor.AtEnd() && !cursor.IsSymbol(',') && !cursor.IsSymbol(')') && !IsAlterAction(cursor.Peek()))
            cursor.SkipItem();
    } while (cursor.AcceptSymbol(','));
    if (parenthesized) cursor.AcceptSymbol(')');
}

void CStatementParser::Rename(std::vector<CAlterItem>& items) {
    CSqlCursor& cursor = m_cursor;
    if (cursor.AcceptWord("TO") || cursor.AcceptWord("AS")) {
        CRenameTableDecl rename{cursor.ReadName()};
        if (!rename.to.Empty()) items.emplace_back(std::move(rename));
        return;
    }
    if (cursor.IsAnyWord({"CONSTRAINT", "INDEX", "KEY", "PARTITION"})) {
        cursor.SkipItem();
        return;
    }
    cursor.AcceptWord("COLUMN");
    CColumnChangeDecl change;
    change.column = cursor.ReadName().Name();
    if (change.column.empty() || !cursor.AcceptWord("TO")) return;
    change.newName = cursor.ReadName().Name();
    if (!change.newName.empty()) items.emplace_back(std::move(change));
}

bool CStatementParser::Drop() {
    CSqlCursor& cursor = m_cursor;
    CDropDecl drop;
    if (cursor.AcceptWord("TABLE")) drop.kind = EDropKind::Table;
    else if (cursor.AcceptWord("VIEW")) drop.kind = EDropKind::View;
    else if (cursor.AcceptWord("INDEX")) drop.kind = EDropKind::Index;
    else if (cursor.AcceptWord("PROCEDURE") || cursor.AcceptWord("PROC")) drop.kind = EDropKind::Procedure;
    else if (cursor.AcceptWord("FUNCTION")) drop.kind = EDropKind::Function;
    else if (cursor.AcceptWord("TRIGGER")) drop.kind = EDropKind::Trigger;
    else if (cursor.AcceptWord("PACKAGE"))
        drop.kind = cursor.AcceptWord("BODY") ? EDropKind::PackageBody : EDropKind::Package;
    else return false;
    cursor.AcceptWords({"IF", "EXISTS"});
    do {
        CQualifiedName name = cursor.ReadName();
        if (name.Empty()) return false;
        drop.names.push_back(std::move(name));
        if (cursor.IsSymbol('(')) cursor.SkipItem();  // a routine's signature
    } while (cursor.AcceptSymbol(','));
    if (drop.kind == EDropKind::Index && cursor.AcceptWord("ON")) drop.table = cursor.ReadName();
    while (!cursor.AtEnd()) {
        if (cursor.AcceptWord("CASCADE")) drop.cascade = true;
        else cursor.SkipItem();
    }
    m_result.declaration = std::move(drop);
    return true;
}
