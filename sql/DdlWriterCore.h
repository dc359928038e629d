// The writer of a model's DDL, statement by statement: what WriteDdl runs
// from start to end, and what the migration writer calls piece by piece for
// the objects that changed. Internal to sql/.
#pragma once

#include <fnmatch.h>

#include <array>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "DdlWriter.h"
#include "Dialect.h"
#include "OptionForms.h"

class CDdlWriter {
public:
    CDdlWriter(const CModel& model, const CDdlOptions& options, CDdlScript& script)
        : m_model(model), m_options(options), m_script(script),
          m_platform(options.platform >= 0 ? options.platform : model.platform),
          m_dialect(DialectOfPlatform(m_platform, false)), m_types(TypeDialectOf(m_platform)) {}

    // The whole script of the model.
    void Write();
    // Before the first statement: in generic SQL, the names that tables,
    // indexes and columns are written by.
    void Prepare();
    // The script's text and warnings, into the CDdlScript given.
    void Finish();

    const CModel& Model() const { return m_model; }
    const CDialect& Dialect() const { return m_dialect; }
    int Platform() const { return m_platform; }
    int Statements() const { return m_statements; }
    bool IsTransactSql() const { return m_dialect.family == EPlatformFamily::TransactSql; }
    bool IsOracle() const { return m_dialect.family == EPlatformFamily::Oracle; }
    bool IsDb2() const {
        return m_dialect.family == EPlatformFamily::Db2Luw || m_dialect.family == EPlatformFamily::Db2ZOs ||
               m_dialect.family == EPlatformFamily::As400;
    }
    bool IsGeneric() const { return m_dialect.family == EPlatformFamily::Other; }
    // Whether the model's platform is of the target's family: storage
    // objects and code are kept as text in that family's dialect.
    bool SameFamily() const;
    // An expression of the model (a default, a check) as the target spells
    // its quoted names and strings: [a] and N'x' of T-SQL become "a" and 'x'.
    // Functions and operators stay as written.
    std::string Expression(const std::string& text) const;
    // The target's family as messages name it.
    std::string Family() const { return IsGeneric() ? "generic SQL" : m_dialect.Name(); }
    std::string SourceFamily() const;
    // "Oracle 9i (Oracle)", "generic SQL": what a script's first line says it is for.
    std::string Target() const;

    // One statement, ended as the platform's tools expect.
    void Statement(const std::string& text) {
        Out() << text << (IsTransactSql() ? "\nGO\n" : ";\n");
        ++m_statements;
    }
    // A block of procedural code, which holds ";" of its own.
    void CodeBlock(const std::string& text);
    // A comment line (a text of several lines is made one).
    void Comment(const std::string& text);
    // Text as it is: blank lines, a heading made elsewhere.
    void Raw(const std::string& text) { Out() << text; }
    // Text written before whatever is written next, if anything is; a later call replaces it.
    void Pending(const std::string& text) { m_pending = text; }
    // What the target cannot hold: a comment line in the script, counted for the warnings.
    void LeftOut(const std::string& what, const std::string& kind, const std::string& reason, int count = 1);

    bool Included(const CModelTable& table) const {
        return m_options.tablePattern.empty() ||
               fnmatch(m_options.tablePattern.c_str(), table.name.c_str(), FNM_CASEFOLD) == 0;
    }
    // owner.name; in generic SQL the name alone, for SQLite reads a
    // qualifier as the name of an attached database.
    std::string TableName(const CModelTable& table) const;
    std::string IndexName(const CModelIndex& index) const;
    // The column `name` of `table` as written: in generic SQL, renamed where SQLite would take it for another.
    std::string ColumnName(const CModelTable& table, const std::string& name) const;
    std::string ColumnList(const CModelTable& table, const std::vector<std::string>& names) const;
    // db.ts with each part quoted as it needs.
    std::string QuotedParts(const std::string& dotted) const;
    // Whether a primary key's options are written on a unique index of its
    // own: DB2 builds the key on such an index, and a model of a DB2
    // platform takes the index as the key's.
    bool OptionsOnUniqueIndex(const CModelIndex& key) const;

    void StorageObjects();
    void UserDatatypes();
    void DefaultsAndRules();
    void TypeBindings();
    // CREATE TABLE, written by the name `as` when one is given.
    void Table(const CModelTable& table, const std::string& as = std::string());
    bool Writable(const CModelCheck& check);
    bool Whole(const CModelIndex& index, const CModelTable& table, const std::string& what);
    bool Whole(const CModelForeignKey& key, const CModelTable& child);
    // A column's type as the target spells it (or its user datatype's name).
    std::string ColumnType(const CModelColumn& column) const;
    std::string ColumnDefinition(const CModelTable& table, const CModelColumn& column);
    // The definition with the column's own checks after it.
    std::string ColumnElement(const CModelTable& table, const CModelColumn& column);
    std::string PrimaryKeyClause(const CModelTable& table, const CModelIndex& key) const;
    std::string CheckClause(const CModelCheck& check) const;
    std::string ForeignKeyClause(const CModelForeignKey& key);
    void TableStorage(const CModelTable& table, std::string& statement);
    void Options(EOptionOwner owner, const std::array<int, 11>* slots, const std::vector<CModelProperty>& properties,
                 const std::string& of, std::string& statement);
    void Partitions(const CModelTable& table, const std::vector<int>& partitions, bool ofTable, std::string& statement);
    void Indexes(const CModelTable& table);
    // The index at `at` of the table's indexes; the primary key's only when it carries options.
    void Index(const CModelTable& table, std::size_t at);
    void Comments(const CModelTable& table);
    void CommentOn(const std::string& target, const std::string& text);
    void Bindings(const CModelTable& table);
    void ForeignKeys();
    void ForeignKey(const CModelForeignKey& key);
    void Code();
    // A trigger's, procedure's or package's text as its statement.
    void CodeObject(const std::string& kind, const std::string& name, const std::string& text);

private:
    void NameTablesAndIndexes();
    std::ostream& Out() {
        if (!m_pending.empty()) m_out << m_pending;
        m_pending.clear();
        return m_out;
    }

    const CModel& m_model;
    const CDdlOptions& m_options;
    CDdlScript& m_script;
    const int m_platform;
    const CDialect m_dialect;
    const ETypeDialect m_types;
    std::ostringstream m_out;
    std::string m_pending;
    int m_statements = 0;
    std::map<std::pair<std::string, std::string>, int> m_leftOut;  // (kind, reason) -> how many
    // Generic SQL: the name each table and index is written by, unique in
    // the one name space SQLite keeps for both.
    std::vector<std::string> m_tableNames;
    std::map<const CModelIndex*, std::string> m_indexNames;
    std::map<std::pair<const CModelTable*, std::string>, std::string> m_columnNames;
};
