// The library guide's examples, compiled from the guide itself (the build
// copies its C++ blocks into library_guide_examples.inc), run, and checked
// against what the guide's text says they do, in the saved file.
#include <VrnIntf.h>
#include <VrnReader.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "ModelFileReader.h"
#include "SavedModel.h"

// The guide's headers are included above, so its own #include lines do nothing here.
namespace {
#include "library_guide_examples.inc"
}  // namespace

namespace {

const CModelIndex* Index(const CModelTable& table, const std::string& name) {
    for (const CModelIndex& index : table.indexes)
        if (index.name == name) return &index;
    return nullptr;
}

// "name=value" for each property, with ":text" when it carries one.
std::vector<std::string> Properties(const std::vector<CModelProperty>& properties) {
    std::vector<std::string> out;
    for (const CModelProperty& property : properties)
        out.push_back(property.name + "=" + property.value + (property.hasText ? ":" + property.text : ""));
    return out;
}

bool Has(const std::vector<std::string>& list, const std::string& item) {
    for (const std::string& entry : list)
        if (entry == item) return true;
    return false;
}

std::vector<std::string> Messages(CStringList& list) {
    std::vector<std::string> out;
    for (POSITION pos = list.GetHeadPosition(); pos;) out.push_back(list.GetNext(pos).GetString());
    return out;
}

// A builder for one platform that the examples describe into, then save.
class GuideExampleTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(m_builder.Initialize(47, nullptr), 1); }  // Oracle 9i
    CModel Save(CVrnAPI& builder) { return SaveAndRead(builder, m_dir.File("model.vrn")); }
    CModel Save() { return Save(m_builder); }

    CVrnAPI m_builder;
    CScratchDir m_dir;
};

TEST_F(GuideExampleTest, TheFirstModelHasTwoTablesAndTheirRelationship) {
    const std::string path = m_dir.File("orders.vrn");
    ASSERT_TRUE(SaveOrderModel(path.c_str()));
    const CModel model = ReadModel(path);
    EXPECT_EQ(model.product, "Order catalog reader 1.0");
    EXPECT_EQ(model.modelName, "Orders");
    EXPECT_EQ(model.diagramName, "Main diagram");
    ASSERT_EQ(model.tables.size(), 2u);
    const CModelTable* orders = FindTable(model, "ORDERS");
    ASSERT_NE(orders, nullptr);
    EXPECT_EQ(orders->owner, "dbo");
    const CModelColumn* total = FindColumn(*orders, "TOTAL");
    ASSERT_NE(total, nullptr);
    EXPECT_EQ(total->datatype, "DC");
    EXPECT_EQ(total->width, 12);
    EXPECT_EQ(total->scale, 2);
    EXPECT_TRUE(total->nullable);
    EXPECT_FALSE(FindColumn(*orders, "PLACED_BY")->nullable);
    ASSERT_GE(orders->primaryKey, 0);
    EXPECT_EQ(orders->indexes[orders->primaryKey].name, "PK_ORDERS");

    ASSERT_EQ(model.foreignKeys.size(), 1u);
    const CModelForeignKey& placedBy = model.foreignKeys[0];
    EXPECT_EQ(placedBy.name, "FK_ORDERS_CUSTOMER");
    EXPECT_EQ(model.tables[placedBy.parentTable].name, "CUSTOMER");
    EXPECT_EQ(model.tables[placedBy.childTable].name, "ORDERS");
    // PLACED_BY is not part of the order's primary key.
    EXPECT_FALSE(placedBy.identifying);
    ASSERT_EQ(placedBy.pairs.size(), 1u);
    EXPECT_EQ(placedBy.pairs[0].parentColumn, "CUSTOMER_ID");
    EXPECT_EQ(placedBy.pairs[0].childColumn, "PLACED_BY");
}

TEST_F(GuideExampleTest, AFailedSaveIsReportedAndWritesNothing) {
    const std::string path = m_dir.File("missing/orders.vrn");
    EXPECT_FALSE(SaveOrderModel(path.c_str()));
    EXPECT_TRUE(m_dir.Entries().empty());
}

