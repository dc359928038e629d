// Primary keys and indexes: numbering and names, columns, key types at save,
// the consolidation of a primary key with a unique index on DB2, and the rows
// the entity save writes for them.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class IndexesTest : public CBuilderTest {
protected:
    // A table T with columns A, B, C, on Oracle 8.x unless given.
    explicit IndexesTest(int platform = 34) : CBuilderTest(platform) {}
    void SetUp() override {
        CBuilderTest::SetUp();
        m_entity = m_builder.AddEntity("T", nullptr, 0, 0);
        for (const char* column : {"A", "B", "C"}) m_builder.AddAttribute(m_entity, column, "int", -1, -1, 1, 0);
    }
    CVrnApiEntity& Entity() { return *m_builder.GetEntityPtr(m_entity); }
    // A unique index over `columns`.
    unsigned long AddUniqueIndex(const char* name, std::initializer_list<const char*> columns) {
        const unsigned long index = m_builder.AddIndex(m_entity, name);
        for (const char* column : columns) m_builder.AddIndexColumn(index, column, 0, 0);
        m_builder.SetIndexProperty(index, 34, 1);
        return index;
    }
    void AddPrimaryKey(const char* name, std::initializer_list<const char*> columns) {
        m_builder.AddPrimaryKey(m_entity, name);
        for (const char* column : columns) m_builder.AddPrimaryKeyColumn(m_entity, column, 0);
    }
    unsigned long m_entity = 0;
};

// The table T on IBM DB2 UDB 7.x, where the primary key merges with a matching unique index.
class Db2IndexesTest : public IndexesTest {
protected:
    Db2IndexesTest() : IndexesTest(44) {}
};

CVrnApiIndex& IndexOf(CTestBuilder& builder, unsigned long entity, int position) {
    return *builder.GetEntityPtr(entity)->m_indexList.GetAt(builder.GetEntityPtr(entity)->m_indexList.FindIndex(position));
}

TEST_F(IndexesTest, PrimaryKeyAndIndexesShareOneNumberSequenceAndGeneratedNames) {
    const unsigned long first = m_builder.AddIndex(m_entity, nullptr);
    EXPECT_STREQ(IndexOf(m_builder, m_entity, 0).GetIndexName(), "TIX1");
    EXPECT_STREQ(m_builder.AddPrimaryKey(m_entity, "PK_T"), "PK_T");
    m_builder.AddIndex(m_entity, nullptr);
    const unsigned long named = m_builder.AddIndex(m_entity, "T_NAME");
    EXPECT_STREQ(IndexOf(m_builder, m_entity, 1).GetIndexName(), "TIX3");
    EXPECT_STREQ(IndexOf(m_builder, m_entity, 2).GetIndexName(), "T_NAME");
    EXPECT_EQ(IndexOf(m_builder, m_entity, 2).m_indexNo, 4u);
    EXPECT_EQ(Entity().GetPrimaryKeyIndexObj()->m_indexNo, 2u);
    // Index keys come from one key space for primary keys and indexes.
    const unsigned long pk = m_builder.GetPrimaryKeyIndexId(m_entity);
    EXPECT_EQ(first, 1u);
    EXPECT_EQ(pk, 2u);
    EXPECT_EQ(named, 4u);
    EXPECT_EQ(IndexOf(m_builder, m_entity, 0).m_tableKey, m_entity);
    EXPECT_EQ(Entity().GetPrimaryKeyIndexObj()->m_tableKey, 0u);
}

TEST_F(IndexesTest, ASecondPrimaryKeyIsRefused) {
    EXPECT_STREQ(m_builder.AddPrimaryKey(m_entity, "PK1"), "PK1");
    const unsigned long key = m_builder.GetPrimaryKeyIndexId(m_entity);
    EXPECT_EQ(m_builder.AddPrimaryKey(m_entity, "PK2"), nullptr);
    EXPECT_EQ(m_builder.GetPrimaryKeyIndexId(m_entity), key);
    EXPECT_STREQ(Entity().GetPrimaryKeyIndexObj()->GetIndexName(), "PK1");
    EXPECT_EQ(Entity().m_nextIndexNo, 2);
}

