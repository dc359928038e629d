// Entities: naming and finding with owners and the DB2 SQL id, views, and the
// rows a saved model of several tables holds.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class EntitiesTest : public CBuilderTest {};

TEST_F(EntitiesTest, OwnersSeparateEntitiesOfOneName) {
    const unsigned long sales = m_builder.AddEntity("ITEM", "SALES", 0, 0);
    const unsigned long hr = m_builder.AddEntity("ITEM", "HR", 0, 0);
    EXPECT_NE(sales, hr);
    EXPECT_EQ(m_builder.FindEntity("ITEM", nullptr, 0), sales);
    EXPECT_EQ(m_builder.FindEntity("item", "SALES", 0), sales);
    EXPECT_EQ(m_builder.FindEntity("ITEM", "HR", 0), hr);
    EXPECT_EQ(m_builder.FindEntity("ITEM", "hr", 0), hr);  // through the name+owner key
    EXPECT_EQ(m_builder.FindEntity("ITEM", "OPS", 0), 0u);
    EXPECT_EQ(m_builder.FindEntity("ORDERS", nullptr, 0), 0u);
    EXPECT_STREQ(m_builder.GetEntityPtr(hr)->GetOwner(), "HR");
}

TEST_F(EntitiesTest, TheDB2SqlIdOwnsEntitiesAddedWithoutOwner) {
    m_builder.SetDB2SqlId("ADMIN");
    const unsigned long item = m_builder.AddEntity("item", nullptr, 0, 0);
    EXPECT_STREQ(m_builder.GetEntityPtr(item)->GetOwner(), "ADMIN");
    EXPECT_EQ(m_builder.FindEntity("item", "ADMIN", 0), item);
    EXPECT_EQ(m_builder.FindEntity("ITEM", "admin", 0), 0u);  // no name+owner key to fall back on
    const unsigned long given = m_builder.AddEntity("PART", "OWNER1", 0, 0);
    EXPECT_STREQ(m_builder.GetEntityPtr(given)->GetOwner(), "OWNER1");
}

TEST_F(EntitiesTest, OwnerlessAndUnnamedEntities) {
    const unsigned long item = m_builder.AddEntity("ITEM", nullptr, 0, 0);
    EXPECT_EQ(m_builder.FindEntity("ITEM", "ANYONE", 0), item);  // no owner: found under any
    // An empty owner is an owner too: it takes over the bare name.
    const unsigned long empty = m_builder.AddEntity("ITEM", "", 0, 0);
    EXPECT_NE(item, empty);
    EXPECT_EQ(m_builder.FindEntity("ITEM", nullptr, 0), empty);
    // A null name counts as empty.
    const unsigned long unnamed = m_builder.AddEntity(nullptr, nullptr, 0, 0);
    EXPECT_NE(unnamed, 0u);
    EXPECT_EQ(m_builder.FindEntity("", nullptr, 0), unnamed);
    EXPECT_EQ(m_builder.FindEntity(nullptr, nullptr, 0), unnamed);
}

TEST_F(EntitiesTest, UnknownIdentifiersAnswerZero) {
    const unsigned long view = m_builder.AddEntity("V_ITEM", nullptr, 0, 1);
    EXPECT_EQ(m_builder.IsEntityView(view), 1);
    EXPECT_EQ(m_builder.IsEntityView(view + 1), 0);
    EXPECT_EQ(m_builder.GetEntityPtr(0), nullptr);
    EXPECT_EQ(m_builder.SetEntityProperty(77, 16, 1), 0);
    EXPECT_EQ(m_builder.SetEntityStringProperty(77, 2, "x"), 0);
    EXPECT_EQ(m_builder.SetAttributeProperty(77, 6, 1), 0);
    EXPECT_EQ(m_builder.SetAttributeStringProperty(77, 1, "x"), 0);
    EXPECT_EQ(m_builder.DeleteAttribute(77, 1), 0);
}

