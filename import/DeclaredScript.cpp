#include "DeclaredScript.h"

#include <algorithm>

#include <VrnIntf.h>

#include "SqlLexer.h"

namespace {

bool SameName(const std::string& a, const std::string& b) { return AfxCompareNoCase(a.c_str(), b.c_str()) == 0; }

// `name` is what `wanted` names: the same name, and the same owner where both have one.
bool Matches(const CQualifiedName& wanted, const CQualifiedName& name) {
    if (!SameName(wanted.Name(), name.Name())) return false;
    const std::string a = wanted.Owner(), b = name.Owner();
    return a.empty() || b.empty() || SameName(a, b);
}

// How a column's name is matched: exactly where some column has the very
// spelling (quoted names may differ in case only), else without regard to case.
struct CColumnMatch {
    bool exact = false;
    bool operator()(const std::string& a, const std::string& b) const { return exact ? a == b : SameName(a, b); }
};

bool Holds(const std::vector<std::string>& names, const std::string& name, CColumnMatch match) {
    return std::any_of(names.begin(), names.end(), [&](const std::string& each) { return match(each, name); });
}

void Rename(std::vector<std::string>& names, const std::string& from, const std::string& to, CColumnMatch match) {
    for (std::string& name : names)
        if (match(name, from)) name = to;
}

// Whether dropping `column` takes the constraint with it: a key or foreign
// key over it, or its own check. A server drops these with the column, or
// refuses the drop while they stand.
bool Involves(const CConstraintDecl& constraint, const std::string& column, CColumnMatch match) {
    return Holds(constraint.columns, column, match) || Holds(constraint.reference.childColumns, column, match) ||
           (!constraint.column.empty() && match(constraint.column, column));
}

// The table a statement is about; null for statements about no table.
CQualifiedName* TableOf(CDeclaration& declaration) {
    if (auto* table = std::get_if<CTableDecl>(&declaration)) return &table->name;
    if (auto* view = std::get_if<CViewDecl>(&declaration)) return &view->name;
    if (auto* index = std::get_if<CIndexDecl>(&declaration)) return &index->table;
    if (auto* alter = std::get_if<CAlterDecl>(&declaration)) return &alter->table;
    if (auto* comment = std::get_if<CCommentDecl>(&declaration)) return &comment->table;
    if (auto* code = std::get_if<CCodeDecl>(&declaration))
        if (code->kind == ECodeKind::Trigger && !code->table.Empty()) return &code->table;
    return nullptr;
}

bool IsNamed(const CConstraintDecl& constraint, const CDropConstraintDecl& drop) {
    if (drop.primaryKey) return constraint.kind == EConstraintKind::PrimaryKey;
    const std::string& name = constraint.name.empty() ? constraint.reference.name : constraint.name;
    return !name.empty() && SameName(name, drop.name);
}

// The columns and constraints a CREATE TABLE or an ALTER TABLE declares.
template <class Visit>
void ForEachElement(CDeclaration& declaration, Visit visit) {
    if (auto* table = std::get_if<CTableDecl>(&declaration))
        for (CTableElement& element : table->elements) std::visit(visit, element);
    if (auto* alter = std::get_if<CAlterDecl>(&declaration))
        for (CAlterItem& item : alter->items) {
            if (auto* column = std::get_if<CColumnDecl>(&item)) visit(*column);
            if (auto* constraint = std::get_if<CConstraintDecl>(&item)) visit(*constraint);
        }
}

// Removes the elements (and the constraints of columns) for which `remove` holds.
template <class RemoveColumn, class RemoveConstraint>
void EraseElements(CDeclaration& declaration, RemoveColumn removeColumn, RemoveConstraint removeConstraint) {
    auto constraintsOf = [&](CColumnDecl& column) {
        auto& list = column.constraints;
        list.erase(std::remove_if(list.begin(), list.end(), removeConstraint), list.end());
    };
    auto drop = [&](auto& element) {
        using T = std::decay_t<decltype(element)>;
        if constexpr (std::is_same_v<T, CColumnDecl>) {
            if (removeColumn(element)) return true;
            constraintsOf(element);
            return false;
        } else if constexpr (std::is_same_v<T, CConstraintDecl>) {
            return static_cast<bool>(removeConstraint(element));
        } else {
            return false;
        }
    };
    if (auto* table = std::get_if<CTableDecl>(&declaration)) {
        auto& list = table->elements;
        list.erase(std::remove_if(list.begin(), list.end(), [&](CTableElement& e) { return std::visit(drop, e); }),
                   list.end());
    }
    if (auto* alter = std::get_if<CAlterDecl>(&declaration)) {
        auto& list = alter->items;
        list.erase(std::remove_if(list.begin(), list.end(), [&](CAlterItem& item) { return std::visit(drop, item); }),
                   list.end());
    }
}

}  // namespace