TEST_F(IndexesTest, UnknownEntitiesIndexesAndColumnsAnswerZero) {
    EXPECT_EQ(m_builder.AddPrimaryKey(999, "PK"), nullptr);
    EXPECT_EQ(m_builder.GetPrimaryKeyIndexId(999), 0u);
    EXPECT_EQ(m_builder.GetPrimaryKeyIndexId(m_entity), 0u);
    EXPECT_EQ(m_builder.AddPrimaryKeyColumn(m_entity, "A", 0), 0);  // no primary key yet
    m_builder.AddPrimaryKey(m_entity, "PK");
    EXPECT_EQ(m_builder.AddPrimaryKeyColumn(m_entity, "MISSING", 0), 0);
    EXPECT_EQ(m_builder.AddPrimaryKeyColumn(m_entity, nullptr, 0), 0);
    EXPECT_EQ(m_builder.AddIndex(999, "IX"), 0u);
    const unsigned long index = m_builder.AddIndex(m_entity, "IX");
    EXPECT_EQ(m_builder.AddIndexColumn(index, "MISSING", 0, 0), 0);
    EXPECT_EQ(m_builder.AddIndexColumn(999, "A", 0, 0), 0);
    EXPECT_EQ(m_builder.SetIndexProperty(999, 34, 1), 0);
    EXPECT_EQ(m_builder.SetIndexStringProperty(999, 42, "x"), 0);
    EXPECT_EQ(Entity().GetPrimaryKeyIndexObj()->GetColumnCount(), 0);
}

TEST_F(IndexesTest, PrimaryKeyColumnsMarkTheirAttributesNotNull) {
    AddPrimaryKey("PK", {"b"});
    const CVrnApiAttribute* b = Entity().GetAttribute(2);
    EXPECT_EQ(b->GetIsPkAttribute(), 1);
    EXPECT_EQ(b->m_nullOption, 0);
    EXPECT_EQ(Entity().GetAttribute(1)->GetIsPkAttribute(), 0);
    POSITION pos = Entity().GetPrimaryKeyIndexObj()->StartEnumIndexColumns();
    const CNSOutputIndexColumn* column = Entity().GetPrimaryKeyIndexObj()->GetNextIndexColumn(pos);
    EXPECT_EQ(column->m_attributeNo, 2u);
    EXPECT_STREQ(column->m_sortOrder.m_text, "A");
    EXPECT_EQ(pos, nullptr);
}

TEST_F(IndexesTest, ColumnSequencesCountOrAreTakenAsGiven) {
    const unsigned long index = m_builder.AddIndex(m_entity, "IX");
    EXPECT_EQ(m_builder.AddIndexColumn(index, "A", 0, 0), 1);
    EXPECT_EQ(m_builder.AddIndexColumn(index, "B", 7, 1), 1);
    EXPECT_EQ(m_builder.AddIndexColumn(index, "C", 0, 0), 1);
    EXPECT_EQ(m_builder.AddIndexColumn(index, "a", 0, 0), 1);  // duplicates are not checked
    std::vector<std::uint32_t> sequences;
    std::vector<std::string> orders;
    CVrnApiIndex& ix = IndexOf(m_builder, m_entity, 0);
    for (POSITION pos = ix.StartEnumIndexColumns(); pos;) {
        const CNSOutputIndexColumn* column = ix.GetNextIndexColumn(pos);
        sequences.push_back(column->m_sequenceNo);
        orders.push_back(column->m_sortOrder.m_text.str());
        EXPECT_EQ(column->m_indexKey, index);
    }
    EXPECT_EQ(sequences, (std::vector<std::uint32_t>{1, 7, 3, 4}));
    EXPECT_EQ(orders, (std::vector<std::string>{"A", "D", "A", "A"}));
}

