#include "reader/ModelCompare.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>
#include <set>
#include <tuple>
#include <unordered_map>

namespace {

// Catalogue numbers of the two properties whose text names a column by a
// number of its table (the attribute number, the sequence number): numbers
// a file gives out as it likes, so they are compared as the column's name.
constexpr int kPartitionColumnProperty = 7;
constexpr int kPropertyColumnProperty = 19;

// Values longer than this are not repeated by Describe.
constexpr std::size_t kShortValue = 60;

std::string Upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

bool SameName(const std::string& a, const std::string& b) { return Upper(a) == Upper(b); }

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

std::string TrimRight(std::string text) {
    while (!text.empty() && IsSpace(text.back())) text.pop_back();
    return text;
}

std::string Trim(const std::string& text) {
    std::size_t start = 0;
    while (start < text.size() && IsSpace(text[start])) ++start;
    return TrimRight(text.substr(start));
}

// A check's text with each run of whitespace as one blank: its layout is
// not its meaning.
std::string CollapseSpaces(const std::string& text) {
    std::string collapsed;
    for (char c : text) {
        if (!IsSpace(c)) collapsed += c;
        else if (!collapsed.empty() && collapsed.back() != ' ') collapsed += ' ';
    }
    return TrimRight(collapsed);
}

// Code as written by any editor: \r\n and \n end lines alike, and blanks at
// the end of a line or of the text are not part of it.
std::string NormaliseCode(const std::string& text) {
    std::string normal;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        normal += TrimRight(text.substr(start, end - start));
        normal += '\n';
        start = end + 1;
    }
    return TrimRight(normal);
}

// "OWNER.NAME", or "NAME" without an owner; owners lose the blanks some catalogs pad them with.
std::string Qualified(const std::string& owner, const std::string& name) {
    const std::string trimmed = TrimRight(owner);
    return trimmed.empty() ? name : trimmed + "." + name;
}

// The key of an owned name: owner and name apart (a name may hold a dot), in any case.
std::string OwnedKey(const std::string& owner, const std::string& name) {
    return Upper(TrimRight(owner)) + '\x1f' + Upper(name);
}

// A name as the key objects pair by. An empty name is a name too: a column
// or a default without one is still the same object in both models.
std::string NameKey(const std::string& name) { return '\x1f' + Upper(name); }

std::string YesNo(bool value) { return value ? "yes" : "no"; }

std::string Action(char action) {
    switch (action) {
        case 'N': return "none";
        case 'C': return "cascade";
        case 'R': return "restrict";
        case 'S': return "set null";
        case 'D': return "set default";
        default: return std::string(1, action);
    }
}

std::string TriggerKind(int kind) {
    switch (kind) {
        case 1: return "before";
        case 2: return "after";
        case 3: return "instead of";
        default: return std::to_string(kind);
    }
}

std::string ProcedureKind(int kind) {
    switch (kind) {
        case 1: return "procedure";
        case 2: return "function";
        default: return std::to_string(kind);
    }
}

std::string StorageKind(int kind) {
    switch (kind) {
        case 1: return "storage group";
        case 2: return "database";
        case 3: return "table space";
        case 4: return "buffer pool";
        default: return "storage object";
    }
}

// "A, B DESC": an index's columns in order with their direction.
std::string IndexColumns(const CModelIndex& index) {
    std::string text;
    for (const CModelIndexColumn& column : index.columns) {
        if (!text.empty()) text += ", ";
        text += column.name;
        if (column.descending) text += " DESC";
    }
    return text;
}

std::string ChildColumns(const CModelForeignKey& foreignKey) {
    std::string text;
    for (const CModelColumnPair& pair : foreignKey.pairs) text += (text.empty() ? "" : ", ") + pair.childColumn;
    return text;
}

std::string ParentColumns(const CModelForeignKey& foreignKey) {
    std::string text;
    for (const CModelColumnPair& pair : foreignKey.pairs) text += (text.empty() ? "" : ", ") + pair.parentColumn;
    return text;
}

