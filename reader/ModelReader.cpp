#include "reader/ModelReader.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "store/PropertyMgr.h"
#include "store/VrnFile.h"

namespace {

struct CCloser {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
    void operator()(sqlite3_stmt* stmt) const { sqlite3_finalize(stmt); }
};
using CDatabase = std::unique_ptr<sqlite3, CCloser>;

// One query's rows, read column by column by name.
class CRows {
public:
    CRows(sqlite3* db, const char* sql) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK) m_stmt.reset(stmt);
        else sqlite3_finalize(stmt);
    }
    bool Next() { return m_stmt && sqlite3_step(m_stmt.get()) == SQLITE_ROW; }
    std::int64_t Int(int column) const { return sqlite3_column_int64(m_stmt.get(), column); }
    std::uint32_t Key(int column) const { return static_cast<std::uint32_t>(Int(column)); }
    std::string Text(int column) const {
        const unsigned char* text = sqlite3_column_text(m_stmt.get(), column);
        return text ? std::string(reinterpret_cast<const char*>(text),
                                  static_cast<std::size_t>(sqlite3_column_bytes(m_stmt.get(), column)))
                    : std::string();
    }
    bool IsNull(int column) const { return sqlite3_column_type(m_stmt.get(), column) == SQLITE_NULL; }

private:
    std::unique_ptr<sqlite3_stmt, CCloser> m_stmt;
};

// A model file's name as SQLite takes it: names that start with "file:"
// would be read as URIs.
std::string SqliteFileName(const std::string& path) {
    return path.compare(0, 5, "file:") == 0 ? "./" + path : path;
}

// Two 32-bit keys (an owner's key and a number within it) as one hash key.
std::uint64_t KeyPair(std::uint32_t owner, std::uint32_t number) { return std::uint64_t(owner) << 32 | number; }
using CKeySet = std::unordered_set<std::uint64_t>;

// Properties of one kind of owner by its key, in the order they were stored.
std::map<std::uint32_t, std::vector<CModelProperty>> ReadProperties(sqlite3* db, const char* ownerKind) {
    std::map<std::uint32_t, std::vector<CModelProperty>> byOwner;
    const std::string sql = std::string("SELECT owner_key, property_no, value_no, text, int_arg FROM Property "
                                        "WHERE owner_kind = '") + ownerKind + "' ORDER BY prop_seq";
    for (CRows rows(db, sql.c_str()); rows.Next();) {
        CModelProperty property;
        property.propertyNo = static_cast<int>(rows.Int(1));
        property.valueNo = static_cast<int>(rows.Int(2));
        property.name = CPropertyMgr::PropertyName(property.propertyNo);
        property.value = CPropertyMgr::PropertyValueText(property.valueNo);
        property.hasText = !rows.IsNull(3);
        property.text = rows.Text(3);
        property.intArg = static_cast<int>(rows.Int(4));
        byOwner[rows.Key(0)].push_back(std::move(property));
    }
    return byOwner;
}

std::vector<CModelProperty> Take(std::map<std::uint32_t, std::vector<CModelProperty>>& byOwner, std::uint32_t key) {
    const auto found = byOwner.find(key);
    return found == byOwner.end() ? std::vector<CModelProperty>() : std::move(found->second);
}

// The identity property of attributes (the catalogue's "Identity Column").
constexpr int kIdentityProperty = 34;

class CModelLoader {
public:
    CModelLoader(sqlite3* db, CModel& model) : m_db(db), m_model(model) {}

    void Load() {
        ReadFileInfo();
        ReadModelRows();
        ReadTables();
        ReadColumns();
        IndexColumns();
        ReadIndexes();
        ReadForeignKeys();
        ReadChecks();
        ReadCatalog();
        ReadPartitions();
    }

private:
    void ReadFileInfo() {
        for (CRows rows(m_db, "SELECT name, value FROM FileInfo"); rows.Next();) {
            const std::string name = rows.Text(0);
            if (name == "format_version") m_model.formatVersion = std::atoi(rows.Text(1).c_str());
            if (name == "platform") {
                m_model.hasPlatform = true;
                m_model.platform = std::atoi(rows.Text(1).c_str());
            }
        }
    }

    void ReadModelRows() {
        for (CRows rows(m_db, "SELECT product FROM Version ORDER BY row_seq LIMIT 1"); rows.Next();)
            m_model.product = rows.Text(0);
        for (CRows rows(m_db, "SELECT name, created, modified FROM Diagram ORDER BY row_seq DESC LIMIT 1");
             rows.Next();) {
            m_model.diagramName = rows.Text(0);
            m_model.created = rows.Text(1);
            m_model.modified = rows.Text(2);
        }
        for (CRows rows(m_db, "SELECT name FROM Model ORDER BY row_seq DESC LIMIT 1"); rows.Next();)
            m_model.modelName = rows.Text(0);
    }