TEST_F(IndexesTest, KeyTypesAreSetFromTheUniqueFlagAtSave) {
    AddPrimaryKey("PK", {"A"});
    AddUniqueIndex("UX", {"B"});
    m_builder.AddIndex(m_entity, "IX");
    m_builder.AddIndex(m_entity, "LOWER");
    Entity().m_indexList.GetTail()->GetIsUnique() = "y";
    const unsigned long notUnique = m_builder.AddIndex(m_entity, "NOTUNIQUE");
    m_builder.SetIndexProperty(notUnique, 34, 0);
    CModelFileReader& reader = Save();
    EXPECT_EQ(reader.Column("SELECT index_name || ':' || key_type || ':' || is_unique FROM Indexes ORDER BY row_seq"),
              (std::vector<std::string>{"PK:P:Y", "UX:A:Y", "IX:I:", "LOWER:I:y", "NOTUNIQUE:I:N"}));
}

TEST_F(IndexesTest, TheEntitySaveWritesKeysBetweenAttributesAndStorage) {
    AddPrimaryKey("PK_T", {"A", "B"});
    const unsigned long index = AddUniqueIndex("T_UX", {"C"});
    m_builder.SetIndexProperty(index, 16, 64);
    m_builder.SetIndexStringProperty(index, 15, "USERS");
    CModelFileReader& reader = Save();
    const std::string order = reader.Scalar(
        "SELECT group_concat(what, ' ') FROM ("
        "SELECT row_seq, 'attr' AS what FROM Attribute UNION ALL "
        "SELECT row_seq, 'col:' || index_no FROM IndexColumn UNION ALL "
        "SELECT row_seq, 'store:' || index_no FROM IndexStorage UNION ALL "
        "SELECT row_seq, 'index:' || index_no FROM Indexes UNION ALL "
        "SELECT row_seq, 'pk' FROM PrimaryKey UNION ALL "
        "SELECT row_seq, 'table' FROM TableStorage UNION ALL "
        "SELECT row_seq, 'entity' FROM Entity ORDER BY row_seq)");
    EXPECT_EQ(order,
              "attr attr attr col:1 col:1 store:1 index:1 pk pk col:2 store:2 index:2 table entity");
    const auto storage = reader.Rows("IndexStorage");
    ASSERT_EQ(storage.size(), 2u);
    EXPECT_EQ(Fields(storage[1], "index_key param3 param1 storage_space entity_key"),
              "index_key=" + std::to_string(index) + " param3=64 param1=-1 storage_space=USERS entity_key=" +
                  std::to_string(m_entity));
    const auto columns = reader.Rows("IndexColumn");
    EXPECT_EQ(columns.at(0).at("attribute_no"), "1");
    EXPECT_EQ(Fields(columns.at(1), "attribute_no sequence_no"), "attribute_no=2 sequence_no=2");
}

TEST_F(IndexesTest, WithoutKeyAttributesThePrimaryKeyIsNotWrittenButIndexesAre) {
    m_builder.AddPrimaryKey(m_entity, "PK");
    AddUniqueIndex("UX", {"A"});
    CModelFileReader& reader = Save();
    EXPECT_EQ(reader.Column("SELECT index_name FROM Indexes"), std::vector<std::string>{"UX"});
    EXPECT_EQ(reader.Count("PrimaryKey"), 0);
}

struct CConsolidationCase {
    int platform;
    const char* primaryKeyName;
    bool merged;
    const char* savedName;  // the primary key's name in the file
};

