#include "MigrationWriter.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <map>
#include <set>

#include "DdlWriterCore.h"
#include "SqlLexer.h"

namespace {

std::string TrimmedOwner(const std::string& owner) {
    const std::size_t end = owner.find_last_not_of(' ');
    return end == std::string::npos ? std::string() : owner.substr(0, end + 1);
}

std::string TableKey(const CModelTable& table) {
    return UpperAscii(TrimmedOwner(table.owner)) + "." + UpperAscii(table.name);
}

bool SameName(const std::string& a, const std::string& b) { return AfxCompareNoCase(a.c_str(), b.c_str()) == 0; }

// A text with its runs of blanks made one space and its ends trimmed: how
// two checks, defaults or bodies that differ in layout only compare equal.
std::string Collapsed(const std::string& text) {
    std::string out;
    bool blank = false;
    for (char ch : text) {
        if (std::isspace(static_cast<unsigned char>(ch))) {
            blank = !out.empty();
            continue;
        }
        if (blank) out += ' ';
        blank = false;
        out += ch;
    }
    return out;
}

// A code text as the comparison of models sees it: without the blanks that end its lines.
std::string CodeOf(const std::string& text) {
    std::string normal, line;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        if (at < text.size() && text[at] != '\n') {
            line += text[at];
            continue;
        }
        normal += line.substr(0, line.find_last_not_of(" \t\r") + 1) + "\n";
        line.clear();
    }
    return normal.substr(0, normal.find_last_not_of("\n \t\r") + 1);
}

std::string IndexSignature(const CModelIndex& index) {
    std::string signature = index.unique ? "U" : "N";
    for (const CModelIndexColumn& column : index.columns)
        signature += "," + UpperAscii(column.name) + (column.descending ? " DESC" : "");
    return signature;
}

bool SameIndex(const CModelIndex& a, const CModelIndex& b) {
    return IndexSignature(a) == IndexSignature(b) && a.clustered == b.clustered;
}

std::string ForeignKeyKey(const CModel& model, const CModelForeignKey& key) {
    std::string text = key.parentTable >= 0 ? TableKey(model.tables[static_cast<std::size_t>(key.parentTable)]) : "?";
    for (const CModelColumnPair& pair : key.pairs) text += "," + UpperAscii(pair.childColumn);
    return text;
}

bool SameForeignKey(const CModelForeignKey& a, const CModelForeignKey& b) {
    if (!SameName(a.name, b.name) || a.onDelete != b.onDelete || a.onUpdate != b.onUpdate ||
        a.pairs.size() != b.pairs.size())
        return false;
    for (std::size_t i = 0; i < a.pairs.size(); ++i)
        if (!SameName(a.pairs[i].parentColumn, b.pairs[i].parentColumn)) return false;
    return true;
}

// A type change that only makes room: the same type, longer or with more digits.
bool Widened(const CModelColumn& was, const CModelColumn& column) {
    return was.datatype == column.datatype && SameName(was.userDatatype, column.userDatatype) &&
           column.width >= was.width && column.scale >= was.scale &&
           column.width - column.scale >= was.width - was.scale;
}

std::string CheckKey(const CModelCheck& check) { return UpperAscii(check.column) + "\x1e" + Collapsed(check.text); }

// What happens to one table that both models hold.
struct CTablePlan {
    const CModelTable* before = nullptr;
    const CModelTable* after = nullptr;
    struct CColumnChange {
        const CModelColumn* before;
        const CModelColumn* after;
        bool type, nullable, defaultValue;
    };
    std::vector<const CModelColumn*> droppedColumns, addedColumns;
    std::vector<std::pair<const CModelColumn*, const CModelColumn*>> pairedColumns;  // old, new
    std::vector<CColumnChange> changedColumns;
    // Upper-cased names of columns that what stands on them must make way
    // for: `reshaped` ones are dropped or change type other than by
    // widening, and take their checks; `touched` ones (also those whose
    // nullability changes) take their indexes; `keyed` ones (also, in T-SQL,
    // those widened) take the primary key and the foreign keys.
    std::set<std::string> reshaped, touched, keyed;
    bool dropKey = false, addKey = false;
    std::vector<std::size_t> dropIndexes, addIndexes;  // into the tables' `indexes`
    std::vector<int> dropChecks, addChecks;            // into the models' `checks`
    std::vector<std::string> manual;                   // column changes no statement makes
    bool rebuild = false;  // generic SQL: made again under the new definition, its rows copied
    bool Changed() const {
        return !droppedColumns.empty() || !addedColumns.empty() || !changedColumns.empty() || dropKey || addKey ||
               !dropChecks.empty() || !addChecks.empty();
    }
};

