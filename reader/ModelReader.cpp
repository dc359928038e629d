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

// A model file's name as SQLite takes it: names that start with "file:"
// would be read as URIs.
std::string SqliteFileName(const std::string& path) {
    return path.compare(0, 5, "file:") == 0 ? "./" + path : path;
}

// Two 32-bit keys (an owner's key and a number within it) as one hash key.
std::uint64_t KeyPair(std::uint32_t owner, std::uint32_t number) { return std::uint64_t(owner) << 32 | number; }

// The identity property of attributes (the catalogue's "Identity Column").
constexpr int kIdentityProperty = 34;

// Rows keyed by their object's key, in the order of their first row. A
// model saved more than once holds the rows of every save, so the last row
// of a key is the object as it was last saved.
template <class Row>
class CLatest {
public:
    Row& Put(std::uint64_t key, Row row) {
        const auto [found, added] = m_index.emplace(key, m_rows.size());
        if (added) m_rows.push_back(std::move(row));
        else m_rows[found->second] = std::move(row);
        return m_rows[found->second];
    }
    std::vector<Row> Take() { return std::move(m_rows); }
    const std::vector<Row>& Rows() const { return m_rows; }

private:
    std::vector<Row> m_rows;
    std::unordered_map<std::uint64_t, std::size_t> m_index;
};

class CModelLoader {
public:
    CModelLoader(sqlite3* db, CModel& model) : m_db(db), m_model(model) {}

    // False with the reason when a table of the file could not be read.
    bool Load(std::string& error) {
        ReadFileInfo();
        ReadModelRows();
        ReadTables();
        ReadColumns();
        ReadIndexes();
        ReadForeignKeys();
        ReadChecks();
        ReadCatalog();
        ReadPartitions();
        error = m_error;
        return m_error.empty();
    }

private:
    // One query's rows, read column by column; a query that cannot run is
    // the loader's failure.
    class CRows {
    public:
        CRows(CModelLoader& loader, const std::string& sql) {
            sqlite3_stmt* stmt = nullptr;
            if (sqlite3_prepare_v2(loader.m_db, sql.c_str(), -1, &stmt, nullptr) == SQLITE_OK) {
                m_stmt.reset(stmt);
            } else {
                sqlite3_finalize(stmt);
                if (loader.m_error.empty()) loader.m_error = std::string("cannot read the model: ") + sqlite3_errmsg(loader.m_db);
            }
        }
        bool Next() { return m_stmt && sqlite3_step(m_stmt.get()) == SQLITE_ROW; }
        std::int64_t Int(int column) const { return sqlite3_column_int64(m_stmt.get(), column); }
        int Small(int column) const { return static_cast<int>(Int(column)); }
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

    // Properties of one kind of owner by its key, in the order they were
    // stored (the manager's table is written whole by every save).
    std::unordered_map<std::uint32_t, std::vector<CModelProperty>> ReadProperties(const char* ownerKind) {
        std::unordered_map<std::uint32_t, std::vector<CModelProperty>> byOwner;
        CRows rows(*this, std::string("SELECT owner_key, property_no, value_no, text, int_arg FROM Property WHERE "
                                      "owner_kind = '") + ownerKind + "' ORDER BY prop_seq");
        while (rows.Next()) {
            CModelProperty property;
            property.propertyNo = rows.Small(1);
            property.valueNo = rows.Small(2);
            property.name = CPropertyMgr::PropertyName(property.propertyNo);
            property.value = CPropertyMgr::PropertyValueText(property.valueNo);
            property.hasText = !rows.IsNull(3);
            property.text = rows.Text(3);
            property.intArg = rows.Small(4);
            byOwner[rows.Key(0)].push_back(std::move(property));
        }
        return byOwner;
    }
    template <class Map>
    static std::vector<CModelProperty> Take(Map& byOwner, std::uint32_t key) {
        const auto found = byOwner.find(key);
        return found == byOwner.end() ? std::vector<CModelProperty>() : std::move(found->second);
    }

    void ReadFileInfo() {
        for (CRows rows(*this, "SELECT name, value FROM FileInfo"); rows.Next();) {
            const std::string name = rows.Text(0);
            if (name == "format_version") m_model.formatVersion = std::atoi(rows.Text(1).c_str());
            if (name == "platform") {
                m_model.hasPlatform = true;
                m_model.platform = std::atoi(rows.Text(1).c_str());
            }
        }
    }