TEST_F(GuideExampleTest, AContinuedModelKeepsItsTablesAndCannotFindThem) {
    const std::string path = m_dir.File("orders.vrn");
    ASSERT_TRUE(SaveOrderModel(path.c_str()));
    ASSERT_TRUE(AddAuditTable(path.c_str()));
    const CModel model = ReadModel(path);
    ASSERT_EQ(model.tables.size(), 3u);
    EXPECT_EQ(model.tables[2].name, "AUDIT_LOG");
    EXPECT_EQ(model.foreignKeys.size(), 1u);
    // Keys continue after the file's own.
    EXPECT_GT(model.tables[2].key, model.tables[1].key);

    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(41, path.c_str()), 1);
    EXPECT_EQ(builder.FindEntity("CUSTOMER", "dbo", 0), 0u);
}

TEST_F(GuideExampleTest, ContinuingAFileThatIsNotAModelFails) {
    const std::string path = m_dir.File("notes.txt");
    WriteBytes(path, "not a model");
    EXPECT_FALSE(AddAuditTable(path.c_str()));
    EXPECT_EQ(ReadBytes(path), "not a model");
}

TEST_F(GuideExampleTest, TablesAreFoundByNameAndViewsAreLeftOutOfTheFile) {
    DescribeTablesAndViews(m_builder);
    const unsigned long product = m_builder.FindEntity("product", "SALES", 0);
    EXPECT_NE(product, 0u);
    EXPECT_EQ(m_builder.FindEntity("product", nullptr, 0), product);
    EXPECT_EQ(m_builder.FindEntity("product", "HR", 0), 0u);
    const unsigned long cheap = m_builder.FindEntity("CHEAP_PRODUCT", nullptr, 0);
    EXPECT_EQ(m_builder.IsEntityView(cheap), 1);
    EXPECT_EQ(m_builder.IsEntityView(product), 0);

    const CModel model = Save();
    ASSERT_EQ(model.tables.size(), 1u);
    EXPECT_EQ(model.tables[0].name, "PRODUCT");
    EXPECT_EQ(model.tables[0].definition, "Everything the shop sells.");
}

TEST_F(GuideExampleTest, TableOptionsLandInSlotsAndProperties) {
    DescribeTableOptions(m_builder);
    const CModel model = Save();
    const CModelTable* history = FindTable(model, "ORDER_HISTORY");
    ASSERT_NE(history, nullptr);
    EXPECT_EQ(history->storageSpace, "SALES_DATA");
    EXPECT_EQ(history->storageParams[2], 1024);  // INITIAL: slot 3
    EXPECT_EQ(history->storageParams[4], 20);    // PCTFREE: slot 5
    const std::vector<std::string> properties = Properties(history->properties);
    EXPECT_TRUE(Has(properties, "Initial Transactions=INITRANS:4")) << ::testing::PrintToString(properties);
    EXPECT_TRUE(Has(properties, "Logging=NOLOGGING")) << ::testing::PrintToString(properties);
    EXPECT_TRUE(Has(properties, "Buffer Pool=KEEP")) << ::testing::PrintToString(properties);
}

TEST_F(GuideExampleTest, ColumnsGetTheModelsDatatypesAndTheirTexts) {
    DescribeColumns(m_builder);
    const CModel model = Save();
    const CModelTable* account = FindTable(model, "ACCOUNT");
    ASSERT_NE(account, nullptr);
    struct CExpected {
        const char* name;
        const char* datatype;
        int width, scale;
        bool nullable;
    };
    const CExpected expected[] = {
        {"ACCOUNT_NO", "NUM", 12, 0, false}, {"HOLDER", "VAR", 60, 0, false}, {"OPENED", "D", 10, 0, true},
        {"BALANCE", "NUM", 0, 0, true},      {"NOTES", "DTX", 10, 0, true},   {"STATUS", "CH", 1, 0, false},
    };
    for (const CExpected& want : expected) {
        const CModelColumn* column = FindColumn(*account, want.name);
        ASSERT_NE(column, nullptr) << want.name;
        EXPECT_EQ(column->datatype, want.datatype) << want.name;
        EXPECT_EQ(column->width, want.width) << want.name;
        EXPECT_EQ(column->scale, want.scale) << want.name;
        EXPECT_EQ(column->nullable, want.nullable) << want.name;
    }
    EXPECT_EQ(FindColumn(*account, "NOTES")->definition, "Free text from the branch.");
    EXPECT_EQ(FindColumn(*account, "STATUS")->defaultText, "'O'");
    const std::vector<std::string> serial = Properties(FindColumn(*account, "SERIAL")->properties);
    EXPECT_TRUE(Has(serial, "Generated Always=GENERATED ALWAYS")) << ::testing::PrintToString(serial);
    EXPECT_TRUE(Has(serial, "Identity Start=START WITH:1000")) << ::testing::PrintToString(serial);
}