    void ReadTables() {
        auto properties = ReadProperties(m_db, "table");
        for (CRows rows(m_db, "SELECT entity_key, owner, entity_name, definition FROM Entity ORDER BY row_seq");
             rows.Next();) {
            CModelTable table;
            table.key = rows.Key(0);
            table.owner = rows.Text(1);
            table.name = rows.Text(2);
            table.definition = rows.Text(3);
            table.storageParams.fill(-1);
            table.properties = Take(properties, table.key);
            // A table saved twice (a model saved again) keeps its first row.
            if (m_tableByKey.emplace(table.key, static_cast<int>(m_model.tables.size())).second)
                m_model.tables.push_back(std::move(table));
        }
        for (CRows rows(m_db, "SELECT entity_key, storage_space, param1, param2, param3, param4, param5, param6, "
                              "param7, param8, param9, param10, param11 FROM TableStorage ORDER BY row_seq");
             rows.Next();) {
            CModelTable* table = TableByKey(rows.Key(0));
            if (!table) continue;
            table->storageSpace = rows.Text(1);
            for (int i = 0; i < 11; ++i) table->storageParams[i] = static_cast<int>(rows.Int(2 + i));
        }
    }

    void ReadColumns() {
        auto properties = ReadProperties(m_db, "attribute");
        // Each table's vector gets its size at once: grown by doubling, the
        // columns of a catalog would take half as much again.
        for (CRows rows(m_db, "SELECT entity_key, count(*) FROM Attribute GROUP BY entity_key"); rows.Next();)
            if (CModelTable* table = TableByKey(rows.Key(0))) table->columns.reserve(static_cast<std::size_t>(rows.Int(1)));
        CKeySet columnSeen;
        std::map<std::uint32_t, std::string> userDatatypes;
        for (CRows rows(m_db, "SELECT user_datatype_id, name FROM UserDatatype"); rows.Next();)
            userDatatypes.emplace(rows.Key(0), rows.Text(1));
        CKeySet primaryKey;
        for (CRows rows(m_db, "SELECT entity_key, attribute_no FROM PrimaryKey"); rows.Next();)
            primaryKey.insert(KeyPair(rows.Key(0), rows.Key(1)));
        for (CRows rows(m_db,
                        "SELECT entity_key, attribute_no, attribute_id, sequence_no, column_name, attribute_name, "
                        "role_name, datatype, width, scale, null_option, default_text, check_constraint, definition, "
                        "user_datatype, user_datatype_id, rule_id, default_id, relation_key, parent_attribute_no "
                        "FROM Attribute ORDER BY row_seq");
             rows.Next();) {
            CModelTable* table = TableByKey(rows.Key(0));
            if (!table) continue;
            CModelColumn column;
            column.attributeNo = rows.Key(1);
            column.attributeId = rows.Key(2);
            column.sequenceNo = rows.Key(3);
            column.name = rows.Text(4);
            column.attributeName = rows.Text(5);
            column.roleName = rows.Text(6);
            column.datatype = rows.Text(7);
            column.width = static_cast<int>(rows.Int(8));
            column.scale = static_cast<int>(rows.Int(9));
            column.nullable = rows.Int(10) != 0;
            column.defaultText = rows.Text(11);
            column.checkText = rows.Text(12);
            column.definition = rows.Text(13);
            column.userDatatypeId = rows.Key(15);
            column.userDatatype = rows.Text(14);
            if (column.userDatatype.empty() && column.userDatatypeId != 0) {
                const auto named = userDatatypes.find(column.userDatatypeId);
                if (named != userDatatypes.end()) column.userDatatype = named->second;
            }
            column.ruleId = rows.Key(16);
            column.defaultId = rows.Key(17);
            column.relationKey = rows.Key(18);
            column.inPrimaryKey = primaryKey.count(KeyPair(table->key, column.attributeNo)) != 0;
            // Copies of shared migrated columns are the only attributes the
            // builder makes without an identifier.
            column.isCopy = column.attributeId == 0;
            column.copyOf = column.isCopy ? rows.Key(19) : 0;
            if (column.attributeId != 0) column.properties = Take(properties, column.attributeId);
            for (const CModelProperty& property : column.properties)
                if (property.propertyNo == kIdentityProperty) column.identity = true;
            // An attribute written again by a later save is the same column.
            if (!columnSeen.insert(KeyPair(table->key, column.attributeNo)).second) continue;
            (column.isCopy ? table->copies : table->columns).push_back(std::move(column));
        }
    }