class CMigration {
public:
    CMigration(const CModel& before, const CModel& after, const CDdlOptions& options, CMigrationScript& result)
        : m_before(before), m_after(after), m_options(Resolved(options, after)), m_result(result),
          m_old(before, m_options, m_oldScript), m_new(after, m_options, m_newScript) {}

    void Write();

private:
    static CDdlOptions Resolved(CDdlOptions options, const CModel& after) {
        if (options.platform < 0) options.platform = after.platform;
        options.tablePattern.clear();
        return options;
    }
    bool Generic() const { return m_new.IsGeneric(); }
    bool ZOs() const { return m_new.Dialect().family == EPlatformFamily::Db2ZOs; }
    bool Db2Luw() const { return m_new.Dialect().family == EPlatformFamily::Db2Luw; }
    std::string OldName(const CModelTable& table) const { return m_old.TableName(table); }
    std::string NewName(const CModelTable& table) const { return m_new.TableName(table); }
    std::string Quote(const std::string& name) const { return m_new.Dialect().Quote(name); }

    // The heading of the part of the script that follows, written before its first line, if it has one.
    void Part(const std::string& heading) { m_new.Pending("\n-- " + heading + "\n"); }
    void Statement(const std::string& text) { m_new.Statement(text); }
    void Destructive(const std::string& what, const std::string& text) {
        m_new.Comment("destructive: " + what);
        m_new.Statement(text);
    }
    void Manual(const std::string& what) {
        m_new.Comment("manual step: " + what);
        m_result.manualSteps.push_back(what);
    }

    void Match();
    void PlanTable(CTablePlan& plan);
    void PlanColumns(CTablePlan& plan);
    void PlanIndexes(CTablePlan& plan);
    void PlanChecks(CTablePlan& plan);
    void PlanForeignKeys();
    void PlanCode();

    void CatalogSteps();
    void DropForeignKey(const CModelForeignKey& key);
    void DropDependents(const CTablePlan& plan);
    void DropColumns(const CTablePlan& plan);
    void AlterColumns(const CTablePlan& plan);
    void AlterColumn(const CTablePlan& plan, const CTablePlan::CColumnChange& change);
    void Rebuild(const CTablePlan& plan);
    void AddColumns(const CTablePlan& plan);
    void AddConstraints(const CTablePlan& plan);
    void Comments(const CTablePlan& plan);
    void DropCode(const char* kind, const CModelCode& code, bool function);

    const CModel& m_before;
    const CModel& m_after;
    const CDdlOptions m_options;
    CMigrationScript& m_result;
    CDdlScript m_oldScript, m_newScript;
    CDdlWriter m_old;  // the old model's names as written
    CDdlWriter m_new;  // the script itself, in the new model's terms
    std::string m_header;
    int m_opening = 0;  // statements written before the first change

    std::vector<CTablePlan> m_plans;                        // tables both models hold, in the new model's order
    std::vector<const CModelTable*> m_dropped, m_added;     // tables of one model only
    std::map<const CModelTable*, CTablePlan*> m_planOfOld, m_planOfNew;
    std::vector<const CModelForeignKey*> m_dropKeys, m_addKeys;
    std::vector<std::pair<const char*, const CModelCode*>> m_dropCode;  // kind, code of the old model
    std::vector<std::pair<const char*, const CModelCode*>> m_addCode;   // kind, code of the new model
};

void CMigration::Match() {
    std::map<std::string, const CModelTable*> old;
    for (const CModelTable& table : m_before.tables) old.emplace(TableKey(table), &table);
    std::set<const CModelTable*> kept;
    m_plans.reserve(m_after.tables.size());
    for (const CModelTable& table : m_after.tables) {
        const auto found = old.find(TableKey(table));
        if (found == old.end()) {
            m_added.push_back(&table);
            continue;
        }
        CTablePlan plan;
        plan.before = found->second;
        plan.after = &table;
        kept.insert(found->second);
        m_plans.push_back(std::move(plan));
    }
    for (const CModelTable& table : m_before.tables)
        if (!kept.count(&table)) m_dropped.push_back(&table);
    for (CTablePlan& plan : m_plans) {
        PlanTable(plan);
        m_planOfOld[plan.before] = &plan;
        m_planOfNew[plan.after] = &plan;
    }
}

void CMigration::PlanTable(CTablePlan& plan) {
    PlanColumns(plan);
    PlanIndexes(plan);
    PlanChecks(plan);
}