// "3=8, 5=2": the storage parameters that are given, by their 1-based slot.
std::string StorageParams(const std::array<int, 11>& params) {
    std::string text;
    for (std::size_t i = 0; i < params.size(); ++i)
        if (params[i] != -1) text += (text.empty() ? "" : ", ") + std::to_string(i + 1) + "=" + std::to_string(params[i]);
    return text;
}

// A property's value as compared: its value number, its text when it has
// one (a column it names by number as that column's name) and its integer.
using CPropertyValue = std::tuple<int, bool, std::string, int>;

CPropertyValue ValueOf(const CModelProperty& property, const CModelTable& table) {
    std::string text = property.text;
    if (property.hasText && !text.empty() &&
        (property.propertyNo == kPartitionColumnProperty || property.propertyNo == kPropertyColumnProperty)) {
        char* end = nullptr;
        const unsigned long number = std::strtoul(text.c_str(), &end, 10);
        if (*end == '\0') {
            for (const CModelColumn& column : table.columns) {
                const std::uint32_t own = property.propertyNo == kPartitionColumnProperty ? column.attributeNo
                                                                                          : column.sequenceNo;
                if (own == number) text = Upper(column.name);
            }
        }
    }
    return {property.valueNo, property.hasText, property.hasText ? text : std::string(), property.intArg};
}

// "LOGGING", "INITIAL 1024", "Column Number QTY [1]".
std::string ShowValue(const CPropertyValue& value, const std::string& valueName) {
    std::string text = valueName.empty() ? "value " + std::to_string(std::get<0>(value)) : valueName;
    if (std::get<1>(value)) text += " " + (std::get<2>(value).empty() ? std::string("''") : std::get<2>(value));
    if (std::get<3>(value) != 0) text += " [" + std::to_string(std::get<3>(value)) + "]";
    return text;
}

// Which object of one list each object of the other is paired with; -1 for none.
struct CPairing {
    CPairing(std::size_t beforeCount, std::size_t afterCount) : after(beforeCount, -1), before(afterCount, -1) {}
    std::vector<int> after;   // per object of `before`
    std::vector<int> before;  // per object of `after`
};

// What an object is matched by, and the name that decides between objects
// of one key (both upper case).
struct CKeyed {
    std::string key;   // "" matches nothing
    std::string name;
};

// Pairs the objects not yet paired whose keys are equal: first those whose
// names are equal too, so that two objects of one key (two foreign keys
// over the same columns) keep their own partners whatever the row order;
// then the rest, in order.
void Pair(const std::vector<CKeyed>& before, const std::vector<CKeyed>& after, CPairing& pairing) {
    std::unordered_map<std::string, std::vector<int>> candidates;
    for (std::size_t j = 0; j < after.size(); ++j)
        if (!after[j].key.empty() && pairing.before[j] < 0) candidates[after[j].key].push_back(static_cast<int>(j));
    for (const bool byName : {true, false}) {
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (before[i].key.empty() || pairing.after[i] >= 0) continue;
            const auto found = candidates.find(before[i].key);
            if (found == candidates.end()) continue;
            for (const int j : found->second) {
                if (pairing.before[j] >= 0 || (byName && before[i].name != after[j].name)) continue;
                pairing.after[i] = j;
                pairing.before[j] = static_cast<int>(i);
                break;
            }
        }
    }
}

// Which entries of `sequence` (distinct numbers) make one of its longest
// increasing subsequences. A column outside it is one that moved: adding or
// dropping a column moves no other.
std::vector<bool> LongestIncreasing(const std::vector<int>& sequence) {
    std::vector<int> tails;  // tails[k]: the entry ending the best run of length k + 1 so far
    std::vector<int> previous(sequence.size(), -1);
    for (std::size_t i = 0; i < sequence.size(); ++i) {
        const auto at = std::lower_bound(tails.begin(), tails.end(), sequence[i],
                                         [&](int entry, int value) { return sequence[entry] < value; });
        if (at != tails.begin()) previous[i] = *(at - 1);
        if (at == tails.end()) tails.push_back(static_cast<int>(i));
        else *at = static_cast<int>(i);
    }
    std::vector<bool> kept(sequence.size(), false);
    for (int i = tails.empty() ? -1 : tails.back(); i >= 0; i = previous[i]) kept[i] = true;
    return kept;
}

