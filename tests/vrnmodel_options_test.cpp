// Physical options as scripts spell them, one fragment per keyword and object
// kind, checked in the saved model: the exact storage slot, or the exact
// property (its name and value in the catalogue, and its text). A keyword
// mapped to its neighbour's code, a size off by one or a partition too few is
// a failing row here.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "ImportedModel.h"

namespace {

// The storage slots and properties of the object of that kind, from the
// model read back; null properties when the model has no such object.
struct CFound {
    const std::array<int, 11>* params = nullptr;
    const std::vector<CModelProperty>* properties = nullptr;
};

CFound Find(const CModel& model, const std::string& kind) {
    CFound found;
    for (const CModelTable& table : model.tables) {
        if (kind == "table" && table.name == "T") found = {&table.storageParams, &table.properties};
        for (const CModelIndex& index : table.indexes)
            if (kind == "index" && index.name == "I") found = {&index.storageParams, &index.properties};
    }
    for (const CModelPartition& partition : model.partitions)
        if (kind == "partition" && partition.name == "P") found = {nullptr, &partition.properties};
    return found;
}

// A script of one object of `kind` with `clause` among its options: table T,
// index I on T, or partition P of T, ranged on A with the limit 10.
std::string Script(int platform, const std::string& kind, const std::string& clause) {
    const std::string table = std::string("CREATE TABLE T (A ") + (platform == 46 ? "INT" : "NUMBER");
    if (kind == "table") return table + " PRIMARY KEY) " + clause + ";";  // the key ORGANIZATION INDEX needs
    if (kind == "index") return table + ");\nCREATE INDEX I ON T (A) " + clause + ";";
    return table + ") PARTITION BY RANGE (A) (PARTITION P VALUES LESS THAN (10)" + (clause.empty() ? "" : " ") +
           clause + ");";
}

// Options that fill one storage slot (1 to 11) of their table or index.
const struct CSlotCase {
    int platform;
    const char* kind;
    const char* clause;
    int slot;
    long number;
} kSlotCases[] = {
    {47, "table", "PCTFREE 10", 5, 10},
    {47, "table", "PCTUSED 40", 6, 40},
    {47, "table", "STORAGE (INITIAL 64K)", 3, 64},
    {47, "table", "STORAGE (NEXT 1M)", 4, 1024},
    {47, "table", "STORAGE (MINEXTENTS 1)", 7, 1},
    {47, "table", "STORAGE (MAXEXTENTS UNLIMITED)", 8, 2147483647},
    {47, "table", "STORAGE (PCTINCREASE 5)", 9, 5},
    {47, "table", "STORAGE (FREELISTS 3)", 10, 3},
    {47, "table", "STORAGE (FREELIST GROUPS 2)", 11, 2},
    {47, "index", "PCTFREE 7", 5, 7},
    {47, "index", "STORAGE (INITIAL 128K)", 3, 128},
    {47, "index", "STORAGE (NEXT 2M)", 4, 2048},
    {46, "index", "PRIQTY 48", 3, 48},
    {46, "index", "SECQTY 96", 4, 96},
    {46, "index", "PIECESIZE 2G", 2, 2097152},
};

// Options kept as exactly one property: the catalogue's names of the
// property and of its value, and its text (null for none).
const struct CPropertyCase {
    int platform;
    const char* kind;
    const char* clause;
    const char* property;
    const char* value;
    const char* text;
} kPropertyCases[] = {
    {47, "table", "INITRANS 2", "Initial Transactions", "INITRANS", "2"},
    {47, "table", "MAXTRANS 255", "Maximum Transactions", "MAXTRANS", "255"},
    {47, "table", "STORAGE (BUFFER_POOL KEEP)", "Buffer Pool", "KEEP", nullptr},
    {47, "table", "LOGGING", "Logging", "LOGGING", nullptr},
    {47, "table", "NOLOGGING", "Logging", "NOLOGGING", nullptr},
    {47, "table", "CACHE", "Cache", "CACHE", nullptr},
    {47, "table", "NOCACHE", "Cache", "NOCACHE", nullptr},
    {47, "table", "MONITORING", "Monitoring", "MONITORING", nullptr},
    {47, "table", "NOMONITORING", "Monitoring", "NOMONITORING", nullptr},
    {47, "table", "PARALLEL 4", "Parallel Degree", "PARALLEL", "4"},
    {47, "table", "ORGANIZATION INDEX", "Index Organized", "ORGANIZATION INDEX", nullptr},
    {47, "table", "ENABLE ROW MOVEMENT", "Row Movement", "ENABLE ROW MOVEMENT", nullptr},
    {47, "index", "INITRANS 3", "Initial Transactions", "INITRANS", "3"},
    {47, "index", "MAXTRANS 99", "Maximum Transactions", "MAXTRANS", "99"},
    {47, "index", "STORAGE (BUFFER_POOL RECYCLE)", "Buffer Pool", "RECYCLE", nullptr},
    {47, "index", "REVERSE", "Reverse Key", "REVERSE", nullptr},
    {47, "index", "COMPRESS", "Compression", "COMPRESS", nullptr},
    {46, "index", "USING STOGROUP SG1", "Storage Group", "STOGROUP", "SG1"},
    {46, "index", "USING VCAT CAT1", "VCAT Catalog", "VCAT", "CAT1"},
    {46, "index", "BUFFERPOOL BP1", "Buffer Pool", "DEFAULT", "BP1"},
    {46, "index", "CLOSE YES", "Close", "CLOSE YES", nullptr},
    {46, "index", "DEFINE NO", "Define", "DEFINE NO", nullptr},
    {46, "index", "ERASE YES", "Erase", "ERASE YES", nullptr},
    {46, "index", "COPY YES", "Copy", "COPY YES", nullptr},
    {46, "index", "GBPCACHE ALL", "Group Buffer Pool Cache", "ALL", nullptr},
    {46, "index", "GBPCACHE NONE", "Group Buffer Pool Cache", "NONE", nullptr},
    {46, "index", "COMPRESS NO", "Compression", "NOCOMPRESS", nullptr},
    {47, "partition", "", "Partition Limit", "Limit Values", "10"},
    {47, "partition", "TABLESPACE TS1", "Storage Space", "Storage Space Name", "TS1"},
    {47, "partition", "PCTFREE 5", "Percent Free", "PCTFREE", "5"},
    {47, "partition", "PCTUSED 50", "Percent Used", "PCTUSED", "50"},
    {47, "partition", "STORAGE (INITIAL 1M)", "Initial Extent", "INITIAL", "1024"},
    {47, "partition", "NOLOGGING", "Logging", "NOLOGGING", nullptr},
};

class OptionTest : public ::testing::Test {
protected:
    const CModel& Import(int platform, const std::string& script) {
        m_model = ImportScripts(platform, {script}, m_dir).model;
        return m_model;
    }
    // The object of that kind in the model of `clause`.
    CFound Imported(int platform, const std::string& kind, const std::string& clause) {
        const CFound found = Find(Import(platform, Script(platform, kind, clause)), kind);
        EXPECT_NE(found.properties, nullptr) << "no " << kind;
        return found;
    }