    // Every column by its table and number, for the rows that refer to them.
    void IndexColumns() {
        for (std::size_t t = 0; t < m_model.tables.size(); ++t)
            for (std::vector<CModelColumn>* list : {&m_model.tables[t].columns, &m_model.tables[t].copies})
                for (CModelColumn& column : *list)
                    m_columnByKey.emplace(KeyPair(static_cast<std::uint32_t>(t), column.attributeNo), &column);
    }
    CModelColumn* Column(int table, std::uint32_t attributeNo) {
        const auto found = m_columnByKey.find(KeyPair(static_cast<std::uint32_t>(table), attributeNo));
        return found == m_columnByKey.end() ? nullptr : found->second;
    }

    void ReadIndexes() {
        auto properties = ReadProperties(m_db, "index");
        std::map<std::uint32_t, std::pair<int, int>> indexByKey;  // key -> (table, index in table)
        for (CRows rows(m_db, "SELECT entity_key, index_key, index_name, key_type, is_unique, cluster_flag FROM "
                              "Indexes ORDER BY row_seq");
             rows.Next();) {
            const int tableIndex = TableIndex(rows.Key(0));
            if (tableIndex < 0 || indexByKey.count(rows.Key(1))) continue;
            CModelTable& table = m_model.tables[tableIndex];
            CModelIndex index;
            index.key = rows.Key(1);
            index.name = rows.Text(2);
            const std::string keyType = rows.Text(3);
            index.keyType = keyType.empty() ? 'I' : keyType[0];
            index.unique = rows.Text(4) == "Y";
            index.clustered = rows.Text(5) == "C";
            index.storageParams.fill(-1);
            index.properties = Take(properties, index.key);
            indexByKey[index.key] = {tableIndex, static_cast<int>(table.indexes.size())};
            table.indexes.push_back(std::move(index));
        }
        for (CRows rows(m_db, "SELECT index_key, attribute_no, sort_order FROM IndexColumn ORDER BY row_seq");
             rows.Next();) {
            const auto found = indexByKey.find(rows.Key(0));
            if (found == indexByKey.end()) continue;
            CModelTable& table = m_model.tables[found->second.first];
            CModelIndexColumn column;
            column.attributeNo = rows.Key(1);
            if (const CModelColumn* named = Column(found->second.first, column.attributeNo)) column.name = named->name;
            column.descending = rows.Text(2) == "D";
            table.indexes[found->second.second].columns.push_back(std::move(column));
        }
        for (CRows rows(m_db, "SELECT index_key, storage_space, param1, param2, param3, param4, param5, param6, "
                              "param7, param8, param9, param10, param11 FROM IndexStorage ORDER BY row_seq");
             rows.Next();) {
            const auto found = indexByKey.find(rows.Key(0));
            if (found == indexByKey.end()) continue;
            CModelIndex& index = m_model.tables[found->second.first].indexes[found->second.second];
            index.storageSpace = rows.Text(1);
            for (int i = 0; i < 11; ++i) index.storageParams[i] = static_cast<int>(rows.Int(2 + i));
        }
        // The primary key first, then the other indexes in the order they were written.
        for (CModelTable& table : m_model.tables) {
            for (std::size_t i = 0; i < table.indexes.size(); ++i) {
                if (table.indexes[i].keyType != 'P') continue;
                std::rotate(table.indexes.begin(), table.indexes.begin() + static_cast<long>(i),
                            table.indexes.begin() + static_cast<long>(i) + 1);
                table.primaryKey = 0;
                break;
            }
            for (std::size_t i = 0; i < table.indexes.size(); ++i) m_indexOwner[table.indexes[i].key] = {
                static_cast<int>(&table - m_model.tables.data()), static_cast<int>(i)};
        }
    }