void CMigration::PlanColumns(CTablePlan& plan) {
    const CModelTable& before = *plan.before;
    const CModelTable& after = *plan.after;
    // By name exactly, then without regard to case: quoted names may differ in case only.
    std::vector<const CModelColumn*> pairOf(after.columns.size(), nullptr);
    std::set<const CModelColumn*> paired;
    for (const bool exactly : {true, false}) {
        std::multimap<std::string, const CModelColumn*> unpaired;
        for (const CModelColumn& was : before.columns)
            if (!paired.count(&was)) unpaired.emplace(exactly ? was.name : UpperAscii(was.name), &was);
        for (std::size_t j = 0; j < after.columns.size(); ++j) {
            if (pairOf[j]) continue;
            const auto found = unpaired.find(exactly ? after.columns[j].name : UpperAscii(after.columns[j].name));
            if (found == unpaired.end()) continue;
            pairOf[j] = found->second;
            paired.insert(found->second);
            unpaired.erase(found);
        }
    }
    std::vector<std::size_t> places;  // the kept columns' places in the old table, in the new order
    for (std::size_t j = 0; j < after.columns.size(); ++j) {
        const CModelColumn& column = after.columns[j];
        if (!pairOf[j]) {
            plan.addedColumns.push_back(&column);
            continue;
        }
        const CModelColumn& was = *pairOf[j];
        places.push_back(static_cast<std::size_t>(&was - before.columns.data()));
        const bool type = was.datatype != column.datatype || was.width != column.width || was.scale != column.scale ||
                          !SameName(was.userDatatype, column.userDatatype);
        const bool nullable = was.nullable != column.nullable;
        const bool defaultValue = Collapsed(was.defaultText) != Collapsed(column.defaultText);
        plan.pairedColumns.emplace_back(&was, &column);
        if (type || nullable || defaultValue) plan.changedColumns.push_back({&was, &column, type, nullable, defaultValue});
        const bool widened = type && Widened(was, column);
        const std::string upper = UpperAscii(column.name);
        if (type && !widened) plan.reshaped.insert(upper);
        if ((type && !widened) || nullable) plan.touched.insert(upper);
        if ((type && (!widened || m_new.IsTransactSql())) || nullable) plan.keyed.insert(upper);
        if (was.identity == column.identity && was.defaultId == column.defaultId && was.ruleId == column.ruleId) continue;
        const std::string name = NewName(after) + "." + column.name;
        if (was.identity != column.identity)
            plan.manual.push_back("column " + name + (column.identity ? " becomes" : " is no longer") +
                                  " an identity column; " + m_new.Family() + " does not change that in place");
        if (was.defaultId != column.defaultId || was.ruleId != column.ruleId)
            plan.manual.push_back("bind or unbind the default and rule of column " + name);
    }
    for (const CModelColumn& column : before.columns)
        if (!paired.count(&column)) {
            plan.droppedColumns.push_back(&column);
            for (auto* set : {&plan.reshaped, &plan.touched, &plan.keyed}) set->insert(UpperAscii(column.name));
        }
    if (!std::is_sorted(places.begin(), places.end()))
        plan.manual.push_back("the columns of " + NewName(after) + " are in another order in the new model; " +
                              "only making the table again changes the order");
    // ADD COLUMN puts a column last: one the new model has before a kept column lands elsewhere.
    const CModelColumn* lastKept = nullptr;
    for (std::size_t j = 0; j < after.columns.size(); ++j)
        if (pairOf[j]) lastKept = &after.columns[j];
    for (const CModelColumn* added : plan.addedColumns)
        if (lastKept && added < lastKept)
            plan.manual.push_back("column " + added->name + " is added after the last column of " + NewName(after) +
                                  ", not where the new model has it");
}

