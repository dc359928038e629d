// The sales model, built through the builder and read back: every field of
// every kind comes back as the builder was told it, and copies of shared
// migrated columns are told apart from the columns they copy.
//
// Then model comparison: the model changed one thing at a time (through the
// builder or in the read structures). Equal models give no change whatever
// their keys, row order and letter case; each change is reported once,
// exactly, in a stable order; each switch leaves out its own kind and no other.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cctype>
#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "ModelFileReader.h"
#include "SavedModel.h"

namespace {

using Strings = std::vector<std::string>;

std::string Upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

bool SameText(const std::string& a, const std::string& b) { return Upper(a) == Upper(b); }

// How the sales model is built: in its usual order, or with every list the
// order does not matter for (tables, indexes, keys, checks, catalogue, code)
// the other way round; names as written or all in upper case.
struct CBuild {
    bool reversed = false;
    bool upper = false;
};

// The builder's keys of the objects whose keys the reader must give back.
struct CSalesKeys {
    unsigned long zero = 0, positive = 0, customer = 0, oldPartition = 0;
};

// Two tables that between them use every kind of object the reader and the
// comparison know.
void BuildSales(CVrnAPI& b, const CBuild& how, CSalesKeys* keys = nullptr) {
    CSalesKeys made;
    const auto n = [&](const char* name) { return how.upper ? Upper(name) : std::string(name); };
    const auto inOrder = [&](std::vector<std::function<void()>> steps) {
        if (how.reversed) std::reverse(steps.begin(), steps.end());
        for (const auto& step : steps) step();
    };
    ASSERT_EQ(b.Initialize(41, nullptr), 1);
    inOrder({[&] { made.zero = b.AddDefault(n("df_zero").c_str(), "0", nullptr); },
             [&] { made.positive = b.AddRule(n("r_positive").c_str(), "@v > 0", nullptr); },
             [&] { b.AddUserType(n("flag").c_str(), "char(1)"); },
             [&] { b.AddUserType(n("zipcode").c_str(), "char(5)"); }});
    b.BindRule(n("r_positive").c_str(), n("zipcode").c_str());

    unsigned long customer = 0, invoice = 0;
    const auto addCustomer = [&] {
        customer = b.AddEntity(n("customer").c_str(), n("sales").c_str(), 0, 0);
        b.SetEntityStringProperty(customer, 2, "who buys");  // definition
        b.SetEntityStringProperty(customer, 15, "PRIMARY");
        b.SetEntityProperty(customer, 16, 8);  // storage parameter slot 3
        b.SetEntityProperty(customer, 28, 1);  // logging
        const unsigned long id = b.AddAttribute(customer, n("id").c_str(), "int", -1, -1, 0, 0);
        b.SetAttributeProperty(id, 82, 1);  // identity
        const unsigned long name = b.AddAttribute(customer, n("name").c_str(), "nvarchar", 80, -1, 0, 0);
        b.SetAttributeStringProperty(name, 2, "as printed on invoices");
        b.SetAttributeStringProperty(name, 11, "len(name) > 0");
        const unsigned long zip = b.AddAttribute(customer, n("zip").c_str(), n("zipcode").c_str(), -1, -1, 1, 0);
        b.SetAttributeStringProperty(zip, 9, "'00000'");
        b.AddAttribute(customer, n("balance").c_str(), "numeric", 10, 2, 1, 0);
        b.BindDefault(n("df_zero").c_str(), (n("customer") + "." + n("balance")).c_str());
        b.AddPrimaryKey(customer, n("pk_customer").c_str());
        b.AddPrimaryKeyColumn(customer, n("id").c_str(), 0);
        inOrder({[&] {
                     const unsigned long byName = b.AddIndex(customer, n("ux_customer_name").c_str());
                     b.AddIndexColumn(byName, n("name").c_str(), 0, 1);
                     b.SetIndexProperty(byName, 34, 1);  // unique
                     b.SetIndexStringProperty(byName, 15, "INDEXES");
                     b.SetIndexProperty(byName, 41, 12);  // storage parameter slot 1
                 },
                 [&] {
                     const unsigned long byZip = b.AddIndex(customer, n("ix_customer_zip").c_str());
                     b.AddIndexColumn(byZip, n("zip").c_str(), 0, 0);
                     b.SetIndexProperty(byZip, 40, 1);  // clustered
                     const unsigned long part = b.AddIndexPartition(byZip, n("ip_zip").c_str());
                     b.SetPartitionStringProperty(part, 54, "'5'");
                 },
                 [&] {
                     // Unnamed: the builder makes up a name from its place.
                     const unsigned long byBalance = b.AddIndex(customer, nullptr);
                     b.AddIndexColumn(byBalance, n("balance").c_str(), 0, 0);
                     b.AddIndexColumn(byBalance, n("id").c_str(), 0, 0);
                 }});
        made.oldPartition = b.AddTablePartition(customer, n("p_old").c_str());
        b.SetPartitionStringProperty(made.oldPartition, 54, "100");
        b.AddTablePartitionColumn(customer, n("balance").c_str(), 0);
    };
    const auto addInvoice = [&] {
        invoice = b.AddEntity(n("invoice").c_str(), n("sales").c_str(), 0, 0);
        b.AddAttribute(invoice, n("no").c_str(), "int", -1, -1, 0, 0);
        b.AddAttribute(invoice, n("payer_id").c_str(), "int", -1, -1, 1, 0);
        b.AddAttribute(invoice, n("total").c_str(), "numeric", 12, 2, 1, 0);
        b.AddPrimaryKey(invoice, nullptr);
        b.AddPrimaryKeyColumn(invoice, n("no").c_str(), 0);
        inOrder({[&] { b.AddCheckConstraint(n("ck_total").c_str(), "total >= 0", invoice, n("total").c_str(), 0); },
                 [&] { b.AddCheckConstraint(nullptr, "no > 0", invoice, nullptr, 0); }});
    };
    inOrder({addCustomer, addInvoice});
    // Two keys over the same columns: told apart by their names.
    inOrder({[&] {
                 const unsigned long paidBy = b.AddForeignKey(customer, invoice, n("fk_paid_by").c_str(), nullptr, nullptr);
                 b.AddForeignKeyColumnPair(paidBy, n("id").c_str(), n("payer_id").c_str(), 0);
                 b.SetForeignKeyProperty(paidBy, 77, 1);  // on delete cascade
                 b.SetForeignKeyProperty(paidBy, 81, 1);  // on update restrict
             },
             [&] {
                 const unsigned long billedTo = b.AddForeignKey(customer, invoice, n("fk_billed_to").c_str(), nullptr, nullptr);
                 b.AddForeignKeyColumnPair(billedTo, n("id").c_str(), n("payer_id").c_str(), 0);
             }});
    inOrder({[&] { b.AddTrigger(n("tr_invoice").c_str(), n("sales").c_str(), "create trigger tr_invoice ...", 2, invoice); },
             [&] { b.AddProcedure(n("p_close").c_str(), n("sales").c_str(), "create procedure p_close\nas ...", 1); },
             [&] {
                 b.AddPackage(n("pk_billing").c_str(), n("sales").c_str(), "package pk_billing is end;", false);
                 b.AddPackage(n("pk_billing").c_str(), n("sales").c_str(), "package body pk_billing is end;", true);
             },
             [&] { b.AddStorageObject(n("SG1").c_str(), n("sys").c_str(), "CREATE STOGROUP SG1", 1); },
             [&] { b.AddReferencedObject(1, 2, 3, 4, 40); }});
    made.customer = customer;
    if (keys) *keys = made;
}

CModel Read(const std::function<void(CVrnAPI&)>& build) {
    CScratchDir dir;
    CVrnAPI builder;
    build(builder);
    return SaveAndRead(builder, dir.File("model.vrn"));
}

CModel ReadSales(const CBuild& how) {
    return Read([&](CVrnAPI& b) { BuildSales(b, how); });
}

// The sales model as usually built, read once.
const CModel& Sales() {
    static const CModel model = ReadSales({});
    return model;
}

Strings Lines(const std::vector<CModelChange>& changes) { return ChangeLines(changes); }

// The changes from the sales model to a copy changed by `edit`.
Strings ChangesAfter(const std::function<void(CModel&)>& edit, const CCompareOptions& options = {}) {
    CModel after = Sales();
    edit(after);
    return Lines(CompareModels(Sales(), after, options));
}

// Lookups by name, whatever its letter case, in the read structures, to change them.
template <class Objects>
auto& Named(Objects& objects, const std::string& name) {
    for (auto& object : objects)
        if (SameText(object.name, name)) return object;
    throw std::runtime_error("nothing named " + name);
}
template <class Model>
auto& TableOf(Model& model, const std::string& name) { return Named(model.tables, name); }
template <class Model>
auto& ColumnOf(Model& model, const std::string& table, const std::string& name) {
    return Named(TableOf(model, table).columns, name);
}
template <class Model>
auto& IndexOf(Model& model, const std::string& table, const std::string& name) {
    return Named(TableOf(model, table).indexes, name);
}
// The index the builder named itself: the one on two columns.
template <class Model>
auto& UnnamedIndex(Model& model) {
    for (auto& index : TableOf(model, "customer").indexes)
        if (index.columns.size() == 2) return index;
    throw std::runtime_error("no index on two columns");
}
CModelCheck& CheckOf(CModel& model, const std::string& text) {
    for (CModelCheck& check : model.checks)
        if (check.text == text) return check;
    throw std::runtime_error("no check " + text);
}

// ---------------------------------------------------------------------------
// Read back

class ReadBackTest : public ::testing::Test {
protected:
    void SetUp() override {
        AfxSetResourceString(kHostTextProductName, "reader test");
        m_model = Read([&](CVrnAPI& b) { BuildSales(b, {}, &m_keys); });
    }
    void TearDown() override { AfxSetResourceString(kHostTextProductName, nullptr); }