TEST_F(IndexesTest, PrimaryKeysMergeWithAMatchingUniqueIndexOnDb2) {
    const CConsolidationCase cases[] = {
        {44, "PK_T", true, "PK_T"}, {32, "PK_T", true, "PK_T"}, {38, "", true, "T_UX"},
        {39, "PK_T", false, "PK_T"}, {40, "PK_T", false, "PK_T"}, {46, "", true, "T_UX"},
        {39, "", true, "T_UX"}, {34, "PK_T", false, "PK_T"}, {8, "", false, ""}, {41, "", false, ""},
    };
    for (const CConsolidationCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "platform " << c.platform << " name '" << c.primaryKeyName << "'");
        CScratchDir dir;
        CTestBuilder builder;
        ASSERT_EQ(builder.Initialize(c.platform, nullptr), 1);
        const unsigned long entity = builder.AddEntity("T", nullptr, 0, 0);
        for (const char* column : {"A", "B"}) builder.AddAttribute(entity, column, "int", -1, -1, 1, 0);
        builder.AddPrimaryKey(entity, c.primaryKeyName);
        builder.AddPrimaryKeyColumn(entity, "A", 0);
        builder.AddPrimaryKeyColumn(entity, "B", 0);
        const unsigned long oldKey = builder.GetPrimaryKeyIndexId(entity);
        const unsigned long unique = builder.AddIndex(entity, "T_UX");
        builder.AddIndexColumn(unique, "A", 0, 0);
        builder.AddIndexColumn(unique, "B", 0, 0);
        builder.SetIndexProperty(unique, 34, 1);
        const std::string path = dir.File("model.vrn");
        builder.SaveToFile(path.c_str());

        CVrnApiEntity& saved = *builder.GetEntityPtr(entity);
        EXPECT_EQ(saved.GetPrimaryKeyIndexId(), c.merged ? unique : oldKey);
        EXPECT_EQ(saved.m_indexList.GetCount(), c.merged ? 0 : 1);
        CModelFileReader reader(path);
        EXPECT_EQ(reader.Scalar("SELECT index_name FROM Indexes WHERE key_type = 'P'"), c.savedName);
        EXPECT_EQ(reader.Count("Indexes"), c.merged ? 1 : 2);
        // The builder's maps still reach the displaced object safely.
        EXPECT_EQ(builder.SetIndexProperty(oldKey, 34, 1), 1);
    }
}

TEST_F(Db2IndexesTest, OnlyAUniqueIndexWithTheSameColumnsInOrderMerges) {
    AddPrimaryKey("PK_T", {"A", "B"});
    AddUniqueIndex("REVERSED", {"B", "A"});
    AddUniqueIndex("SHORTER", {"A"});
    const unsigned long plain = m_builder.AddIndex(m_entity, "NOT_UNIQUE");
    m_builder.AddIndexColumn(plain, "A", 0, 0);
    m_builder.AddIndexColumn(plain, "B", 0, 0);
    const unsigned long second = AddUniqueIndex("SECOND", {"A", "B"});
    AddUniqueIndex("THIRD", {"A", "B"});
    Save();
    EXPECT_EQ(m_builder.GetPrimaryKeyIndexId(m_entity), second);
    EXPECT_EQ(Entity().m_indexList.GetCount(), 4);
}

TEST_F(IndexesTest, AlternateKeysAreFoundByTheirColumnList) {
    AddPrimaryKey("PK", {"A"});
    const unsigned long ab = AddUniqueIndex("UX_AB", {"A", "B"});
    const unsigned long c = AddUniqueIndex("UX_C", {"C"});
    const auto alternateKey = [this](std::initializer_list<std::uint32_t> numbers) {
        CList<std::uint32_t, std::uint32_t> columns;
        for (const std::uint32_t number : numbers) columns.AddTail(number);
        return Entity().HasAKWithColumnList(columns);
    };
    EXPECT_EQ(alternateKey({1, 2}), ab);
    EXPECT_EQ(alternateKey({3}), c);
    EXPECT_EQ(alternateKey({1}), 0u);  // only the primary key has exactly A, and it is not an alternate key
    EXPECT_EQ(alternateKey({}), 0u);
}

TEST(IndexWithoutBuilderTest, TakesNoColumnsOrStorageProperties) {
    CVrnApiIndex index;
    index.AddColumn(1, 0, 0);
    EXPECT_EQ(index.GetColumnCount(), 0);
    EXPECT_EQ(index.SetProperty(16, 5), 0);
    EXPECT_EQ(index.SetProperty(25, 5), 0);
    EXPECT_EQ(index.SetStringProperty(15, "TS"), 0);
    EXPECT_EQ(index.SetProperty(34, 1), 1);  // a text field of the row itself
    EXPECT_STREQ(index.GetIsUnique(), "Y");
}

}  // namespace
