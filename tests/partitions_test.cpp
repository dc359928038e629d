// Table and index partitions, their columns and physical properties, as the
// property manager stores them.
#include <gtest/gtest.h>

#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

class PartitionsTest : public CBuilderTest {
protected:
    void SetUp() override {
        CBuilderTest::SetUp();
        m_sales = m_builder.AddEntity("SALES", nullptr, 0, 0);
        for (const char* column : {"ID", "REGION", "SOLD_ON"})
            m_builder.AddAttribute(m_sales, column, "int", -1, -1, 0, 0);
        m_index = m_builder.AddIndex(m_sales, "IX_SALES");
    }
    std::string LastProperty() {
        const auto& records = m_builder.GetPropertyMgr()->GetRecords();
        return records.empty() ? "none" : DescribeProperty(records.back());
    }
    std::int64_t LastIntArg() { return m_builder.GetPropertyMgr()->GetRecords().back().intArg; }

    unsigned long m_sales = 0, m_index = 0;
};

TEST_F(PartitionsTest, TablePartitionsMarkTheirEntityPartitioned) {
    EXPECT_EQ(m_builder.AddTablePartition(999, "P1"), 0u);
    EXPECT_EQ(m_builder.AddTablePartition(m_sales, ""), 0u);  // refused by the property manager
    EXPECT_EQ(m_builder.GetEntityPtr(m_sales)->GetIsPartitioned(), 0);
    EXPECT_EQ(m_builder.AddTablePartition(m_sales, "P2024"), 1u);
    EXPECT_EQ(m_builder.GetEntityPtr(m_sales)->GetIsPartitioned(), 1);
}

TEST_F(PartitionsTest, IndexPartitionsAreNumberedByTheirIndexEvenWhenRefused) {
    EXPECT_EQ(m_builder.AddIndexPartition(999, "IP"), 0u);
    EXPECT_EQ(m_builder.AddIndexPartition(m_index, nullptr), 0u);  // refused, but the sequence moved on
    EXPECT_EQ(m_builder.AddIndexPartition(m_index, "IP2"), 1u);
    EXPECT_EQ(Save().Scalar("SELECT owner_kind || ' ' || owner_key || ' ' || name || ' ' || int_arg FROM Partition"),
              "index " + std::to_string(m_index) + " IP2 2");
}

TEST_F(PartitionsTest, TablePartitionColumnsAreNumberedUnlessGiven) {
    EXPECT_EQ(m_builder.AddTablePartitionColumn(m_sales, "sold_on", 0), 1);
    EXPECT_EQ(LastProperty(), WithKey("table K 7 12 '3'", m_sales));  // the third attribute, as text
    EXPECT_EQ(LastIntArg(), 1);
    m_builder.AddTablePartitionColumn(m_sales, "ID", 0);
    EXPECT_EQ(LastIntArg(), 2);
    m_builder.AddTablePartitionColumn(m_sales, "REGION", 5);
    EXPECT_EQ(LastIntArg(), 5);
    m_builder.AddTablePartitionColumn(m_sales, "ID", 0);
    EXPECT_EQ(LastIntArg(), 3);
    EXPECT_EQ(m_builder.AddTablePartitionColumn(m_sales, "MISSING", 0), 0);
    EXPECT_EQ(m_builder.AddTablePartitionColumn(999, "ID", 0), 0);
    EXPECT_EQ(m_builder.GetEntityPtr(m_sales)->m_nextPartitionColumnNo, 4);
}

TEST_F(PartitionsTest, IndexPartitionColumnsKeepTheSequenceAsGiven) {
    EXPECT_EQ(m_builder.AddIndexPartitionColumn(m_index, "REGION", 0), 1);
    EXPECT_EQ(LastProperty(), WithKey("index K 7 12 '2'", m_index));
    EXPECT_EQ(LastIntArg(), 0);
    EXPECT_EQ(m_builder.AddIndexPartitionColumn(m_index, "missing", 0), 0);
    EXPECT_EQ(m_builder.AddIndexPartitionColumn(999, "REGION", 0), 0);
}

