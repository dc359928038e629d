// Entity and attribute property codes: each code to its one destination,
// read back from the saved model.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class PropertiesTest : public CBuilderTest {
protected:
    void SetUp() override {
        CBuilderTest::SetUp();
        m_entity = m_builder.AddEntity("ITEM", "SALES", 0, 0);
        m_attribute = m_builder.AddAttribute(m_entity, "QTY", "NUMBER", -1, -1, 1, 0);
    }
    CVrnApiEntity& Entity() { return *m_builder.GetEntityPtr(m_entity); }
    const std::vector<CPropertyMgr::CRecord>& Records() { return m_builder.GetPropertyMgr()->GetRecords(); }
    // The property records stored after the first `before`, each as "kind key
    // property value text", separated by "; ".
    std::string PropertiesSince(std::size_t before) {
        std::string described;
        for (std::size_t i = before; i < Records().size(); ++i)
            described += (described.empty() ? "" : "; ") + DescribeProperty(Records()[i]);
        return described;
    }

    unsigned long m_entity = 0;
    unsigned long m_attribute = 0;
};

TEST_F(PropertiesTest, StorageCodesFillTheirSlots) {
    const std::pair<int, int> codeToSlot[] = {{16, 3}, {17, 4}, {18, 10}, {19, 11}, {20, 7},
                                              {21, 8}, {22, 5}, {23, 6}, {24, 9}};
    for (const auto& [code, slot] : codeToSlot)
        EXPECT_EQ(m_builder.SetEntityProperty(m_entity, code, code * 100), 1) << code;
    EXPECT_EQ(m_builder.SetEntityProperty(m_entity, 16, -5), 1);  // no range check, last call wins
    const auto row = Save().Rows("TableStorage").at(0);
    for (const auto& [code, slot] : codeToSlot) {
        SCOPED_TRACE(code);
        EXPECT_EQ(row.at("param" + std::to_string(slot)), code == 16 ? "-5" : std::to_string(code * 100));
    }
    EXPECT_EQ(row.at("param1"), "-1");
    EXPECT_EQ(row.at("param2"), "-1");
    EXPECT_TRUE(Records().empty());
}

struct CPropertyCase {
    int code;
    long value;
    const char* expected;  // kind key property value text, key written as K
};

TEST_F(PropertiesTest, IntegerCodesStoreTheirPropertyAndValueNumbers) {
    const CPropertyCase cases[] = {
        {25, 4, "table K 22 29 '4'"},      {26, -3, "table K 23 30 '-3'"},   {28, 5, "table K 3 7 null"},
        {28, 0, "table K 3 6 null"},       {29, 1, "table K 17 24 null"},    {29, 0, "table K 17 22 null"},
        {30, 1, "table K 4 9 null"},       {30, 0, "table K 4 8 null"},      {33, 1, "table K 25 34 null"},
        {33, 0, "table K 25 35 null"},     {55, 8, "table K 18 25 '8'"},     {58, 64, "overflow K 10 15 '64'"},
        {59, 1, "overflow K 11 16 '1'"},   {60, 2, "overflow K 20 27 '2'"},  {61, 3, "overflow K 21 28 '3'"},
        {62, 4, "overflow K 12 17 '4'"},   {63, 5, "overflow K 13 18 '5'"},  {64, 6, "overflow K 15 20 '6'"},
        {65, 7, "overflow K 16 21 '7'"},   {66, 8, "overflow K 14 19 '8'"},  {67, 9, "overflow K 22 29 '9'"},
        {68, 10, "overflow K 23 30 '10'"}, {70, 1, "overflow K 3 7 null"},   {70, 0, "overflow K 3 6 null"},
        {73, 0, "table K 29 39 null"},     {76, 9, "table K 58 74 null"},
    };
    for (const CPropertyCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "code " << c.code << " value " << c.value);
        const std::size_t before = Records().size();
        EXPECT_EQ(m_builder.SetEntityProperty(m_entity, c.code, c.value), 1);
        EXPECT_EQ(PropertiesSince(before), WithKey(c.expected, m_entity));
    }
}