void CDeclaredScript::Index(std::size_t entry) {
    CDeclaration& declaration = m_entries[entry].statement.declaration;
    if (const CQualifiedName* table = TableOf(declaration)) m_byTable[UpperAscii(table->Name())].push_back(entry);
    if (const auto* index = std::get_if<CIndexDecl>(&declaration)) m_byIndex[UpperAscii(index->name)].push_back(entry);
    if (const auto* code = std::get_if<CCodeDecl>(&declaration)) m_byCode[UpperAscii(code->name.Name())].push_back(entry);
}

CDeclaredScript::CIndexList CDeclaredScript::EntriesOf(const CQualifiedName& table) {
    CIndexList found;
    const auto listed = m_byTable.find(UpperAscii(table.Name()));
    if (listed == m_byTable.end()) return found;
    for (std::size_t at : listed->second) {
        CEntry& entry = m_entries[at];
        const CQualifiedName* name = TableOf(entry.statement.declaration);
        if (!entry.dropped && name && Matches(table, *name)) found.push_back(at);
    }
    return found;
}

CDeclaredScript::EResult CDeclaredScript::Add(CStatementDecl statement, const std::string& source,
                                              std::vector<std::string>& warnings) {
    if (const auto* drop = std::get_if<CDropDecl>(&statement.declaration)) return Drop(*drop, warnings);
    bool changed = false;
    if (auto* alter = std::get_if<CAlterDecl>(&statement.declaration)) {
        changed = ApplyChanges(*alter, warnings);
        if (alter->items.empty()) return changed ? EResult::Applied : EResult::Skipped;
    }
    if (m_sources.empty() || m_sources.back() != source) m_sources.push_back(source);
    m_entries.push_back(CEntry{std::move(statement), &m_sources.back(), false, changed});
    Index(m_entries.size() - 1);
    return EResult::Kept;
}

std::deque<CDeclaredScript::CEntry> CDeclaredScript::Take() {
    m_byTable.clear();
    m_byIndex.clear();
    m_byCode.clear();
    std::deque<CEntry> taken;
    taken.swap(m_entries);
    return taken;
}