// One model with the names of its defaults and rules by id: bindings are
// compared by name, ids being the file's own.
class CSide {
public:
    explicit CSide(const CModel& model) : m_model(model) {
        for (const CModelNamedText& named : model.defaults) m_defaults[named.id] = named.name;
        for (const CModelNamedText& named : model.rules) m_rules[named.id] = named.name;
    }
    const CModel& operator*() const { return m_model; }
    const CModel* operator->() const { return &m_model; }
    std::string Default(std::uint32_t id) const { return Named(m_defaults, id); }
    std::string Rule(std::uint32_t id) const { return Named(m_rules, id); }
    // "" for an index that names no table.
    std::string TableName(int table) const {
        return Known(table) ? Qualified(m_model.tables[table].owner, m_model.tables[table].name) : std::string();
    }
    std::string TableKey(int table) const {
        return Known(table) ? OwnedKey(m_model.tables[table].owner, m_model.tables[table].name) : std::string();
    }

private:
    bool Known(int table) const { return table >= 0 && static_cast<std::size_t>(table) < m_model.tables.size(); }
    static std::string Named(const std::unordered_map<std::uint32_t, std::string>& names, std::uint32_t id) {
        const auto found = names.find(id);
        return found == names.end() ? std::string() : found->second;
    }
    const CModel& m_model;
    std::unordered_map<std::uint32_t, std::string> m_defaults, m_rules;
};

// What a change is about: the object's readable name and its table.
struct CObject {
    std::string table;
    std::string object;
};

class CComparer {
public:
    CComparer(const CModel& before, const CModel& after, const CCompareOptions& options)
        : m_before(before), m_after(after), m_options(options) {}

    std::vector<CModelChange> Run() {
        Tables();
        if (m_options.foreignKeys) ForeignKeys(CObject(), UnownedForeignKeys(*m_before), UnownedForeignKeys(*m_after));
        if (m_options.checks) Checks(CObject(), UnownedChecks(*m_before), UnownedChecks(*m_after));
        if (m_options.userDatatypes) Catalog();
        if (m_options.code) Code();
        if (m_options.storageObjects) StorageObjects();
        return std::move(m_changes);
    }

private:
    void Add(EModelChange change, const CObject& object, std::string field = {}, std::string before = {},
             std::string after = {}) {
        m_changes.push_back({change, object.object, object.table, std::move(field), std::move(before), std::move(after)});
    }
    void Field(const CObject& object, const char* field, const std::string& before, const std::string& after, bool same) {
        if (!same) Add(EModelChange::Changed, object, field, before, after);
    }
    void Text(const CObject& object, const char* field, const std::string& before, const std::string& after) {
        Field(object, field, before, after, before == after);
    }
    void Name(const CObject& object, const char* field, const std::string& before, const std::string& after) {
        Field(object, field, before, after, SameName(before, after));
    }
    void Number(const CObject& object, const char* field, int before, int after) {
        Field(object, field, std::to_string(before), std::to_string(after), before == after);
    }
    void Flag(const CObject& object, const char* field, bool before, bool after) {
        Field(object, field, YesNo(before), YesNo(after), before == after);
    }
    void CodeText(const CObject& object, const char* field, const std::string& before, const std::string& after) {
        Field(object, field, before, after, NormaliseCode(before) == NormaliseCode(after));
    }

