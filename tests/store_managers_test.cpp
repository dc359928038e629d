// The store's managers: keys, name space, object types, properties and
// partitions, meta tables; and the key-based operations of the row classes.
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "ModelFileReader.h"
#include "TestBuilder.h"
#include "store/PropertyCatalog.h"

using vrn::kPropertyValueCount;

namespace {

class ManagersTest : public CBuilderTest {
protected:
    std::string Save(CVrnAPI& builder, const std::string& name) {
        const std::string path = m_dir.File(name);
        builder.SaveToFile(path.c_str());
        EXPECT_STREQ(builder.GetVrnFile()->GetLastError(), "");
        return path;
    }

    // Saves the test's builder as `name` and opens that file in a new builder.
    std::unique_ptr<CTestBuilder> SaveAndReopen(const std::string& name) {
        const std::string path = Save(m_builder, name);
        auto reopened = std::make_unique<CTestBuilder>();
        EXPECT_EQ(reopened->Initialize(34, path.c_str()), 1);
        return reopened;
    }
    CPropertyMgr& Properties() { return *m_builder.GetPropertyMgr(); }
};

TEST_F(ManagersTest, KeysAreUniqueWithinAKeyClass) {
    std::set<unsigned long> entityKeys;
    for (int i = 0; i < 1000; ++i) {
        const unsigned long key = m_builder.AllocKey(EKeyClass::Entity);
        EXPECT_NE(key, 0u);
        EXPECT_TRUE(entityKeys.insert(key).second) << "key " << key << " handed out twice";
    }
    // Another key class is its own key space.
    EXPECT_EQ(m_builder.AllocKey(EKeyClass::Attribute), 1u);
    EXPECT_EQ(m_builder.AllocKey(EKeyClass::Entity), 1001u);
}

TEST_F(ManagersTest, ReopenedModelsContinueTheirKeys) {
    for (int i = 0; i < 5; ++i) m_builder.AllocKey(EKeyClass::Entity);
    m_builder.AllocKey(EKeyClass::Index);
    const auto reopened = SaveAndReopen("keys.vrn");
    EXPECT_EQ(reopened->AllocKey(EKeyClass::Entity), 6u);
    EXPECT_EQ(reopened->AllocKey(EKeyClass::Index), 2u);
    EXPECT_EQ(reopened->AllocKey(EKeyClass::Attribute), 1u);

    CModelFileReader reader(Save(*reopened, "again.vrn"));
    EXPECT_EQ(reader.Scalar("SELECT last_key FROM KeyAllocator WHERE key_class = 35"), "6");
}

TEST_F(ManagersTest, AnExhaustedKeySpaceGivesNoKeyRatherThanARepeat) {
    const std::string path = Save(m_builder, "full.vrn");
    ExecOnFile(path, "INSERT INTO KeyAllocator VALUES (40, 4294967294)");
    CTestBuilder reopened;
    ASSERT_EQ(reopened.Initialize(34, path.c_str()), 1);
    EXPECT_EQ(reopened.AllocKey(EKeyClass::ForeignKey), 4294967295u);
    EXPECT_EQ(reopened.AllocKey(EKeyClass::ForeignKey), 0u);
    EXPECT_EQ(reopened.AllocKey(EKeyClass::ForeignKey), 0u);
}

TEST_F(ManagersTest, NameSpaceEntersEachTextOnceAndKeepsItsNumbersInTheFile) {
    const auto textOf = [](CNameSpaceMgr& names, std::int32_t id) {
        CString text;
        names.GetStringFromNameSpace(text, id);
        return text.str();
    };
    CNameSpaceMgr& names = *m_builder.GetNameSpaceMgr();
    const std::int32_t p = names.EnterString("P");
    EXPECT_EQ(names.EnterString("A"), p + 1);
    EXPECT_EQ(names.EnterString("P"), p);
    EXPECT_EQ(textOf(names, p + 1), "A");
    EXPECT_EQ(textOf(names, 0), "");
    EXPECT_EQ(textOf(names, 99999), "");

    const auto reopened = SaveAndReopen("names.vrn");
    CNameSpaceMgr& again = *reopened->GetNameSpaceMgr();
    EXPECT_EQ(textOf(again, p + 1), "A");
    EXPECT_EQ(again.EnterString("P"), p);
    EXPECT_EQ(again.EnterString("NEW"), p + 2);
}

TEST_F(ManagersTest, ObjectTypesAreNumberedByRowTypeThenFrom530) {
    CGuidMgr& types = *m_builder.GetGuidMgr();
    CString attribute("Attribute"), entity("Entity"), extra("Diagram Note"), another("Subject Area");
    EXPECT_EQ(types.GetObjectTypeId(attribute), 12);
    EXPECT_EQ(types.GetObjectTypeId(entity), 40);
    EXPECT_EQ(types.GetObjectTypeId(extra), 530);
    EXPECT_EQ(types.GetObjectTypeId(another), 531);
    EXPECT_EQ(types.GetObjectTypeId(extra), 530);
    CString empty;
    EXPECT_EQ(types.GetObjectTypeId(empty), 0);

    const auto reopened = SaveAndReopen("types.vrn");
    CString third("Third");
    EXPECT_EQ(reopened->GetGuidMgr()->GetObjectTypeId(extra), 530);
    EXPECT_EQ(reopened->GetGuidMgr()->GetObjectTypeId(third), 532);
}

TEST_F(ManagersTest, PropertyInsertionsAreCheckedAgainstTheCatalogue) {
    EXPECT_EQ(Properties().InsertTableProperty(5, 22, 29, "4", 0), 1);
    EXPECT_EQ(Properties().InsertTableProperty(0, 22, 29, "4", 0), 0) << "zero owner key";
    EXPECT_EQ(Properties().InsertTableProperty(5, 999, 29, "4", 0), 0) << "unknown property";
    EXPECT_EQ(Properties().InsertTableProperty(5, 22, 999, "4", 0), 0) << "unknown value";
    EXPECT_EQ(Properties().InsertIndexProperty(5, -1, 29, nullptr, 0), 0);
    EXPECT_EQ(Properties().GetRecords().size(), 1u);
}

// Every property and value number the builder's property codes turn into.
TEST_F(ManagersTest, CatalogueAcceptsEveryNumberTheBuilderPasses) {
    struct CPair {
        int property, value;
    };
    const CPair pairs[] = {
        // attributes
        {34, 45}, {41, 52}, {48, 62}, {48, 63}, {49, 64}, {3, 7}, {36, 47}, {70, 90}, {71, 91}, {71, 92},
        {72, 93}, {62, 78}, {76, 97}, {63, 79}, {64, 80}, {65, 81}, {69, 89},
        // tables and overflow segments
        {19, 26}, {22, 29}, {23, 30}, {3, 6}, {17, 22}, {17, 24}, {4, 8}, {4, 9}, {25, 34}, {25, 35},
        {18, 25}, {10, 15}, {11, 16}, {20, 27}, {21, 28}, {12, 17}, {13, 18}, {15, 20}, {16, 21}, {14, 19},
        {29, 39}, {58, 74}, {24, 31}, {24, 32}, {24, 33}, {5, 10}, {6, 11}, {9, 14}, {31, 42}, {30, 41},
        {56, 72}, {57, 73},
        // indexes
        {1, 2}, {1, 3}, {2, 4}, {2, 5}, {0, 0}, {59, 75}, {74, 95}, {75, 96}, {60, 76}, {44, 58}, {46, 60},
        {45, 59}, {43, 55}, {43, 56}, {43, 57},
        // partitions
        {7, 12}, {8, 13}, {24, 14}, {50, 65}, {50, 66}, {53, 55}, {53, 57},
    };
    for (const CPair& pair : pairs) {
        SCOPED_TRACE(testing::Message() << "property " << pair.property << " value " << pair.value);
        EXPECT_EQ(Properties().InsertPartitionProperty(9, pair.property, pair.value, nullptr, 0), 1);
        EXPECT_STRNE(Properties().GetPropertyValueString(pair.value), "");
    }
}

TEST_F(ManagersTest, ValueTextsDistinguishTheCacheOptions) {
    EXPECT_EQ(Properties().GetPropertyValueString(55)[0], 'A');
    EXPECT_EQ(Properties().GetPropertyValueString(57)[0], 'N');
    const char first = Properties().GetPropertyValueString(56)[0];
    EXPECT_TRUE(first != 'A' && first != 'N' && first != '\0');
    EXPECT_STRNE(Properties().GetPropertyValueString(65), Properties().GetPropertyValueString(66));
    EXPECT_STREQ(Properties().GetPropertyValueString(12345), "");
}

TEST_F(ManagersTest, TablePropertiesReadBackTheLatestValue) {
    CString text("stale");
    unsigned long value = 77;
    EXPECT_EQ(Properties().GetTablePropertyValue(8, 24, text, value), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(value, 0u);
    Properties().InsertTableProperty(8, 24, 31, nullptr, 0);
    Properties().InsertTableProperty(8, 24, 33, "pool", 0);
    Properties().InsertIndexProperty(8, 24, 32, nullptr, 0);  // an index of the same key is another owner
    EXPECT_EQ(Properties().GetTablePropertyValue(8, 24, text, value), 1);
    EXPECT_EQ(value, 33u);
    EXPECT_STREQ(text, "pool");
}

TEST_F(ManagersTest, PartitionsGetKeysOfTheirOwn) {
    unsigned long first = 0, second = 0, refused = 99;
    EXPECT_EQ(Properties().InsertTablePartition(5, first, "P2024", 0), 1);
    EXPECT_EQ(Properties().InsertIndexPartition(6, second, "IP1", 3), 1);
    EXPECT_EQ(first, 1u);
    EXPECT_EQ(second, 2u);
    EXPECT_EQ(Properties().InsertTablePartition(5, refused, "", 0), 0);
    EXPECT_EQ(refused, 0u);
    EXPECT_EQ(Properties().InsertTablePartition(5, refused, nullptr, 0), 0);
    EXPECT_EQ(Properties().InsertIndexPartition(0, refused, "IP2", 0), 0);

    const auto reopened = SaveAndReopen("parts.vrn");
    CModelFileReader reader(m_dir.File("parts.vrn"));
    const auto rows = reader.Rows("Partition", "partition_key");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(Fields(rows.at(0), "owner_kind name"), "owner_kind=table name=P2024");
    EXPECT_EQ(Fields(rows.at(1), "owner_kind int_arg"), "owner_kind=index int_arg=3");
    unsigned long third = 0;
    EXPECT_EQ(reopened->GetPropertyMgr()->InsertTablePartition(5, third, "P2025", 0), 1);
    EXPECT_EQ(third, 3u);
}

TEST_F(ManagersTest, PropertiesAreSavedInCallOrderWithNullForNoText) {
    Properties().InsertTableProperty(5, 3, 7, nullptr, 0);
    Properties().InsertAttributeProperty(9, 49, 64, "10", 0);
    Properties().InsertOverflowSegmentProperty(5, 10, 15, "", 2);
    const auto reopened = SaveAndReopen("props.vrn");
    CModelFileReader reader(m_dir.File("props.vrn"));
    const auto rows = reader.Rows("Property", "prop_seq");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(Fields(rows.at(0), "owner_kind text"), "owner_kind=table text=NULL");
    EXPECT_EQ(Fields(rows.at(1), "owner_kind text"), "owner_kind=attribute text=10");
    EXPECT_EQ(Fields(rows.at(2), "owner_kind text int_arg"), "owner_kind=overflow text= int_arg=2");
    EXPECT_EQ(reader.Scalar("SELECT typeof(text) FROM Property WHERE prop_seq = 1"), "null");
    EXPECT_EQ(reader.Count("PropertyValue"), kPropertyValueCount);

    reopened->GetPropertyMgr()->InsertTableProperty(6, 4, 9, nullptr, 0);
    CModelFileReader again(Save(*reopened, "props2.vrn"));
    EXPECT_EQ(again.Count("Property"), 4);
    EXPECT_EQ(again.Scalar("SELECT text FROM Property WHERE prop_seq = 2"), "10");
}

TEST_F(ManagersTest, MetaTablesHaveAKeyForEveryRowTableOnly) {
    const CEnhMetaTableTbl& tables = *Properties().m_pMetaTableTbl;
    for (int rowType : {12, 14, 23, 24, 26, 29, 40, 46, 47, 53, 54, 55, 65, 75, 76, 82, 86, 89, 100, 104, 110})
        EXPECT_NE(tables.GetTechKey(rowType), 0u) << rowType;
    for (int unknown : {0, 11, 13, 111, -5}) EXPECT_EQ(tables.GetTechKey(unknown), 0u) << unknown;
    CModelFileReader reader(Save(m_builder, "meta.vrn"));
    EXPECT_EQ(reader.Count("MetaTable"), 21);
    EXPECT_EQ(reader.Scalar("SELECT table_name FROM MetaTable WHERE meta_table_no = 40"), "Entity");
}

TEST(RowClassTest, CopyTakesTheFieldsButKeepsTheOwnersPosition) {
    CNSOutputIndexColumn source, target;
    source.m_attributeNo = 3;
    source.m_sortOrder.Set(0, "D");
    int marker = 0;
    target.m_pOwnerData = &marker;
    target.Copy(&source);
    EXPECT_EQ(target.m_attributeNo, 3u);
    EXPECT_STREQ(target.m_sortOrder.m_text, "D");
    EXPECT_EQ(target.m_pOwnerData, &marker);

    CNSOutputDefaults other;
    other.m_defaultId = 4;
    target.Copy(&other);  // a row of another table is not copied
    EXPECT_EQ(target.m_attributeNo, 3u);
}

TEST(RowClassTest, KeysDecideMatchOrderAndHash) {
    CNSOutputEntity a, b;
    a.m_entityKey = 5;
    b.m_entityKey = 5;
    EXPECT_TRUE(a.MatchKey(&b));
    EXPECT_EQ(a.Hash(), b.Hash());
    EXPECT_EQ(a.Compare(&b), 0);
    b.m_entityKey = 9;
    EXPECT_FALSE(a.MatchKey(&b));
    EXPECT_EQ(a.Compare(&b), -1);
    EXPECT_EQ(b.Compare(&a), 1);
}

TEST(RowClassTest, TechnicalKeysMapOntoTheRowsKeyField) {
    CNSOutputIndexes index;
    EXPECT_FALSE(index.HasTechKey());
    index.SetTechKey(47);
    EXPECT_EQ(index.m_indexKey, 47u);
    EXPECT_EQ(index.GetTechKey(), 47u);
    // Defaults are numbered by position and carry no technical key.
    CNSOutputDefaults defaults;
    defaults.SetTechKey(3);
    EXPECT_EQ(defaults.GetTechKey(), 0u);
    EXPECT_FALSE(defaults.HasTechKey());
}

}  // namespace