    void ReadModelRows() {
        for (CRows rows(*this, "SELECT product FROM Version ORDER BY row_seq DESC LIMIT 1"); rows.Next();)
            m_model.product = rows.Text(0);
        for (CRows rows(*this, "SELECT name, created, modified FROM Diagram ORDER BY row_seq DESC LIMIT 1");
             rows.Next();) {
            m_model.diagramName = rows.Text(0);
            m_model.created = rows.Text(1);
            m_model.modified = rows.Text(2);
        }
        for (CRows rows(*this, "SELECT name FROM Model ORDER BY row_seq DESC LIMIT 1"); rows.Next();)
            m_model.modelName = rows.Text(0);
    }

    void ReadTables() {
        auto properties = ReadProperties("table");
        CLatest<CModelTable> tables;
        for (CRows rows(*this, "SELECT entity_key, owner, entity_name, definition FROM Entity ORDER BY row_seq");
             rows.Next();) {
            CModelTable table;
            table.key = rows.Key(0);
            table.owner = rows.Text(1);
            table.name = rows.Text(2);
            table.definition = rows.Text(3);
            table.storageParams.fill(-1);
            tables.Put(table.key, std::move(table));
        }
        m_model.tables = tables.Take();
        for (std::size_t i = 0; i < m_model.tables.size(); ++i) {
            CModelTable& table = m_model.tables[i];
            table.properties = Take(properties, table.key);
            m_tableByKey.emplace(table.key, static_cast<int>(i));
        }
        for (CRows rows(*this, "SELECT entity_key, storage_space, param1, param2, param3, param4, param5, param6, "
                               "param7, param8, param9, param10, param11 FROM TableStorage ORDER BY row_seq");
             rows.Next();) {
            CModelTable* table = TableByKey(rows.Key(0));
            if (!table) continue;
            table->storageSpace = rows.Text(1);
            for (int i = 0; i < 11; ++i) table->storageParams[i] = rows.Small(2 + i);
        }
    }

    void ReadColumns() {
        auto properties = ReadProperties("attribute");
        std::unordered_map<std::uint32_t, std::string> userDatatypes;
        for (CRows rows(*this, "SELECT user_datatype_id, name FROM UserDatatype ORDER BY row_seq"); rows.Next();)
            userDatatypes[rows.Key(0)] = rows.Text(1);
        std::unordered_set<std::uint64_t> primaryKey;
        for (CRows rows(*this, "SELECT entity_key, attribute_no FROM PrimaryKey"); rows.Next();)
            primaryKey.insert(KeyPair(rows.Key(0), rows.Key(1)));
        // Each table's columns get their room at once, from a count of its
        // rows (more than it needs only when a model was saved twice), and
        // each column is moved there once: vectors grown by doubling moved
        // every column several times and were a third of the reading.
        for (CRows rows(*this, "SELECT entity_key, count(*) FROM Attribute GROUP BY entity_key"); rows.Next();)
            if (CModelTable* table = TableByKey(rows.Key(0)))
                table->columns.reserve(static_cast<std::size_t>(rows.Int(1)));
        // The last row of a column takes the place of its first.
        // A column's identifier stays with it from save to save, so it
        // stays in the list (columns or copies) of its first row.
        std::unordered_map<std::uint64_t, std::pair<bool, std::size_t>> placeOf;
        for (CRows rows(*this,
                        "SELECT entity_key, attribute_no, attribute_id, sequence_no, column_name, attribute_name, "
                        "role_name, datatype, width, scale, null_option, default_text, check_constraint, definition, "
                        "user_datatype, user_datatype_id, rule_id, default_id, relation_key, parent_attribute_no "
                        "FROM Attribute ORDER BY row_seq");
             rows.Next();) {
            const int table = TableIndex(rows.Key(0));
            if (table < 0) continue;
            CModelColumn column;
            column.attributeNo = rows.Key(1);
            column.attributeId = rows.Key(2);
            column.sequenceNo = rows.Key(3);
            column.name = rows.Text(4);
            column.attributeName = rows.Text(5);
            column.roleName = rows.Text(6);
            column.datatype = rows.Text(7);
            column.width = rows.Small(8);
            column.scale = rows.Small(9);
            column.nullable = rows.Int(10) != 0;
            column.defaultText = rows.Text(11);
            column.checkText = rows.Text(12);
            column.definition = rows.Text(13);
            column.userDatatype = rows.Text(14);
            column.userDatatypeId = rows.Key(15);
            if (column.userDatatype.empty() && column.userDatatypeId != 0) {
                const auto named = userDatatypes.find(column.userDatatypeId);
                if (named != userDatatypes.end()) column.userDatatype = named->second;
            }
            column.ruleId = rows.Key(16);
            column.defaultId = rows.Key(17);
            column.relationKey = rows.Key(18);
            column.inPrimaryKey = primaryKey.count(KeyPair(m_model.tables[table].key, column.attributeNo)) != 0;
            // Copies of shared migrated columns are the only attributes the
            // builder makes without an identifier.
            column.isCopy = column.attributeId == 0;
            column.copyOf = column.isCopy ? rows.Key(19) : 0;
            CModelTable& owner = m_model.tables[static_cast<std::size_t>(table)];
            std::vector<CModelColumn>& list = column.isCopy ? owner.copies : owner.columns;
            const auto [place, added] = placeOf.emplace(KeyPair(static_cast<std::uint32_t>(table), column.attributeNo),
                                                        std::make_pair(column.isCopy, list.size()));
            CModelColumn* placed = nullptr;
            if (added) {
                placed = &list.emplace_back(std::move(column));
                if (placed->attributeId != 0) placed->properties = Take(properties, placed->attributeId);
            } else {
                // The properties were taken for the first row: they stay.
                placed = &(place->second.first ? owner.copies : owner.columns)[place->second.second];
                column.properties = std::move(placed->properties);
                *placed = std::move(column);
            }
            placed->identity = false;
            for (const CModelProperty& property : placed->properties)
                if (property.propertyNo == kIdentityProperty) placed->identity = true;
        }
        for (std::size_t t = 0; t < m_model.tables.size(); ++t) {
            CModelTable& table = m_model.tables[t];
            for (std::vector<CModelColumn>* list : {&table.columns, &table.copies})
                for (CModelColumn& column : *list)
                    m_columnByKey.emplace(KeyPair(static_cast<std::uint32_t>(t), column.attributeNo), &column);
        }
    }