TEST_F(GuideExampleTest, AnUnknownOrSizedDatatypeNameGivesTheDefaultDatatype) {
    const unsigned long table = m_builder.AddEntity("T", nullptr, 0, 0);
    m_builder.AddAttribute(table, "SIZED", "VARCHAR(40)", -1, -1, 1, 0);
    const CModel model = Save();
    const CModelColumn* sized = FindColumn(model.tables[0], "SIZED");
    ASSERT_NE(sized, nullptr);
    EXPECT_EQ(sized->datatype, "CH");
    EXPECT_EQ(sized->width, 10);
}

TEST_F(GuideExampleTest, KeysAndIndexesKeepTheirColumnsAndOptions) {
    DescribeKeysAndIndexes(m_builder);
    const unsigned long line = m_builder.FindEntity("ORDER_LINE", nullptr, 0);
    EXPECT_EQ(m_builder.AddPrimaryKey(line, "PK_SECOND"), nullptr);
    EXPECT_EQ(m_builder.AddIndexColumn(m_builder.GetPrimaryKeyIndexId(line), "NO_SUCH_COLUMN", 3, 0), 0);
    const CModel model = Save();
    const CModelTable* table = FindTable(model, "ORDER_LINE");
    ASSERT_NE(table, nullptr);
    ASSERT_GE(table->primaryKey, 0);
    EXPECT_FALSE(FindColumn(*table, "LINE_NO")->nullable);  // described as nullable
    const CModelIndex& primaryKey = table->indexes[table->primaryKey];
    EXPECT_EQ(primaryKey.name, "PK_ORDER_LINE");
    ASSERT_EQ(primaryKey.columns.size(), 2u);
    EXPECT_EQ(primaryKey.columns[1].name, "LINE_NO");
    const CModelIndex* byProduct = Index(*table, "UX_LINE_PRODUCT");
    ASSERT_NE(byProduct, nullptr);
    EXPECT_TRUE(byProduct->unique);
    ASSERT_EQ(byProduct->columns.size(), 2u);
    EXPECT_FALSE(byProduct->columns[0].descending);
    EXPECT_TRUE(byProduct->columns[1].descending);
    EXPECT_EQ(byProduct->storageSpace, "SALES_IDX");
    EXPECT_EQ(byProduct->storageParams[4], 10);
}

TEST_F(GuideExampleTest, AForeignKeyWaitsForItsParentAndAMissingParentIsReported) {
    AfxSetResourceString(kHostTextParentNotFound, "Parent table %1 was not found.");
    AfxSetResourceString(kHostTextForeignKeyNotAdded, "Foreign key %1 was not added.");
    CStringList messages;
    DescribeForeignKeys(m_builder, messages);
    EXPECT_EQ(Messages(messages), (std::vector<std::string>{"Parent table SITE was not found.",
                                                            "Foreign key FK_EMPLOYEE_SITE was not added."}));
    const CModel model = Save();
    ASSERT_EQ(model.foreignKeys.size(), 1u);
    const CModelForeignKey& worksIn = model.foreignKeys[0];
    EXPECT_EQ(worksIn.name, "FK_EMPLOYEE_DEPT");
    EXPECT_EQ(model.tables[worksIn.parentTable].name, "DEPARTMENT");
    EXPECT_EQ(worksIn.onDelete, 'S');
    EXPECT_TRUE(worksIn.optional);
    EXPECT_FALSE(worksIn.identifying);
    ASSERT_EQ(worksIn.pairs.size(), 1u);
    EXPECT_EQ(worksIn.pairs[0].childColumn, "DEPT_ID");
}