CDeclaredScript::EResult CDeclaredScript::Drop(const CDropDecl& drop, std::vector<std::string>& warnings) {
    bool skipped = false;
    for (const CQualifiedName& name : drop.names) {
        if (drop.kind == EDropKind::Table || drop.kind == EDropKind::View) {
            const CIndexList entries = EntriesOf(name);
            const bool declared = std::any_of(entries.begin(), entries.end(), [&](std::size_t at) {
                const CDeclaration& declaration = m_entries[at].statement.declaration;
                return drop.kind == EDropKind::Table ? std::holds_alternative<CTableDecl>(declaration)
                                                     : std::holds_alternative<CViewDecl>(declaration);
            });
            if (!declared) {
                // Dropping what does not exist yet is how scripts make room
                // for what they create; only a table the model already held
                // is out of reach.
                if (drop.kind == EDropKind::Table && m_inModel(name)) {
                    warnings.push_back("table " + name.Name() +
                                       " is in the model being continued, which a script's DROP does not change");
                    skipped = true;
                }
                continue;
            }
            for (std::size_t at : entries) m_entries[at].dropped = true;
            if (drop.cascade)
                ForEachForeignKey([&](const CQualifiedName&, CForeignKeyDecl& key, bool& erase) {
                    erase = Matches(name, key.parent);
                });
        } else if (drop.kind == EDropKind::Index) {
            const auto listed = m_byIndex.find(UpperAscii(name.Name()));
            if (listed == m_byIndex.end()) continue;
            // DROP INDEX t.i (T-SQL) or owner.i (Oracle, DB2): the qualifier is the table or its owner.
            const std::string qualifier = name.Owner();
            for (std::size_t at : listed->second) {
                const auto& index = std::get<CIndexDecl>(m_entries[at].statement.declaration);
                const bool onTable = drop.table.Empty() || Matches(drop.table, index.table);
                const bool qualified = qualifier.empty() || SameName(qualifier, index.table.Name()) ||
                                       index.table.Owner().empty() || SameName(qualifier, index.table.Owner());
                if (onTable && qualified) m_entries[at].dropped = true;
            }
        } else {
            const auto listed = m_byCode.find(UpperAscii(name.Name()));
            if (listed == m_byCode.end()) continue;
            for (std::size_t at : listed->second) {
                const auto& code = std::get<CCodeDecl>(m_entries[at].statement.declaration);
                bool kind = false;
                switch (drop.kind) {
                    case EDropKind::Procedure: kind = code.kind == ECodeKind::Procedure; break;
                    case EDropKind::Function: kind = code.kind == ECodeKind::Function; break;
                    case EDropKind::Trigger: kind = code.kind == ECodeKind::Trigger; break;
                    case EDropKind::PackageBody: kind = code.kind == ECodeKind::PackageBody; break;
                    default: kind = code.kind == ECodeKind::Package || code.kind == ECodeKind::PackageBody; break;
                }
                if (kind && Matches(name, code.name)) m_entries[at].dropped = true;
            }
        }
    }
    return skipped ? EResult::Skipped : EResult::Applied;
}

bool CDeclaredScript::ApplyChanges(CAlterDecl& alter, std::vector<std::string>& warnings) {
    bool changed = false;
    std::vector<CAlterItem> additions;
    const std::string table = alter.table.Name();
    for (CAlterItem& item : alter.items) {
        bool done = true;
        std::string what;
        if (const auto* column = std::get_if<CDropColumnDecl>(&item)) {
            done = DropColumn(alter.table, column->column);
            what = "column " + column->column + " not dropped";
        } else if (const auto* constraint = std::get_if<CDropConstraintDecl>(&item)) {
            done = DropConstraint(alter.table, *constraint);
            what = (constraint->primaryKey ? std::string("primary key") : "constraint " + constraint->name) +
                   " not dropped";
        } else if (const auto* change = std::get_if<CColumnChangeDecl>(&item)) {
            done = ChangeColumn(alter.table, *change);
            what = "column " + change->column + " not changed";
        } else if (const auto* rename = std::get_if<CRenameTableDecl>(&item)) {
            done = RenameTable(alter.table, rename->to);
            what = "not renamed";
        } else {
            additions.push_back(std::move(item));
            continue;
        }
        if (done)
            changed = true;
        else
            warnings.push_back("ALTER TABLE " + table + ": " + what +
                               ": no statement before declares it" +
                               (m_inModel(alter.table) ? " (the model being continued is not changed by a script)" : ""));
    }
    alter.items = std::move(additions);
    return changed;
}

