// Physical options as scripts spell them, one fragment per keyword and object
// kind, checked in the saved model: the exact storage slot, or the exact
// property (its name and value in the catalogue, and its text). A keyword
// mapped to its neighbour's code, a size off by one or a partition too few is
// a failing row here.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "DdlImporter.h"
#include "ImportReport.h"
#include "ModelFileReader.h"

namespace {

struct COptionCase {
    int platform;
    const char* script;
    const char* object;  // "table T", "index I" or "partition P"
    int slot;            // 1 to 11: the storage slot expected to hold `number`; 0: a property
    long number;
    const char* property;  // the catalogue's name of the property expected
    const char* value;     // the catalogue's name of its value
    const char* text;      // its text, or null for none
};

// The object a case names, from the model read back.
struct CFound {
    const std::array<int, 11>* params = nullptr;
    const std::vector<CModelProperty>* properties = nullptr;
};

CFound Find(const CModel& model, const std::string& object) {
    const std::string kind = object.substr(0, object.find(' ')), name = object.substr(object.find(' ') + 1);
    CFound found;
    for (const CModelTable& table : model.tables) {
        if (kind == "table" && table.name == name) found = {&table.storageParams, &table.properties};
        for (const CModelIndex& index : table.indexes)
            if (kind == "index" && index.name == name) found = {&index.storageParams, &index.properties};
    }
    for (const CModelPartition& partition : model.partitions)
        if (kind == "partition" && partition.name == name) found = {nullptr, &partition.properties};
    return found;
}

const COptionCase kCases[] = {
    // Oracle tables.
    {47, "CREATE TABLE T (A NUMBER) PCTFREE 10;", "table T", 5, 10, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) PCTUSED 40;", "table T", 6, 40, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) INITRANS 2;", "table T", 0, 0, "Initial Transactions", "INITRANS", "2"},
    {47, "CREATE TABLE T (A NUMBER) MAXTRANS 255;", "table T", 0, 0, "Maximum Transactions", "MAXTRANS", "255"},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (INITIAL 64K);", "table T", 3, 64, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (NEXT 1M);", "table T", 4, 1024, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (MINEXTENTS 1);", "table T", 7, 1, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (MAXEXTENTS UNLIMITED);", "table T", 8, 2147483647, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (PCTINCREASE 5);", "table T", 9, 5, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (FREELISTS 3);", "table T", 10, 3, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (FREELIST GROUPS 2);", "table T", 11, 2, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER) STORAGE (BUFFER_POOL KEEP);", "table T", 0, 0, "Buffer Pool", "KEEP", nullptr},
    {47, "CREATE TABLE T (A NUMBER) LOGGING;", "table T", 0, 0, "Logging", "LOGGING", nullptr},
    {47, "CREATE TABLE T (A NUMBER) NOLOGGING;", "table T", 0, 0, "Logging", "NOLOGGING", nullptr},
    {47, "CREATE TABLE T (A NUMBER) CACHE;", "table T", 0, 0, "Cache", "CACHE", nullptr},
    {47, "CREATE TABLE T (A NUMBER) NOCACHE;", "table T", 0, 0, "Cache", "NOCACHE", nullptr},
    {47, "CREATE TABLE T (A NUMBER) MONITORING;", "table T", 0, 0, "Monitoring", "MONITORING", nullptr},
    {47, "CREATE TABLE T (A NUMBER) NOMONITORING;", "table T", 0, 0, "Monitoring", "NOMONITORING", nullptr},
    {47, "CREATE TABLE T (A NUMBER) PARALLEL 4;", "table T", 0, 0, "Parallel Degree", "PARALLEL", "4"},
    {47, "CREATE TABLE T (A NUMBER PRIMARY KEY) ORGANIZATION INDEX;", "table T", 0, 0, "Index Organized",
     "ORGANIZATION INDEX", nullptr},
    {47, "CREATE TABLE T (A NUMBER) ENABLE ROW MOVEMENT;", "table T", 0, 0, "Row Movement", "ENABLE ROW MOVEMENT",
     nullptr},
    // Oracle indexes.
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) PCTFREE 7;", "index I", 5, 7, nullptr, nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) INITRANS 3;", "index I", 0, 0, "Initial Transactions",
     "INITRANS", "3"},
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) MAXTRANS 99;", "index I", 0, 0, "Maximum Transactions",
     "MAXTRANS", "99"},
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) STORAGE (INITIAL 128K);", "index I", 3, 128, nullptr,
     nullptr, nullptr},
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) STORAGE (NEXT 2M);", "index I", 4, 2048, nullptr, nullptr,
     nullptr},
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) STORAGE (BUFFER_POOL RECYCLE);", "index I", 0, 0,
     "Buffer Pool", "RECYCLE", nullptr},
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) REVERSE;", "index I", 0, 0, "Reverse Key", "REVERSE",
     nullptr},
    {47, "CREATE TABLE T (A NUMBER);\nCREATE INDEX I ON T (A) COMPRESS;", "index I", 0, 0, "Compression", "COMPRESS",
     nullptr},
    // DB2 for z/OS indexes.
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) USING STOGROUP SG1;", "index I", 0, 0, "Storage Group",
     "STOGROUP", "SG1"},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) USING VCAT CAT1;", "index I", 0, 0, "VCAT Catalog", "VCAT",
     "CAT1"},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) PRIQTY 48;", "index I", 3, 48, nullptr, nullptr, nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) SECQTY 96;", "index I", 4, 96, nullptr, nullptr, nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) PIECESIZE 2G;", "index I", 2, 2097152, nullptr, nullptr,
     nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) BUFFERPOOL BP1;", "index I", 0, 0, "Buffer Pool", "DEFAULT",
     "BP1"},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) CLOSE YES;", "index I", 0, 0, "Close", "CLOSE YES", nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) DEFINE NO;", "index I", 0, 0, "Define", "DEFINE NO", nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) ERASE YES;", "index I", 0, 0, "Erase", "ERASE YES", nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) COPY YES;", "index I", 0, 0, "Copy", "COPY YES", nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) GBPCACHE ALL;", "index I", 0, 0, "Group Buffer Pool Cache",
     "ALL", nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) GBPCACHE NONE;", "index I", 0, 0, "Group Buffer Pool Cache",
     "NONE", nullptr},
    {46, "CREATE TABLE T (A INT);\nCREATE INDEX I ON T (A) COMPRESS NO;", "index I", 0, 0, "Compression", "NOCOMPRESS",
     nullptr},
    // Oracle partitions.
    {47, "CREATE TABLE T (A NUMBER) PARTITION BY RANGE (A) (PARTITION P VALUES LESS THAN (10));", "partition P", 0, 0,
     "Partition Limit", "Limit Values", "10"},
    {47, "CREATE TABLE T (A NUMBER) PARTITION BY RANGE (A) (PARTITION P VALUES LESS THAN (10) TABLESPACE TS1);",
     "partition P", 0, 0, "Storage Space", "Storage Space Name", "TS1"},
    {47, "CREATE TABLE T (A NUMBER) PARTITION BY RANGE (A) (PARTITION P VALUES LESS THAN (10) PCTFREE 5);",
     "partition P", 0, 0, "Percent Free", "PCTFREE", "5"},
    {47, "CREATE TABLE T (A NUMBER) PARTITION BY RANGE (A) (PARTITION P VALUES LESS THAN (10) PCTUSED 50);",
     "partition P", 0, 0, "Percent Used", "PCTUSED", "50"},
    {47, "CREATE TABLE T (A NUMBER) PARTITION BY RANGE (A) (PARTITION P VALUES LESS THAN (10) STORAGE (INITIAL 1M));",
     "partition P", 0, 0, "Initial Extent", "INITIAL", "1024"},
    {47, "CREATE TABLE T (A NUMBER) PARTITION BY RANGE (A) (PARTITION P VALUES LESS THAN (10) NOLOGGING);",
     "partition P", 0, 0, "Logging", "NOLOGGING", nullptr},
};