TEST_F(GuideExampleTest, APendingForeignKeyHasNoNameUntilItIsResolved) {
    const unsigned long child = m_builder.AddEntity("CHILD", nullptr, 0, 0);
    const unsigned long pending = m_builder.AddForeignKey(0, child, "FK_LATER", "PARENT", nullptr);
    EXPECT_NE(pending, 0u);
    EXPECT_EQ(m_builder.GetForeignKeyName(pending), nullptr);
    m_builder.AddEntity("PARENT", nullptr, 0, 0);
    CStringList messages;
    EXPECT_TRUE(m_builder.ResolveForeignKeyConstraints(messages));
    EXPECT_STREQ(m_builder.GetForeignKeyName(pending), "FK_LATER");
}

// The save keeps a foreign key whose parent columns are the primary key's or
// exactly a unique index's, and leaves out one that refers to neither.
TEST_F(GuideExampleTest, AForeignKeyRefersToThePrimaryKeyOrAUniqueIndex) {
    const unsigned long parent = m_builder.AddEntity("PARENT", nullptr, 0, 0);
    m_builder.AddAttribute(parent, "ID", "NUMBER", 10, 0, 0, 0);
    m_builder.AddAttribute(parent, "CODE", "VARCHAR2", 8, -1, 0, 0);
    m_builder.AddAttribute(parent, "NOTE", "VARCHAR2", 8, -1, 1, 0);
    m_builder.AddPrimaryKey(parent, "PK_PARENT");
    m_builder.AddPrimaryKeyColumn(parent, "ID", 1);
    const unsigned long byCode = m_builder.AddIndex(parent, "UX_PARENT_CODE");
    m_builder.AddIndexColumn(byCode, "CODE", 1, 0);
    m_builder.SetIndexProperty(byCode, 34, 1);
    const unsigned long child = m_builder.AddEntity("CHILD", nullptr, 0, 0);
    m_builder.AddAttribute(child, "PARENT_CODE", "VARCHAR2", 8, -1, 1, 0);
    m_builder.AddAttribute(child, "PARENT_NOTE", "VARCHAR2", 8, -1, 1, 0);
    const unsigned long toCode = m_builder.AddForeignKey(parent, child, "FK_BY_CODE", "PARENT", nullptr);
    m_builder.AddForeignKeyColumnPair(toCode, "CODE", "PARENT_CODE", 1);
    const unsigned long toNote = m_builder.AddForeignKey(parent, child, "FK_BY_NOTE", "PARENT", nullptr);
    m_builder.AddForeignKeyColumnPair(toNote, "NOTE", "PARENT_NOTE", 1);

    const CModel model = Save();
    ASSERT_EQ(model.foreignKeys.size(), 1u);
    EXPECT_EQ(model.foreignKeys[0].name, "FK_BY_CODE");
    EXPECT_EQ(model.foreignKeys[0].referencedKey, Index(model.tables[0], "UX_PARENT_CODE")->key);
}

// The pitfalls the guide warns of, as it describes them.
class GuideWarningTest : public GuideExampleTest {
protected:
    void SetUp() override {
        GuideExampleTest::SetUp();
        m_parent = m_builder.AddEntity("PARENT", nullptr, 0, 0);
        m_builder.AddAttribute(m_parent, "P_ID", "NUMBER", 10, 0, 0, 0);
        m_child = m_builder.AddEntity("CHILD", nullptr, 0, 0);
        m_builder.AddAttribute(m_child, "P_ID", "NUMBER", 10, 0, 1, 0);
    }
    void AddParentKey() {
        m_builder.AddPrimaryKey(m_parent, "PK_PARENT");
        m_builder.AddPrimaryKeyColumn(m_parent, "P_ID", 1);
    }