void CMigration::PlanIndexes(CTablePlan& plan) {
    const CModelTable& before = *plan.before;
    const CModelTable& after = *plan.after;
    auto touches = [&](const CModelIndex& index, const std::set<std::string>& columns) {
        for (const CModelIndexColumn& column : index.columns)
            if (columns.count(UpperAscii(column.name))) return true;
        return false;
    };
    // The primary key: dropped and added again when it changes or a column of it does.
    const CModelIndex* oldKey = before.primaryKey >= 0 ? &before.indexes[static_cast<std::size_t>(before.primaryKey)] : nullptr;
    const CModelIndex* newKey = after.primaryKey >= 0 ? &after.indexes[static_cast<std::size_t>(after.primaryKey)] : nullptr;
    if (oldKey && newKey) {
        plan.dropKey = plan.addKey = !SameIndex(*oldKey, *newKey) || touches(*oldKey, plan.keyed);
    } else {
        plan.dropKey = oldKey != nullptr;
        plan.addKey = newKey != nullptr;
    }
    // Other indexes: by name, then by what they index.
    std::vector<int> pairOfNew(after.indexes.size(), -1), pairOfOld(before.indexes.size(), -1);
    for (const bool bySignature : {false, true}) {
        for (std::size_t j = 0; j < after.indexes.size(); ++j) {
            if (static_cast<int>(j) == after.primaryKey || pairOfNew[j] >= 0) continue;
            for (std::size_t i = 0; i < before.indexes.size(); ++i) {
                if (static_cast<int>(i) == before.primaryKey || pairOfOld[i] >= 0) continue;
                const bool same = bySignature ? IndexSignature(before.indexes[i]) == IndexSignature(after.indexes[j])
                                              : !after.indexes[j].name.empty() &&
                                                    SameName(before.indexes[i].name, after.indexes[j].name);
                if (!same) continue;
                pairOfNew[j] = static_cast<int>(i);
                pairOfOld[i] = static_cast<int>(j);
                break;
            }
        }
    }
    for (std::size_t i = 0; i < before.indexes.size(); ++i) {
        if (static_cast<int>(i) == before.primaryKey) continue;
        const int j = pairOfOld[i];
        if (j < 0 || !SameIndex(before.indexes[i], after.indexes[static_cast<std::size_t>(j)]) ||
            touches(before.indexes[i], plan.touched)) {
            plan.dropIndexes.push_back(i);
            if (j >= 0) plan.addIndexes.push_back(static_cast<std::size_t>(j));
        }
    }
    for (std::size_t j = 0; j < after.indexes.size(); ++j)
        if (static_cast<int>(j) != after.primaryKey && pairOfNew[j] < 0) plan.addIndexes.push_back(j);
    std::sort(plan.addIndexes.begin(), plan.addIndexes.end());
}

void CMigration::PlanChecks(CTablePlan& plan) {
    std::multimap<std::string, int> old;
    for (int at : plan.before->checks) old.emplace(CheckKey(m_before.checks[static_cast<std::size_t>(at)]), at);
    for (int at : plan.after->checks) {
        const CModelCheck& check = m_after.checks[static_cast<std::size_t>(at)];
        const auto found = old.find(CheckKey(check));
        if (found == old.end()) {
            plan.addChecks.push_back(at);
            continue;
        }
        const CModelCheck& was = m_before.checks[static_cast<std::size_t>(found->second)];
        if (!SameName(was.name, check.name) || (!was.column.empty() && plan.reshaped.count(UpperAscii(was.column)))) {
            plan.dropChecks.push_back(found->second);
            plan.addChecks.push_back(at);
        }
        old.erase(found);
    }
    for (const auto& [key, at] : old) plan.dropChecks.push_back(at);
}

void CMigration::PlanForeignKeys() {
    // A key is made again when it changes or when what it stands on does:
    // a column of either side, or the parent's primary key.
    auto dependsOnChange = [&](const CModelForeignKey& key) {
        // SQLite names a parent in the child's own definition, and keeps to the name.
        if (Generic()) return false;
        const CModelTable& child = m_before.tables[static_cast<std::size_t>(key.childTable)];
        const auto childPlan = m_planOfOld.find(&child);
        if (childPlan != m_planOfOld.end()) {
            if (childPlan->second->rebuild) return true;
            for (const CModelColumnPair& pair : key.pairs)
                if (childPlan->second->keyed.count(UpperAscii(pair.childColumn))) return true;
        }
        if (key.parentTable < 0) return false;
        const auto parentPlan = m_planOfOld.find(&m_before.tables[static_cast<std::size_t>(key.parentTable)]);
        if (parentPlan == m_planOfOld.end()) return true;  // the parent is dropped
        if (parentPlan->second->dropKey || parentPlan->second->rebuild) return true;
        for (const CModelColumnPair& pair : key.pairs)
            if (parentPlan->second->keyed.count(UpperAscii(pair.parentColumn))) return true;
        for (std::size_t i : parentPlan->second->dropIndexes)
            for (const CModelIndexColumn& column : parentPlan->second->before->indexes[i].columns)
                for (const CModelColumnPair& pair : key.pairs)
                    if (SameName(column.name, pair.parentColumn)) return true;
        return false;
    };
    std::multimap<std::string, const CModelForeignKey*> newKeys;
    std::set<const CModelForeignKey*> matched;
    for (const CModelForeignKey& key : m_after.foreignKeys) {
        if (key.childTable < 0) continue;
        const CModelTable& child = m_after.tables[static_cast<std::size_t>(key.childTable)];
        newKeys.emplace(TableKey(child) + "\x1e" + ForeignKeyKey(m_after, key), &key);
    }
    for (const CModelForeignKey& key : m_before.foreignKeys) {
        if (key.childTable < 0) continue;
        const CModelTable& child = m_before.tables[static_cast<std::size_t>(key.childTable)];
        if (!m_planOfOld.count(&child)) continue;  // DROP TABLE takes the keys of the table
        const auto found = newKeys.find(TableKey(child) + "\x1e" + ForeignKeyKey(m_before, key));
        const CModelForeignKey* same = found == newKeys.end() ? nullptr : found->second;
        if (found != newKeys.end()) newKeys.erase(found);
        if (same && SameForeignKey(key, *same) && !dependsOnChange(key)) {
            matched.insert(same);
            continue;
        }
        m_dropKeys.push_back(&key);
    }
    for (const CModelForeignKey& key : m_after.foreignKeys)
        if (key.childTable >= 0 && !matched.count(&key)) m_addKeys.push_back(&key);
}