    void ReadForeignKeys() {
        std::map<std::uint32_t, int> byKey;
        for (CRows rows(m_db, "SELECT fk_key, name, parent_entity_key, child_entity_key, relationship_type, t6, "
                              "t13, t14, referenced_key FROM ForeignKey ORDER BY row_seq");
             rows.Next();) {
            if (byKey.count(rows.Key(0))) continue;  // written once per place in the builder's list
            CModelForeignKey foreignKey;
            foreignKey.key = rows.Key(0);
            foreignKey.name = rows.Text(1);
            foreignKey.parentTable = TableIndex(rows.Key(2));
            foreignKey.childTable = TableIndex(rows.Key(3));
            foreignKey.identifying = rows.Text(4) == "I";
            foreignKey.optional = rows.Text(5) == "O";
            const std::string onUpdate = rows.Text(6), onDelete = rows.Text(7);
            foreignKey.onUpdate = onUpdate.empty() ? 'N' : onUpdate[0];
            foreignKey.onDelete = onDelete.empty() ? 'N' : onDelete[0];
            foreignKey.referencedKey = rows.Key(8);
            const int index = static_cast<int>(m_model.foreignKeys.size());
            byKey[foreignKey.key] = index;
            if (foreignKey.childTable >= 0) m_model.tables[foreignKey.childTable].foreignKeys.push_back(index);
            if (foreignKey.parentTable >= 0) m_model.tables[foreignKey.parentTable].referencedBy.push_back(index);
            m_model.foreignKeys.push_back(std::move(foreignKey));
        }
        CKeySet pairSeen;
        for (CRows rows(m_db, "SELECT fk_key, column_key, parent_attribute_no, child_attribute_no FROM "
                              "ForeignKeyColumn ORDER BY row_seq");
             rows.Next();) {
            const auto found = byKey.find(rows.Key(0));
            if (found == byKey.end() || !pairSeen.insert(KeyPair(rows.Key(0), rows.Key(1))).second) continue;
            CModelForeignKey& foreignKey = m_model.foreignKeys[found->second];
            CModelColumnPair pair;
            pair.parentAttributeNo = rows.Key(2);
            pair.childAttributeNo = rows.Key(3);
            if (foreignKey.parentTable >= 0)
                if (const CModelColumn* parent = Column(foreignKey.parentTable, pair.parentAttributeNo))
                    pair.parentColumn = parent->name;
            if (foreignKey.childTable >= 0) MarkChildColumn(foreignKey, found->second, pair);
            foreignKey.pairs.push_back(std::move(pair));
        }
    }

    // The pair's child column takes part in the foreign key; a copy is the
    // copy of that relationship, and the column it copies takes part too.
    void MarkChildColumn(const CModelForeignKey& foreignKey, int index, CModelColumnPair& pair) {
        CModelColumn* column = Column(foreignKey.childTable, pair.childAttributeNo);
        if (!column) return;
        pair.childColumn = column->name;
        if (column->isCopy) {
            column->copyFor = index;
            column = Column(foreignKey.childTable, column->copyOf);
            if (!column) return;
        }
        if (column->foreignKeys.empty() || column->foreignKeys.back() != index) column->foreignKeys.push_back(index);
    }

    void ReadChecks() {
        for (CRows rows(m_db, "SELECT constraint_key, name, text, entity_key, attribute_no FROM CheckConstraints "
                              "ORDER BY row_seq");
             rows.Next();) {
            CModelCheck check;
            check.key = rows.Key(0);
            check.name = rows.Text(1);
            check.text = rows.Text(2);
            check.table = TableIndex(rows.Key(3));
            if (check.table >= 0) {
                CModelTable& table = m_model.tables[check.table];
                if (rows.Key(4) != 0)
                    if (const CModelColumn* column = Column(check.table, rows.Key(4))) check.column = column->name;
                table.checks.push_back(static_cast<int>(m_model.checks.size()));
            }
            m_model.checks.push_back(std::move(check));
        }
    }

