// The library reference's tables against the library, both ways: every code
// the library accepts is listed, with the right argument, and every listed
// code is accepted. Property codes are found by calling each setter with
// every code; key classes, row types and host texts by what a saved model
// and relationship resolution actually use.
#include <VrnIntf.h>
#include <VrnReader.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "ModelFileReader.h"
#include "SavedModel.h"

namespace {

using CTable = std::vector<std::vector<std::string>>;  // rows of cells, without the header

// The Markdown tables of the reference, by the heading above them.
std::map<std::string, std::vector<CTable>> ReadReferenceTables() {
    std::ifstream in(std::string(VRN_SOURCE_DIR) + "/docs/library-reference.md");
    EXPECT_TRUE(in) << "the reference is missing";
    std::map<std::string, std::vector<CTable>> tables;
    std::string heading, line;
    bool inTable = false;
    int rowInTable = 0;
    while (std::getline(in, line)) {
        if (line.rfind("#", 0) == 0) {
            heading = line.substr(line.find(' ') + 1);
            inTable = false;
            continue;
        }
        if (line.rfind("|", 0) != 0) {
            inTable = false;
            continue;
        }
        if (!inTable) {
            tables[heading].emplace_back();
            inTable = true;
            rowInTable = 0;
        }
        if (rowInTable++ < 2) continue;  // the header and its rule
        std::vector<std::string> cells;
        std::stringstream row(line.substr(1));
        for (std::string cell; std::getline(row, cell, '|');) {
            std::string text;
            for (char ch : cell)
                if (ch != '`') text += ch;
            const auto first = text.find_first_not_of(' ');
            const auto last = text.find_last_not_of(' ');
            cells.push_back(first == std::string::npos ? "" : text.substr(first, last - first + 1));
        }
        tables[heading].back().push_back(cells);
    }
    return tables;
}

const CTable& TableUnder(const std::string& heading, std::size_t which = 0) {
    static const std::map<std::string, std::vector<CTable>> tables = ReadReferenceTables();
    static const CTable none;
    const auto found = tables.find(heading);
    EXPECT_TRUE(found != tables.end() && found->second.size() > which) << "no table " << which << " under " << heading;
    return found != tables.end() && found->second.size() > which ? found->second[which] : none;
}

// "code:argument" for each row of a property table.
std::set<std::string> ListedCodes(const std::string& heading) {
    std::set<std::string> codes;
    for (const auto& row : TableUnder(heading)) {
        EXPECT_GE(row.size(), 2u);
        if (row.size() >= 2) codes.insert(row[0] + ":" + row[1]);
    }
    EXPECT_FALSE(codes.empty()) << heading;
    return codes;
}

constexpr int kHighestCodeTried = 300;
// Texts that some text codes insist on; a code is accepted when any of them is.
const char* const kProbeTexts[] = {"DEFAULT", "ALL", "YES", "10M"};

// Calls `set(code, argument)` on a fresh object for every code, and lists
// the codes it accepts as "code:number" or "code:text".
template <class SetNumber, class SetText>
std::set<std::string> AcceptedCodes(SetNumber setNumber, SetText setText) {
    std::set<std::string> codes;
    for (int code = 0; code <= kHighestCodeTried; ++code) {
        if (setNumber(code, 1)) codes.insert(std::to_string(code) + ":number");
        for (const char* text : kProbeTexts) {
            if (setText(code, text)) {
                codes.insert(std::to_string(code) + ":text");
                break;
            }
        }
    }
    return codes;
}

class ReferenceTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(m_builder.Initialize(47, nullptr), 1); }

    unsigned long NewTable() {
        const std::string name = "T" + std::to_string(++m_tables);
        const unsigned long table = m_builder.AddEntity(name.c_str(), nullptr, 0, 0);
        m_builder.AddAttribute(table, "C", "NUMBER", 10, 0, 0, 0);
        return table;
    }

    CVrnAPI m_builder;
    int m_tables = 0;
    CScratchDir m_dir;
};