    CModelColumn* Column(int table, std::uint32_t attributeNo) {
        const auto found = m_columnByKey.find(KeyPair(static_cast<std::uint32_t>(table), attributeNo));
        return found == m_columnByKey.end() ? nullptr : found->second;
    }

    void ReadIndexes() {
        auto properties = ReadProperties("index");
        struct CRead {
            int table;
            CModelIndex index;
            std::map<std::uint32_t, CModelIndexColumn> columns;  // by sequence number
        };
        CLatest<CRead> indexes;
        std::unordered_map<std::uint32_t, std::size_t> byKey;
        for (CRows rows(*this, "SELECT entity_key, index_key, index_name, key_type, is_unique, cluster_flag FROM "
                               "Indexes ORDER BY row_seq");
             rows.Next();) {
            const int table = TableIndex(rows.Key(0));
            if (table < 0) continue;
            CRead read{table, CModelIndex(), {}};
            read.index.key = rows.Key(1);
            read.index.name = rows.Text(2);
            const std::string keyType = rows.Text(3);
            read.index.keyType = keyType.empty() ? 'I' : keyType[0];
            read.index.unique = rows.Text(4) == "Y";
            read.index.clustered = rows.Text(5) == "C";
            read.index.storageParams.fill(-1);
            indexes.Put(read.index.key, std::move(read));
        }
        for (std::size_t i = 0; i < indexes.Rows().size(); ++i) byKey[indexes.Rows()[i].index.key] = i;
        std::vector<CRead> all = indexes.Take();
        for (CRows rows(*this, "SELECT index_key, sequence_no, attribute_no, sort_order FROM IndexColumn ORDER BY "
                               "row_seq");
             rows.Next();) {
            const auto found = byKey.find(rows.Key(0));
            if (found == byKey.end()) continue;
            CRead& read = all[found->second];
            CModelIndexColumn column;
            column.attributeNo = rows.Key(2);
            if (const CModelColumn* named = Column(read.table, column.attributeNo)) column.name = named->name;
            column.descending = rows.Text(3) == "D";
            read.columns[rows.Key(1)] = std::move(column);
        }
        for (CRows rows(*this, "SELECT index_key, storage_space, param1, param2, param3, param4, param5, param6, "
                               "param7, param8, param9, param10, param11 FROM IndexStorage ORDER BY row_seq");
             rows.Next();) {
            const auto found = byKey.find(rows.Key(0));
            if (found == byKey.end()) continue;
            CModelIndex& index = all[found->second].index;
            index.storageSpace = rows.Text(1);
            for (int i = 0; i < 11; ++i) index.storageParams[i] = rows.Small(2 + i);
        }
        for (CRead& read : all) {
            for (auto& entry : read.columns) read.index.columns.push_back(std::move(entry.second));
            read.index.properties = Take(properties, read.index.key);
            CModelTable& table = m_model.tables[read.table];
            // The primary key first, then the other indexes in the order they were written.
            if (read.index.keyType == 'P' && table.primaryKey < 0) {
                table.indexes.insert(table.indexes.begin(), std::move(read.index));
                table.primaryKey = 0;
            } else {
                table.indexes.push_back(std::move(read.index));
            }
        }
        for (std::size_t t = 0; t < m_model.tables.size(); ++t)
            for (std::size_t i = 0; i < m_model.tables[t].indexes.size(); ++i)
                m_indexOwner[m_model.tables[t].indexes[i].key] = {static_cast<int>(t), static_cast<int>(i)};
    }