    // Walks two lists paired: each object of `before` in order, paired or
    // dropped, then the added ones of `after` in order.
    template <class T, class NameOf, class Compare>
    void Walk(const std::vector<const T*>& before, const std::vector<const T*>& after, const CPairing& pairing,
              NameOf nameOf, Compare compare) {
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (pairing.after[i] >= 0) compare(*before[i], *after[pairing.after[i]], i, pairing.after[i]);
            else Add(EModelChange::Dropped, nameOf(*before[i]));
        }
        for (std::size_t j = 0; j < after.size(); ++j)
            if (pairing.before[j] < 0) Add(EModelChange::Added, nameOf(*after[j]));
    }
    template <class T, class KeyOf, class NameOf, class Compare>
    void Match(const std::vector<const T*>& before, const std::vector<const T*>& after, KeyOf keyOf, NameOf nameOf,
               Compare compare) {
        CPairing pairing(before.size(), after.size());
        std::vector<CKeyed> beforeKeys, afterKeys;
        for (const T* object : before) beforeKeys.push_back(keyOf(*object));
        for (const T* object : after) afterKeys.push_back(keyOf(*object));
        Pair(beforeKeys, afterKeys, pairing);
        Walk(before, after, pairing, nameOf, compare);
    }
    template <class T>
    static std::vector<const T*> All(const std::vector<T>& objects) {
        std::vector<const T*> all;
        for (const T& object : objects) all.push_back(&object);
        return all;
    }
    template <class T>
    static std::vector<const T*> Picked(const std::vector<T>& objects, const std::vector<int>& picked) {
        std::vector<const T*> all;
        for (const int index : picked) all.push_back(&objects[index]);
        return all;
    }

    void Tables() {
        const auto name = [](const CModelTable& table) {
            const std::string qualified = Qualified(table.owner, table.name);
            return CObject{qualified, "table " + qualified};
        };
        Match(All(m_before->tables), All(m_after->tables),
              [](const CModelTable& table) { return CKeyed{OwnedKey(table.owner, table.name), ""}; }, name,
              [&](const CModelTable& before, const CModelTable& after, std::size_t, std::size_t) {
                  Table(name(before), before, after);
              });
    }

    void Table(const CObject& table, const CModelTable& before, const CModelTable& after) {
        if (m_options.storage) Storage(table, before, after, before, after);
        if (m_options.columns) Columns(table, before, after);
        Indexes(table, before, after);
        if (m_options.foreignKeys)
            ForeignKeys(table, Picked(m_before->foreignKeys, before.foreignKeys),
                        Picked(m_after->foreignKeys, after.foreignKeys));
        if (m_options.checks)
            Checks(table, Picked(m_before->checks, before.checks), Picked(m_after->checks, after.checks));
        if (m_options.partitions) Partitions(table, before.partitions, after.partitions, before, after);
    }

    // The storage of a table or an index; the tables are those whose
    // columns the properties may name.
    template <class T>
    void Storage(const CObject& object, const T& before, const T& after, const CModelTable& beforeTable,
                 const CModelTable& afterTable) {
        Name(object, "storage space", before.storageSpace, after.storageSpace);
        Text(object, "storage params", StorageParams(before.storageParams), StorageParams(after.storageParams));
        Properties(object, before.properties, after.properties, beforeTable, afterTable);
    }

    // Properties as sets per property number: each number whose values
    // differ is one change, named after the property.
    void Properties(const CObject& object, const std::vector<CModelProperty>& before,
                    const std::vector<CModelProperty>& after, const CModelTable& beforeTable,
                    const CModelTable& afterTable) {
        struct CValues {
            std::set<CPropertyValue> before, after;
            std::string name;
            std::map<int, std::string> valueNames;
        };
        std::map<int, CValues> byNumber;
        for (const bool isBefore : {true, false}) {
            for (const CModelProperty& property : isBefore ? before : after) {
                CValues& values = byNumber[property.propertyNo];
                if (values.name.empty()) values.name = property.name;
                values.valueNames[property.valueNo] = property.value;
                (isBefore ? values.before : values.after).insert(ValueOf(property, isBefore ? beforeTable : afterTable));
            }
        }
        for (const auto& entry : byNumber) {
            // Named, not bound: a lambda may not capture a structured binding in C++17.
            const int number = entry.first;
            const CValues& values = entry.second;
            if (values.before == values.after) continue;
            const auto show = [&](const std::set<CPropertyValue>& set) {
                std::string text;
                for (const CPropertyValue& value : set)
                    text += (text.empty() ? "" : "; ") + ShowValue(value, values.valueNames.at(std::get<0>(value)));
                return text;
            };
            const std::string field = "property " + (values.name.empty() ? std::to_string(number) : values.name);
            Add(EModelChange::Changed, object, field, show(values.before), show(values.after));
        }
    }

    void Columns(const CObject& table, const CModelTable& before, const CModelTable& after) {
        const std::vector<const CModelColumn*> beforeColumns = All(before.columns), afterColumns = All(after.columns);
        CPairing pairing(beforeColumns.size(), afterColumns.size());
        std::vector<CKeyed> beforeKeys, afterKeys;
        for (const CModelColumn* column : beforeColumns) beforeKeys.push_back({NameKey(column->name), ""});
        for (const CModelColumn* column : afterColumns) afterKeys.push_back({NameKey(column->name), ""});
        Pair(beforeKeys, afterKeys, pairing);
        // The paired columns' places in `after`, in `before`'s order: those
        // off its longest increasing run have moved.
        std::vector<int> places;
        for (const int j : pairing.after)
            if (j >= 0) places.push_back(j);
        const std::vector<bool> kept = LongestIncreasing(places);
        std::vector<bool> moved(beforeColumns.size(), false);
        for (std::size_t i = 0, k = 0; i < beforeColumns.size(); ++i)
            if (pairing.after[i] >= 0) moved[i] = !kept[k++];
        Walk(beforeColumns, afterColumns, pairing,
             [&](const CModelColumn& column) { return CObject{table.table, table.object + " column " + column.name}; },
             [&](const CModelColumn& b, const CModelColumn& a, std::size_t i, std::size_t j) {
                 const CObject column{table.table, table.object + " column " + b.name};
                 Text(column, "datatype", b.datatype, a.datatype);
                 Number(column, "width", b.width, a.width);
                 Number(column, "scale", b.scale, a.scale);
                 Flag(column, "nullable", b.nullable, a.nullable);
                 Field(column, "default", b.defaultText, a.defaultText, Trim(b.defaultText) == Trim(a.defaultText));
                 Flag(column, "identity", b.identity, a.identity);
                 Name(column, "user datatype", b.userDatatype, a.userDatatype);
                 Name(column, "bound default", m_before.Default(b.defaultId), m_after.Default(a.defaultId));
                 Name(column, "bound rule", m_before.Rule(b.ruleId), m_after.Rule(a.ruleId));
                 if (moved[i]) Field(column, "position", std::to_string(i + 1), std::to_string(j + 1), false);
             });
    }

    // The primary key, then the other indexes: their own fields under the
    // keys switch, their storage and partitions under those switches.
    void Indexes(const CObject& table, const CModelTable& before, const CModelTable& after) {
        const CModelIndex* beforeKey = before.primaryKey >= 0 ? &before.indexes[before.primaryKey] : nullptr;
        const CModelIndex* afterKey = after.primaryKey >= 0 ? &after.indexes[after.primaryKey] : nullptr;
        const CObject primary{table.table, table.object + " primary key"};
        if (beforeKey && afterKey) {
            if (m_options.keysAndIndexes) {
                Name(primary, "columns", IndexColumns(*beforeKey), IndexColumns(*afterKey));
                Flag(primary, "clustered", beforeKey->clustered, afterKey->clustered);
            }
            IndexContents(primary, *beforeKey, *afterKey, before, after);
        } else if (m_options.keysAndIndexes && (beforeKey || afterKey)) {
            Add(beforeKey ? EModelChange::Dropped : EModelChange::Added, primary);
        }

        std::vector<const CModelIndex*> beforeIndexes, afterIndexes;
        for (std::size_t i = 0; i < before.indexes.size(); ++i)
            if (static_cast<int>(i) != before.primaryKey) beforeIndexes.push_back(&before.indexes[i]);
        for (std::size_t i = 0; i < after.indexes.size(); ++i)
            if (static_cast<int>(i) != after.primaryKey) afterIndexes.push_back(&after.indexes[i]);
        // By name where both have one, else by what the index is: its
        // uniqueness and its columns in order with their direction.
        CPairing pairing(beforeIndexes.size(), afterIndexes.size());
        const auto byName = [](const std::vector<const CModelIndex*>& indexes) {
            std::vector<CKeyed> keys;
            for (const CModelIndex* index : indexes) keys.push_back({Upper(index->name), ""});
            return keys;
        };
        const auto bySignature = [](const std::vector<const CModelIndex*>& indexes) {
            std::vector<CKeyed> keys;
            for (const CModelIndex* index : indexes)
                keys.push_back({(index->unique ? "U " : "N ") + Upper(IndexColumns(*index)), ""});
            return keys;
        };
        Pair(byName(beforeIndexes), byName(afterIndexes), pairing);
        Pair(bySignature(beforeIndexes), bySignature(afterIndexes), pairing);
        const auto name = [&](const CModelIndex& index) {
            return CObject{table.table, table.object + " index " +
                                            (index.name.empty() ? "(" + IndexColumns(index) + ")" : index.name)};
        };
        for (std::size_t i = 0; i < beforeIndexes.size(); ++i) {
            if (pairing.after[i] < 0) {
                if (m_options.keysAndIndexes) Add(EModelChange::Dropped, name(*beforeIndexes[i]));
                continue;
            }
            const CModelIndex& b = *beforeIndexes[i];
            const CModelIndex& a = *afterIndexes[pairing.after[i]];
            const CObject index = name(b);
            // Names are not compared: an index given without one has a name
            // the builder made up from its place among the table's indexes.
            if (m_options.keysAndIndexes) {
                Flag(index, "unique", b.unique, a.unique);
                Flag(index, "clustered", b.clustered, a.clustered);
                Name(index, "columns", IndexColumns(b), IndexColumns(a));
            }
            IndexContents(index, b, a, before, after);
        }
        if (m_options.keysAndIndexes)
            for (std::size_t j = 0; j < afterIndexes.size(); ++j)
                if (pairing.before[j] < 0) Add(EModelChange::Added, name(*afterIndexes[j]));
    }

    void IndexContents(const CObject& index, const CModelIndex& before, const CModelIndex& after,
                       const CModelTable& beforeTable, const CModelTable& afterTable) {
        if (m_options.storage) Storage(index, before, after, beforeTable, afterTable);
        if (m_options.partitions) Partitions(index, before.partitions, after.partitions, beforeTable, afterTable);
    }

    static std::vector<int> UnownedForeignKeys(const CModel& model) {
        std::vector<int> unowned;
        for (std::size_t i = 0; i < model.foreignKeys.size(); ++i)
            if (model.foreignKeys[i].childTable < 0) unowned.push_back(static_cast<int>(i));
        return unowned;
    }
    static std::vector<int> UnownedChecks(const CModel& model) {
        std::vector<int> unowned;
        for (std::size_t i = 0; i < model.checks.size(); ++i)
            if (model.checks[i].table < 0) unowned.push_back(static_cast<int>(i));
        return unowned;
    }
    void ForeignKeys(const CObject& table, const std::vector<int>& before, const std::vector<int>& after) {
        ForeignKeys(table, Picked(m_before->foreignKeys, before), Picked(m_after->foreignKeys, after));
    }
    void Checks(const CObject& table, const std::vector<int>& before, const std::vector<int>& after) {
        Checks(table, Picked(m_before->checks, before), Picked(m_after->checks, after));
    }

    // Foreign keys of one child table, by their parent table and child
    // columns: names are often made up by whoever wrote the key.
    void ForeignKeys(const CObject& table, const std::vector<const CModelForeignKey*>& before,
                     const std::vector<const CModelForeignKey*>& after) {
        const auto keyOf = [](const CSide& side) {
            return [&side](const CModelForeignKey& foreignKey) {
                return CKeyed{side.TableKey(foreignKey.parentTable) + '\x1e' + Upper(ChildColumns(foreignKey)),
                              Upper(foreignKey.name)};
            };
        };
        const auto nameOf = [&table](const CSide& side) {
            return [&side, &table](const CModelForeignKey& foreignKey) {
                const std::string of = table.table.empty() ? "" : " of " + table.table;
                if (!foreignKey.name.empty()) return CObject{table.table, "foreign key " + foreignKey.name + of};
                return CObject{table.table, "foreign key (" + ChildColumns(foreignKey) + ")" + of + " to " +
                                                side.TableName(foreignKey.parentTable)};
            };
        };
        CPairing pairing(before.size(), after.size());
        std::vector<CKeyed> beforeKeys, afterKeys;
        for (const CModelForeignKey* foreignKey : before) beforeKeys.push_back(keyOf(m_before)(*foreignKey));
        for (const CModelForeignKey* foreignKey : after) afterKeys.push_back(keyOf(m_after)(*foreignKey));
        Pair(beforeKeys, afterKeys, pairing);
        for (std::size_t i = 0; i < before.size(); ++i) {
            if (pairing.after[i] < 0) {
                Add(EModelChange::Dropped, nameOf(m_before)(*before[i]));
                continue;
            }
            const CModelForeignKey& b = *before[i];
            const CModelForeignKey& a = *after[pairing.after[i]];
            const CObject object = nameOf(m_before)(b);
            Name(object, "name", b.name, a.name);
            Name(object, "parent columns", ParentColumns(b), ParentColumns(a));
            Flag(object, "identifying", b.identifying, a.identifying);
            Flag(object, "optional", b.optional, a.optional);
            Text(object, "on delete", Action(b.onDelete), Action(a.onDelete));
            Text(object, "on update", Action(b.onUpdate), Action(a.onUpdate));
        }
        for (std::size_t j = 0; j < after.size(); ++j)
            if (pairing.before[j] < 0) Add(EModelChange::Added, nameOf(m_after)(*after[j]));
    }

    // Checks by their column and text: what a check says is what it is.
    void Checks(const CObject& table, const std::vector<const CModelCheck*>& before,
                const std::vector<const CModelCheck*>& after) {
        const auto nameOf = [&table](const CModelCheck& check) {
            std::string object =
                "check constraint " + (check.name.empty() ? "(" + CollapseSpaces(check.text) + ")" : check.name);
            if (!table.table.empty()) object += " of " + table.table;
            if (!check.column.empty()) object += " column " + check.column;
            return CObject{table.table, object};
        };
        Match(before, after,
              [](const CModelCheck& check) {
                  return CKeyed{Upper(check.column) + '\x1e' + CollapseSpaces(check.text), Upper(check.name)};
              },
              nameOf,
              [&](const CModelCheck& b, const CModelCheck& a, std::size_t, std::size_t) {
                  Name(nameOf(b), "name", b.name, a.name);
              });
    }

    void Partitions(const CObject& owner, const std::vector<int>& before, const std::vector<int>& after,
                    const CModelTable& beforeTable, const CModelTable& afterTable) {
        Match(Picked(m_before->partitions, before), Picked(m_after->partitions, after),
              [](const CModelPartition& partition) { return CKeyed{NameKey(partition.name), ""}; },
              [&](const CModelPartition& partition) {
                  return CObject{owner.table, owner.object + " partition " + partition.name};
              },
              [&](const CModelPartition& b, const CModelPartition& a, std::size_t, std::size_t) {
                  Properties(CObject{owner.table, owner.object + " partition " + b.name}, b.properties, a.properties,
                             beforeTable, afterTable);
              });
    }

    void Catalog() {
        const auto named = [](const char* kind) {
            return [kind](const CModelNamedText& object) { return CObject{"", std::string(kind) + " " + object.name}; };
        };
        const auto byName = [](const CModelNamedText& object) { return CKeyed{NameKey(object.name), ""}; };
        Match(All(m_before->defaults), All(m_after->defaults), byName, named("default"),
              [&](const CModelNamedText& b, const CModelNamedText& a, std::size_t, std::size_t) {
                  CodeText(named("default")(b), "text", b.text, a.text);
              });
        Match(All(m_before->rules), All(m_after->rules), byName, named("rule"),
              [&](const CModelNamedText& b, const CModelNamedText& a, std::size_t, std::size_t) {
                  CodeText(named("rule")(b), "text", b.text, a.text);
              });
        const auto userDatatype = [](const CModelUserDatatype& type) { return CObject{"", "user datatype " + type.name}; };
        Match(All(m_before->userDatatypes), All(m_after->userDatatypes),
              [](const CModelUserDatatype& type) { return CKeyed{NameKey(type.name), ""}; }, userDatatype,
              [&](const CModelUserDatatype& b, const CModelUserDatatype& a, std::size_t, std::size_t) {
                  const CObject object = userDatatype(b);
                  Text(object, "datatype", b.datatype, a.datatype);
                  Number(object, "length", b.length, a.length);
                  Number(object, "scale", b.scale, a.scale);
                  Name(object, "bound default", m_before.Default(b.defaultId), m_after.Default(a.defaultId));
                  Name(object, "bound rule", m_before.Rule(b.ruleId), m_after.Rule(a.ruleId));
              });
    }

    void Code() {
        const auto byName = [](const CModelCode& code) { return CKeyed{OwnedKey(code.owner, code.name), ""}; };
        const auto named = [](const char* kind) {
            return [kind](const CModelCode& code) {
                return CObject{"", std::string(kind) + " " + Qualified(code.owner, code.name)};
            };
        };
        Match(All(m_before->triggers), All(m_after->triggers), byName, named("trigger"),
              [&](const CModelCode& b, const CModelCode& a, std::size_t, std::size_t) {
                  const CObject object = named("trigger")(b);
                  Name(object, "table", m_before.TableName(b.table), m_after.TableName(a.table));
                  Text(object, "kind", TriggerKind(b.kind), TriggerKind(a.kind));
                  CodeText(object, "text", b.text, a.text);
              });
        Match(All(m_before->procedures), All(m_after->procedures), byName, named("procedure"),
              [&](const CModelCode& b, const CModelCode& a, std::size_t, std::size_t) {
                  const CObject object = named("procedure")(b);
                  Text(object, "kind", ProcedureKind(b.kind), ProcedureKind(a.kind));
                  CodeText(object, "text", b.text, a.text);
              });
        Match(All(m_before->packages), All(m_after->packages), byName, named("package"),
              [&](const CModelCode& b, const CModelCode& a, std::size_t, std::size_t) {
                  const CObject object = named("package")(b);
                  CodeText(object, "text", b.text, a.text);
                  CodeText(object, "body", b.body, a.body);
              });
    }

    void StorageObjects() {
        const auto named = [](const CModelStorageObject& object) {
            return CObject{"", StorageKind(object.kind) + " " + object.name};
        };
        Match(All(m_before->storageObjects), All(m_after->storageObjects),
              [](const CModelStorageObject& object) {
                  return CKeyed{std::to_string(object.kind) + '\x1e' + Upper(object.name), ""};
              },
              named,
              [&](const CModelStorageObject& b, const CModelStorageObject& a, std::size_t, std::size_t) {
                  const CObject object = named(b);
                  Field(object, "owner", TrimRight(b.owner), TrimRight(a.owner), SameName(TrimRight(b.owner), TrimRight(a.owner)));
                  CodeText(object, "text", b.text, a.text);
              });
    }

    CSide m_before, m_after;
    const CCompareOptions& m_options;
    std::vector<CModelChange> m_changes;
};

// A value as Describe shows it.
std::string Shown(const std::string& value) { return value.empty() ? "(none)" : value; }

bool TooLong(const std::string& value) { return value.size() > kShortValue || value.find('\n') != std::string::npos; }

}  // namespace

std::string CModelChange::Describe() const {
    // An object within a table is told as the table's change: "table T: column C added".
    const std::string prefix = "table " + table + " ";
    const bool within = !table.empty() && object.compare(0, prefix.size(), prefix) == 0;
    const std::string subject = within ? "table " + table + ": " + object.substr(prefix.size()) : object;
    switch (change) {
        case EModelChange::Added: return subject + " added";
        case EModelChange::Dropped: return subject + " dropped";
        case EModelChange::Changed: break;
    }
    if (TooLong(before) || TooLong(after)) return object + ": " + field + " changed";
    return object + ": " + field + " " + Shown(before) + " -> " + Shown(after);
}

std::vector<CModelChange> CompareModels(const CModel& before, const CModel& after, const CCompareOptions& options) {
    return CComparer(before, after, options).Run();
}