TEST_F(PropertiesTest, UnknownCodesChangeNothing) {
    for (int code : {0, 1, 15, 27, 31, 32, 34, 56, 57, 69, 71, 77, -16, 1000})
        EXPECT_EQ(m_builder.SetEntityProperty(m_entity, code, 1), 0) << code;
    for (int code : {0, 1, 16, 25, 76, 3, -2, 500}) EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, code, "x"), 0) << code;
    EXPECT_TRUE(Records().empty());
}

TEST_F(PropertiesTest, ReadBacksFillThePropertyValueHandles) {
    m_builder.SetEntityProperty(m_entity, 25, 2);
    m_builder.SetEntityProperty(m_entity, 26, 3);
    m_builder.SetEntityProperty(m_entity, 33, 0);
    m_builder.SetEntityProperty(m_entity, 28, 1);
    m_builder.SetEntityProperty(m_entity, 30, 0);
    m_builder.SetEntityStringProperty(m_entity, 27, "KEEP");
    m_builder.SetEntityStringProperty(m_entity, 31, "SG1");
    m_builder.SetEntityStringProperty(m_entity, 32, "VCAT1");
    const std::uint32_t expected[] = {29, 30, 35, 7, 8, 32, 10, 11};
    for (int i = 0; i < CVrnApiEntity::kPropertyValueHandleCount; ++i)
        EXPECT_EQ(Entity().m_propertyValueHandles[i], expected[i]) << "handle " << i;
}

TEST_F(PropertiesTest, BufferPoolKeywordsAreExact) {
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 27, "RECYCLE"), 1);
    EXPECT_EQ(PropertiesSince(0), "table " + std::to_string(m_entity) + " 24 33 null");
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 27, "Recycle"), 0);
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 27, "keep"), 0);
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 69, nullptr), 0);
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 69, "DEFAULT"), 1);
    const auto& last = Records().back();
    EXPECT_EQ(last.ownerKind, "overflow");
    EXPECT_EQ(last.valueNo, 31);
}

TEST_F(PropertiesTest, TextCodesStoreTheirTextOrPassNullOn) {
    const std::pair<int, std::string> cases[] = {
        {31, "table K 5 10 'SG1'"},  {32, "table K 6 11 'SG1'"},     {57, "overflow K 9 14 'SG1'"},
        {71, "table K 31 42 'SG1'"}, {72, "table K 30 41 'SG1'"},   {74, "table K 56 72 'SG1'"},
        {75, "table K 57 73 'SG1'"},
    };
    for (const auto& [code, pattern] : cases) {
        SCOPED_TRACE(code);
        const std::size_t before = Records().size();
        EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, code, "SG1"), 1);
        EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, code, nullptr), 1);
        ASSERT_EQ(Records().size(), before + 2);
        EXPECT_EQ(DescribeProperty(Records()[before]), WithKey(pattern, m_entity));
        EXPECT_FALSE(Records().back().hasText);
    }
}

TEST_F(PropertiesTest, StorageSpaceNamesJoinQuotedParts) {
    const std::pair<const char*, const char*> cases[] = {
        {"TS1", "TS1"},
        {"\"DB1\".\"TS1\"", "\"DB1.TS1\""},
        {"\"DB1\"\".\"\"TS1\"", "\"DB1.TS1\""},
        {".TS1", ".TS1"},
        {"DB1.\"TS1\".X", "DB1.TS1\".X"},
        {"", ""},
    };
    for (const auto& [given, stored] : cases) {
        EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 15, given), 1);
        EXPECT_STREQ(Entity().m_pTableStorage->m_storageSpace.m_text, stored) << given;
        EXPECT_EQ(Entity().m_pTableStorage->m_storageSpace.m_id, 0);
    }
    m_builder.SetEntityStringProperty(m_entity, 15, "\"DB1\".\"TS1\"");
    CModelFileReader& reader = Save();
    EXPECT_EQ(reader.Scalar("SELECT storage_space FROM TableStorage"), "\"DB1.TS1\"");
    EXPECT_EQ(reader.Scalar("SELECT count(*) FROM NameSpace WHERE text = '\"DB1.TS1\"'"), "1");
}

