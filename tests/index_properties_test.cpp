// Index property codes: each to its storage slot, row text or property, with
// the platform-dependent codes.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

// An index IX of a table T, on Oracle 8.x unless given.
class IndexPropertiesTest : public CBuilderTest {
protected:
    explicit IndexPropertiesTest(int platform = 34) : CBuilderTest(platform) {}
    void SetUp() override {
        CBuilderTest::SetUp();
        const unsigned long entity = m_builder.AddEntity("T", nullptr, 0, 0);
        m_index = m_builder.AddIndex(entity, "IX");
        ASSERT_NE(m_index, 0u);
    }
    CVrnApiIndex& Index() { return *m_builder.GetEntityPtr(1)->m_indexList.GetHead(); }
    const std::vector<CPropertyMgr::CRecord>& Records() { return m_builder.GetPropertyMgr()->GetRecords(); }
    std::string LastProperty() { return Records().empty() ? "none" : DescribeProperty(Records().back()); }

    unsigned long m_index = 0;
};

template <int kPlatform>
class IndexPropertiesOn : public IndexPropertiesTest {
protected:
    IndexPropertiesOn() : IndexPropertiesTest(kPlatform) {}
};
using Os390V6IndexPropertiesTest = IndexPropertiesOn<39>;
using Os390V7IndexPropertiesTest = IndexPropertiesOn<46>;

TEST_F(IndexPropertiesTest, StorageCodesFillTheirSlots) {
    const std::pair<int, int> codeToSlot[] = {{16, 3}, {17, 4}, {18, 10}, {19, 11}, {20, 7}, {21, 8},
                                              {22, 5}, {23, 6}, {24, 9}, {41, 1},  {43, 2}};
    for (const auto& [code, slot] : codeToSlot) {
        EXPECT_EQ(m_builder.SetIndexProperty(m_index, code, code + 1000), 1) << code;
        EXPECT_EQ(Index().m_pStorage->m_params[slot - 1], code + 1000) << code;
    }
    EXPECT_TRUE(Records().empty());
}

TEST_F(IndexPropertiesTest, IntegerCodesStoreTheirPropertyOrRowText) {
    const std::tuple<int, long, const char*> properties[] = {
        {25, 3, "index K 22 29 '3'"}, {26, 4, "index K 23 30 '4'"}, {30, 1, "index K 4 9 null"},
        {30, 0, "index K 4 8 null"},  {33, 1, "index K 25 34 null"}, {33, 0, "index K 25 35 null"},
        {35, 1, "index K 1 3 null"},  {35, 0, "index K 1 2 null"},  {37, 1, "index K 2 5 null"},
        {37, 0, "index K 2 4 null"},  {38, 0, "index K 0 0 null"},  {44, 0, "index K 59 75 null"},
        {45, 0, "index K 74 95 null"}, {46, 1, "index K 75 96 null"},
    };
    for (const auto& [code, value, expected] : properties) {
        EXPECT_EQ(m_builder.SetIndexProperty(m_index, code, value), 1) << code;
        EXPECT_EQ(LastProperty(), WithKey(expected, m_index)) << code;
    }
    m_builder.SetIndexProperty(m_index, 34, 2);
    m_builder.SetIndexProperty(m_index, 36, 0);
    m_builder.SetIndexProperty(m_index, 39, 1);
    m_builder.SetIndexProperty(m_index, 40, 1);
    EXPECT_STREQ(Index().m_isUnique, "Y");
    EXPECT_STREQ(Index().m_t7, "N");
    EXPECT_STREQ(Index().m_t5, "Y");
    EXPECT_STREQ(Index().m_clusterFlag, "C");
    m_builder.SetIndexProperty(m_index, 40, 0);
    EXPECT_STREQ(Index().m_clusterFlag, "N");
}

TEST_F(IndexPropertiesTest, RefusedCodesChangeNothing) {
    for (int code : {27, 28, 29, 31, 32, 42, 0, 15, 47, 99, -1}) EXPECT_EQ(m_builder.SetIndexProperty(m_index, code, 1), 0) << code;
    for (int code : {16, 34, 0, 54, 99}) EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, code, "x"), 0) << code;
    EXPECT_TRUE(Records().empty());
}