void CMigration::PlanCode() {
    if (!m_options.code) return;
    const struct {
        const char* kind;
        const std::vector<CModelCode> CModel::*list;
    } kinds[] = {{"trigger", &CModel::triggers}, {"procedure", &CModel::procedures}, {"package", &CModel::packages}};
    // By owner and name; a name may be given to several (overloads), and
    // dropping it drops them all: the group is made again whole.
    using CGroups = std::map<std::string, std::vector<const CModelCode*>>;
    auto grouped = [](const std::vector<CModelCode>& list) {
        CGroups groups;
        for (const CModelCode& code : list)
            groups[UpperAscii(TrimmedOwner(code.owner)) + "." + UpperAscii(code.name)].push_back(&code);
        return groups;
    };
    auto same = [](const std::vector<const CModelCode*>& a, const std::vector<const CModelCode*>& b) {
        if (a.size() != b.size()) return false;
        for (std::size_t i = 0; i < a.size(); ++i)
            if (CodeOf(a[i]->text) != CodeOf(b[i]->text) || CodeOf(a[i]->body) != CodeOf(b[i]->body) ||
                a[i]->kind != b[i]->kind)
                return false;
        return true;
    };
    for (const auto& kind : kinds) {
        const CGroups old = grouped(m_before.*kind.list), now = grouped(m_after.*kind.list);
        for (const auto& [key, codes] : old) {
            const auto found = now.find(key);
            if (found != now.end() && same(codes, found->second)) continue;
            // A trigger goes with its table.
            const CModelCode& code = *codes.front();
            const bool onDroppedTable =
                code.table >= 0 && !m_planOfOld.count(&m_before.tables[static_cast<std::size_t>(code.table)]);
            if (!onDroppedTable) m_dropCode.emplace_back(kind.kind, &code);
        }
        for (const auto& [key, codes] : now) {
            const auto found = old.find(key);
            if (found != old.end() && same(found->second, codes)) continue;
            for (const CModelCode* code : codes) m_addCode.emplace_back(kind.kind, code);
        }
    }
}

// Changes of kinds the script does not make (user datatypes, defaults and
// rules, storage, partitions, storage objects): listed for a person to make.
void CMigration::CatalogSteps() {
    CCompareOptions options;
    options.columns = options.keysAndIndexes = options.foreignKeys = options.checks = options.code = false;
    options.storage = options.partitions = m_options.storage;
    options.storageObjects = m_options.storage;
    Part("Changes this script does not make");
    for (const CModelChange& change : CompareModels(m_before, m_after, options)) {
        const bool wholeTable = change.change != EModelChange::Changed && change.object == "table " + change.table;
        if (!wholeTable) Manual(change.Describe());
    }
}

void CMigration::DropForeignKey(const CModelForeignKey& key) {
    const CModelTable& child = m_before.tables[static_cast<std::size_t>(key.childTable)];
    if (key.name.empty()) {
        Manual("drop the unnamed foreign key of " + OldName(child) + " to " +
               (key.parentTable >= 0 ? OldName(m_before.tables[static_cast<std::size_t>(key.parentTable)]) : "?"));
        return;
    }
    Statement("ALTER TABLE " + OldName(child) + " DROP CONSTRAINT " + Quote(key.name));
}