TEST_F(PropertiesTest, DefinitionAndPropertyColumnAreEntityTexts) {
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 2, "Items on sale"), 1);
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 56, "MISSING"), 1);  // names no attribute: stores nothing
    EXPECT_EQ(m_builder.SetEntityStringProperty(m_entity, 56, "qty"), 1);
    CModelFileReader& reader = Save();
    EXPECT_EQ(reader.Scalar("SELECT definition FROM Entity"), "Items on sale");
    // The column named in any letter case gives its sequence number as table property 19.
    EXPECT_EQ(reader.Column("SELECT property_no || ' ' || value_no || ' ' || text FROM Property"),
              std::vector<std::string>{"19 26 1"});
}

TEST_F(PropertiesTest, AttributeCodesSetFieldsOrStoreProperties) {
    const std::pair<int, long> numbers[] = {{6, 12}, {7, 3}, {8, 5}, {12, -2}, {13, 9}, {14, 1},
                                            {14, 0}};  // 0 leaves the flag as it was
    for (const auto& [code, value] : numbers)
        EXPECT_EQ(m_builder.SetAttributeProperty(m_attribute, code, value), 1) << code;
    const std::pair<int, const char*> texts[] = {
        {2, "how many"}, {9, "0"}, {10, "ten"}, {11, "QTY > 0"}, {5, "anything"}};
    for (const auto& [code, text] : texts)
        EXPECT_EQ(m_builder.SetAttributeStringProperty(m_attribute, code, text), 1) << code;
    const auto row = Save().Rows("Attribute").at(0);
    EXPECT_EQ(Fields(row, "width scale null_option option12 option13 flag_text"),
              "width=12 scale=3 null_option=1 option12=-2 option13=9 flag_text=Y");
    EXPECT_EQ(Fields(row, "definition default_text text10 check_constraint"),
              "definition=how many default_text=0 text10=ten check_constraint=QTY > 0");
}

TEST_F(PropertiesTest, RenamingAnAttributeFindsItUnderTheNewName) {
    EXPECT_EQ(m_builder.SetAttributeStringProperty(m_attribute, 1, "QUANTITY"), 1);
    EXPECT_EQ(m_builder.FindAttribute(m_entity, "quantity"), m_attribute);
    EXPECT_EQ(m_builder.FindAttribute(m_entity, "QTY"), 0u);
}

TEST_F(PropertiesTest, AttributePropertyCodesReachThePropertyManager) {
    const CPropertyCase cases[] = {
        {82, 0, "attribute K 34 45 null"}, {83, 3, "attribute K 41 52 null"}, {84, 1, "attribute K 48 63 null"},
        {84, 0, "attribute K 48 62 null"}, {85, 5, "attribute K 49 64 '5'"},  {91, 0, "attribute K 3 7 null"},
        {92, 1, "attribute K 36 47 null"}, {94, 1, "attribute K 70 90 null"}, {95, 1, "attribute K 71 91 null"},
        {96, 1, "attribute K 71 92 null"}, {97, 1, "attribute K 72 93 null"},
    };
    for (const CPropertyCase& c : cases) {
        SCOPED_TRACE(c.code);
        const std::size_t before = Records().size();
        EXPECT_EQ(m_builder.SetAttributeProperty(m_attribute, c.code, c.value), 1);
        EXPECT_EQ(PropertiesSince(before), WithKey(c.expected, m_attribute));
    }
    const std::pair<int, std::string> textCases[] = {{86, "62 78"}, {87, "76 97"}, {88, "63 79"},
                                                     {89, "64 80"}, {90, "65 81"}, {93, "69 89"}};
    for (const auto& [code, numbers] : textCases) {
        EXPECT_EQ(m_builder.SetAttributeStringProperty(m_attribute, code, "T"), 1) << code;
        const auto& r = Records().back();
        EXPECT_EQ(std::to_string(r.propertyNo) + " " + std::to_string(r.valueNo), numbers) << code;
        EXPECT_EQ(r.text, "T");
    }
    for (int code : {0, 1, 9, 15, 81, 98}) EXPECT_EQ(m_builder.SetAttributeProperty(m_attribute, code, 1), 0) << code;
    for (int code : {0, 3, 12, 85, 91}) EXPECT_EQ(m_builder.SetAttributeStringProperty(m_attribute, code, "x"), 0) << code;
}

}  // namespace