class OptionTest : public ::testing::Test {
protected:
    const CModel& Import(int platform, const std::string& script) {
        CVrnAPI builder;
        EXPECT_EQ(builder.Initialize(platform, nullptr), 1);
        CImportReport report;
        CDdlImporter importer(builder, report);
        importer.ImportScript("options.sql", script);
        importer.Finish();
        const std::string path = m_dir.File("options.vrn");
        builder.SaveToFile(path.c_str());
        std::string error;
        EXPECT_TRUE(ReadModelFile(path, m_model, error)) << error;
        return m_model;
    }

    CScratchDir m_dir;
    CModel m_model;
};

TEST_F(OptionTest, EveryKeywordReachesItsOwnSlotOrProperty) {
    for (const COptionCase& option : kCases) {
        SCOPED_TRACE(option.script);
        const CFound found = Find(Import(option.platform, option.script), option.object);
        ASSERT_NE(found.properties, nullptr) << "no " << option.object;
        if (option.slot != 0) {
            ASSERT_NE(found.params, nullptr);
            for (int slot = 1; slot <= 11; ++slot)
                EXPECT_EQ((*found.params)[slot - 1], slot == option.slot ? option.number : -1) << "slot " << slot;
            continue;
        }
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
    EXPECT_EQ(oracle.tables[0].storageSpace, "USERS");
    EXPECT_EQ(oracle.tables[0].indexes[0].storageSpace, "IDX");
    const CModel& db2 = Import(46, "CREATE TABLE T (A INT) IN DB1.TS1;");
    EXPECT_EQ(db2.tables[0].storageSpace, "DB1.TS1");
    const CModel& sqlServer = Import(41, "create table t (a int) on [SECONDARY]\ngo\n");
    EXPECT_EQ(sqlServer.tables[0].storageSpace, "SECONDARY");
}

}  // namespace