    CSalesKeys m_keys;
    CModel m_model;
};

// Several fields compared at once, the read fields against what the builder
// was told, both printed on a failure.
using std::make_tuple;

TEST_F(ReadBackTest, TheModelItselfAndItsTablesWithTheirStorage) {
    const CModel& m = m_model;
    EXPECT_EQ(make_tuple(m.formatVersion, m.hasPlatform, m.platform, m.product),
              make_tuple(CVrnFile::kFormatVersion, true, 41, "reader test"));
    EXPECT_EQ(m.created.size(), 19u);  // YYYY-MM-DD HH:MM:SS
    ASSERT_EQ(m.tables.size(), 2u);
    const CModelTable& customer = TableOf(m, "customer");
    EXPECT_EQ(make_tuple(customer.key, customer.owner, customer.definition, customer.storageSpace),
              make_tuple(m_keys.customer, "sales", "who buys", "PRIMARY"));
    EXPECT_EQ(customer.storageParams.at(2), 8);  // code 16 fills slot 3
    EXPECT_EQ(customer.storageParams.at(0), -1);
    EXPECT_EQ(Named(customer.properties, "Logging").value, "LOGGING");
}

TEST_F(ReadBackTest, ColumnsInOrderWithEveryField) {
    Strings names;
    for (const CModelColumn& column : TableOf(m_model, "customer").columns) names.push_back(column.name);
    EXPECT_EQ(names, (Strings{"id", "name", "zip", "balance"}));
    const CModelColumn& id = ColumnOf(m_model, "customer", "id");
    EXPECT_EQ(make_tuple(id.datatype, id.nullable, id.inPrimaryKey, id.identity), make_tuple("INT", false, true, true));
    const CModelColumn& name = ColumnOf(m_model, "customer", "name");
    EXPECT_EQ(make_tuple(name.datatype, name.width, name.attributeName, name.definition, name.checkText),
              make_tuple("VAN", 80, "name", "as printed on invoices", "len(name) > 0"));
    EXPECT_EQ(make_tuple(name.attributeNo, name.inPrimaryKey, name.identity), make_tuple(2u, false, false));
    EXPECT_NE(name.attributeId, 0u);
    const CModelColumn& zip = ColumnOf(m_model, "customer", "zip");
    EXPECT_EQ(make_tuple(zip.userDatatype, zip.nullable, zip.defaultText), make_tuple("zipcode", true, "'00000'"));
    const CModelColumn& balance = ColumnOf(m_model, "customer", "balance");
    EXPECT_EQ(make_tuple(balance.datatype, balance.width, balance.scale, balance.defaultId),
              make_tuple("NUM", 10, 2, m_keys.zero));
}

TEST_F(ReadBackTest, KeysAndIndexesWithColumnsAndSortOrder) {
    const CModelTable& customer = TableOf(m_model, "customer");
    ASSERT_EQ(customer.primaryKey, 0);
    ASSERT_EQ(customer.indexes.size(), 4u);
    const CModelIndex& primary = customer.indexes.at(0);
    EXPECT_EQ(make_tuple(primary.keyType, primary.name), make_tuple('P', "pk_customer"));
    ASSERT_EQ(primary.columns.size(), 1u);
    EXPECT_EQ(primary.columns.at(0).name, "id");
    const CModelIndex& byName = customer.indexes.at(1);
    EXPECT_EQ(make_tuple(byName.name, byName.keyType, byName.unique, byName.clustered, byName.storageSpace),
              make_tuple("ux_customer_name", 'A', true, false, "INDEXES"));
    EXPECT_EQ(byName.storageParams.at(0), 12);  // code 41 fills slot 1
    ASSERT_EQ(byName.columns.size(), 1u);
    EXPECT_TRUE(byName.columns.at(0).descending);
    const CModelIndex& byZip = customer.indexes.at(2);
    EXPECT_EQ(make_tuple(byZip.keyType, byZip.unique, byZip.clustered, byZip.columns.at(0).descending),
              make_tuple('I', false, true, false));
    ASSERT_EQ(byZip.partitions.size(), 1u);
    const CModelPartition& partition = m_model.partitions[byZip.partitions.at(0)];
    EXPECT_EQ(make_tuple(partition.name, partition.ofIndex), make_tuple("ip_zip", true));
}

TEST_F(ReadBackTest, ForeignKeysWithPairsActionsAndTheCopiesTheyUse) {
    ASSERT_EQ(m_model.foreignKeys.size(), 2u);
    const CModelForeignKey& paidBy = m_model.foreignKeys.at(0);
    EXPECT_EQ(make_tuple(paidBy.name, m_model.tables[paidBy.parentTable].name, m_model.tables[paidBy.childTable].name),
              make_tuple("fk_paid_by", "customer", "invoice"));
    EXPECT_EQ(make_tuple(paidBy.identifying, paidBy.optional, paidBy.onDelete, paidBy.onUpdate),
              make_tuple(false, true, 'C', 'R'));
    ASSERT_EQ(paidBy.pairs.size(), 1u);
    EXPECT_EQ(make_tuple(paidBy.pairs.at(0).parentColumn, paidBy.pairs.at(0).childColumn),
              make_tuple("id", "payer_id"));
    EXPECT_EQ(m_model.foreignKeys.at(1).onDelete, 'N');

    // The physical table has payer_id once; the second relationship uses a
    // copy of it, and the column lists both relationships.
    const CModelTable& invoice = TableOf(m_model, "invoice");
    EXPECT_EQ(invoice.columns.size(), 3u);
    ASSERT_EQ(invoice.copies.size(), 1u);
    const CModelColumn& payer = ColumnOf(m_model, "invoice", "payer_id");
    EXPECT_EQ(payer.foreignKeys, (std::vector<int>{0, 1}));
    EXPECT_EQ(make_tuple(invoice.copies.at(0).isCopy, invoice.copies.at(0).copyOf, invoice.copies.at(0).copyFor),
              make_tuple(true, payer.attributeNo, 1));
    EXPECT_EQ(invoice.foreignKeys, (std::vector<int>{0, 1}));
    EXPECT_EQ(TableOf(m_model, "customer").referencedBy, (std::vector<int>{0, 1}));
}

TEST_F(ReadBackTest, ChecksDefaultsRulesUserDatatypesAndBindings) {
    ASSERT_EQ(m_model.checks.size(), 2u);
    EXPECT_EQ(make_tuple(m_model.checks.at(0).name, m_model.checks.at(0).text, m_model.checks.at(0).column),
              make_tuple("ck_total", "total >= 0", "total"));
    EXPECT_EQ(m_model.checks.at(1).column, "");
    EXPECT_EQ(TableOf(m_model, "invoice").checks, (std::vector<int>{0, 1}));
    ASSERT_EQ(m_model.defaults.size(), 1u);
    EXPECT_EQ(make_tuple(m_model.defaults.at(0).name, m_model.defaults.at(0).text), make_tuple("df_zero", "0"));
    ASSERT_EQ(m_model.rules.size(), 1u);
    EXPECT_EQ(m_model.rules.at(0).text, "@v > 0");
    ASSERT_EQ(m_model.userDatatypes.size(), 2u);
    const CModelUserDatatype& zipcode = Named(m_model.userDatatypes, "zipcode");
    EXPECT_EQ(make_tuple(zipcode.datatype, zipcode.length, zipcode.ruleId), make_tuple("CH", 5, m_keys.positive));
}

TEST_F(ReadBackTest, CodeObjectsWithTheirWholeTextAndPartitions) {
    const CModel& m = m_model;
    ASSERT_EQ(m.triggers.size(), 1u);
    EXPECT_EQ(make_tuple(m.triggers.at(0).name, m.triggers.at(0).kind, m.tables[m.triggers.at(0).table].name,
                         m.triggers.at(0).text),
              make_tuple("tr_invoice", 2, "invoice", "create trigger tr_invoice ..."));
    ASSERT_EQ(m.procedures.size(), 1u);
    EXPECT_EQ(make_tuple(m.procedures.at(0).owner, m.procedures.at(0).text),
              make_tuple("sales", "create procedure p_close\nas ..."));
    ASSERT_EQ(m.packages.size(), 1u);
    EXPECT_EQ(make_tuple(m.packages.at(0).text, m.packages.at(0).body),
              make_tuple("package pk_billing is end;", "package body pk_billing is end;"));
    ASSERT_EQ(m.storageObjects.size(), 1u);
    EXPECT_EQ(make_tuple(m.storageObjects.at(0).kind, m.storageObjects.at(0).text),
              make_tuple(1, "CREATE STOGROUP SG1"));
    ASSERT_EQ(m.referencedObjects.size(), 1u);
    EXPECT_EQ(m.referencedObjects.at(0).values, (std::array<std::uint32_t, 4>{1, 2, 3, 4}));
    EXPECT_NE(m.referencedObjects.at(0).metaTableKey, 0u);

    ASSERT_EQ(m.partitions.size(), 2u);
    const CModelTable& customer = TableOf(m, "customer");
    ASSERT_EQ(customer.partitions.size(), 1u);  // the index's partition is listed by the index
    const CModelPartition& partition = m.partitions[customer.partitions.at(0)];
    EXPECT_EQ(make_tuple(partition.name, partition.ofIndex, partition.key),
              make_tuple("p_old", false, m_keys.oldPartition));
    ASSERT_EQ(partition.properties.size(), 1u);
    EXPECT_EQ(make_tuple(partition.properties.at(0).name, partition.properties.at(0).text),
              make_tuple("Partition Limit", "100"));
}

TEST_F(ReadBackTest, AModelSavedAgainReadsAsItWasLastSaved) {
    // Every save writes the rows again: the last row of each object counts,
    // and nothing is read twice.
    CScratchDir dir;
    const CModel model = Read([&](CVrnAPI& b) {
        CSalesKeys keys;
        BuildSales(b, {}, &keys);
        b.SaveToFile(dir.File("first.vrn").c_str());
        const unsigned long name = b.FindAttribute(keys.customer, "name");
        b.SetAttributeProperty(name, 6, 99);  // width
        b.SetAttributeProperty(name, 8, 1);   // nullable
    });
    const CModelTable& customer = TableOf(model, "customer");
    const CModelColumn& name = ColumnOf(model, "customer", "name");
    EXPECT_EQ(make_tuple(name.width, name.nullable), make_tuple(99, true));
    ASSERT_EQ(customer.indexes.size(), 4u);
    EXPECT_EQ(make_tuple(customer.columns.size(), customer.indexes.at(1).columns.size(), model.checks.size(),
                         TableOf(model, "invoice").checks.size(), TableOf(model, "invoice").copies.size()),
              make_tuple(4u, 1u, 2u, 2u, 1u));
    EXPECT_EQ(make_tuple(model.triggers.size(), model.procedures.size(), model.packages.size(),
                         model.foreignKeys.size(), model.foreignKeys.at(0).pairs.size()),
              make_tuple(1u, 1u, 1u, 2u, 1u));
}

TEST(ReadBackOldFileTest, AVersion1FileKeepsItsPackages) {
    CScratchDir dir;
    const std::string path = dir.File("old.vrn");
    {
        CVrnAPI builder;
        BuildSales(builder, {});
        builder.SaveToFile(path.c_str());
    }
    ExecOnFile(path, "ALTER TABLE DbPackage RENAME COLUMN header_text TO spec_text; "
                     "UPDATE FileInfo SET value = '1' WHERE name = 'format_version'");
    CModel model;
    std::string error;
    ASSERT_TRUE(ReadModelFile(path, model, error)) << error;
    EXPECT_EQ(model.formatVersion, 1);
    ASSERT_EQ(model.packages.size(), 1u);
    EXPECT_EQ(model.packages.at(0).text, "package pk_billing is end;");
}

// ---------------------------------------------------------------------------
// Equal models: the model holds every kind of object (the read-back tests
// above show it), so an equality below compares them all.

TEST(CompareEqualTest, TheSameModelBuiltInAnotherOrderIsEqual) {
    const CModel reversed = ReadSales({true, false});
    // Built the other way round: other keys, other row order, another made-up
    // index name, the shared column's copy on the other foreign key.
    ASSERT_EQ(reversed.tables.at(0).name, "invoice");
    ASSERT_NE(reversed.tables.at(1).key, Sales().tables.at(0).key);
    ASSERT_EQ(reversed.foreignKeys.at(0).name, "fk_billed_to");
    ASSERT_NE(UnnamedIndex(reversed).name, UnnamedIndex(Sales()).name);
    ASSERT_EQ(reversed.userDatatypes[0].name, "zipcode");
    EXPECT_EQ(Lines(CompareModels(Sales(), reversed)), Strings());
    EXPECT_EQ(Lines(CompareModels(reversed, Sales())), Strings());
}

TEST(CompareEqualTest, LetterCaseOfNamesDoesNotMatter) {
    const CModel upper = ReadSales({false, true});
    ASSERT_EQ(upper.tables.at(0).name, "CUSTOMER");
    ASSERT_EQ(upper.tables.at(0).columns.at(0).name, "ID");
    EXPECT_EQ(Lines(CompareModels(Sales(), upper)), Strings());
    const CModel both = ReadSales({true, true});
    EXPECT_EQ(Lines(CompareModels(Sales(), both)), Strings());
}

// A model holds what its builder was given, empty names among them (a
// catalog reader's slip, or a damaged file): such a model still equals
// itself, object for object.
TEST(CompareEqualTest, ObjectsWithoutANameEqualThemselves) {
    CModel model = Sales();
    ColumnOf(model, "customer", "zip").name = "";
    for (auto* named : {&model.defaults.at(0), &model.rules.at(0)}) named->name = "";
    model.userDatatypes.at(0).name = "";
    ASSERT_FALSE(model.partitions.empty());
    model.partitions.at(0).name = "";
    EXPECT_EQ(Lines(CompareModels(model, model)), Strings());
    // And an unnamed column is still told from one that is gone.
    CModel without = model;
    std::vector<CModelColumn>& columns = TableOf(without, "customer").columns;
    columns.erase(std::find_if(columns.begin(), columns.end(), [](const CModelColumn& c) { return c.name.empty(); }));
    EXPECT_EQ(Lines(CompareModels(model, without)), Strings{"Dropped|table sales.customer column |||"});
}

TEST(CompareEqualTest, LayoutOfTextsAndPaddingOfOwnersDoNotMatter) {
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  for (CModelTable& table : m.tables) table.owner += "   ";  // as some catalogs pad them
                  Named(m.procedures, "p_close").text = "create procedure p_close   \r\nas ...\r\n\r\n";
                  Named(m.packages, "pk_billing").body += " \n";
                  CheckOf(m, "total >= 0").text = "  total\n  >=\t0 ";
                  ColumnOf(m, "customer", "zip").defaultText = " '00000' ";
                  Named(m.storageObjects, "SG1").owner = "SYS ";
                  IndexOf(m, "customer", "ux_customer_name").storageSpace = "indexes";
              }),
              Strings());
}