    unsigned long m_parent = 0, m_child = 0;
};

TEST_F(GuideWarningTest, AForeignKeyAddedBeforeItsParentsKeyIsLeftOut) {
    const unsigned long early = m_builder.AddForeignKey(m_parent, m_child, "FK_EARLY", "PARENT", nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(early, "P_ID", "P_ID", 1), 1);  // accepted nonetheless
    AddParentKey();
    EXPECT_TRUE(Save().foreignKeys.empty());
}

TEST_F(GuideWarningTest, AForeignKeyWithoutPairsIsSavedWithoutColumns) {
    const unsigned long bare = m_builder.AddForeignKey(m_parent, m_child, "FK_BARE", "PARENT", nullptr);
    EXPECT_EQ(m_builder.AddForeignKeyColumnPair(bare, nullptr, "P_ID", 1), 0);  // the parent has no key yet
    AddParentKey();
    const CModel model = Save();
    ASSERT_EQ(model.foreignKeys.size(), 1u);
    EXPECT_TRUE(model.foreignKeys[0].pairs.empty());
}

TEST_F(GuideWarningTest, TheForeignKeySetterAnswersOneForAnyCode) {
    AddParentKey();
    const unsigned long key = m_builder.AddForeignKey(m_parent, m_child, "FK", "PARENT", nullptr);
    m_builder.AddForeignKeyColumnPair(key, "P_ID", "P_ID", 1);
    EXPECT_EQ(m_builder.SetForeignKeyProperty(key, 999, 1), 1);
    EXPECT_EQ(m_builder.SetForeignKeyProperty(key + 1000, 77, 1), 0);
    EXPECT_EQ(m_builder.SetEntityProperty(m_child, 999, 1), 0);
    const CModel model = Save();
    ASSERT_EQ(model.foreignKeys.size(), 1u);
    EXPECT_EQ(model.foreignKeys[0].onDelete, 'N');
    EXPECT_EQ(model.foreignKeys[0].onUpdate, 'N');
}

TEST_F(GuideWarningTest, ASecondSaveOrResolutionWritesRowsAgain) {
    AddParentKey();
    const unsigned long pending = m_builder.AddForeignKey(0, m_child, "FK_PENDING", "PARENT", nullptr);
    m_builder.AddForeignKeyColumnPair(pending, "P_ID", "P_ID", 1);
    CStringList messages;
    m_builder.ResolveForeignKeyConstraints(messages);
    m_builder.ResolveForeignKeyConstraints(messages);
    EXPECT_TRUE(messages.IsEmpty());
    const std::string first = m_dir.File("first.vrn"), second = m_dir.File("second.vrn");
    m_builder.SaveToFile(first.c_str());
    m_builder.SaveToFile(second.c_str());
    EXPECT_STREQ(m_builder.GetVrnFile()->GetLastError(), "");
    CModelFileReader once(first), twice(second);
    EXPECT_EQ(once.Count("ForeignKey"), 2);  // resolved twice
    EXPECT_EQ(once.Count("Entity"), 2);
    EXPECT_EQ(twice.Count("Entity"), 4);  // the first save's rows, and the second's
}

TEST_F(GuideExampleTest, DefaultsAndRulesBindToColumnsAndUserDatatypes) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(41, nullptr), 1);
    DescribeDefaultsRulesAndTypes(builder);
    EXPECT_EQ(builder.BindRule("[R_POSITIVE]", "Amount"), 0u);
    EXPECT_NE(builder.BindRule("dbo.[R_POSITIVE]", "Amount"), 0u);
    EXPECT_EQ(builder.AddUserType("Odd", "no_such_type"), 0u);
    const CModel model = Save(builder);
    ASSERT_EQ(model.userDatatypes.size(), 1u);
    const CModelUserDatatype& amount = model.userDatatypes[0];
    EXPECT_EQ(amount.name, "Amount");
    EXPECT_EQ(amount.datatype, "DC");
    EXPECT_EQ(amount.length, 19);
    EXPECT_EQ(amount.scale, 4);
    EXPECT_EQ(amount.ruleId, 1u);
    const CModelTable* invoice = FindTable(model, "INVOICE");
    ASSERT_NE(invoice, nullptr);
    const CModelColumn* total = FindColumn(*invoice, "TOTAL");
    EXPECT_EQ(total->userDatatype, "Amount");
    EXPECT_EQ(total->datatype, "DC");
    EXPECT_EQ(total->width, 19);
    EXPECT_EQ(FindColumn(*invoice, "DISCOUNT")->defaultId, 1u);
    EXPECT_EQ(FindColumn(*invoice, "DISCOUNT")->datatype, "MN");
}