void CMigration::DropCode(const char* kind, const CModelCode& code, bool function) {
    std::string statement = std::string("DROP ") + kind;
    if (std::string(kind) == "procedure") statement = function ? "DROP FUNCTION" : "DROP PROCEDURE";
    for (char& ch : statement) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    Statement(statement + " " + m_new.Dialect().Qualified(code.owner, code.name));
}

// Indexes, the primary key and checks that change, or that stand on a column that does.
void CMigration::DropDependents(const CTablePlan& plan) {
    const CModelTable& table = *plan.before;
    for (std::size_t i : plan.dropIndexes) {
        const CModelIndex& index = table.indexes[i];
        if (m_new.IsTransactSql())
            Statement("DROP INDEX " + Quote(index.name) + " ON " + OldName(table));
        else
            Statement("DROP INDEX " + m_old.IndexName(index));
    }
    if (plan.rebuild) return;
    if (plan.dropKey) {
        const CModelIndex& key = table.indexes[static_cast<std::size_t>(table.primaryKey)];
        if (!m_new.IsTransactSql())
            Statement("ALTER TABLE " + OldName(table) + " DROP PRIMARY KEY");
        else if (!key.name.empty())
            Statement("ALTER TABLE " + OldName(table) + " DROP CONSTRAINT " + Quote(key.name));
        else
            Manual("drop the unnamed primary key of " + OldName(table));
    }
    for (int at : plan.dropChecks) {
        const CModelCheck& check = m_before.checks[static_cast<std::size_t>(at)];
        if (check.name.empty())
            Manual("drop the unnamed check (" + Collapsed(check.text) + ") of " + OldName(table));
        else
            Statement("ALTER TABLE " + OldName(table) + " DROP CONSTRAINT " + Quote(check.name));
    }
}

void CMigration::DropColumns(const CTablePlan& plan) {
    if (plan.rebuild) return;
    for (const CModelColumn* column : plan.droppedColumns)
        Destructive("drops column " + column->name + " of " + OldName(*plan.before) + " and what it holds",
                    "ALTER TABLE " + OldName(*plan.before) + " DROP COLUMN " + m_old.ColumnName(*plan.before, column->name));
}

void CMigration::AlterColumns(const CTablePlan& plan) {
    if (plan.rebuild) return;
    for (const CTablePlan::CColumnChange& change : plan.changedColumns) AlterColumn(plan, change);
    if (Db2Luw() && (!plan.droppedColumns.empty() || !plan.changedColumns.empty()))
        m_new.Comment("DB2 leaves " + NewName(*plan.after) + " in reorg-pending state: REORG TABLE " +
                      NewName(*plan.after) + " before it is used again");
}

void CMigration::AlterColumn(const CTablePlan& plan, const CTablePlan::CColumnChange& change) {
    const CModelTable& table = *plan.after;
    const CModelColumn& was = *change.before;
    const CModelColumn& column = *change.after;
    const std::string tableName = NewName(table);
    const std::string name = m_new.ColumnName(table, column.name);
    const std::string what = "column " + column.name + " of " + tableName;
    const std::string type = m_new.ColumnType(column);
    const std::string defaultText = m_new.Expression(column.defaultText);
    if (m_new.IsTransactSql()) {
        if (change.type && !was.defaultText.empty())
            Manual("drop the default constraint of " + what + " before its type changes, and add it again after");
        if (change.type || change.nullable)
            Statement("ALTER TABLE " + tableName + " ALTER COLUMN " + name + " " + type +
                      (column.nullable ? " NULL" : " NOT NULL"));
        if (change.defaultValue) {
            if (!was.defaultText.empty())
                Manual("drop the default constraint of " + what + " (the server named it; the model does not)");
            if (!column.defaultText.empty())
                Statement("ALTER TABLE " + tableName + " ADD DEFAULT " + defaultText + " FOR " + name);
        }
    } else if (m_new.IsOracle()) {
        std::string parts;
        if (change.type) parts += " " + type;
        if (change.defaultValue) parts += " DEFAULT " + (column.defaultText.empty() ? std::string("NULL") : defaultText);
        if (change.nullable) parts += column.nullable ? " NULL" : " NOT NULL";
        Statement("ALTER TABLE " + tableName + " MODIFY (" + name + parts + ")");
    } else {
        // DB2 changes a type in place only to a longer one of the same kind.
        if (change.type) {
            const bool widened = was.datatype == column.datatype && column.width >= was.width &&
                                 column.scale >= was.scale && column.width - column.scale >= was.width - was.scale &&
                                 SameName(was.userDatatype, column.userDatatype);
            if (widened)
                Statement("ALTER TABLE " + tableName + " ALTER COLUMN " + name + " SET DATA TYPE " + type);
            else
                Manual("DB2 does not change " + what + " from " + m_old.ColumnType(was) + " to " + type +
                       " in place: add a new column, copy the values over, drop the old one and rename the new");
        }
        if (change.nullable) {
            if (ZOs())
                Manual("DB2 for z/OS does not change whether " + what + " admits nulls in place");
            else
                Statement("ALTER TABLE " + tableName + " ALTER COLUMN " + name +
                          (column.nullable ? " DROP NOT NULL" : " SET NOT NULL"));
        }
        if (change.defaultValue)
            Statement("ALTER TABLE " + tableName + " ALTER COLUMN " + name +
                      (column.defaultText.empty() ? std::string(" DROP DEFAULT") : " SET DEFAULT " + defaultText));
    }
}