TEST_F(ReferenceTest, EntityPropertyCodes) {
    const auto accepted = AcceptedCodes(
        [&](int code, long value) { return m_builder.SetEntityProperty(NewTable(), code, value); },
        [&](int code, const char* text) { return m_builder.SetEntityStringProperty(NewTable(), code, text); });
    EXPECT_EQ(ListedCodes("Entity properties"), accepted);
}

TEST_F(ReferenceTest, AttributePropertyCodes) {
    const unsigned long table = NewTable();
    auto newColumn = [&] { return m_builder.AddAttribute(table, "X", "NUMBER", 10, 0, 1, 0); };
    const auto accepted = AcceptedCodes(
        [&](int code, long value) { return m_builder.SetAttributeProperty(newColumn(), code, value); },
        [&](int code, const char* text) { return m_builder.SetAttributeStringProperty(newColumn(), code, text); });
    EXPECT_EQ(ListedCodes("Attribute properties"), accepted);
}

TEST_F(ReferenceTest, IndexPropertyCodes) {
    auto newIndex = [&] { return m_builder.AddIndex(NewTable(), nullptr); };
    const auto accepted = AcceptedCodes(
        [&](int code, long value) { return m_builder.SetIndexProperty(newIndex(), code, value); },
        [&](int code, const char* text) { return m_builder.SetIndexStringProperty(newIndex(), code, text); });
    EXPECT_EQ(ListedCodes("Index properties"), accepted);
}

TEST_F(ReferenceTest, PartitionPropertyCodes) {
    int partitions = 0;
    auto newPartition = [&] {
        const std::string name = "P" + std::to_string(++partitions);
        return m_builder.AddTablePartition(NewTable(), name.c_str());
    };
    const auto accepted = AcceptedCodes(
        [&](int code, long value) { return m_builder.SetPartitionProperty(newPartition(), code, value); },
        [&](int code, const char* text) { return m_builder.SetPartitionStringProperty(newPartition(), code, text); });
    EXPECT_EQ(ListedCodes("Partition properties"), accepted);
}

// The foreign key setter answers 1 for any code of a known foreign key, so
// a code counts as known by what it changes in the saved file.
TEST_F(ReferenceTest, ForeignKeyPropertyCodes) {
    const unsigned long parent = NewTable();
    m_builder.AddPrimaryKey(parent, "PK");
    m_builder.AddPrimaryKeyColumn(parent, "C", 1);
    std::map<std::string, int> codeOfName;
    for (int code = 0; code <= kHighestCodeTried; ++code) {
        const unsigned long child = NewTable();
        const std::string name = "FK" + std::to_string(code);
        const unsigned long foreignKey = m_builder.AddForeignKey(parent, child, name.c_str(), nullptr, nullptr);
        m_builder.AddForeignKeyColumnPair(foreignKey, "C", "C", 1);
        m_builder.SetForeignKeyProperty(foreignKey, code, 1);
        codeOfName[name] = code;
    }
    const std::string path = m_dir.File("keys.vrn");
    m_builder.SaveToFile(path.c_str());
    const CModel model = ReadModel(path);
    ASSERT_EQ(model.foreignKeys.size(), codeOfName.size());
    std::set<std::string> changed;
    for (const CModelForeignKey& foreignKey : model.foreignKeys)
        if (foreignKey.onDelete != 'N' || foreignKey.onUpdate != 'N')
            changed.insert(std::to_string(codeOfName[foreignKey.name]) + ":number");
    EXPECT_EQ(ListedCodes("Foreign key properties"), changed);
}

