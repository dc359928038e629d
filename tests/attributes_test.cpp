// Attributes: datatype resolution per platform, user datatypes, numbering and
// sequence numbers, finding and deleting, the getters and copies.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

// A table ITEM on SQL Server 2000.
class AttributesTest : public CBuilderTest {
protected:
    AttributesTest() : CBuilderTest(41) {}
    void SetUp() override {
        CBuilderTest::SetUp();
        m_entity = m_builder.AddEntity("ITEM", "SALES", 0, 0);
        ASSERT_NE(m_entity, 0u);
    }
    CVrnApiEntity& Entity() { return *m_builder.GetEntityPtr(m_entity); }
    // Adds a column and returns its attribute object.
    CVrnApiAttribute& Add(const char* name, const char* datatype, long width = -1, long scale = -1,
                          unsigned long sequence = 0) {
        const unsigned long id = m_builder.AddAttribute(m_entity, name, datatype, width, scale, 1, sequence);
        EXPECT_NE(id, 0u);
        const unsigned long number = Entity().FindAttribute(name, 1);
        CVrnApiAttribute* attribute = Entity().GetAttribute(number);
        EXPECT_NE(attribute, nullptr) << name;
        return *attribute;
    }

    unsigned long m_entity = 0;
};

// An attribute's resolved type as "code width,scale".
std::string TypeOf(const CVrnApiAttribute& attribute) {
    return attribute.m_datatype.str() + " " + std::to_string(attribute.m_width) + "," +
           std::to_string(attribute.m_scale);
}

struct CResolutionCase {
    int platform;
    const char* datatype;
    long width, scale;
    const char* code;
    int expectedWidth, expectedScale;
};

TEST_F(AttributesTest, DatatypesResolvePerPlatform) {
    const CResolutionCase cases[] = {
        // Oracle keeps integers and unsized decimals as NUMBER without precision.
        {34, "integer", 10, 2, "NUM", 0, 0},
        {8, "SMALLINT", -1, -1, "NUM", 0, 0},
        {47, "NUMBER", -1, -1, "NUM", 0, 0},
        {47, "NUMBER", 12, -1, "NUM", 12, 0},
        {34, "decimal", 8, 3, "DC", 8, 3},
        {34, "DECIMAL", -1, 3, "NUM", 0, 0},
        {34, "TEXT", -1, -1, "TX", 10, 0},
        // Elsewhere the mapped name stands, with the defaults for width and scale.
        {41, "INT", -1, -1, "INT", 10, 0},
        {41, "TEXT", -1, -1, "DTX", 10, 0},
        {41, "decimal", 18, 4, "DC", 18, 4},
        {41, "VARCHAR", -1, -1, "VAR", 1, 0},
        {41, "nchar", -1, -1, "CHN", 1, 0},
        {41, "nvarchar", -1, -1, "VAN", 1, 0},
        {41, "char", 5, -1, "CH", 5, 0},
        {48, "NUMERIC", -1, -1, "NUM", 0, 0},
        {48, "NUMERIC", 9, 2, "NUM", 9, 2},
        {44, "NUMERIC", -1, -1, "NUM", 10, 0},
        {41, "dbo.money", -1, -1, "MN", 10, 0},
        // Unknown or missing types get the default type, whatever the width.
        {41, "geography", 40, 2, "CH", 10, -1},
        {41, nullptr, 40, 2, "CH", 10, -1},
        {41, "", 40, 2, "CH", 10, -1},
        {41, "varchar(30)", -1, -1, "CH", 10, -1},
        {41, ".money", -1, -1, "CH", 10, -1},
    };
    for (const CResolutionCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "platform " << c.platform << " type " << (c.datatype ? c.datatype : "null")
                                        << " width " << c.width << " scale " << c.scale);
        CTestBuilder builder;
        ASSERT_EQ(builder.Initialize(c.platform, nullptr), 1);
        const unsigned long entity = builder.AddEntity("T", nullptr, 0, 0);
        builder.AddAttribute(entity, "C", c.datatype, c.width, c.scale, 1, 0);
        const CVrnApiAttribute* attribute = builder.GetEntityPtr(entity)->GetAttribute(1);
        ASSERT_NE(attribute, nullptr);
        EXPECT_EQ(TypeOf(*attribute),
                  std::string(c.code) + " " + std::to_string(c.expectedWidth) + "," + std::to_string(c.expectedScale));
    }
}