TEST_F(IndexPropertiesTest, ReverseKeyIsStoredOnlyOnOracle8And9) {
    // Oracle 8.x, the fixture's platform, is among the integer codes.
    for (int platform : {8, 39, 41, 44, 47}) {
        SCOPED_TRACE(platform);
        CTestBuilder builder;
        ASSERT_EQ(builder.Initialize(platform, nullptr), 1);
        const unsigned long index = builder.AddIndex(builder.AddEntity("T", nullptr, 0, 0), "IX");
        EXPECT_EQ(builder.SetIndexProperty(index, 38, 1), 1);
        const auto& records = builder.GetPropertyMgr()->GetRecords();
        EXPECT_EQ(records.empty() ? "none" : DescribeProperty(records.back()),
                  platform == 47 ? WithKey("index K 0 0 null", index) : "none");
    }
}

TEST_F(Os390V7IndexPropertiesTest, BufferPoolsByKeywordOrByName) {
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 27, "KEEP"), 1);
    EXPECT_EQ(LastProperty(), WithKey("index K 24 32 null", m_index));
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 27, "BP1"), 1);
    EXPECT_EQ(LastProperty(), WithKey("index K 24 31 'BP1'", m_index));
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 27, "default"), 1);  // not the keyword: a pool name
    EXPECT_EQ(LastProperty(), WithKey("index K 24 31 'default'", m_index));
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 27, ""), 0);
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 27, nullptr), 0);

    CTestBuilder oracle;
    oracle.Initialize(34, nullptr);
    const unsigned long index = oracle.AddIndex(oracle.AddEntity("T", nullptr, 0, 0), "IX");
    EXPECT_EQ(oracle.SetIndexStringProperty(index, 27, "BP1"), 0);
    EXPECT_EQ(oracle.SetIndexStringProperty(index, 27, "RECYCLE"), 1);
    EXPECT_EQ(oracle.GetPropertyMgr()->GetRecords().size(), 1u);
}

TEST_F(Os390V6IndexPropertiesTest, TextCodesPassTheirTextOrSwitchOnOneAnswer) {
    const std::tuple<int, const char*, const char*> cases[] = {
        {31, "SG1", "index K 5 10 'SG1'"}, {31, nullptr, "index K 5 10 null"}, {32, "VC", "index K 6 11 'VC'"},
        {47, "4", "index K 1 2 '4'"},      {48, "yes", "index K 60 76 null"},  {49, "Yes", "index K 44 58 null"},
        {50, "YES", "index K 46 60 null"}, {51, "no", "index K 45 59 null"},
        {53, "all", "index K 43 55 null"}, {53, "None", "index K 43 57 null"}, {53, "changed", "index K 43 56 null"},
        {53, "", "index K 43 56 null"},
    };
    for (const auto& [code, text, expected] : cases) {
        SCOPED_TRACE(code);
        EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, code, text), 1);
        EXPECT_EQ(LastProperty(), WithKey(expected, m_index));
    }
    const std::size_t stored = Records().size();
    for (int code : {48, 49, 50}) EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, code, "NO"), 1);
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 51, "YES"), 1);
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 48, nullptr), 1);
    EXPECT_EQ(Records().size(), stored);
}

TEST_F(IndexPropertiesTest, TextFieldsAndStorageSpaceAreStoredAsGiven) {
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 42, "free text"), 1);
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 15, "\"DB1\".\"TS1\""), 1);
    EXPECT_STREQ(Index().m_t6, "free text");
    EXPECT_STREQ(Index().m_pStorage->m_storageSpace.m_text, "\"DB1\".\"TS1\"");  // not joined, unlike tables
    EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 42, nullptr), 1);
    EXPECT_STREQ(Index().m_t6, "");
}

TEST_F(Os390V6IndexPropertiesTest, SizesUnderstandMegabytesAndGigabytes) {
    const std::pair<const char*, int> cases[] = {
        {"10M", 10 * 1024}, {"2G", 2 * 1048576}, {"4096", 4096}, {"10k", 10}, {" 3 m", 3 * 1024},
        {"99999G", 2147483647},
    };
    for (const auto& [text, stored] : cases) {
        EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 52, text), 1) << text;
        EXPECT_EQ(Index().m_pStorage->m_params[1], stored) << text;
    }
    // A size that is not a positive number leaves the slot alone.
    for (const char* text : {"0", "-5M", "M", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(m_builder.SetIndexStringProperty(m_index, 52, text), 1);
        EXPECT_EQ(Index().m_pStorage->m_params[1], 2147483647);
    }
    EXPECT_EQ(m_builder.SetIndexProperty(m_index, 43, 5), 1);  // the same slot: the later call wins
    EXPECT_EQ(Index().m_pStorage->m_params[1], 5);
}

}  // namespace