// Whether a column is named `column` exactly in one of `entries`: then
// only that spelling is meant, for quoted names may differ in case only.
bool CDeclaredScript::NamedExactly(const CIndexList& entries, const std::string& column) {
    bool exact = false;
    for (std::size_t at : entries)
        ForEachElement(m_entries[at].statement.declaration, [&](auto& element) {
            if constexpr (std::is_same_v<std::decay_t<decltype(element)>, CColumnDecl>)
                exact = exact || element.name == column;
        });
    return exact;
}

bool CDeclaredScript::DropColumn(const CQualifiedName& table, const std::string& column) {
    bool found = false;
    const CIndexList entries = EntriesOf(table);
    const CColumnMatch match{NamedExactly(entries, column)};
    for (std::size_t at : entries) {
        CEntry& entry = m_entries[at];
        CDeclaration& declaration = entry.statement.declaration;
        if (auto* index = std::get_if<CIndexDecl>(&declaration)) {
            if (Holds(index->columns, column, match)) entry.dropped = true;
        } else if (auto* comment = std::get_if<CCommentDecl>(&declaration)) {
            if (match(comment->column, column)) entry.dropped = true;
        } else {
            EraseElements(
                declaration,
                [&](const CColumnDecl& decl) {
                    const bool named = match(decl.name, column);
                    found = found || named;
                    return named;
                },
                [&](const CConstraintDecl& constraint) { return Involves(constraint, column, match); });
            if (auto* alter = std::get_if<CAlterDecl>(&declaration)) {
                auto& items = alter->items;
                items.erase(std::remove_if(items.begin(), items.end(),
                                           [&](const CAlterItem& item) {
                                               const auto* value = std::get_if<CColumnDefaultDecl>(&item);
                                               return value && match(value->column, column);
                                           }),
                            items.end());
                if (items.empty()) entry.dropped = true;
            }
        }
    }
    return found;
}

bool CDeclaredScript::DropConstraint(const CQualifiedName& table, const CDropConstraintDecl& drop) {
    bool found = false;
    for (std::size_t at : EntriesOf(table)) {
        CEntry& entry = m_entries[at];
        CDeclaration& declaration = entry.statement.declaration;
        // A unique constraint may stand in the model as the index that carries it.
        if (auto* index = std::get_if<CIndexDecl>(&declaration)) {
            if (!drop.primaryKey && SameName(index->name, drop.name)) entry.dropped = found = true;
            continue;
        }
        EraseElements(
            declaration, [](const CColumnDecl&) { return false; },
            [&](const CConstraintDecl& constraint) {
                const bool named = IsNamed(constraint, drop);
                found = found || named;
                return named;
            });
        if (auto* alter = std::get_if<CAlterDecl>(&declaration))
            if (alter->items.empty()) entry.dropped = true;
    }
    return found;
}