TEST(CompareEqualTest, IdentifiersAndNumbersOfTheFileAreNotCompared) {
    // Renumbered columns with the partition column property following them,
    // other ids for the default and rule with the bindings following them,
    // and copies of migrated columns that differ: all the same model.
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelTable& customer = TableOf(m, "customer");
                  for (CModelColumn& column : customer.columns) column.attributeNo += 10;
                  for (CModelProperty& property : customer.properties)
                      if (property.propertyNo == 7) property.text = std::to_string(std::stoi(property.text) + 10);
                  for (CModelNamedText& named : m.defaults) named.id += 100;
                  for (CModelNamedText& named : m.rules) named.id += 100;
                  for (CModelUserDatatype& type : m.userDatatypes)
                      if (type.ruleId) type.ruleId += 100;
                  ColumnOf(m, "customer", "balance").defaultId += 100;
                  CModelTable& invoice = TableOf(m, "invoice");
                  ASSERT_EQ(invoice.copies.size(), 1u);
                  invoice.copies.at(0).width = 99;
                  invoice.copies.at(0).name = "other";
              }),
              Strings());
}

// ---------------------------------------------------------------------------
// Tables and columns

TEST(CompareTablesTest, AddedAndDroppedTablesAreOneChangeEach) {
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelTable table;
                  table.owner = "sales";
                  table.name = "note";
                  table.columns.push_back(CModelColumn());
                  m.tables.push_back(table);
              }),
              Strings{"Added|table sales.note|||"});
    // Without invoice, its keys, checks and its trigger go too: the keys and
    // checks are the table's and are not listed again, the trigger is an
    // object of the model.
    CModel without = Sales();
    without.tables.pop_back();
    without.foreignKeys.clear();
    without.checks.clear();
    without.triggers.clear();
    TableOf(without, "customer").referencedBy.clear();
    EXPECT_EQ(Lines(CompareModels(Sales(), without)),
              (Strings{"Dropped|table sales.invoice|||", "Dropped|trigger sales.tr_invoice|||"}));
    const std::vector<CModelChange> added = CompareModels(without, Sales());
    EXPECT_EQ(Lines(added), (Strings{"Added|table sales.invoice|||", "Added|trigger sales.tr_invoice|||"}));
    ASSERT_EQ(added.size(), 2u);
    EXPECT_EQ(added[0].table, "sales.invoice");
    EXPECT_EQ(added[1].table, "");
    // A table in another owner is another table.
    EXPECT_EQ(ChangesAfter([](CModel& m) { TableOf(m, "invoice").owner = "billing"; }),
              (Strings{"Dropped|table sales.invoice|||", "Added|table billing.invoice|||",
                       "Changed|trigger sales.tr_invoice|table|sales.invoice|billing.invoice"}));
}

