// The statements of an import's scripts, held as declarations until the
// model is built, so that a later statement can still take back what an
// earlier one declared: DROP TABLE, DROP INDEX, DROP VIEW and DROP of code
// remove what they name, and the drops, column changes and renames of ALTER
// TABLE edit the declarations they refer to. What the model gets is then the
// end state of the scripts, as a server that ran them would hold it:
// `import OLD.sql migration.sql` builds what the migration leads to.
//
// Names are matched without regard to letter case, an owner only when both
// sides give one. A drop or change finds only what earlier statements
// declared; it never reaches into a model being continued.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "DdlDecl.h"

class CDeclaredScript {
public:
    struct CEntry {
        CStatementDecl statement;
        const std::string* source = nullptr;  // the source's name, held by the store for as long as it lives
        bool dropped = false;  // taken back by a later statement
        bool applied = false;  // it dropped or changed declarations already
    };
    enum class EResult { Kept, Applied, Skipped };

    // `inModel` says whether the model being built already holds a table,
    // for the warning of a drop that cannot reach it.
    explicit CDeclaredScript(std::function<bool(const CQualifiedName&)> inModel) : m_inModel(std::move(inModel)) {}

    // Keeps a statement for the build, or applies its drops and changes to
    // what is kept. What could not be applied goes to `warnings`. An ALTER
    // TABLE that also adds is kept with its additions alone.
    EResult Add(CStatementDecl statement, const std::string& source, std::vector<std::string>& warnings);
    // The statements kept, in order; the store is empty afterwards.
    std::deque<CEntry> Take();

private:
    using CIndexList = std::vector<std::size_t>;

    EResult Drop(const CDropDecl& drop, std::vector<std::string>& warnings);
    // The drops, changes and renames of `alter`, applied; removed from its items.
    bool ApplyChanges(CAlterDecl& alter, std::vector<std::string>& warnings);
    bool NamedExactly(const CIndexList& entries, const std::string& column);
    bool DropColumn(const CQualifiedName& table, const std::string& column);
    bool DropConstraint(const CQualifiedName& table, const CDropConstraintDecl& constraint);
    bool ChangeColumn(const CQualifiedName& table, const CColumnChangeDecl& change);
    bool RenameTable(const CQualifiedName& table, const CQualifiedName& to);
    // Every foreign key declared anywhere: `visit` sees each with the table it belongs to.
    void ForEachForeignKey(const std::function<void(const CQualifiedName&, CForeignKeyDecl&, bool& erase)>& visit);
    // The kept entries about `table` (its CREATE, ALTERs, indexes, comments, triggers).
    CIndexList EntriesOf(const CQualifiedName& table);
    void Index(std::size_t entry);

    std::function<bool(const CQualifiedName&)> m_inModel;
    // A deque: entries are never moved as it grows (a script's statements
    // number in the tens of thousands, and each is a few hundred bytes).
    std::deque<CEntry> m_entries;
    std::deque<std::string> m_sources;
    // Upper-cased names to entries: of the table a statement is about, of
    // an index, of a piece of code.
    std::unordered_map<std::string, CIndexList> m_byTable, m_byIndex, m_byCode;
};