TEST(Reference, PlatformsAreTheLibrarysOwn) {
    const std::map<EPlatformFamily, std::string> families = {
        {EPlatformFamily::Other, "other"},     {EPlatformFamily::TransactSql, "Transact-SQL"},
        {EPlatformFamily::Oracle, "Oracle"},   {EPlatformFamily::Db2Luw, "DB2 LUW"},
        {EPlatformFamily::Db2ZOs, "DB2 z/OS"}, {EPlatformFamily::As400, "DB2 AS/400"},
    };
    const std::map<unsigned, std::string> rules = {
        {kRuleOracleTypes, "Oracle types"},
        {kRuleUnsizedNumberIsZero, "unsized NUM"},
        {kRuleConsolidatePrimaryKey, "primary key from unique index"},
        {kRuleKeepNamedPrimaryKey, "named primary key kept"},
        {kRuleReverseKeyIndexes, "reverse key indexes"},
        {kRuleAnyBufferPoolName, "any buffer pool name"},
    };
    std::set<std::string> ruleNames;
    for (const auto& [flag, name] : rules) ruleNames.insert(name);

    CTable expected;
    for (int i = 0; i < kPlatformCount; ++i) {
        const CPlatformInfo& platform = kPlatforms[i];
        std::string ruleList;
        for (unsigned bit = 1; bit != 0; bit <<= 1) {
            if (!(platform.rules & bit)) continue;
            ASSERT_TRUE(rules.count(bit)) << "platform " << platform.code << " has a rule the reference does not name";
            ruleList += (ruleList.empty() ? "" : ", ") + rules.at(bit);
        }
        std::string aliases;
        std::istringstream words(platform.aliases);
        for (std::string word; words >> word;) aliases += (aliases.empty() ? "" : " ") + word;
        expected.push_back({std::to_string(platform.code), *platform.name ? platform.name : "(not used)",
                            families.at(platform.family), platform.nullableByDefault ? "yes" : "no", ruleList,
                            aliases});
    }
    EXPECT_EQ(TableUnder("Platforms", 0), expected);

    std::set<std::string> explained;
    for (const auto& row : TableUnder("Platforms", 1)) explained.insert(row.at(0));
    EXPECT_EQ(explained, ruleNames);
}

TEST(Reference, DatatypeNamesAndCodesAreTheLibrarysOwn) {
    CTable expected;
    for (int i = 0; i < kDatatypeNameCount; ++i)
        expected.push_back({kDatatypeNames[i].name, kDatatypeCodes[kDatatypeNames[i].codeIndex]});
    EXPECT_EQ(TableUnder("Datatype names", 0), expected);
    // What the table says is what a builder answers (the first entry of a name wins).
    for (const auto& row : TableUnder("Datatype names", 0))
        EXPECT_STREQ(TranslateDatatypeName(row.at(0).c_str(), 47), row.at(1).c_str()) << row.at(0);
    // The one platform-dependent name the text above the table explains.
    EXPECT_STREQ(TranslateDatatypeName("TEXT", 41), "DTX");
    EXPECT_STREQ(TranslateDatatypeName("TEXT", 47), "TX");

    std::set<std::string> codes(kDatatypeCodes, kDatatypeCodes + kDatatypeCodeCount), listed;
    for (const auto& row : TableUnder("Datatype names", 1)) listed.insert(row.at(0));
    EXPECT_EQ(listed, codes);
}

// One object of every addressable kind, saved: the file's key allocator
// names the key classes in use, and its meta table the row types.
TEST(Reference, KeyClassesAndRowTypesAreThoseOfASavedModel) {
    CScratchDir dir;
    const std::string path = dir.File("all.vrn");
    {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(47, nullptr), 1);
        const unsigned long parent = builder.AddEntity("PARENT", nullptr, 0, 0);
        builder.AddAttribute(parent, "ID", "NUMBER", 10, 0, 0, 0);
        builder.AddPrimaryKey(parent, "PK_PARENT");
        builder.AddPrimaryKeyColumn(parent, "ID", 1);
        const unsigned long child = builder.AddEntity("CHILD", nullptr, 0, 0);
        builder.AddAttribute(child, "PARENT_ID", "NUMBER", 10, 0, 1, 0);
        builder.AddIndex(child, "IX_CHILD");
        const unsigned long foreignKey = builder.AddForeignKey(parent, child, "FK_CHILD", "PARENT", nullptr);
        builder.AddForeignKeyColumnPair(foreignKey, "ID", "PARENT_ID", 1);
        builder.AddCheckConstraint("CK", "PARENT_ID > 0", child, "PARENT_ID", 0);
        builder.AddTrigger("TRG", nullptr, "text", 1, child);
        const unsigned long procedure = builder.AddProcedure("PROC", nullptr, "text", 1);
        builder.AddPackage("PKG", nullptr, "text", false);
        builder.AddReferencedObject(procedure, child, 0, 0, 40);
        builder.AddStorageObject("TS", nullptr, "text", 3);
        builder.SaveToFile(path.c_str());
        ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    }
    CModelFileReader file(path);
    std::set<std::string> keyClasses, listedKeyClasses;
    for (const std::string& keyClass : file.Column("SELECT key_class FROM KeyAllocator")) keyClasses.insert(keyClass);
    for (const auto& row : TableUnder("Key classes")) listedKeyClasses.insert(row.at(0));
    EXPECT_EQ(listedKeyClasses, keyClasses);

    CTable rowTypes;
    for (const CRowValues& row : file.Query("SELECT meta_table_no, table_name FROM MetaTable ORDER BY meta_table_no"))
        rowTypes.push_back({row.at("meta_table_no"), row.at("table_name")});
    EXPECT_EQ(TableUnder("Row types"), rowTypes);
}