TEST_F(GuideExampleTest, ChecksBelongToAColumnOrToTheTable) {
    DescribeChecks(m_builder);
    const unsigned long shipment = m_builder.FindEntity("SHIPMENT", nullptr, 0);
    m_builder.AddCheckConstraint("CK_NOWHERE", "X > 0", shipment, "NO_SUCH_COLUMN", 0);
    const CModel model = Save();
    ASSERT_EQ(model.checks.size(), 2u);
    EXPECT_EQ(model.checks[0].name, "CK_SHIPMENT_QTY");
    EXPECT_EQ(model.checks[0].column, "QTY");
    EXPECT_EQ(model.checks[0].text, "QTY > 0");
    EXPECT_EQ(model.checks[1].text, "SHIPPED >= ORDERED");
    EXPECT_EQ(model.checks[1].column, "");
}

TEST_F(GuideExampleTest, CodeObjectsKeepTheirTextsKindsAndReferences) {
    DescribeCodeObjects(m_builder);
    EXPECT_EQ(m_builder.AddReferencedObject(1, 2, 0, 0, 9999), 0u);
    unsigned long table = 0;
    EXPECT_NE(m_builder.FindTrigger("TRG_ORDERS_AUDIT", nullptr, table), 0u);
    EXPECT_EQ(table, m_builder.FindEntity("ORDERS", nullptr, 0));
    const CModel model = Save();
    ASSERT_EQ(model.triggers.size(), 1u);
    EXPECT_EQ(model.triggers[0].kind, 2);
    ASSERT_GE(model.triggers[0].table, 0);
    EXPECT_EQ(model.tables[model.triggers[0].table].name, "ORDERS");
    ASSERT_EQ(model.procedures.size(), 2u);
    EXPECT_TRUE(model.procedures[0].invalid);
    EXPECT_EQ(model.procedures[1].kind, 2);
    ASSERT_EQ(model.packages.size(), 1u);
    EXPECT_EQ(model.packages[0].text, "CREATE PACKAGE BILLING AS ... END;");
    EXPECT_EQ(model.packages[0].body, "CREATE PACKAGE BODY BILLING AS ... END;");
    ASSERT_EQ(model.referencedObjects.size(), 1u);
    EXPECT_EQ(model.referencedObjects[0].values[0], model.procedures[0].key);
    EXPECT_EQ(model.referencedObjects[0].values[1], model.tables[0].key);
}

TEST_F(GuideExampleTest, PartitionsCarryTheirLimitsAndStorageObjectsTheirKinds) {
    DescribePartitions(m_builder);
    const CModel model = Save();
    const CModelTable* sales = FindTable(model, "SALES_FACT");
    ASSERT_NE(sales, nullptr);
    ASSERT_EQ(sales->partitions.size(), 2u);
    const CModelPartition& first = model.partitions[sales->partitions[0]];
    EXPECT_EQ(first.name, "P2026H1");
    const std::vector<std::string> firstProperties = Properties(first.properties);
    EXPECT_TRUE(Has(firstProperties, "Partition Limit=Limit Values:TO_DATE('2026-07-01', 'YYYY-MM-DD')"))
        << ::testing::PrintToString(firstProperties);
    EXPECT_TRUE(Has(firstProperties, "Storage Space=Storage Space Name:DW_2026H1"))
        << ::testing::PrintToString(firstProperties);
    const std::vector<std::string> secondProperties = Properties(model.partitions[sales->partitions[1]].properties);
    EXPECT_TRUE(Has(secondProperties, "Percent Free=PCTFREE:5")) << ::testing::PrintToString(secondProperties);
    // The partition column is the table's: property 7, the column's number as its text.
    EXPECT_TRUE(Has(Properties(sales->properties), "Partition Column=Column Number:1"))
        << ::testing::PrintToString(Properties(sales->properties));
    ASSERT_EQ(model.storageObjects.size(), 2u);
    EXPECT_EQ(model.storageObjects[1].name, "DW_2026H2");
    EXPECT_EQ(model.storageObjects[1].kind, 3);
}

