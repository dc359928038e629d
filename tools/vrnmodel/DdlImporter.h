// Turns DDL scripts into model objects through the public model builder
// interface, statement by statement. Foreign keys are declared after every
// script has been read, so that their parents and the parents' keys exist
// whatever the order of the script; a parent that is still unknown leaves
// its foreign key pending, and resolution reports it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <VrnIntf.h>

#include "ImportReport.h"
#include "Dialect.h"
#include "SqlCursor.h"
#include "SqlScript.h"

class CDdlImporter {
public:
    CDdlImporter(CVrnAPI& builder, CImportReport& report) : m_builder(builder), m_report(report) {}

    // Template tags &$NAME. are replaced by these values.
    void SetTags(std::vector<std::pair<std::string, std::string>> tags) { m_tags = std::move(tags); }
    // Reads a script in `dialect`; without one, in the dialect of the model's platform.
    void ImportScript(const std::string& sourceName, const std::string& text, const CDialect* dialect = nullptr);
    // A warning of the source's reader, beside the importer's own.
    void Note(const std::string& warning) { m_report.warnings.push_back(warning); }
    // Declares the collected foreign keys and resolves the pending ones.
    void Finish();

private:
    struct CForeignKeyDecl {
        unsigned long child = 0;
        std::string name;
        CQualifiedName parent;
        std::vector<std::string> parentColumns;
        std::vector<std::string> childColumns;
        int onDelete = 0;  // property code, 0 for none
        int onUpdate = 0;
    };
    struct CContext;  // the statement being read

    // A statement about a table that is not known yet, kept to be read again
    // once every source has been read (scripts split over files, such as
    // foreign keys or indexes in a file of their own).
    struct CDeferred {
        std::shared_ptr<const std::string> text;
        CSqlStatement statement;
        std::string source;
    };

    void ImportStatement(const CSqlStatement& statement, const std::string& source,
                         const std::shared_ptr<const std::string>& text);
    // Defers the current statement on the first reading; warns on the second.
    bool DeferOrWarn(const CContext& context, const std::string& text);
    void LineCommand(CSqlCursor& cursor);
    bool CreateTable(CSqlCursor& cursor, CContext& context);
    bool CreateTableLike(CSqlCursor& cursor, const CQualifiedName& name, CContext& context);
    void Elements(CSqlCursor& cursor, unsigned long entity, CContext& context);
    void TableElement(CSqlCursor& cursor, unsigned long entity, CContext& context);
    void Column(CSqlCursor& cursor, unsigned long entity, CContext& context);
    // PRIMARY KEY / UNIQUE / FOREIGN KEY / CHECK after an optional name.
    bool TableConstraint(CSqlCursor& cursor, unsigned long entity, const std::string& name, CContext& context);
    void TableOptions(CSqlCursor& cursor, unsigned long entity);
    void Partitions(CSqlCursor& cursor, unsigned long entity, unsigned long index);
    void StorageClause(CSqlCursor& cursor, unsigned long entity, unsigned long index, unsigned long partition);
    bool CreateIndex(CSqlCursor& cursor, CContext& context);
    bool IndexOptions(CSqlCursor& cursor, unsigned long index, unsigned long entity);
    std::string IndexExpression(CSqlCursor& cursor);
    bool AlterTable(CSqlCursor& cursor, CContext& context);
    bool CreateView(CSqlCursor& cursor);
    bool CreateCode(CSqlCursor& cursor, CContext& context);
    bool CreateStorageObject(CSqlCursor& cursor);
    bool CreateDefaultOrRule(CSqlCursor& cursor, bool isRule);
    bool CreateType(CSqlCursor& cursor, CContext& context);
    bool CommentOn(CSqlCursor& cursor, CContext& context);
    bool SystemProcedure(CSqlCursor& cursor, CContext& context);
    void ReferencesClause(CSqlCursor& cursor, CForeignKeyDecl& decl);
    unsigned long AddUniqueIndex(unsigned long entity, const std::string& name, const std::vector<std::string>& columns,
                                 bool primary, bool clustered);
    unsigned long FindTable(const CQualifiedName& name);
    void Warn(const CContext& context, const std::string& text);

    CVrnAPI& m_builder;
    CImportReport& m_report;
    std::vector<std::pair<std::string, std::string>> m_tags;
    std::vector<CForeignKeyDecl> m_foreignKeys;
    // Oracle object types by upper-cased name: the text of their attribute
    // list, read as the column list of the tables made OF them.
    std::map<std::string, std::string> m_objectTypes;
    std::map<unsigned long, std::vector<std::string>> m_tablePartitions;
    std::vector<CDeferred> m_deferred;
    bool m_retrying = false;
    bool m_deferRequested = false;
};
