// Binding defaults and rules to columns and user datatypes by decorated names.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"
#include "catalog/CatalogText.h"

using vrn::StripBrackets;
using vrn::StripQuotesAndNPrefix;

namespace {

class BindingTest : public CBuilderTest {
protected:
    BindingTest() : CBuilderTest(41) {}
    void SetUp() override {
        CBuilderTest::SetUp();
        m_zero = m_builder.AddDefault("df_zero", "0", nullptr);
        m_newDefault = m_builder.AddDefault("NewDefault", "1", nullptr);
        m_rule = m_builder.AddRule("r1", "@v > 0", nullptr);
        m_quotedRule = m_builder.AddRule("\"quoted\"", "@v < 9", nullptr);
        m_zip = m_builder.AddUserType("zipcode", "char(5)");
        m_orders = m_builder.AddEntity("orders", "dbo", 0, 0);
        m_builder.AddAttribute(m_orders, "id", "int", -1, -1, 0, 0);
        m_qty = m_builder.AddAttribute(m_orders, "qty", "int", -1, -1, 1, 0);
    }
    CVrnApiAttribute& Qty() { return *m_builder.GetEntityPtr(m_orders)->GetAttribute(2); }
    CNSOutputUserDatatype& Zip() { return *m_builder.FindUserType(m_zip); }

    unsigned long m_zero = 0, m_newDefault = 0, m_rule = 0, m_quotedRule = 0, m_zip = 0, m_orders = 0, m_qty = 0;
};

TEST(BindingNamesTest, ObjectNamesLoseQuotesAndEveryLeadingN) {
    const std::pair<const char*, const char*> cases[] = {
        {"'df'", "df"}, {"N'df'", "df"}, {"NewDefault", "ewDefault"}, {"NN'x", "x"},
        {"\"df\"", "\"df\""}, {"''", ""}, {"[df]", "[df]"}, {"", ""},
    };
    for (const auto& [given, stripped] : cases) EXPECT_STREQ(StripQuotesAndNPrefix(given), stripped) << given;
    EXPECT_STREQ(StripBrackets("[[a]]"), "a");
    EXPECT_STREQ(StripBrackets("[]"), "");
}

TEST_F(BindingTest, QualifiedNamesBindADefaultToAColumn) {
    EXPECT_EQ(m_builder.BindDefault("dbo.[df_zero]", "[dbo].[orders].[qty]"), m_orders);
    EXPECT_EQ(Qty().m_defaultId, m_zero);
    EXPECT_EQ(Qty().m_ruleId, 0u);
}

struct CTargetCase {
    const char* objectName;
    const char* target;
    bool bindsColumn;  // else the user datatype, or nothing when both are false
    bool bindsType;
};

TEST_F(BindingTest, RuleTargetsInEveryShape) {
    const CTargetCase cases[] = {
        {"r1", "orders.qty", true, false},
        {"r1", "[orders].[qty]", true, false},
        {"r1", "dbo.orders.qty", true, false},
        {"r1", "'ORDERS.QTY'", true, false},
        {"'r1'", "\"orders.qty\"", true, false},
        {"dbo.[r1]", "orders.qty", true, false},
        {"r1", "[zipcode]", false, true},
        {"r1", "zipcode", false, true},
        {"r1", "dbo.zipcode", false, true},  // no entity named dbo: owner.datatype
        {"r1", "N'zipcode'", false, true},
        {"[r1]", "orders.qty", false, false},  // brackets stay without a dot: no rule [r1]
        {"r1", "orders.missing", false, false},  // the entity exists: no fall back to datatypes
        {"r1", "nothing", false, false},
        {"r1", "", false, false},
        {"r1", "[]", false, false},
        {"missing", "orders.qty", false, false},
        {nullptr, "orders.qty", false, false},
        {"r1", nullptr, false, false},
        {"\"quoted\"", "orders.qty", true, false},  // double quotes stay part of the object name
    };
    for (const CTargetCase& c : cases) {
        SCOPED_TRACE(testing::Message() << c.objectName << " -> " << c.target);
        Qty().m_ruleId = 0;
        Zip().m_ruleId = 0;
        const unsigned long result = m_builder.BindRule(c.objectName, c.target);
        EXPECT_EQ(result, c.bindsColumn ? m_orders : c.bindsType ? m_zip : 0u);
        EXPECT_EQ(Qty().m_ruleId != 0, c.bindsColumn);
        EXPECT_EQ(Zip().m_ruleId != 0, c.bindsType);
    }
}

TEST_F(BindingTest, NamesStartingWithNLoseThatN) {
    EXPECT_EQ(m_builder.BindDefault("NewDefault", "orders.qty"), 0u);
    EXPECT_EQ(Qty().m_defaultId, 0u);
}

TEST_F(BindingTest, RulesAndDefaultsBindIndependentlyAndTheLatestWins) {
    const unsigned long second = m_builder.AddDefault("df_one", "1", nullptr);
    EXPECT_EQ(m_builder.BindRule("r1", "orders.qty"), m_orders);
    EXPECT_EQ(m_builder.BindDefault("df_zero", "orders.qty"), m_orders);
    EXPECT_EQ(m_builder.BindDefault("df_one", "orders.qty"), m_orders);
    EXPECT_EQ(Qty().m_ruleId, m_rule);
    EXPECT_EQ(Qty().m_defaultId, second);
    EXPECT_EQ(m_builder.BindDefault("df_zero", "zipcode"), m_zip);
    EXPECT_EQ(Zip().m_defaultId, m_zero);
    EXPECT_EQ(Zip().m_ruleId, 0u);
}

TEST_F(BindingTest, BindingsReachTheSavedRows) {
    m_builder.BindRule("r1", "orders.qty");
    m_builder.BindDefault("df_zero", "zipcode");
    CModelFileReader& reader = Save();
    EXPECT_EQ(reader.Scalar("SELECT rule_id FROM Attribute WHERE column_name = 'qty'"), std::to_string(m_rule));
    EXPECT_EQ(reader.Scalar("SELECT default_id FROM UserDatatype WHERE name = 'zipcode'"), std::to_string(m_zero));
}

}  // namespace