TEST(CompareTablesTest, KeysAndChecksOfNoTableAreComparedApart) {
    // A file may name a child table it does not hold: such keys and checks
    // are compared with each other, after the tables.
    CModel loose = Sales();
    Named(loose.foreignKeys, "fk_billed_to").childTable = -1;
    CheckOf(loose, "no > 0").table = -1;
    TableOf(loose, "invoice").foreignKeys = {0};
    TableOf(loose, "invoice").checks = {0};
    ASSERT_EQ(loose.foreignKeys.at(0).name, "fk_paid_by");
    ASSERT_EQ(loose.checks.at(0).name, "ck_total");
    EXPECT_EQ(Lines(CompareModels(Sales(), loose)),
              (Strings{"Dropped|foreign key fk_billed_to of sales.invoice|||",
                       "Dropped|check constraint (no > 0) of sales.invoice|||", "Added|foreign key fk_billed_to|||",
                       "Added|check constraint (no > 0)|||"}));
    CModel changed = loose;
    Named(changed.foreignKeys, "fk_billed_to").onUpdate = 'C';
    EXPECT_EQ(Lines(CompareModels(loose, changed)), Strings{"Changed|foreign key fk_billed_to|on update|none|cascade"});
}

TEST(CompareTablesTest, EachFieldOfAColumnIsAChangeOfItsOwn) {
    const std::string balance = "table sales.customer column balance";
    const struct {
        std::function<void(CModelColumn&)> edit;
        std::string expected;
    } cases[] = {
        {[](CModelColumn& c) { c.datatype = "DC"; }, "datatype|NUM|DC"},
        {[](CModelColumn& c) { c.width = 12; }, "width|10|12"},
        {[](CModelColumn& c) { c.scale = 4; }, "scale|2|4"},
        {[](CModelColumn& c) { c.nullable = false; }, "nullable|yes|no"},
        {[](CModelColumn& c) { c.defaultText = "1"; }, "default||1"},
        {[](CModelColumn& c) { c.identity = true; }, "identity|no|yes"},
        {[](CModelColumn& c) { c.userDatatype = "Flag"; }, "user datatype||Flag"},
        {[](CModelColumn& c) { c.defaultId = 0; }, "bound default|df_zero|"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ChangesAfter([&](CModel& m) { c.edit(ColumnOf(m, "customer", "balance")); }),
                  Strings{"Changed|" + balance + "|" + c.expected})
            << c.expected;
    // An id that names no rule binds none.
    EXPECT_EQ(ChangesAfter([](CModel& m) { ColumnOf(m, "customer", "balance").ruleId = 12345; }), Strings());
    // A rule bound by name, whatever its id in either file.
    EXPECT_EQ(ChangesAfter([](CModel& m) { ColumnOf(m, "customer", "balance").ruleId = m.rules.at(0).id; }),
              Strings{"Changed|" + balance + "|bound rule||r_positive"});
    EXPECT_EQ(ChangesAfter([](CModel& m) { ColumnOf(m, "customer", "zip").userDatatype = "ZIPCODE"; }), Strings());
    EXPECT_EQ(ChangesAfter([](CModel& m) { ColumnOf(m, "customer", "zip").defaultText = "'00001'"; }),
              Strings{"Changed|table sales.customer column zip|default|'00000'|'00001'"});
}

TEST(CompareTablesTest, ColumnsAddedDroppedAndMoved) {
    // Added columns move no other: only they are listed, in their order.
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelTable& customer = TableOf(m, "customer");
                  CModelColumn note = customer.columns.at(0);
                  note.name = "note";
                  customer.columns.insert(customer.columns.begin() + 1, note);
                  note.name = "memo";
                  customer.columns.push_back(note);
              }),
              (Strings{"Added|table sales.customer column note|||", "Added|table sales.customer column memo|||"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelTable& customer = TableOf(m, "customer");
                  customer.columns.erase(customer.columns.begin());
              }),
              Strings{"Dropped|table sales.customer column id|||"});
    // id, name, zip, balance -> name, zip, balance, id: id alone moved, from 1 to 4.
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  std::vector<CModelColumn>& columns = TableOf(m, "customer").columns;
                  std::rotate(columns.begin(), columns.begin() + 1, columns.end());
              }),
              Strings{"Changed|table sales.customer column id|position|1|4"});
    // A renamed column is another column.
    EXPECT_EQ(ChangesAfter([](CModel& m) { ColumnOf(m, "invoice", "total").name = "amount"; }),
              (Strings{"Dropped|table sales.invoice column total|||", "Added|table sales.invoice column amount|||"}));
}