// SQLite changes a table's columns and constraints in no other way: the
// table is made again under a new name, its rows copied, the old one
// dropped and the new one renamed.
void CMigration::Rebuild(const CTablePlan& plan) {
    const CModelTable& table = *plan.after;
    const std::string name = NewName(table);
    if (table.columns.empty()) {
        Manual("drop " + OldName(*plan.before) + ": the new model keeps no columns for it, and no SQL makes a table of none");
        return;
    }
    const std::string temporary = Quote(table.name + "__new");
    m_new.Comment("destructive: " + name + " is made again to change its columns or constraints; its rows are copied");
    m_new.Table(table, temporary);
    std::string into, from;
    for (const CModelColumn& column : table.columns) {
        bool kept = true;
        for (const CModelColumn* added : plan.addedColumns) kept = kept && added != &column;
        if (!kept) continue;
        into += (into.empty() ? "" : ", ") + m_new.ColumnName(table, column.name);
        from += (from.empty() ? "" : ", ") + m_old.ColumnName(*plan.before, column.name);
    }
    if (!into.empty()) Statement("INSERT INTO " + temporary + " (" + into + ") SELECT " + from + " FROM " + OldName(*plan.before));
    Statement("DROP TABLE " + OldName(*plan.before));
    Statement("ALTER TABLE " + temporary + " RENAME TO " + name);
}

void CMigration::AddColumns(const CTablePlan& plan) {
    if (plan.rebuild) return;
    const CModelTable& table = *plan.after;
    for (const CModelColumn* column : plan.addedColumns) {
        const std::string element = m_new.ColumnElement(table, *column);
        if (!column->nullable && column->defaultText.empty()) {
            m_new.Comment(column->name + " admits no nulls and has no default: the table must be empty");
        }
        if (m_new.IsTransactSql())
            Statement("ALTER TABLE " + NewName(table) + " ADD " + element);
        else if (m_new.IsOracle())
            Statement("ALTER TABLE " + NewName(table) + " ADD (" + element + ")");
        else
            Statement("ALTER TABLE " + NewName(table) + " ADD COLUMN " + element);
    }
}

void CMigration::AddConstraints(const CTablePlan& plan) {
    const CModelTable& table = *plan.after;
    if (!plan.rebuild) {
        if (plan.addKey && m_new.Whole(table.indexes[static_cast<std::size_t>(table.primaryKey)], table, "primary key"))
            Statement("ALTER TABLE " + NewName(table) + " ADD " +
                      m_new.PrimaryKeyClause(table, table.indexes[static_cast<std::size_t>(table.primaryKey)]));
        for (int at : plan.addChecks) {
            const CModelCheck& check = m_after.checks[static_cast<std::size_t>(at)];
            if (m_new.Writable(check)) Statement("ALTER TABLE " + NewName(table) + " ADD " + m_new.CheckClause(check));
        }
        for (std::size_t at : plan.addIndexes) {
            m_new.Index(table, at);
        }
        return;
    }
    for (std::size_t at = 0; at < table.indexes.size(); ++at) {
        m_new.Index(table, at);
    }
}

void CMigration::Comments(const CTablePlan& plan) {
    if (plan.rebuild) return;
    const CModelTable& table = *plan.after;
    if (plan.before->definition != table.definition) m_new.CommentOn("TABLE " + NewName(table), table.definition);
    auto comment = [&](const CModelColumn& column) {
        m_new.CommentOn("COLUMN " + NewName(table) + "." + m_new.ColumnName(table, column.name), column.definition);
    };
    for (const auto& [was, column] : plan.pairedColumns)
        if (was->definition != column->definition) comment(*column);
    for (const CModelColumn* column : plan.addedColumns)
        if (!column->definition.empty()) comment(*column);
}