TEST_F(AttributesTest, UserDatatypesComeFirstAndBringTheirLengthAndScale) {
    const unsigned long amount = m_builder.AddUserType("money", "decimal(19,4)");
    m_builder.AddUserType("Boolean", "bit");
    const CVrnApiAttribute& price = Add("PRICE", "dbo.money", 5, 1);
    EXPECT_EQ(TypeOf(price), "DC 19,4");
    EXPECT_EQ(price.m_userDatatypeId, amount);
    // A user datatype keeps its -1 length: no defaults are applied to it.
    const CVrnApiAttribute& flag = Add("FLAG", "BOOLEAN");
    EXPECT_EQ(TypeOf(flag), "BIT -1,-1");
    EXPECT_EQ(flag.m_userDatatypeId, 2u);
    EXPECT_EQ(Add("PLAIN", "bit").m_userDatatypeId, 0u);
}

TEST_F(AttributesTest, NumbersAndSequencesFollowTheOrderOfAdding) {
    EXPECT_EQ(Add("A", "int").m_sequenceNo, 1u);
    EXPECT_EQ(Add("B", "int").m_sequenceNo, 2u);
    EXPECT_EQ(Add("C", "int", -1, -1, 7).m_sequenceNo, 7u);
    EXPECT_EQ(Add("C", "int").m_attributeNo, 3u);  // FindAttribute finds the earlier C
    EXPECT_EQ(Entity().FindAttrBySequence(7, 1), 3u);
    EXPECT_EQ(Entity().FindAttrBySequence(4, 1), 4u);
    EXPECT_EQ(Entity().FindAttrBySequence(99, 1), 0u);
}

TEST_F(AttributesTest, DeletingRenumbersNothing) {
    Add("A", "int");
    const unsigned long b = m_builder.AddAttribute(m_entity, "B", "int", -1, -1, 1, 0);
    Add("C", "int");
    EXPECT_EQ(m_builder.DeleteAttribute(m_entity, b), 1);
    EXPECT_EQ(m_builder.DeleteAttribute(m_entity, b), 0);
    EXPECT_EQ(m_builder.FindAttribute(m_entity, "B"), 0u);
    EXPECT_EQ(Add("D", "int").m_attributeNo, 4u);
    EXPECT_EQ(Entity().GetAttribute(2), nullptr);
    EXPECT_EQ(Entity().GetAttribute(3)->m_sequenceNo, 3u);
    EXPECT_EQ(Entity().m_attrList.GetCount(), 3);
}

TEST_F(AttributesTest, NamesAreFoundIgnoringCaseFirstMatchWins) {
    const unsigned long first = m_builder.AddAttribute(m_entity, "Qty", "int", -1, -1, 1, 0);
    m_builder.AddAttribute(m_entity, "QTY", "int", -1, -1, 1, 0);
    const unsigned long unnamed = m_builder.AddAttribute(m_entity, nullptr, "int", -1, -1, 1, 0);
    EXPECT_EQ(m_builder.FindAttribute(m_entity, "qty"), first);
    EXPECT_EQ(m_builder.FindAttribute(m_entity, ""), unnamed);
    EXPECT_EQ(m_builder.FindAttribute(m_entity, nullptr), unnamed);
    EXPECT_EQ(m_builder.FindAttribute(m_entity + 100, "qty"), 0u);
    EXPECT_EQ(Entity().GetAttribute(3)->m_attributeNameGiven, 0);
}

TEST_F(AttributesTest, AddingToAnUnknownEntityUsesNoIdentifier) {
    EXPECT_EQ(m_builder.AddAttribute(999, "X", "int", -1, -1, 1, 0), 0u);
    const unsigned long first = m_builder.AddAttribute(m_entity, "A", "int", -1, -1, 1, 0);
    EXPECT_EQ(first, 1u);
}

// A column name met again in another table shares the first one's text;
// changing one attribute's name afterwards leaves the others as they were.
TEST_F(AttributesTest, RepeatedNamesShareTheirTextAndStayEachAttributesOwn) {
    const char* first = Add("ID", "int").GetAttributeName();
    const char* other = Add("CODE", "int").GetAttributeName();
    const unsigned long orders = m_builder.AddEntity("ORDERS", "SALES", 0, 0);
    const unsigned long id = m_builder.AddAttribute(orders, "ID", "int", -1, -1, 1, 0);
    CVrnApiEntity& second = *m_builder.GetEntityPtr(orders);
    CVrnApiAttribute& repeated = *second.GetAttribute(second.FindAttribute("ID", 1));
    EXPECT_EQ(repeated.GetAttributeName(), first);
    EXPECT_NE(other, first);

    m_builder.AddAttribute(orders, "CODE", "int", -1, -1, 1, 0);
    CVrnApiAttribute& code = *second.GetAttribute(second.FindAttribute("CODE", 1));
    ASSERT_EQ(code.GetAttributeName(), other);
    code.m_columnName.MakeLower();
    ASSERT_EQ(m_builder.SetAttributeStringProperty(id, 1, "ORDER_ID"), 1);

    const std::string path = m_dir.File("shared.vrn");
    m_builder.SaveToFile(path.c_str());
    CModelFileReader reader(path);
    EXPECT_EQ(reader.Column("SELECT attribute_name || '/' || column_name FROM Attribute ORDER BY row_seq"),
              (std::vector<std::string>{"ID/ID", "CODE/CODE", "ORDER_ID/ORDER_ID", "CODE/code"}));
}