// Builders on different threads share nothing but the host string table:
// the same description saved on four threads at once gives four equal models.
TEST_F(GuideExampleTest, BuildersOnSeveralThreadsMakeTheSameModel) {
    constexpr int kThreads = 4;
    std::vector<std::string> paths;
    for (int i = 0; i < kThreads; ++i) paths.push_back(m_dir.File("model" + std::to_string(i) + ".vrn"));
    std::vector<std::string> errors(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            CVrnAPI builder;
            if (!builder.Initialize(47, nullptr)) return;
            CStringList messages;
            for (int round = 0; round < 20; ++round) {
                DescribeColumns(builder);
                DescribeKeysAndIndexes(builder);
                DescribeForeignKeys(builder, messages);
                DescribePartitions(builder);
            }
            builder.SaveToFile(paths[i].c_str());
            errors[i] = builder.GetVrnFile()->GetLastError();
        });
    }
    for (std::thread& thread : threads) thread.join();

    std::vector<CModel> models(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        EXPECT_EQ(errors[i], "");
        models[i] = ReadModel(paths[i]);
    }
    EXPECT_EQ(models[0].tables.size(), 100u);
    for (int i = 1; i < kThreads; ++i) EXPECT_TRUE(CompareModels(models[0], models[i]).empty()) << i;
}

}  // namespace

namespace {

// A heading's anchor as Markdown renderers make it: lower case, punctuation
// dropped, blanks as hyphens.
std::string Anchor(const std::string& heading) {
    std::string anchor;
    for (char ch : heading) {
        if (std::isalnum(static_cast<unsigned char>(ch)) || ch == '-' || ch == '_')
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
        else if (ch == ' ')
            anchor += '-';
    }
    return anchor;
}

std::set<std::string> Anchors(const std::string& path) {
    std::ifstream in(path);
    std::set<std::string> anchors;
    for (std::string line; std::getline(in, line);)
        if (line.rfind("#", 0) == 0 && line.find(' ') != std::string::npos)
            anchors.insert(Anchor(line.substr(line.find(' ') + 1)));
    return anchors;
}

// Every relative link of the documents a library user reads, and every
// anchor in them, leads somewhere: the guide and the reference link into
// each other by section.
TEST(GuideLinks, EveryRelativeLinkAndAnchorExists) {
    namespace fs = std::filesystem;
    const fs::path top = VRN_SOURCE_DIR;
    const std::regex link(R"(\]\(([^)\s]+)\))");
    for (const char* document : {"README.md", "docs/index.md", "docs/library.md", "docs/library-reference.md"}) {
        const fs::path path = top / document;
        std::ifstream in(path);
        ASSERT_TRUE(in) << path;
        const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        int links = 0;
        for (auto match = std::sregex_iterator(text.begin(), text.end(), link); match != std::sregex_iterator();
             ++match) {
            const std::string target = (*match)[1];
            if (target.find("://") != std::string::npos) continue;
            ++links;
            const std::size_t hash = target.find('#');
            const fs::path file = hash == 0 ? path : path.parent_path() / target.substr(0, hash);
            EXPECT_TRUE(fs::exists(file)) << document << " links to " << target;
            if (hash != std::string::npos && fs::exists(file)) {
                EXPECT_TRUE(Anchors(file.string()).count(target.substr(hash + 1)))
                    << document << " links to " << target;
            }
        }
        EXPECT_GT(links, 0) << document;
    }
}

}  // namespace