void CMigration::Write() {
    // The models by the files they come from, which tell them apart better than their names.
    auto named = [](const CModel& model, const char* otherwise) {
        if (!model.path.empty()) return model.path.substr(model.path.find_last_of('/') + 1);
        return model.modelName.empty() ? std::string(otherwise) : model.modelName;
    };
    m_header = "-- Migration from " + named(m_before, "the old model") + " to " + named(m_after, "the new model") +
               " for " + m_new.Target() + ", written by vrnmodel\n";
    m_new.Raw(m_header);
    m_old.Prepare();
    m_new.Prepare();
    Match();
    for (CTablePlan& plan : m_plans) plan.rebuild = Generic() && plan.Changed();
    PlanForeignKeys();
    // SQLite adds and drops no foreign key of a table that exists: the table is made again.
    if (Generic()) {
        for (const CModelForeignKey* key : m_dropKeys)
            m_planOfOld[&m_before.tables[static_cast<std::size_t>(key->childTable)]]->rebuild = true;
        for (const CModelForeignKey* key : m_addKeys) {
            const auto plan = m_planOfNew.find(&m_after.tables[static_cast<std::size_t>(key->childTable)]);
            if (plan != m_planOfNew.end()) plan->second->rebuild = true;
        }
    }
    PlanCode();

    // SQL*Plus would read an & in a text as the start of a variable to ask for.
    if (m_new.IsOracle()) m_new.Statement("SET DEFINE OFF");
    m_opening = m_new.Statements();
    CatalogSteps();
    for (const CTablePlan& plan : m_plans) {
        if (plan.manual.empty()) continue;
        Part("Changes of columns this script does not make");
        for (const std::string& step : plan.manual) Manual(step);
    }
    bool rebuilds = false;
    for (const CTablePlan& plan : m_plans) rebuilds = rebuilds || plan.rebuild;
    if (rebuilds) {
        m_new.Pending("\n");
        Statement("PRAGMA foreign_keys = OFF");
    }

    Part("Foreign keys and code that depend on what changes");
    if (!Generic())
        for (const CModelForeignKey* key : m_dropKeys) DropForeignKey(*key);
    for (const auto& [kind, code] : m_dropCode)
        if (DialectOfPlatform(m_before.platform, false).family == m_new.Dialect().family)
            DropCode(kind, *code, code->kind == 2);
    Part("Indexes and constraints");
    for (const CTablePlan& plan : m_plans) DropDependents(plan);
    Part("Columns and tables");
    for (const CTablePlan& plan : m_plans) DropColumns(plan);
    for (const CModelTable* table : m_dropped) {
        if (table->columns.empty())
            Manual("drop " + OldName(*table) + " (the model holds no columns for it; it may be a view)");
        else
            Destructive("drops table " + OldName(*table) + " and its rows", "DROP TABLE " + OldName(*table));
    }
    for (const CTablePlan& plan : m_plans) AlterColumns(plan);
    for (const CTablePlan& plan : m_plans)
        if (plan.rebuild) Rebuild(plan);

    Part("New tables and columns");
    for (const CModelTable* table : m_added) {
        m_new.Table(*table);
    }
    for (const CTablePlan& plan : m_plans) AddColumns(plan);
    Part("Keys, checks, indexes and comments");
    for (const CTablePlan& plan : m_plans) AddConstraints(plan);
    for (const CModelTable* table : m_added) {
        m_new.Indexes(*table);
        m_new.Comments(*table);
        m_new.Bindings(*table);
    }
    for (const CTablePlan& plan : m_plans) Comments(plan);
    Part("Code");
    for (const auto& [kind, code] : m_addCode) {
        m_new.CodeObject(kind, code->name, code->text);
        if (std::string(kind) == "package") m_new.CodeObject(kind, code->name, code->body);
    }
    if (!Generic()) {
        Part("Foreign keys");
        for (const CModelForeignKey* key : m_addKeys) {
            m_new.ForeignKey(*key);
        }
    }
    if (rebuilds) {
        m_new.Pending("\n");
        Statement("PRAGMA foreign_keys = ON");
    }
    m_new.Finish();
    if (m_new.Statements() == m_opening && m_result.manualSteps.empty() && m_newScript.warnings.empty()) {
        m_result.text = m_header + "-- Nothing changes.\n";
        return;
    }
    m_result.text = m_newScript.text;
    m_result.warnings = m_newScript.warnings;
    m_result.statements = m_new.Statements();
}

}  // namespace

CMigrationScript WriteMigration(const CModel& before, const CModel& after, const CDdlOptions& options) {
    CMigrationScript result;
    CMigration(before, after, options, result).Write();
    return result;
}
