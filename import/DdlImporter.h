// Applies the declarations of DDL scripts to a model through the public
// model builder interface: every builder call of an import is made here.
// Statements are held as declarations until Finish, so that the drops and
// changes of later statements apply to them (DeclaredScript.h); the model is
// built from the end state.
// A statement about a table that no source has created yet is kept and
// applied again once every source has been read (scripts split over files,
// with foreign keys or indexes in a file of their own). Foreign keys are
// declared last, so that their parents and the parents' keys exist whatever
// the order of the scripts; a parent that is still unknown leaves its
// foreign key pending, and resolution reports it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <VrnIntf.h>

#include "DdlDecl.h"
#include "DeclaredScript.h"
#include "Dialect.h"
#include "ImportReport.h"

class CDdlImporter {
public:
    CDdlImporter(CVrnAPI& builder, CImportReport& report)
        : m_builder(builder), m_report(report),
          m_declared([this](const CQualifiedName& table) { return FindTable(table) != 0; }) {}

    // Template tags &$NAME. are replaced by these values.
    void SetTags(std::vector<std::pair<std::string, std::string>> tags) { m_tags = std::move(tags); }
    // Reads a script in `dialect`; without one, in the dialect of the model's platform.
    void ImportScript(const std::string& sourceName, const std::string& text, const CDialect* dialect = nullptr);
    // Takes one parsed statement of `source`: keeps it for the build, or
    // applies its drops and changes to the statements kept.
    void Apply(CStatementDecl statement, const std::string& source);
    // A warning of the source's reader, beside the importer's own.
    void Note(const std::string& warning) { m_report.warnings.push_back(warning); }
    // Builds the model from the kept statements, declares the foreign keys and resolves the pending ones.
    void Finish();

private:
    enum class EOutcome { Applied, Skipped, Deferred };

    struct CPendingForeignKey {
        unsigned long child = 0;
        CForeignKeyDecl decl;
    };
    struct CDeferred {
        CStatementDecl statement;
        std::string source;
        bool applied = false;
    };

    // Applies a counted statement, keeps it for later, or counts it as
    // skipped; `applied`: it changed earlier statements, and counts as
    // applied whatever it adds.
    void Settle(CStatementDecl statement, const std::string& source, bool applied = false);
    // Applies a statement whose place is `where` ("file:line").
    EOutcome ApplyDeclaration(CStatementDecl& statement, const std::string& where);
    EOutcome ApplyTable(const CTableDecl& table, const std::string& where);
    EOutcome ApplyTableLike(const CTableDecl& table, const std::string& where);
    void ApplyElements(unsigned long entity, const std::vector<CTableElement>& elements, const std::string& where);
    bool ApplyColumn(unsigned long entity, const CColumnDecl& column, const std::string& where);
    bool ApplyConstraint(unsigned long entity, const CConstraintDecl& constraint);
    void ApplyPartition(unsigned long partition, const CPartitionDecl& decl);
    EOutcome ApplyIndex(const CIndexDecl& index, const std::string& where);
    EOutcome ApplyAlter(const CAlterDecl& alter, const std::string& where);
    EOutcome ApplyView(const CViewDecl& view);
    EOutcome ApplyCode(const CCodeDecl& code, const std::string& where);
    EOutcome ApplyStorageObject(const CStorageObjectDecl& object);
    EOutcome ApplyDefaultOrRule(const CDefaultOrRuleDecl& object);
    EOutcome ApplyUserType(const CUserTypeDecl& type, const std::string& where);
    EOutcome ApplyObjectType(CObjectTypeDecl& type);
    EOutcome ApplyComment(const CCommentDecl& comment, const std::string& where);
    EOutcome ApplyBinding(const CBindingDecl& binding, const std::string& where);
    // Keeps a statement about an unknown table for later on the first
    // reading; skips it with `warning` on the second.
    EOutcome DeferOrSkip(const std::string& where, const std::string& warning);
    unsigned long AddKeyIndex(unsigned long entity, const CConstraintDecl& key);
    unsigned long FindTable(const CQualifiedName& name);
    void Warn(const std::string& where, const std::string& text) { m_report.warnings.push_back(where + ": " + text); }

    CVrnAPI& m_builder;
    CImportReport& m_report;
    std::vector<std::pair<std::string, std::string>> m_tags;
    std::vector<CPendingForeignKey> m_foreignKeys;
    // Oracle object types by upper-cased name, for the tables made OF them.
    std::map<std::string, std::vector<CTableElement>> m_objectTypes;
    // The partitions of each table, which an index LOCAL without a list of its own follows.
    std::map<unsigned long, std::vector<std::string>> m_tablePartitions;
    CDeclaredScript m_declared;
    std::vector<CDeferred> m_deferred;
    bool m_retrying = false;
};