// ---------------------------------------------------------------------------
// Keys and indexes

TEST(CompareKeysTest, ThePrimaryKeyByItsColumnsAndClustering) {
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelIndex& key = IndexOf(m, "customer", "pk_customer");
                  key.columns.push_back({2, "name", false});
                  key.clustered = true;
                  key.name = "pk_other";  // its name is not compared
              }),
              (Strings{"Changed|table sales.customer primary key|columns|id|id, name",
                       "Changed|table sales.customer primary key|clustered|no|yes"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelTable& invoice = TableOf(m, "invoice");
                  invoice.indexes.erase(invoice.indexes.begin());
                  invoice.primaryKey = -1;
              }),
              Strings{"Dropped|table sales.invoice primary key|||"});
}

TEST(CompareKeysTest, IndexesByNameElseByWhatTheyAre) {
    const std::string byName = "table sales.customer index ux_customer_name";
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelIndex& index = IndexOf(m, "customer", "ux_customer_name");
                  index.unique = false;
                  index.clustered = true;
                  index.columns.at(0).descending = false;
              }),
              (Strings{"Changed|" + byName + "|unique|yes|no", "Changed|" + byName + "|clustered|no|yes",
                       "Changed|" + byName + "|columns|name DESC|name"}));
    // Unnamed: matched by uniqueness and columns, so another order of its
    // columns is another index.
    const std::string unnamed = "table sales.customer index " + UnnamedIndex(Sales()).name;
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelIndex& index = UnnamedIndex(m);
                  index.name = "customerIX9";
                  std::swap(index.columns.at(0), index.columns.at(1));
              }),
              (Strings{"Dropped|" + unnamed + "|||", "Added|table sales.customer index customerIX9|||"}));
    // Made unique, another index too.
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelIndex& index = UnnamedIndex(m);
                  index.name = "customerIX9";
                  index.unique = true;
              }),
              (Strings{"Dropped|" + unnamed + "|||", "Added|table sales.customer index customerIX9|||"}));
    // Renamed with the same columns: the same index.
    EXPECT_EQ(ChangesAfter([](CModel& m) { IndexOf(m, "customer", "ix_customer_zip").name = "ix_zip"; }), Strings());
    // Two indexes whose names match are one index, whatever their columns.
    EXPECT_EQ(ChangesAfter([](CModel& m) { IndexOf(m, "customer", "ix_customer_zip").columns.at(0).name = "balance"; }),
              Strings{"Changed|table sales.customer index ix_customer_zip|columns|zip|balance"});
}

