// Defaults, rules and user datatypes: numbering, finding by name, the name and
// datatype text forms catalogs use, and their rows in the saved model.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"
#include "catalog/CatalogText.h"

using vrn::CDatatypeText;
using vrn::ParseDatatypeText;
using vrn::StripCatalogQuotes;

namespace {

class CatalogTypesTest : public CBuilderTest {
protected:
    CatalogTypesTest() : CBuilderTest(41) {}
};

TEST(CatalogTextTest, QuotedNamesLoseTheirDecorations) {
    const std::pair<const char*, const char*> cases[] = {
        {"Boolean", "Boolean"},     {"'Boolean'", "Boolean"},  {"\"Boolean\"", "Boolean"},
        {"'\"Boolean\"'", "Boolean"}, {"N'Nation'", "ation"},  {"'N'Nation'", "ation"},
        {"N'abc'", "abc"},          {"Nation", "Nation"},      {"NN'x", "NN'x"},
        {"''", ""},                 {"", ""},                  {"\"'a'\"", "'a'"},
    };
    for (const auto& [given, expected] : cases) EXPECT_STREQ(StripCatalogQuotes(given), expected) << given;
    EXPECT_STREQ(StripCatalogQuotes(nullptr), "");
}

TEST(CatalogTextTest, DatatypeTextsSplitIntoBaseLengthAndScale) {
    struct CCase {
        const char* text;
        const char* base;
        int length, scale;
    };
    const CCase cases[] = {
        {"varchar(30)", "varchar", 30, -1},
        {"decimal(10, 2)", "decimal", 10, 2},
        {"numeric(0,0)", "numeric", -1, 0},
        {"char(,5)", "char", -1, -1},
        {"money", "money", -1, -1},
        {"(10)", "(10)", -1, -1},
        {"  nvarchar  ( 40 )", "nvarchar", 40, -1},
        {"decimal(10", "decimal", 10, -1},
        {"decimal(x,y)", "decimal", -1, 0},
        {"number(-5,-2)", "number", -5, -2},
        {"char(99999999999999)", "char", 2147483647, -1},
        {"char(-99999999999999)", "char", -2147483648, -1},
        {"varchar(20) not null", "varchar", 20, -1},
        {"", "", -1, -1},
    };
    for (const CCase& c : cases) {
        SCOPED_TRACE(c.text);
        const CDatatypeText parsed = ParseDatatypeText(c.text);
        EXPECT_STREQ(parsed.baseType, c.base);
        EXPECT_EQ(parsed.length, c.length);
        EXPECT_EQ(parsed.scale, c.scale);
    }
}

TEST_F(CatalogTypesTest, DefaultsAndRulesAreNumberedInTheirOwnLists) {
    EXPECT_EQ(m_builder.AddDefault("DateDefault", "getdate()", "ignored"), 1u);
    EXPECT_EQ(m_builder.AddDefault("DateDefault", "current_timestamp", nullptr), 2u);
    EXPECT_EQ(m_builder.AddRule("booleanRule", "@value in (0, 1)", nullptr), 1u);
    EXPECT_EQ(m_builder.FindDefault("datedefault"), 1u);
    EXPECT_EQ(m_builder.FindDefault("DATEDEFAULT"), 1u);
    EXPECT_EQ(m_builder.FindRule("BOOLEANRULE"), 1u);
    EXPECT_EQ(m_builder.FindRule("DateDefault"), 0u);
    EXPECT_EQ(m_builder.FindDefault("booleanRule"), 0u);
    EXPECT_EQ(m_builder.FindDefault(nullptr), 0u);
}

TEST_F(CatalogTypesTest, DefaultNamesAreKeptAsGiven) {
    m_builder.AddDefault("'Quoted'", " 0 ", nullptr);
    EXPECT_EQ(m_builder.FindDefault("Quoted"), 0u);
    EXPECT_EQ(m_builder.FindDefault("'quoted'"), 1u);
    CModelFileReader& reader = Save();
    const auto rows = reader.Rows("Defaults");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(Fields(rows.at(0), "name text"), "name='Quoted' text= 0 ");
}

TEST_F(CatalogTypesTest, UserDatatypesCarryTheMappedBaseType) {
    EXPECT_EQ(m_builder.AddUserType("Boolean", "bit"), 1u);
    EXPECT_EQ(m_builder.AddUserType("'N'Nation'", "varchar(30)"), 2u);
    EXPECT_EQ(m_builder.AddUserType("Amount", "decimal(10, 2)"), 3u);
    EXPECT_EQ(m_builder.FindUserType("ation"), 2u);
    EXPECT_EQ(m_builder.FindUserType("Nation"), 0u);
    EXPECT_EQ(m_builder.FindUserType("AMOUNT"), 3u);

    CModelFileReader& reader = Save();
    const auto rows = reader.Rows("UserDatatype");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(Fields(rows.at(0), "name datatype length"), "name=Boolean datatype=BIT length=-1");
    EXPECT_EQ(Fields(rows.at(1), "name datatype length"), "name=ation datatype=VAR length=30");
    EXPECT_EQ(Fields(rows.at(2), "datatype length scale user_datatype_id default_id"),
              "datatype=DC length=10 scale=2 user_datatype_id=3 default_id=0");
}

TEST_F(CatalogTypesTest, AnUnknownBaseTypeAddsNothingAndUsesNoNumber) {
    EXPECT_EQ(m_builder.AddUserType("Geo", "geography"), 0u);
    EXPECT_EQ(m_builder.AddUserType("Odd", "(10)"), 0u);
    EXPECT_EQ(m_builder.AddUserType("Empty", ""), 0u);
    EXPECT_EQ(m_builder.AddUserType("Null", nullptr), 0u);
    EXPECT_EQ(m_builder.FindUserType("Geo"), 0u);
    EXPECT_EQ(m_builder.AddUserType("Flag", "'char(1)'"), 1u);
    EXPECT_EQ(Save().Count("UserDatatype"), 1);
}

TEST_F(CatalogTypesTest, TheFirstOfANameIsFoundAmongThousands) {
    for (int i = 0; i < 3000; ++i) {
        const std::string name = "T" + std::to_string(i % 1000);
        m_builder.AddUserType(name.c_str(), "int");
    }
    EXPECT_EQ(m_builder.FindUserType("t999"), 1000u);
    EXPECT_EQ(m_builder.FindUserType("T0"), 1u);
}

TEST_F(CatalogTypesTest, SavedInListOrderDefaultsThenRulesThenUserDatatypes) {
    m_builder.AddUserType("U1", "int");
    m_builder.AddRule("R1", "@v > 0", nullptr);
    m_builder.AddDefault("D1", "0", nullptr);
    m_builder.AddDefault("D2", "1", nullptr);
    CModelFileReader& reader = Save();
    const std::string order = reader.Scalar(
        "SELECT group_concat(n, ' ') FROM (SELECT row_seq, name AS n FROM Defaults UNION ALL "
        "SELECT row_seq, name FROM Rules UNION ALL SELECT row_seq, name FROM UserDatatype ORDER BY row_seq)");
    EXPECT_EQ(order, "D1 D2 R1 U1");
}

}  // namespace