TEST_F(PartitionsTest, NumericCodesTurnIntoPropertyAndValueNumbers) {
    const unsigned long partition = m_builder.AddTablePartition(m_sales, "P1");
    const std::tuple<int, long, const char*> cases[] = {
        {16, 64, "partition K 10 15 '64'"}, {17, 1, "partition K 11 16 '1'"}, {18, 2, "partition K 20 27 '2'"},
        {19, 3, "partition K 21 28 '3'"},   {20, 4, "partition K 12 17 '4'"}, {21, 5, "partition K 13 18 '5'"},
        {22, 6, "partition K 15 20 '6'"},   {23, 7, "partition K 16 21 '7'"}, {24, 8, "partition K 14 19 '8'"},
        {25, 9, "partition K 22 29 '9'"},   {26, -1, "partition K 23 30 '-1'"}, {28, 5, "partition K 3 7 null"},
        {28, 0, "partition K 3 6 null"},
    };
    for (const auto& [code, value, expected] : cases) {
        EXPECT_EQ(m_builder.SetPartitionProperty(partition, code, value), 1) << code;
        EXPECT_EQ(LastProperty(), WithKey(expected, partition)) << code;
    }
    const std::size_t stored = m_builder.GetPropertyMgr()->GetRecords().size();
    for (int code : {27, 15, 29, 30, 0, 99}) EXPECT_EQ(m_builder.SetPartitionProperty(partition, code, 1), 0) << code;
    EXPECT_EQ(m_builder.GetPropertyMgr()->GetRecords().size(), stored);
}

TEST_F(PartitionsTest, TextCodesTurnIntoPropertyAndValueNumbers) {
    const unsigned long partition = m_builder.AddTablePartition(m_sales, "P1");
    const CPropertyMgr& properties = *m_builder.GetPropertyMgr();
    const std::string all = properties.GetPropertyValueString(55);
    const std::string none = properties.GetPropertyValueString(57);
    const std::string untracked = properties.GetPropertyValueString(66);
    std::string lowerUntracked = untracked;
    for (char& ch : lowerUntracked) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    const std::tuple<int, std::string, std::string> cases[] = {
        {15, "TS_2024", "partition K 9 14 'TS_2024'"},
        {54, "TO_DATE('2025-01-01')", "partition K 8 13 'TO_DATE('2025-01-01')'"},
        {27, "DEFAULT", "partition K 24 14 null"},
        {27, "KEEP", "partition K 24 32 null"},
        {27, "RECYCLE", "partition K 24 33 null"},
        {47, lowerUntracked, "partition K 50 66 null"},
        {47, "anything", "partition K 50 65 null"},
        {47, "", "partition K 50 65 null"},
        {53, all, "partition K 53 55 null"},
        {53, none, "partition K 53 57 null"},
    };
    for (const auto& [code, text, expected] : cases) {
        SCOPED_TRACE(testing::Message() << code << " '" << text << "'");
        EXPECT_EQ(m_builder.SetPartitionStringProperty(partition, code, text.c_str()), 1);
        EXPECT_EQ(LastProperty(), WithKey(expected, partition));
    }
    const std::size_t stored = properties.GetRecords().size();
    EXPECT_EQ(m_builder.SetPartitionStringProperty(partition, 27, "Recycle"), 0);
    EXPECT_EQ(m_builder.SetPartitionStringProperty(partition, 27, nullptr), 0);
    EXPECT_EQ(m_builder.SetPartitionStringProperty(partition, 53, "CHANGED"), 0);
    EXPECT_EQ(m_builder.SetPartitionStringProperty(partition, 16, "1"), 0);
    EXPECT_EQ(properties.GetRecords().size(), stored);
    EXPECT_EQ(m_builder.SetPartitionStringProperty(partition, 15, nullptr), 1);
    EXPECT_EQ(LastProperty(), WithKey("partition K 9 14 ''", partition));
}

}  // namespace
