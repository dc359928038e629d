// The parser of one statement, shared by the files that read its kinds:
// DdlParser.cpp reads CREATE, COMMENT and the system procedures,
// AlterParser.cpp reads ALTER TABLE and DROP. Internal to sql/.
#pragma once

#include <string>
#include <vector>

#include "DdlDecl.h"
#include "SqlCursor.h"

// Whether a table constraint starts here (CONSTRAINT, PRIMARY, UNIQUE, FOREIGN, CHECK).
bool IsConstraintStart(const CSqlCursor& cursor);

// One statement being read: the cursor over its tokens and what is said
// about the parts passed over.
class CStatementParser {
public:
    CStatementParser(CSqlCursor& cursor, CStatementDecl& result) : m_cursor(cursor), m_result(result) {}

    void Statement();
    void LineCommand();

private:
    void Warn(std::string text) { m_result.warnings.push_back(std::move(text)); }

    bool CreateTable();
    std::vector<CTableElement> Elements();
    bool TableElement(std::vector<CTableElement>& elements);
    // `inAlter`: the column of an ALTER TABLE, where the next action (ADD,
    // DROP, ALTER, MODIFY) starts the next item.
    CColumnDecl Column(const std::string& name, bool inAlter = false);
    // A type name with its (width, scale) into `column`; false when no type starts here.
    bool ColumnType(CColumnDecl& column);
    bool TableConstraint(const std::string& name, CConstraintDecl& constraint);
    void References(CForeignKeyDecl& reference);
    void TableOptions(CTableDecl& table);
    void StorageClause(COptionList& options);
    void TablePartitions(CTableDecl& table);
    std::vector<CPartitionDecl> PartitionList();
    bool CreateIndex();
    std::string IndexExpression();
    void IndexOptions(CIndexDecl& index);
    bool CreateView();
    bool CreateCode();
    bool CreateStorageObject();
    bool CreateDefaultOrRule();
    bool CreateType();
    bool CommentOn();
    bool SystemProcedure();

    // AlterParser.cpp
    bool AlterTable();
    void AlterAdd(std::vector<CAlterItem>& items);
    void AlterDrop(std::vector<CAlterItem>& items);
    void AlterColumn(std::vector<CAlterItem>& items);
    void ModifyColumns(std::vector<CAlterItem>& items, bool renaming);
    void Rename(std::vector<CAlterItem>& items);
    bool Drop();

    CSqlCursor& m_cursor;
    CStatementDecl& m_result;
};