TEST_F(EntitiesTest, ASavedModelHoldsEachTablesRowsInOrder) {
    m_builder.SetModelId(7);
    const unsigned long item = m_builder.AddEntity("ITEM", "SALES", 0, 0);
    const unsigned long qty = m_builder.AddAttribute(item, "QTY", "NUMBER", -1, -1, 0, 0);
    const unsigned long name = m_builder.AddAttribute(item, "NAME", "VARCHAR2", 40, -1, 1, 5);
    const unsigned long dept = m_builder.AddEntity("DEPT", nullptr, 0, 0);
    m_builder.AddAttribute(dept, "ID", "INTEGER", -1, -1, 0, 0);
    m_builder.AddEntity("V_ITEM", nullptr, 0, 1);

    CModelFileReader& reader = Save();
    // Version, diagram and model first; then per table its attributes, storage row and entity row.
    const std::string order = reader.Scalar(
        "SELECT group_concat(what, ' ') FROM ("
        "SELECT row_seq, 'A:' || column_name AS what FROM Attribute UNION ALL "
        "SELECT row_seq, 'S:' || entity_key FROM TableStorage UNION ALL "
        "SELECT row_seq, 'E:' || entity_name FROM Entity ORDER BY row_seq)");
    EXPECT_EQ(order, "A:QTY A:NAME S:" + std::to_string(item) + " E:ITEM A:ID S:" + std::to_string(dept) + " E:DEPT");
    EXPECT_EQ(reader.Scalar("SELECT min(row_seq) FROM Attribute"), "4");

    const auto entities = reader.Rows("Entity");
    ASSERT_EQ(entities.size(), 2u);  // the view writes nothing
    const std::string key = std::to_string(item);
    EXPECT_EQ(Fields(entities[0],
                     "diagram_no model_no entity_key table_key model_no_copy owner entity_name table_name"),
              "diagram_no=1 model_no=7 entity_key=" + key + " table_key=" + key +
                  " model_no_copy=7 owner=SALES entity_name=ITEM table_name=ITEM");
    EXPECT_EQ(entities[1].at("owner"), "");

    const auto attributes = reader.Rows("Attribute");
    ASSERT_EQ(attributes.size(), 3u);
    EXPECT_EQ(Fields(attributes[0], "attribute_id attribute_no entity_key table_key model_no datatype width "
                                    "null_option attribute_name_given"),
              "attribute_id=" + std::to_string(qty) + " attribute_no=1 entity_key=" + key + " table_key=" + key +
                  " model_no=7 datatype=NUM width=0 null_option=0 attribute_name_given=1");
    EXPECT_EQ(Fields(attributes[1], "attribute_id datatype width sequence_no attribute_name"),
              "attribute_id=" + std::to_string(name) + " datatype=VAR width=40 sequence_no=5 attribute_name=NAME");

    const auto storage = reader.Rows("TableStorage");
    ASSERT_EQ(storage.size(), 2u);
    EXPECT_EQ(Fields(storage[0], "table_key model_no param1 param11"),
              "table_key=" + key + " model_no=7 param1=-1 param11=-1");
}

TEST_F(EntitiesTest, EntitiesAddedBeforeAModelNumberKeepTheOneCurrentThen) {
    const unsigned long before = m_builder.AddEntity("BEFORE", nullptr, 0, 0);
    m_builder.SetModelId(7);
    const unsigned long after = m_builder.AddEntity("AFTER", nullptr, 0, 0);
    EXPECT_EQ(m_builder.GetEntityPtr(before)->m_modelNo, 1u);
    EXPECT_EQ(m_builder.GetEntityPtr(after)->m_modelNo, 7u);
}

TEST_F(EntitiesTest, PrimaryKeyRowsFollowAttributeOrderWithTheirOwnNumbers) {
    const unsigned long item = m_builder.AddEntity("ITEM", nullptr, 0, 0);
    m_builder.AddAttribute(item, "A", "int", -1, -1, 0, 10);
    m_builder.AddAttribute(item, "B", "int", -1, -1, 0, 20);
    m_builder.AddAttribute(item, "C", "int", -1, -1, 0, 30);
    CVrnApiEntity& entity = *m_builder.GetEntityPtr(item);
    entity.GetAttribute(3)->SetIsPkAttribute(1);
    entity.GetAttribute(1)->SetIsPkAttribute(1);
    CModelFileReader& reader = Save();
    const auto rows = reader.Rows("PrimaryKey");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(Fields(rows.at(0), "attribute_no sequence_no"), "attribute_no=1 sequence_no=10");
    EXPECT_EQ(Fields(rows.at(1), "attribute_no sequence_no entity_key"),
              "attribute_no=3 sequence_no=30 entity_key=" + std::to_string(item));
    EXPECT_EQ(reader.Scalar("SELECT (SELECT max(row_seq) FROM PrimaryKey) < (SELECT row_seq FROM Entity)"), "1");
}

}  // namespace