    void ReadForeignKeys() {
        CLatest<CModelForeignKey> foreignKeys;
        for (CRows rows(*this, "SELECT fk_key, name, parent_entity_key, child_entity_key, relationship_type, t6, "
                               "t13, t14, referenced_key FROM ForeignKey ORDER BY row_seq");
             rows.Next();) {
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
            foreignKeys.Put(foreignKey.key, std::move(foreignKey));
        }
        m_model.foreignKeys = foreignKeys.Take();
        std::unordered_map<std::uint32_t, int> byKey;
        for (std::size_t i = 0; i < m_model.foreignKeys.size(); ++i) {
            const CModelForeignKey& foreignKey = m_model.foreignKeys[i];
            byKey[foreignKey.key] = static_cast<int>(i);
            if (foreignKey.childTable >= 0) m_model.tables[foreignKey.childTable].foreignKeys.push_back(static_cast<int>(i));
            if (foreignKey.parentTable >= 0)
                m_model.tables[foreignKey.parentTable].referencedBy.push_back(static_cast<int>(i));
        }
        // A pair written again (the key resolved twice, or saved again) is one pair.
        std::vector<std::map<std::uint32_t, CModelColumnPair>> pairs(m_model.foreignKeys.size());
        for (CRows rows(*this, "SELECT fk_key, sequence_no, parent_attribute_no, child_attribute_no FROM "
                               "ForeignKeyColumn ORDER BY row_seq");
             rows.Next();) {
            const auto found = byKey.find(rows.Key(0));
            if (found == byKey.end()) continue;
            CModelColumnPair pair;
            pair.parentAttributeNo = rows.Key(2);
            pair.childAttributeNo = rows.Key(3);
            pairs[found->second][rows.Key(1)] = pair;
        }
        for (std::size_t i = 0; i < m_model.foreignKeys.size(); ++i) {
            CModelForeignKey& foreignKey = m_model.foreignKeys[i];
            for (auto& entry : pairs[i]) {
                CModelColumnPair& pair = entry.second;
                if (foreignKey.parentTable >= 0)
                    if (const CModelColumn* parent = Column(foreignKey.parentTable, pair.parentAttributeNo))
                        pair.parentColumn = parent->name;
                if (foreignKey.childTable >= 0) MarkChildColumn(foreignKey, static_cast<int>(i), pair);
                foreignKey.pairs.push_back(std::move(pair));
            }
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
        if (std::find(column->foreignKeys.begin(), column->foreignKeys.end(), index) == column->foreignKeys.end())
            column->foreignKeys.push_back(index);
    }

    void ReadChecks() {
        CLatest<CModelCheck> checks;
        std::unordered_map<std::uint32_t, std::uint32_t> attributeOf;  // check key -> its column's number
        for (CRows rows(*this, "SELECT constraint_key, name, text, entity_key, attribute_no FROM CheckConstraints "
                               "ORDER BY row_seq");
             rows.Next();) {
            CModelCheck check;
            check.key = rows.Key(0);
            check.name = rows.Text(1);
            check.text = rows.Text(2);
            check.table = TableIndex(rows.Key(3));
            attributeOf[check.key] = rows.Key(4);
            checks.Put(check.key, std::move(check));
        }
        m_model.checks = checks.Take();
        for (std::size_t i = 0; i < m_model.checks.size(); ++i) {
            CModelCheck& check = m_model.checks[i];
            if (check.table < 0) continue;
            if (const std::uint32_t attributeNo = attributeOf[check.key])
                if (const CModelColumn* column = Column(check.table, attributeNo)) check.column = column->name;
            m_model.tables[check.table].checks.push_back(static_cast<int>(i));
        }
    }

    void ReadCatalog() {
        CLatest<CModelNamedText> defaults, rules;
        for (CRows rows(*this, "SELECT default_id, name, text FROM Defaults ORDER BY row_seq"); rows.Next();)
            defaults.Put(rows.Key(0), {rows.Key(0), rows.Text(1), rows.Text(2)});
        for (CRows rows(*this, "SELECT rule_id, name, text FROM Rules ORDER BY row_seq"); rows.Next();)
            rules.Put(rows.Key(0), {rows.Key(0), rows.Text(1), rows.Text(2)});
        m_model.defaults = defaults.Take();
        m_model.rules = rules.Take();
        CLatest<CModelUserDatatype> userDatatypes;
        for (CRows rows(*this, "SELECT user_datatype_id, name, datatype, length, scale, default_id, rule_id FROM "
                               "UserDatatype ORDER BY row_seq");
             rows.Next();)
            userDatatypes.Put(rows.Key(0), {rows.Key(0), rows.Text(1), rows.Text(2), rows.Small(3), rows.Small(4),
                                            rows.Key(5), rows.Key(6)});
        m_model.userDatatypes = userDatatypes.Take();

        CLatest<CModelCode> triggers, procedures, packages;
        for (CRows rows(*this, "SELECT trigger_key, owner, name, kind, is_invalid, parent_value, sql_text FROM "
                               "DbTrigger ORDER BY row_seq");
             rows.Next();) {
            CModelCode trigger;
            trigger.key = rows.Key(0);
            trigger.owner = rows.Text(1);
            trigger.name = rows.Text(2);
            trigger.kind = rows.Small(3);
            trigger.invalid = rows.Int(4) != 0;
            trigger.table = TableIndex(rows.Key(5));
            trigger.text = rows.Text(6);
            triggers.Put(trigger.key, std::move(trigger));
        }
        for (CRows rows(*this, "SELECT proc_key, owner, name, kind, is_invalid, sql_text FROM Proc ORDER BY row_seq");
             rows.Next();) {
            CModelCode procedure;
            procedure.key = rows.Key(0);
            procedure.owner = rows.Text(1);
            procedure.name = rows.Text(2);
            procedure.kind = rows.Small(3);
            procedure.invalid = rows.Int(4) != 0;
            procedure.text = rows.Text(5);
            procedures.Put(procedure.key, std::move(procedure));
        }
        // Files of format version 1 call the package's header spec_text.
        const std::string header = m_model.formatVersion == 1 ? "spec_text" : "header_text";
        for (CRows rows(*this, "SELECT package_key, owner, name, " + header + ", body_text FROM DbPackage ORDER BY row_seq");
             rows.Next();) {
            CModelCode package;
            package.key = rows.Key(0);
            package.owner = rows.Text(1);
            package.name = rows.Text(2);
            package.text = rows.Text(3);
            package.body = rows.Text(4);
            packages.Put(package.key, std::move(package));
        }
        m_model.triggers = triggers.Take();
        m_model.procedures = procedures.Take();
        m_model.packages = packages.Take();

        CLatest<CModelReferencedObject> referenced;
        for (CRows rows(*this, "SELECT object_key, value1, value2, value3, value4, meta_table_key FROM "
                               "Referenced_Object ORDER BY row_seq");
             rows.Next();)
            referenced.Put(rows.Key(0), {rows.Key(0), {rows.Key(1), rows.Key(2), rows.Key(3), rows.Key(4)}, rows.Key(5)});
        m_model.referencedObjects = referenced.Take();
        CLatest<CModelStorageObject> storage;
        for (CRows rows(*this, "SELECT object_key, kind, owner, name, sql_text FROM Storage_Object ORDER BY row_seq");
             rows.Next();)
            storage.Put(rows.Key(0), {rows.Key(0), rows.Small(1), rows.Text(2), rows.Text(3), rows.Text(4)});
        m_model.storageObjects = storage.Take();
    }

    void ReadPartitions() {
        auto properties = ReadProperties("partition");
        for (CRows rows(*this, "SELECT partition_key, owner_kind, owner_key, name, int_arg FROM Partition ORDER BY "
                               "partition_key");
             rows.Next();) {
            CModelPartition partition;
            partition.key = rows.Key(0);
            partition.ofIndex = rows.Text(1) == "index";
            partition.ownerKey = rows.Key(2);
            partition.name = rows.Text(3);
            partition.intArg = rows.Small(4);
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
    std::string m_error;
    std::unordered_map<std::uint32_t, int> m_tableByKey;
    std::unordered_map<std::uint64_t, CModelColumn*> m_columnByKey;  // (table index, attribute number) -> column
    std::unordered_map<std::uint32_t, std::pair<int, int>> m_indexOwner;  // index key -> (table, index in table)
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
        if (!file.Check(path.c_str())) {
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
    CModel read;
    read.path = path;
    std::string reason;
    if (!CModelLoader(db.get(), read).Load(reason)) {
        error = "cannot read '" + path + "': " + reason;
        return false;
    }
    model = std::move(read);
    return true;
}