    CScratchDir m_dir;
    CModel m_model;
};

TEST_F(OptionTest, EveryKeywordReachesItsOwnSlot) {
    for (const CSlotCase& option : kSlotCases) {
        SCOPED_TRACE(option.clause);
        const CFound found = Imported(option.platform, option.kind, option.clause);
        ASSERT_NE(found.params, nullptr);
        for (int slot = 1; slot <= 11; ++slot)
            EXPECT_EQ((*found.params)[slot - 1], slot == option.slot ? option.number : -1) << "slot " << slot;
    }
}

TEST_F(OptionTest, EveryKeywordReachesItsOwnProperty) {
    for (const CPropertyCase& option : kPropertyCases) {
        SCOPED_TRACE(option.clause);
        const CFound found = Imported(option.platform, option.kind, option.clause);
        ASSERT_NE(found.properties, nullptr);
        // Exactly the one property, beside the limit every range partition has.
        std::vector<CModelProperty> properties;
        for (const CModelProperty& property : *found.properties)
            if (property.name != "Partition Limit" || std::string(option.property) == "Partition Limit")
                properties.push_back(property);
        ASSERT_EQ(properties.size(), 1u);
        const CModelProperty& property = properties.front();
        EXPECT_EQ(property.name, option.property);
        EXPECT_EQ(property.value, option.value);
        EXPECT_EQ(property.hasText, option.text != nullptr);
        EXPECT_EQ(property.text, option.text ? option.text : "");
    }
}

TEST_F(OptionTest, HashPartitionsByCountAreNamedInOrder) {
    const CModel& model = Import(47, "CREATE TABLE T (A NUMBER) PARTITION BY HASH (A) PARTITIONS 4;");
    std::vector<std::string> names;
    for (const CModelPartition& partition : model.partitions) names.push_back(partition.name);
    EXPECT_EQ(names, (std::vector<std::string>{"P1", "P2", "P3", "P4"}));
}

TEST_F(OptionTest, StorageSpacesOfTablesIndexesAndDb2Tables) {
    const CModel& oracle = Import(47, "CREATE TABLE T (A NUMBER) TABLESPACE USERS;\nCREATE INDEX I ON T (A) TABLESPACE IDX;");
    EXPECT_EQ(oracle.tables.at(0).storageSpace, "USERS");
    EXPECT_EQ(oracle.tables.at(0).indexes.at(0).storageSpace, "IDX");
    const CModel& db2 = Import(46, "CREATE TABLE T (A INT) IN DB1.TS1;");
    EXPECT_EQ(db2.tables.at(0).storageSpace, "DB1.TS1");
    const CModel& sqlServer = Import(41, "create table t (a int) on [SECONDARY]\ngo\n");
    EXPECT_EQ(sqlServer.tables.at(0).storageSpace, "SECONDARY");
}

}  // namespace