// Every number a host could register is given a text that names it and its
// placeholders; then everything that reads host texts is made to happen.
TEST(Reference, HostTextsAreThoseTheLibraryAsksFor) {
    constexpr unsigned kNumbers = 65536;
    for (unsigned number = 0; number < kNumbers; ++number)
        AfxSetResourceString(number, ("#" + std::to_string(number) + "|%1|%2|%3").c_str());

    CScratchDir dir;
    const std::string path = dir.File("texts.vrn");
    CStringList messages;
    {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(47, nullptr), 1);
        const unsigned long parent = builder.AddEntity("PARENT", nullptr, 0, 0);
        builder.AddAttribute(parent, "ID", "NUMBER", 10, 0, 0, 0);
        const unsigned long child = builder.AddEntity("CHILD", nullptr, 0, 0);
        builder.AddAttribute(child, "PARENT_ID", "NUMBER", 10, 0, 1, 0);
        builder.AddForeignKey(0, child, "FK_LOST", "NOWHERE", nullptr);  // parent not found, named
        builder.AddForeignKey(0, child, nullptr, "NOWHERE", nullptr);    // parent not found, unnamed
        const unsigned long bad = builder.AddForeignKey(0, child, "FK_BAD", "PARENT", nullptr);
        builder.AddForeignKeyColumnPair(bad, "NO_SUCH_COLUMN", "PARENT_ID", 1);  // a pair that cannot be added
        builder.ResolveForeignKeyConstraints(messages);
        builder.SaveToFile(path.c_str());
        ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    }
    for (unsigned number = 0; number < kNumbers; ++number) AfxSetResourceString(number, nullptr);

    // number -> the placeholders it was given values for, as "%1 %2".
    std::map<std::string, std::string> used;
    auto note = [&](const std::string& text) {
        if (text.rfind("#", 0) != 0) return;
        std::vector<std::string> parts;
        std::stringstream split(text.substr(1));
        for (std::string part; std::getline(split, part, '|');) parts.push_back(part);
        std::string placeholders;
        // A placeholder left as it stands was given no value.
        for (std::size_t i = 1; i < parts.size(); ++i)
            if (!parts[i].empty() && parts[i] != "%" + std::to_string(i))
                placeholders += (placeholders.empty() ? "%" : " %") + std::to_string(i);
        used[parts.at(0)] = placeholders;
    };
    for (POSITION pos = messages.GetHeadPosition(); pos;) note(messages.GetNext(pos).GetString());
    const CModel model = ReadModel(path);
    note(model.product);
    note(model.modelName);
    note(model.diagramName);

    std::map<std::string, std::string> listed;
    for (const auto& row : TableUnder("Host texts")) {
        std::string placeholders;
        for (std::size_t at = row.at(2).find('%'); at != std::string::npos; at = row[2].find('%', at + 1))
            placeholders += (placeholders.empty() ? "" : " ") + row[2].substr(at, 2);
        listed[row.at(0)] = placeholders;
    }
    EXPECT_EQ(listed, used);
}

}  // namespace