bool CDeclaredScript::ChangeColumn(const CQualifiedName& table, const CColumnChangeDecl& change) {
    bool found = false;
    const CIndexList entries = EntriesOf(table);
    const CColumnMatch match{NamedExactly(entries, change.column)};
    for (std::size_t at : entries) {
        CDeclaration& declaration = m_entries[at].statement.declaration;
        ForEachElement(declaration, [&](auto& element) {
            using T = std::decay_t<decltype(element)>;
            if constexpr (std::is_same_v<T, CColumnDecl>) {
                if (!match(element.name, change.column)) return;
                found = true;
                if (change.typeGiven) {
                    element.datatype = change.datatype;
                    element.width = change.width;
                    element.scale = change.scale;
                }
                if (change.nullOption >= 0) element.nullOption = change.nullOption;
                if (change.defaultChange == CColumnChangeDecl::EDefault::Set) element.defaultText = change.defaultText;
                if (change.defaultChange == CColumnChangeDecl::EDefault::Drop) element.defaultText.clear();
            }
        });
        if (auto* alter = std::get_if<CAlterDecl>(&declaration)) {
            // T-SQL's ADD DEFAULT x FOR c: the default the column has.
            for (CAlterItem& item : alter->items) {
                auto* value = std::get_if<CColumnDefaultDecl>(&item);
                if (!value || !match(value->column, change.column)) continue;
                if (change.defaultChange == CColumnChangeDecl::EDefault::Set) value->text = change.defaultText;
                if (change.defaultChange == CColumnChangeDecl::EDefault::Drop) value->text.clear();
            }
            auto& items = alter->items;
            items.erase(std::remove_if(items.begin(), items.end(),
                                       [](const CAlterItem& item) {
                                           const auto* value = std::get_if<CColumnDefaultDecl>(&item);
                                           return value && value->text.empty();
                                       }),
                        items.end());
            if (items.empty()) m_entries[at].dropped = true;
        }
    }
    if (!found || change.newName.empty()) return found;

    // A renamed column: every key, index, comment and foreign key that names it follows.
    const std::string& from = change.column;
    const std::string& to = change.newName;
    for (std::size_t at : entries) {
        CDeclaration& declaration = m_entries[at].statement.declaration;
        ForEachElement(declaration, [&](auto& element) {
            using T = std::decay_t<decltype(element)>;
            if constexpr (std::is_same_v<T, CColumnDecl>) {
                if (match(element.name, from)) element.name = to;
                for (CConstraintDecl& constraint : element.constraints) {
                    Rename(constraint.columns, from, to, match);
                    Rename(constraint.reference.childColumns, from, to, match);
                    if (match(constraint.column, from)) constraint.column = to;
                }
            } else {
                Rename(element.columns, from, to, match);
                Rename(element.reference.childColumns, from, to, match);
                if (match(element.column, from)) element.column = to;
            }
        });
        if (auto* index = std::get_if<CIndexDecl>(&declaration)) Rename(index->columns, from, to, match);
        if (auto* comment = std::get_if<CCommentDecl>(&declaration))
            if (match(comment->column, from)) comment->column = to;
    }
    ForEachForeignKey([&](const CQualifiedName&, CForeignKeyDecl& key, bool&) {
        if (Matches(table, key.parent)) Rename(key.parentColumns, from, to, match);
    });
    return true;
}

bool CDeclaredScript::RenameTable(const CQualifiedName& table, const CQualifiedName& to) {
    const CIndexList entries = EntriesOf(table);
    if (entries.empty()) return false;
    for (std::size_t at : entries) {
        CQualifiedName* name = TableOf(m_entries[at].statement.declaration);
        // RENAME TO n keeps the table's owner.
        CQualifiedName renamed = to;
        if (to.parts.size() == 1 && name->parts.size() > 1) {
            renamed = *name;
            renamed.parts.back() = to.Name();
        }
        *name = renamed;
        m_byTable[UpperAscii(to.Name())].push_back(at);
    }
    ForEachForeignKey([&](const CQualifiedName&, CForeignKeyDecl& key, bool&) {
        if (Matches(table, key.parent)) key.parent.parts.back() = to.Name();
    });
    return true;
}

void CDeclaredScript::ForEachForeignKey(
    const std::function<void(const CQualifiedName&, CForeignKeyDecl&, bool& erase)>& visit) {
    for (CEntry& entry : m_entries) {
        if (entry.dropped) continue;
        CDeclaration& declaration = entry.statement.declaration;
        const CQualifiedName* table = TableOf(declaration);
        if (!table) continue;
        const CQualifiedName owner = *table;
        EraseElements(
            declaration, [](const CColumnDecl&) { return false; },
            [&](CConstraintDecl& constraint) {
                if (constraint.kind != EConstraintKind::ForeignKey) return false;
                bool erase = false;
                visit(owner, constraint.reference, erase);
                return erase;
            });
        if (auto* alter = std::get_if<CAlterDecl>(&declaration))
            if (alter->items.empty()) entry.dropped = true;
    }
}