    void ReadCatalog() {
        for (CRows rows(m_db, "SELECT default_id, name, text FROM Defaults ORDER BY row_seq"); rows.Next();)
            m_model.defaults.push_back({rows.Key(0), rows.Text(1), rows.Text(2)});
        for (CRows rows(m_db, "SELECT rule_id, name, text FROM Rules ORDER BY row_seq"); rows.Next();)
            m_model.rules.push_back({rows.Key(0), rows.Text(1), rows.Text(2)});
        for (CRows rows(m_db, "SELECT user_datatype_id, name, datatype, length, scale, default_id, rule_id FROM "
                              "UserDatatype ORDER BY row_seq");
             rows.Next();)
            m_model.userDatatypes.push_back({rows.Key(0), rows.Text(1), rows.Text(2), static_cast<int>(rows.Int(3)),
                                             static_cast<int>(rows.Int(4)), rows.Key(5), rows.Key(6)});
        for (CRows rows(m_db, "SELECT trigger_key, owner, name, kind, is_invalid, parent_value, sql_text FROM "
                              "DbTrigger ORDER BY row_seq");
             rows.Next();) {
            CModelCode trigger;
            trigger.key = rows.Key(0);
            trigger.owner = rows.Text(1);
            trigger.name = rows.Text(2);
            trigger.kind = static_cast<int>(rows.Int(3));
            trigger.invalid = rows.Int(4) != 0;
            trigger.table = TableIndex(rows.Key(5));
            trigger.text = rows.Text(6);
            m_model.triggers.push_back(std::move(trigger));
        }
        for (CRows rows(m_db, "SELECT proc_key, owner, name, kind, is_invalid, sql_text FROM Proc ORDER BY row_seq");
             rows.Next();) {
            CModelCode procedure;
            procedure.key = rows.Key(0);
            procedure.owner = rows.Text(1);
            procedure.name = rows.Text(2);
            procedure.kind = static_cast<int>(rows.Int(3));
            procedure.invalid = rows.Int(4) != 0;
            procedure.text = rows.Text(5);
            m_model.procedures.push_back(std::move(procedure));
        }
        for (CRows rows(m_db, "SELECT package_key, owner, name, header_text, body_text FROM DbPackage ORDER BY row_seq");
             rows.Next();) {
            CModelCode package;
            package.key = rows.Key(0);
            package.owner = rows.Text(1);
            package.name = rows.Text(2);
            package.text = rows.Text(3);
            package.body = rows.Text(4);
            m_model.packages.push_back(std::move(package));
        }
        for (CRows rows(m_db, "SELECT object_key, value1, value2, value3, value4, meta_table_key FROM "
                              "Referenced_Object ORDER BY row_seq");
             rows.Next();)
            m_model.referencedObjects.push_back(
                {rows.Key(0), {rows.Key(1), rows.Key(2), rows.Key(3), rows.Key(4)}, rows.Key(5)});
        for (CRows rows(m_db, "SELECT object_key, kind, owner, name, sql_text FROM Storage_Object ORDER BY row_seq");
             rows.Next();)
            m_model.storageObjects.push_back(
                {rows.Key(0), static_cast<int>(rows.Int(1)), rows.Text(2), rows.Text(3), rows.Text(4)});
    }

    void ReadPartitions() {
        auto properties = ReadProperties(m_db, "partition");
        for (CRows rows(m_db, "SELECT partition_key, owner_kind, owner_key, name, int_arg FROM Partition ORDER BY "
                              "partition_key");
             rows.Next();) {
            CModelPartition partition;
            partition.key = rows.Key(0);
            partition.ofIndex = rows.Text(1) == "index";
            partition.ownerKey = rows.Key(2);
            partition.name = rows.Text(3);
            partition.intArg = static_cast<int>(rows.Int(4));
            partition.properties = Take(properties, partition.key);
            const int index = static_cast<int>(m_model.partitions.size());
            if (partition.ofIndex) {
                const auto owner = m_indexOwner.find(partition.ownerKey);
                if (owner != m_indexOwner.end())
                    m_model.tables[owner->second.first].indexes[owner->second.second].partitions.push_back(index);
            } else if (CModelTable* table = TableByKey(partition.ownerKey)) {
                table->partitions.push_back(index);
            }
            m_model.partitions.push_back(std::move(partition));
        }
    }

    int TableIndex(std::uint32_t key) const {
        const auto found = m_tableByKey.find(key);
        return found == m_tableByKey.end() ? -1 : found->second;
    }
    CModelTable* TableByKey(std::uint32_t key) {
        const int index = TableIndex(key);
        return index < 0 ? nullptr : &m_model.tables[index];
    }

    sqlite3* m_db;
    CModel& m_model;
    std::unordered_map<std::uint32_t, int> m_tableByKey;
    std::unordered_map<std::uint64_t, CModelColumn*> m_columnByKey;  // (table index, attribute number) -> column
    std::map<std::uint32_t, std::pair<int, int>> m_indexOwner;  // index key -> (table, index in table)
};

}  // namespace

const CModelColumn* CModelTable::FindColumn(std::uint32_t attributeNo) const {
    for (const std::vector<CModelColumn>* list : {&columns, &copies})
        for (const CModelColumn& column : *list)
            if (column.attributeNo == attributeNo) return &column;
    return nullptr;
}

bool ReadModelFile(const std::string& path, CModel& model, std::string& error) {
    // The library's own checks say whether this is a model file, and why not.
    {
        CVrnFile file;
        if (!file.Open(path.c_str())) {
            error = file.GetLastError();
            return false;
        }
    }
    sqlite3* raw = nullptr;
    const int rc = sqlite3_open_v2(SqliteFileName(path).c_str(), &raw, SQLITE_OPEN_READONLY, nullptr);
    CDatabase db(raw);
    if (rc != SQLITE_OK) {
        error = "cannot read '" + path + "': " + (raw ? sqlite3_errmsg(raw) : "out of memory");
        return false;
    }
    model = CModel();
    model.path = path;
    CModelLoader(db.get(), model).Load();
    return true;
}