TEST_F(AttributesTest, GettersRefreshFromTheNameSpaceOnlyUnderTheUpdateFlag) {
    CVrnApiAttribute& attribute = Add("LOCAL", "int");
    CNameSpaceMgr& names = *m_builder.GetNameSpaceMgr();
    attribute.m_attributeNameNs = names.EnterString("ATTR_FROM_NS");
    attribute.m_columnNameNs = names.EnterString("COL_FROM_NS");
    attribute.m_datatypeNs = names.EnterString("VAR");
    EXPECT_STREQ(attribute.GetAttributeName(), "LOCAL");
    EXPECT_STREQ(attribute.GetName(), "LOCAL");
    attribute.SetIsUpdate(1);
    EXPECT_EQ(attribute.GetIsUpdate(), 1);
    // GetColumnName tests the column's number but takes the attribute name's text.
    EXPECT_STREQ(attribute.GetColumnName(), "ATTR_FROM_NS");
    EXPECT_STREQ(attribute.GetName(), "COL_FROM_NS");
    EXPECT_STREQ(attribute.GetAttributeName(), "ATTR_FROM_NS");
    EXPECT_STREQ(attribute.GetDatatype(), "VAR");
    EXPECT_STREQ(attribute.GetRoleName(), "");  // number 0: left as it is
}

TEST_F(AttributesTest, FlagsSetAndClearTheirOwnBitOnly) {
    CVrnApiAttribute& attribute = Add("A", "int");
    attribute.SetIsPkAttribute(5);
    attribute.SetIsUpdate(1);
    EXPECT_EQ(attribute.m_flags, 5u);
    attribute.SetIsPkAttribute(0);
    EXPECT_EQ(attribute.GetIsPkAttribute(), 0);
    EXPECT_EQ(attribute.GetIsUpdate(), 1);
}

TEST_F(AttributesTest, InitCopiesRowAndTextsButNotWhatIsTheAttributesOwn) {
    CVrnApiAttribute& source = Add("SRC", "decimal", 9, 2);
    source.m_definition = "the source";
    source.m_text10 = "own text";
    source.m_roleNameCopy = "own role";
    source.SetIsPkAttribute(1);
    source.SetRelationId(40);
    CVrnApiAttribute copy;
    copy.SetRelationId(7);
    copy.Init(&source);
    EXPECT_STREQ(copy.m_attributeName, "SRC");
    EXPECT_STREQ(copy.GetName(), "SRC");
    EXPECT_STREQ(copy.m_datatype, "DC");
    EXPECT_EQ(copy.m_width, 9);
    EXPECT_STREQ(copy.m_definition, "the source");
    EXPECT_EQ(copy.m_attributeId, source.m_attributeId);
    EXPECT_EQ(copy.m_pVrnFile, m_builder.GetVrnFile());
    EXPECT_STREQ(copy.m_text10, "");
    EXPECT_STREQ(copy.m_roleNameCopy, "");
    EXPECT_EQ(copy.GetIsPkAttribute(), 0);
    EXPECT_EQ(copy.GetRelationId(), 7u);
    copy.Init(nullptr);  // nothing to copy from: unchanged
    EXPECT_STREQ(copy.m_attributeName, "SRC");
}

TEST_F(AttributesTest, TakingOverAnExistingAttributeKeepsNumbersAhead) {
    Add("A", "int");
    auto* numbered = new CVrnApiAttribute(&m_builder);
    numbered->m_attributeNo = 9;
    numbered->m_columnName = "NINE";
    Entity().AddAttribute(numbered);
    EXPECT_EQ(Entity().m_nextAttributeNo, 10u);
    auto* unnumbered = new CVrnApiAttribute(&m_builder);
    unnumbered->m_columnName = "TEN";
    Entity().AddAttribute(unnumbered);
    EXPECT_EQ(unnumbered->m_attributeNo, 10u);
    EXPECT_EQ(unnumbered->m_entityKey, m_entity);
    EXPECT_EQ(Entity().GetAttribute(9), numbered);
    Entity().AddAttribute(nullptr);
    EXPECT_EQ(Entity().m_attrList.GetCount(), 3);
}

}  // namespace