TEST(CompareKeysTest, IndexStorageAndProperties) {
    const std::string byName = "table sales.customer index ux_customer_name";
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelIndex& index = IndexOf(m, "customer", "ux_customer_name");
                  index.storageSpace = "OTHER";
                  index.storageParams.at(0) = 20;
                  index.storageParams.at(4) = 3;
                  CModelProperty compressed;
                  compressed.propertyNo = 1;
                  compressed.valueNo = 3;
                  compressed.name = "Compression";
                  compressed.value = "COMPRESS";
                  index.properties.push_back(compressed);
              }),
              (Strings{"Changed|" + byName + "|storage space|INDEXES|OTHER",
                       "Changed|" + byName + "|storage params|1=12|1=20, 5=3",
                       "Changed|" + byName + "|property Compression||COMPRESS"}));
}

// ---------------------------------------------------------------------------
// Foreign keys and checks

TEST(CompareForeignKeysTest, MatchedByTablesAndColumnsNotByName) {
    const std::string paidBy = "foreign key fk_paid_by of sales.invoice";
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelForeignKey& key = Named(m.foreignKeys, "fk_paid_by");
                  key.onDelete = 'S';
                  key.onUpdate = 'N';
                  key.identifying = true;
                  key.optional = false;
              }),
              (Strings{"Changed|" + paidBy + "|identifying|no|yes", "Changed|" + paidBy + "|optional|yes|no",
                       "Changed|" + paidBy + "|on delete|cascade|set null",
                       "Changed|" + paidBy + "|on update|restrict|none"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  Named(m.foreignKeys, "fk_paid_by").name = "FK_PAID_BY";
                  Named(m.foreignKeys, "fk_billed_to").name = "fk_billed";
              }),
              Strings{"Changed|foreign key fk_billed_to of sales.invoice|name|fk_billed_to|fk_billed"});
    EXPECT_EQ(ChangesAfter([](CModel& m) { Named(m.foreignKeys, "fk_paid_by").pairs.at(0).parentColumn = "name"; }),
              Strings{"Changed|" + paidBy + "|parent columns|id|name"});
    // Other child columns, another key.
    EXPECT_EQ(ChangesAfter([](CModel& m) { Named(m.foreignKeys, "fk_billed_to").pairs.at(0).childColumn = "total"; }),
              (Strings{"Dropped|foreign key fk_billed_to of sales.invoice|||",
                       "Added|foreign key fk_billed_to of sales.invoice|||"}));
    // Another parent table, another key.
    EXPECT_EQ(ChangesAfter([](CModel& m) { Named(m.foreignKeys, "fk_billed_to").parentTable = 1; }),
              (Strings{"Dropped|foreign key fk_billed_to of sales.invoice|||",
                       "Added|foreign key fk_billed_to of sales.invoice|||"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) { TableOf(m, "invoice").foreignKeys.clear(); }),
              (Strings{"Dropped|" + paidBy + "|||", "Dropped|foreign key fk_billed_to of sales.invoice|||"}));
    // A name that goes is a change of the key; an unnamed key is named by its columns and parent.
    EXPECT_EQ(ChangesAfter([](CModel& m) { Named(m.foreignKeys, "fk_billed_to").name.clear(); }),
              Strings{"Changed|foreign key fk_billed_to of sales.invoice|name|fk_billed_to|"});
    CModel unnamed = Sales();
    Named(unnamed.foreignKeys, "fk_billed_to").name.clear();
    const std::vector<CModelChange> back = CompareModels(unnamed, Sales());
    ASSERT_EQ(back.size(), 1u);
    EXPECT_EQ(back[0].object, "foreign key (payer_id) of sales.invoice to sales.customer");
}

TEST(CompareChecksTest, MatchedByColumnAndTextWithItsSpacingCollapsed) {
    EXPECT_EQ(ChangesAfter([](CModel& m) { CheckOf(m, "total >= 0").name = "ck_amount"; }),
              Strings{"Changed|check constraint ck_total of sales.invoice column total|name|ck_total|ck_amount"});
    EXPECT_EQ(ChangesAfter([](CModel& m) { CheckOf(m, "no > 0").text = "no >= 0"; }),
              (Strings{"Dropped|check constraint (no > 0) of sales.invoice|||",
                       "Added|check constraint (no >= 0) of sales.invoice|||"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) { CheckOf(m, "total >= 0").column = "no"; }),
              (Strings{"Dropped|check constraint ck_total of sales.invoice column total|||",
                       "Added|check constraint ck_total of sales.invoice column no|||"}));
    // Case counts in a check's text: it may hold literals.
    EXPECT_EQ(ChangesAfter([](CModel& m) { CheckOf(m, "no > 0").text = "NO > 0"; }).size(), 2u);
}

// ---------------------------------------------------------------------------
// The catalogue, code, partitions, storage

TEST(CompareCatalogTest, UserDatatypesDefaultsAndRulesByName) {
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelUserDatatype& zip = Named(m.userDatatypes, "zipcode");
                  zip.datatype = "VAR";
                  zip.length = 9;
                  zip.scale = 1;
                  zip.ruleId = 0;
                  zip.defaultId = m.defaults.at(0).id;
                  Named(m.defaults, "df_zero").text = "00";
                  Named(m.rules, "r_positive").text = "@v >= 0";
              }),
              (Strings{"Changed|default df_zero|text|0|00", "Changed|rule r_positive|text|@v > 0|@v >= 0",
                       "Changed|user datatype zipcode|datatype|CH|VAR",
                       "Changed|user datatype zipcode|length|5|9", "Changed|user datatype zipcode|scale|-1|1",
                       "Changed|user datatype zipcode|bound default||df_zero",
                       "Changed|user datatype zipcode|bound rule|r_positive|"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  m.userDatatypes.erase(m.userDatatypes.begin());
                  m.rules.push_back({77, "r_other", "1 = 1"});
              }),
              (Strings{"Added|rule r_other|||", "Dropped|user datatype flag|||"}));
}

TEST(CompareCodeTest, TriggersProceduresAndPackagesByOwnerAndName) {
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelCode& trigger = Named(m.triggers, "tr_invoice");
                  trigger.kind = 1;
                  trigger.table = 0;
                  trigger.text = "create trigger tr_invoice .";
                  Named(m.procedures, "p_close").kind = 2;
                  Named(m.packages, "pk_billing").body = "package body pk_billing is begin null; end;";
              }),
              (Strings{
                  "Changed|trigger sales.tr_invoice|table|sales.invoice|sales.customer",
                  "Changed|trigger sales.tr_invoice|kind|after|before",
                  "Changed|trigger sales.tr_invoice|text|create trigger tr_invoice ...|create trigger tr_invoice .",
                  "Changed|procedure sales.p_close|kind|procedure|function",
                  "Changed|package sales.pk_billing|body|package body pk_billing is end;|package body pk_billing is "
                  "begin null; end;"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  Named(m.procedures, "p_close").owner = "dbo";
                  Named(m.packages, "pk_billing").text = "package pk_billing is x number; end;";
              }),
              (Strings{"Dropped|procedure sales.p_close|||", "Added|procedure dbo.p_close|||",
                       "Changed|package sales.pk_billing|text|package pk_billing is end;|package "
                       "pk_billing is x number; end;"}));
}

TEST(ComparePartitionsTest, PartitionsOfTablesAndIndexesByName) {
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  Named(m.partitions, "p_old").properties.at(0).text = "200";
                  Named(m.partitions, "ip_zip").name = "ip_post";
              }),
              (Strings{"Dropped|table sales.customer index ix_customer_zip partition ip_zip|||",
                       "Added|table sales.customer index ix_customer_zip partition ip_post|||",
                       "Changed|table sales.customer partition p_old|property Partition Limit|Limit "
                       "Values 100|Limit Values 200"}));
    EXPECT_EQ(ChangesAfter([](CModel& m) { Named(m.partitions, "P_OLD").name = "P_OLD"; }), Strings());
}

TEST(CompareStorageTest, TableStorageAndPropertiesAsSets) {
    const std::string customer = "table sales.customer";
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelTable& table = TableOf(m, "customer");
                  table.storageSpace = "USERDATA";
                  table.storageParams.at(2) = -1;
                  for (CModelProperty& property : table.properties)
                      if (property.propertyNo == 3) property.valueNo = 6, property.value = "NOLOGGING";
              }),
              (Strings{"Changed|" + customer + "|storage space|PRIMARY|USERDATA",
                       "Changed|" + customer + "|storage params|3=8|",
                       "Changed|" + customer + "|property Logging|LOGGING|NOLOGGING"}));
    // Sets: order and repetition do not count; a column named by number is that column.
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  std::vector<CModelProperty>& properties = TableOf(m, "customer").properties;
                  std::reverse(properties.begin(), properties.end());
                  properties.push_back(properties.front());
              }),
              Strings());
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  for (CModelProperty& property : TableOf(m, "customer").properties)
                      if (property.propertyNo == 7) property.text = "2";
              }),
              Strings{"Changed|" + customer +
                      "|property Partition Column|Column Number BALANCE [1]|Column Number NAME [1]"});
}

TEST(CompareStorageObjectsTest, ByKindAndName) {
    EXPECT_EQ(ChangesAfter([](CModel& m) {
                  CModelStorageObject& group = Named(m.storageObjects, "SG1");
                  group.owner = "other";
                  group.text = "CREATE STOGROUP SG1 VOLUMES (*)";
                  // Of another kind, so another object, though its name is the same.
                  m.storageObjects.insert(m.storageObjects.begin(), {99, 3, "sys", "sg1", "CREATE TABLESPACE sg1"});
              }),
              (Strings{"Changed|storage group SG1|owner|sys|other",
                       "Changed|storage group SG1|text|CREATE STOGROUP SG1|CREATE STOGROUP SG1 VOLUMES (*)",
                       "Added|table space sg1|||"}));
}

// ---------------------------------------------------------------------------
// Order, description and switches

TEST(CompareOrderTest, TablesInBeforesOrderThenAddedWithEachTablesObjectsTogether) {
    CModel after = Sales();
    CModelTable added;
    added.name = "audit";
    after.tables.insert(after.tables.begin(), added);
    // Indexes into tables moved by one.
    for (CModelForeignKey& key : after.foreignKeys) ++key.parentTable, ++key.childTable;
    for (CModelCheck& check : after.checks) ++check.table;
    for (CModelCode& trigger : after.triggers) ++trigger.table;
    Named(after.procedures, "p_close").kind = 2;
    CheckOf(after, "no > 0").name = "ck_no";
    Named(after.foreignKeys, "fk_paid_by").onDelete = 'N';
    ColumnOf(after, "invoice", "total").width = 14;
    TableOf(after, "invoice").storageSpace = "DATA";
    Named(after.partitions, "p_old").properties.at(0).text = "1";
    ColumnOf(after, "customer", "name").width = 90;
    IndexOf(after, "customer", "ux_customer_name").clustered = true;
    EXPECT_EQ(Lines(CompareModels(Sales(), after)), (Strings{
                  "Changed|table sales.customer column name|width|80|90",
                  "Changed|table sales.customer index ux_customer_name|clustered|no|yes",
                  "Changed|table sales.customer partition p_old|property Partition Limit|Limit Values 100|Limit Values 1",
                  "Changed|table sales.invoice|storage space||DATA",
                  "Changed|table sales.invoice column total|width|12|14",
                  "Changed|foreign key fk_paid_by of sales.invoice|on delete|cascade|none",
                  "Changed|check constraint (no > 0) of sales.invoice|name||ck_no",
                  "Added|table audit|||",
                  "Changed|procedure sales.p_close|kind|procedure|function",
              }));
    // Every change within a table says so.
    for (const CModelChange& change : CompareModels(Sales(), after)) {
        if (change.object.find("sales.invoice") != std::string::npos) {
            EXPECT_EQ(change.table, "sales.invoice");
        }
        if (change.object.find("procedure") != std::string::npos) {
            EXPECT_EQ(change.table, "");
        }
    }
}

TEST(CompareDescribeTest, OneReadableLinePerChange) {
    const std::vector<CModelChange> changes = {
        {EModelChange::Changed, "table ORDERS column QTY", "ORDERS", "width", "10", "12"},
        {EModelChange::Added, "table ORDERS column NOTE", "ORDERS", "", "", ""},
        {EModelChange::Dropped, "table ORDERS", "ORDERS", "", "", ""},
        {EModelChange::Added, "foreign key FK_X of ORDERS", "ORDERS", "", "", ""},
        {EModelChange::Changed, "table ORDERS column QTY", "ORDERS", "default", "", "0"},
        {EModelChange::Changed, "procedure dbo.p", "", "text", "begin\nend", "begin\n  null;\nend"},
        {EModelChange::Changed, "procedure dbo.p", "", "text", "x", std::string(61, 'y')},
    };
    Strings lines;
    for (const CModelChange& change : changes) lines.push_back(change.Describe());
    EXPECT_EQ(lines, (Strings{
                         "table ORDERS column QTY: width 10 -> 12",
                         "table ORDERS: column NOTE added",
                         "table ORDERS dropped",
                         "foreign key FK_X of ORDERS added",
                         "table ORDERS column QTY: default (none) -> 0",
                         "procedure dbo.p: text changed",
                         "procedure dbo.p: text changed",
                     }));
}

TEST(CompareOptionsTest, EachSwitchLeavesOutItsOwnKindOnly) {
    const struct {
        const char* kind;
        bool CCompareOptions::*option;
        std::function<void(CModel&)> edit;
    } cases[] = {
        {"columns", &CCompareOptions::columns, [](CModel& m) { ColumnOf(m, "customer", "name").width = 99; }},
        {"columns (position)", &CCompareOptions::columns,
         [](CModel& m) {
             std::vector<CModelColumn>& columns = TableOf(m, "invoice").columns;
             std::swap(columns.at(0), columns.at(2));
         }},
        {"keys", &CCompareOptions::keysAndIndexes,
         [](CModel& m) { IndexOf(m, "customer", "ux_customer_name").unique = false; }},
        {"primary keys", &CCompareOptions::keysAndIndexes,
         [](CModel& m) { IndexOf(m, "customer", "pk_customer").clustered = true; }},
        {"dropped primary key", &CCompareOptions::keysAndIndexes,
         [](CModel& m) { TableOf(m, "invoice").primaryKey = -1; }},
        {"foreign keys", &CCompareOptions::foreignKeys,
         [](CModel& m) { Named(m.foreignKeys, "fk_paid_by").onDelete = 'N'; }},
        {"checks", &CCompareOptions::checks, [](CModel& m) { CheckOf(m, "total >= 0").name = "ck_other"; }},
        {"user datatypes", &CCompareOptions::userDatatypes,
         [](CModel& m) { Named(m.userDatatypes, "zipcode").length = 9; }},
        {"defaults", &CCompareOptions::userDatatypes, [](CModel& m) { Named(m.defaults, "df_zero").text = "1"; }},
        {"code", &CCompareOptions::code, [](CModel& m) { Named(m.procedures, "p_close").text = "drop"; }},
        {"triggers", &CCompareOptions::code, [](CModel& m) { m.triggers.clear(); }},
        {"partitions", &CCompareOptions::partitions,
         [](CModel& m) { Named(m.partitions, "p_old").properties.clear(); }},
        {"index partitions", &CCompareOptions::partitions,
         [](CModel& m) { Named(m.partitions, "ip_zip").name = "ip_other"; }},
        {"storage", &CCompareOptions::storage, [](CModel& m) { TableOf(m, "customer").storageSpace = "OTHER"; }},
        {"index storage", &CCompareOptions::storage,
         [](CModel& m) { IndexOf(m, "customer", "ix_customer_zip").storageParams.at(3) = 1; }},
        {"storage objects", &CCompareOptions::storageObjects, [](CModel& m) { m.storageObjects.at(0).text = "x"; }},
    };
    bool CCompareOptions::* const all[] = {&CCompareOptions::columns,       &CCompareOptions::keysAndIndexes,
                                          &CCompareOptions::foreignKeys,   &CCompareOptions::checks,
                                          &CCompareOptions::userDatatypes, &CCompareOptions::code,
                                          &CCompareOptions::partitions,    &CCompareOptions::storage,
                                          &CCompareOptions::storageObjects};
    for (const auto& c : cases) {
        CModel after = Sales();
        c.edit(after);
        EXPECT_FALSE(CompareModels(Sales(), after).empty()) << c.kind;
        CCompareOptions without;
        without.*c.option = false;
        EXPECT_EQ(Lines(CompareModels(Sales(), after, without)), Strings()) << c.kind;
        CCompareOptions only;
        for (bool CCompareOptions::*option : all) only.*option = false;
        only.*c.option = true;
        EXPECT_EQ(Lines(CompareModels(Sales(), after, only)), Lines(CompareModels(Sales(), after))) << c.kind;
    }
    // Tables themselves are compared whatever the switches say.
    CCompareOptions none;
    for (bool CCompareOptions::*option : all) none.*option = false;
    CModel after = Sales();
    after.tables.pop_back();
    EXPECT_EQ(Lines(CompareModels(Sales(), after, none)), Strings{"Dropped|table sales.invoice|||"});
}

}  // namespace
