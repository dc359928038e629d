// The model reader, on models made through the builder: every field of every
// kind comes back as the builder was told it, copies of shared migrated
// columns are told apart from the columns they copy, and a file that is not
// a model is refused with the library's reason.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include <VrnIntf.h>
#include <VrnReader.h>

#include "ModelFileReader.h"

namespace {

class ReaderTest : public ::testing::Test {
protected:
    // A SQL Server model that uses every kind of object once.
    void SetUp() override {
        AfxSetResourceString(kHostTextProductName, "reader test");
        ASSERT_EQ(m_builder.Initialize(41, nullptr), 1);
        m_zero = m_builder.AddDefault("df_zero", "0", nullptr);
        m_positive = m_builder.AddRule("r_positive", "@v > 0", nullptr);
        m_builder.AddUserType("zipcode", "char(5)");
        m_builder.BindRule("r_positive", "zipcode");

        m_customer = m_builder.AddEntity("customer", "sales", 0, 0);
        m_builder.SetEntityStringProperty(m_customer, 2, "who buys");
        m_builder.SetEntityStringProperty(m_customer, 15, "PRIMARY");
        m_builder.SetEntityProperty(m_customer, 16, 8);  // a storage parameter slot
        m_builder.SetEntityProperty(m_customer, 28, 1);  // logging: a table property
        const unsigned long id = m_builder.AddAttribute(m_customer, "id", "int", -1, -1, 0, 0);
        m_builder.SetAttributeProperty(id, 82, 1);  // identity
        const unsigned long name = m_builder.AddAttribute(m_customer, "name", "nvarchar", 80, -1, 0, 0);
        m_builder.SetAttributeStringProperty(name, 2, "as printed on invoices");
        m_builder.SetAttributeStringProperty(name, 11, "len(name) > 0");
        const unsigned long zip = m_builder.AddAttribute(m_customer, "zip", "zipcode", -1, -1, 1, 0);
        m_builder.SetAttributeStringProperty(zip, 9, "'00000'");
        m_builder.AddAttribute(m_customer, "balance", "numeric", 10, 2, 1, 0);
        m_builder.BindDefault("df_zero", "customer.balance");
        m_builder.AddPrimaryKey(m_customer, "pk_customer");
        m_builder.AddPrimaryKeyColumn(m_customer, "id", 0);
        const unsigned long byName = m_builder.AddIndex(m_customer, "ux_customer_name");
        m_builder.AddIndexColumn(byName, "name", 0, 1);
        m_builder.SetIndexProperty(byName, 34, 1);  // unique
        m_builder.SetIndexProperty(byName, 40, 1);  // clustered
        m_builder.SetIndexStringProperty(byName, 15, "INDEXES");
        const unsigned long byZip = m_builder.AddIndex(m_customer, "ix_customer_zip");
        m_builder.AddIndexColumn(byZip, "zip", 0, 0);
        m_builder.SetIndexProperty(byZip, 41, 12);  // a storage parameter slot of the index
        m_builder.AddIndexPartition(byZip, "ip_zip");
        m_builder.AddCheckConstraint("ck_balance", "balance >= 0", m_customer, "balance", 0);
        m_builder.AddCheckConstraint("ck_table", "id > 0", m_customer, nullptr, 0);
        m_partition = m_builder.AddTablePartition(m_customer, "p_old");
        m_builder.SetPartitionStringProperty(m_partition, 54, "100");

        // Two relationships from customer share the child column payer_id:
        // the model gives the second a copy of it.
        m_invoice = m_builder.AddEntity("invoice", "sales", 0, 0);
        m_builder.AddAttribute(m_invoice, "no", "int", -1, -1, 0, 0);
        m_builder.AddAttribute(m_invoice, "payer_id", "int", -1, -1, 1, 0);
        m_builder.AddPrimaryKey(m_invoice, nullptr);
        m_builder.AddPrimaryKeyColumn(m_invoice, "no", 0);
        m_paidBy = m_builder.AddForeignKey(m_customer, m_invoice, "fk_paid_by", nullptr, nullptr);
        m_builder.AddForeignKeyColumnPair(m_paidBy, "id", "payer_id", 0);
        m_builder.SetForeignKeyProperty(m_paidBy, 77, 1);  // on delete cascade
        m_builder.SetForeignKeyProperty(m_paidBy, 81, 1);  // on update restrict
        m_billedTo = m_builder.AddForeignKey(m_customer, m_invoice, "fk_billed_to", nullptr, nullptr);
        m_builder.AddForeignKeyColumnPair(m_billedTo, "id", "payer_id", 0);

        m_builder.AddTrigger("tr_invoice", "sales", "create trigger tr_invoice ...", 2, m_invoice);
        m_builder.AddProcedure("p_close", "sales", "create procedure p_close as ...", 1);
        m_builder.AddPackage("pk_billing", "sales", "package pk_billing is end;", false);
        m_builder.AddPackage("pk_billing", "sales", "package body pk_billing is end;", true);
        m_builder.AddStorageObject("SG1", "sys", "CREATE STOGROUP SG1", 1);
        m_builder.AddReferencedObject(1, 2, 3, 4, 40);
    }
    void TearDown() override { AfxSetResourceString(kHostTextProductName, nullptr); }

    const CModel& Read() {
        const std::string path = m_dir.File("model.vrn");
        m_builder.SaveToFile(path.c_str());
        EXPECT_STREQ(m_builder.GetVrnFile()->GetLastError(), "");
        std::string error;
        EXPECT_TRUE(ReadModelFile(path, m_model, error)) << error;
        return m_model;
    }
    static const CModelTable& Table(const CModel& model, const std::string& name) {
        for (const CModelTable& table : model.tables)
            if (table.name == name) return table;
        throw std::runtime_error("no table " + name);
    }
    static const CModelColumn& Column(const CModelTable& table, const std::string& name) {
        for (const CModelColumn& column : table.columns)
            if (column.name == name) return column;
        throw std::runtime_error("no column " + name);
    }

    CScratchDir m_dir;
    CVrnAPI m_builder;
    CModel m_model;
    unsigned long m_zero = 0, m_positive = 0, m_customer = 0, m_invoice = 0, m_paidBy = 0, m_billedTo = 0,
                  m_partition = 0;
};

TEST_F(ReaderTest, TheModelItselfAndItsPlatform) {
    const CModel& model = Read();
    EXPECT_EQ(model.formatVersion, CVrnFile::kFormatVersion);
    EXPECT_TRUE(model.hasPlatform);
    EXPECT_EQ(model.platform, 41);
    EXPECT_EQ(model.product, "reader test");
    EXPECT_EQ(model.created.size(), 19u);  // YYYY-MM-DD HH:MM:SS
    ASSERT_EQ(model.tables.size(), 2u);
}

TEST_F(ReaderTest, TablesWithTheirStorage) {
    const CModelTable& customer = Table(Read(), "customer");
    EXPECT_EQ(customer.key, m_customer);
    EXPECT_EQ(customer.owner, "sales");
    EXPECT_EQ(customer.definition, "who buys");
    EXPECT_EQ(customer.storageSpace, "PRIMARY");
    EXPECT_EQ(customer.storageParams[2], 8);  // code 16 fills slot 3
    EXPECT_EQ(customer.storageParams[0], -1);
    ASSERT_EQ(customer.properties.size(), 1u);
    EXPECT_EQ(customer.properties[0].name, "Logging");
    EXPECT_EQ(customer.properties[0].value, "LOGGING");
}

TEST_F(ReaderTest, ColumnsInOrderWithEveryField) {
    const CModelTable& customer = Table(Read(), "customer");
    std::vector<std::string> names;
    for (const CModelColumn& column : customer.columns) names.push_back(column.name);
    EXPECT_EQ(names, (std::vector<std::string>{"id", "name", "zip", "balance"}));

    const CModelColumn& id = Column(customer, "id");
    EXPECT_EQ(id.datatype, "INT");
    EXPECT_FALSE(id.nullable);
    EXPECT_TRUE(id.inPrimaryKey);
    EXPECT_TRUE(id.identity);
    const CModelColumn& name = Column(customer, "name");
    EXPECT_EQ(name.datatype, "VAN");
    EXPECT_EQ(name.width, 80);
    EXPECT_EQ(name.attributeName, "name");
    EXPECT_EQ(name.definition, "as printed on invoices");
    EXPECT_EQ(name.checkText, "len(name) > 0");
    EXPECT_EQ(name.attributeNo, 2u);
    EXPECT_NE(name.attributeId, 0u);
    EXPECT_FALSE(name.inPrimaryKey);
    EXPECT_FALSE(name.identity);
    const CModelColumn& zip = Column(customer, "zip");
    EXPECT_EQ(zip.userDatatype, "zipcode");
    EXPECT_TRUE(zip.nullable);
    EXPECT_EQ(zip.defaultText, "'00000'");
    const CModelColumn& balance = Column(customer, "balance");
    EXPECT_EQ(balance.datatype, "NUM");
    EXPECT_EQ(balance.width, 10);
    EXPECT_EQ(balance.scale, 2);
    EXPECT_EQ(balance.defaultId, m_zero);
}

TEST_F(ReaderTest, KeysAndIndexesWithColumnsAndSortOrder) {
    const CModelTable& customer = Table(Read(), "customer");
    ASSERT_EQ(customer.primaryKey, 0);
    ASSERT_EQ(customer.indexes.size(), 3u);
    const CModelIndex& primary = customer.indexes[0];
    EXPECT_EQ(primary.keyType, 'P');
    EXPECT_EQ(primary.name, "pk_customer");
    ASSERT_EQ(primary.columns.size(), 1u);
    EXPECT_EQ(primary.columns[0].name, "id");
    const CModelIndex& byName = customer.indexes[1];
    EXPECT_EQ(byName.name, "ux_customer_name");
    EXPECT_EQ(byName.keyType, 'A');
    EXPECT_TRUE(byName.unique);
    EXPECT_TRUE(byName.clustered);
    EXPECT_EQ(byName.storageSpace, "INDEXES");
    ASSERT_EQ(byName.columns.size(), 1u);
    EXPECT_TRUE(byName.columns[0].descending);
    const CModelIndex& byZip = customer.indexes[2];
    EXPECT_EQ(byZip.keyType, 'I');
    EXPECT_FALSE(byZip.unique);
    EXPECT_FALSE(byZip.columns[0].descending);
    EXPECT_EQ(byZip.storageParams[0], 12);  // code 41 fills slot 1
    ASSERT_EQ(byZip.partitions.size(), 1u);
    EXPECT_EQ(m_model.partitions[byZip.partitions[0]].name, "ip_zip");
    EXPECT_TRUE(m_model.partitions[byZip.partitions[0]].ofIndex);
}

TEST_F(ReaderTest, ForeignKeysWithPairsActionsAndTheCopiesTheyUse) {
    const CModel& model = Read();
    const CModelTable& invoice = Table(model, "invoice");
    ASSERT_EQ(model.foreignKeys.size(), 2u);
    const CModelForeignKey& paidBy = model.foreignKeys[0];
    EXPECT_EQ(paidBy.name, "fk_paid_by");
    EXPECT_EQ(model.tables[paidBy.parentTable].name, "customer");
    EXPECT_EQ(model.tables[paidBy.childTable].name, "invoice");
    EXPECT_FALSE(paidBy.identifying);
    EXPECT_TRUE(paidBy.optional);
    EXPECT_EQ(paidBy.onDelete, 'C');
    EXPECT_EQ(paidBy.onUpdate, 'R');
    ASSERT_EQ(paidBy.pairs.size(), 1u);
    EXPECT_EQ(paidBy.pairs[0].parentColumn, "id");
    EXPECT_EQ(paidBy.pairs[0].childColumn, "payer_id");
    EXPECT_EQ(model.foreignKeys[1].onDelete, 'N');

    // The physical table has payer_id once; the second relationship uses a
    // copy of it, and the column lists both relationships.
    EXPECT_EQ(invoice.columns.size(), 2u);
    ASSERT_EQ(invoice.copies.size(), 1u);
    const CModelColumn& payer = Column(invoice, "payer_id");
    EXPECT_EQ(payer.foreignKeys, (std::vector<int>{0, 1}));
    EXPECT_TRUE(invoice.copies[0].isCopy);
    EXPECT_EQ(invoice.copies[0].copyOf, payer.attributeNo);
    EXPECT_EQ(invoice.copies[0].copyFor, 1);
    EXPECT_EQ(invoice.foreignKeys, (std::vector<int>{0, 1}));
    EXPECT_EQ(Table(model, "customer").referencedBy, (std::vector<int>{0, 1}));
}

TEST_F(ReaderTest, ChecksDefaultsRulesUserDatatypesAndBindings) {
    const CModel& model = Read();
    ASSERT_EQ(model.checks.size(), 2u);
    EXPECT_EQ(model.checks[0].name, "ck_balance");
    EXPECT_EQ(model.checks[0].text, "balance >= 0");
    EXPECT_EQ(model.checks[0].column, "balance");
    EXPECT_EQ(model.checks[1].column, "");
    EXPECT_EQ(Table(model, "customer").checks, (std::vector<int>{0, 1}));
    ASSERT_EQ(model.defaults.size(), 1u);
    EXPECT_EQ(model.defaults[0].name, "df_zero");
    EXPECT_EQ(model.defaults[0].text, "0");
    ASSERT_EQ(model.rules.size(), 1u);
    EXPECT_EQ(model.rules[0].text, "@v > 0");
    ASSERT_EQ(model.userDatatypes.size(), 1u);
    EXPECT_EQ(model.userDatatypes[0].name, "zipcode");
    EXPECT_EQ(model.userDatatypes[0].datatype, "CH");
    EXPECT_EQ(model.userDatatypes[0].length, 5);
    EXPECT_EQ(model.userDatatypes[0].ruleId, m_positive);
}

TEST_F(ReaderTest, CodeObjectsWithTheirWholeText) {
    const CModel& model = Read();
    ASSERT_EQ(model.triggers.size(), 1u);
    EXPECT_EQ(model.triggers[0].name, "tr_invoice");
    EXPECT_EQ(model.triggers[0].kind, 2);
    EXPECT_EQ(model.tables[model.triggers[0].table].name, "invoice");
    EXPECT_EQ(model.triggers[0].text, "create trigger tr_invoice ...");
    ASSERT_EQ(model.procedures.size(), 1u);
    EXPECT_EQ(model.procedures[0].owner, "sales");
    EXPECT_EQ(model.procedures[0].text, "create procedure p_close as ...");
    ASSERT_EQ(model.packages.size(), 1u);
    EXPECT_EQ(model.packages[0].text, "package pk_billing is end;");
    EXPECT_EQ(model.packages[0].body, "package body pk_billing is end;");
    ASSERT_EQ(model.storageObjects.size(), 1u);
    EXPECT_EQ(model.storageObjects[0].kind, 1);
    EXPECT_EQ(model.storageObjects[0].text, "CREATE STOGROUP SG1");
    ASSERT_EQ(model.referencedObjects.size(), 1u);
    EXPECT_EQ(model.referencedObjects[0].values, (std::array<std::uint32_t, 4>{1, 2, 3, 4}));
    EXPECT_NE(model.referencedObjects[0].metaTableKey, 0u);
}

TEST_F(ReaderTest, PartitionsWithTheirProperties) {
    const CModel& model = Read();
    ASSERT_EQ(model.partitions.size(), 2u);
    const CModelTable& customer = Table(model, "customer");
    ASSERT_EQ(customer.partitions.size(), 1u);  // the index's partition is listed by the index
    const CModelPartition& partition = model.partitions[customer.partitions[0]];
    EXPECT_EQ(partition.name, "p_old");
    EXPECT_FALSE(partition.ofIndex);
    EXPECT_EQ(partition.key, m_partition);
    ASSERT_EQ(partition.properties.size(), 1u);
    EXPECT_EQ(partition.properties[0].name, "Partition Limit");
    EXPECT_EQ(partition.properties[0].text, "100");
}

TEST_F(ReaderTest, AModelSavedAgainReadsAsItWasLastSaved) {
    // Every save writes the rows again: the last row of each object counts,
    // and nothing is read twice.
    const std::string first = m_dir.File("first.vrn");
    m_builder.SaveToFile(first.c_str());
    const unsigned long name = m_builder.FindAttribute(m_customer, "name");
    m_builder.SetAttributeProperty(name, 6, 99);  // width
    m_builder.SetAttributeProperty(name, 8, 1);   // nullable
    const CModel& model = Read();
    const CModelTable& customer = Table(model, "customer");
    EXPECT_EQ(customer.columns.size(), 4u);
    EXPECT_EQ(Column(customer, "name").width, 99);
    EXPECT_TRUE(Column(customer, "name").nullable);
    ASSERT_EQ(customer.indexes.size(), 3u);
    EXPECT_EQ(customer.indexes[1].columns.size(), 1u);
    EXPECT_EQ(model.checks.size(), 2u);
    EXPECT_EQ(customer.checks.size(), 2u);
    EXPECT_EQ(model.triggers.size(), 1u);
    EXPECT_EQ(model.procedures.size(), 1u);
    EXPECT_EQ(model.packages.size(), 1u);
    EXPECT_EQ(model.foreignKeys.size(), 2u);
    EXPECT_EQ(model.foreignKeys[0].pairs.size(), 1u);
    EXPECT_EQ(Table(model, "invoice").copies.size(), 1u);
}

TEST_F(ReaderTest, AVersion1FileKeepsItsPackages) {
    const std::string path = m_dir.File("old.vrn");
    m_builder.SaveToFile(path.c_str());
    ExecOnFile(path, "ALTER TABLE DbPackage RENAME COLUMN header_text TO spec_text; "
                     "UPDATE FileInfo SET value = '1' WHERE name = 'format_version'");
    CModel model;
    std::string error;
    ASSERT_TRUE(ReadModelFile(path, model, error)) << error;
    EXPECT_EQ(model.formatVersion, 1);
    ASSERT_EQ(model.packages.size(), 1u);
    EXPECT_EQ(model.packages[0].text, "package pk_billing is end;");
}

TEST(ReaderRefusalTest, FilesThatAreNotModelsAreRefusedWithTheLibrarysReason) {
    CScratchDir dir;
    CModel model;
    std::string error;
    EXPECT_FALSE(ReadModelFile(dir.File("absent.vrn"), model, error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
    WriteBytes(dir.File("text.vrn"), "create table t (a int);\n");
    EXPECT_FALSE(ReadModelFile(dir.File("text.vrn"), model, error));
    EXPECT_NE(error.find("not an SQLite database"), std::string::npos) << error;
    ExecOnFile(dir.File("other.db"), "CREATE TABLE t (a INTEGER)");
    EXPECT_FALSE(ReadModelFile(dir.File("other.db"), model, error));
    EXPECT_NE(error.find("an SQLite database that is not a model"), std::string::npos) << error;
    // A model with a page overwritten by noise.
    {
        CVrnAPI builder;
        builder.Initialize(41, nullptr);
        for (int i = 0; i < 50; ++i) builder.AddEntity(("T" + std::to_string(i)).c_str(), nullptr, 0, 0);
        builder.SaveToFile(dir.File("damaged.vrn").c_str());
    }
    std::string bytes = ReadBytes(dir.File("damaged.vrn"));
    ASSERT_GT(bytes.size(), 8192u);
    for (std::size_t i = 4096; i < 8192; ++i) bytes[i] = static_cast<char>(i * 7);
    WriteBytes(dir.File("damaged.vrn"), bytes);
    EXPECT_FALSE(ReadModelFile(dir.File("damaged.vrn"), model, error));
    EXPECT_NE(error.find("damaged"), std::string::npos) << error;
}

TEST(ReaderRefusalTest, AFileWithoutAPlatformSaysSo) {
    CScratchDir dir;
    CVrnAPI builder;
    builder.Initialize(34, nullptr);
    builder.SaveToFile(dir.File("old.vrn").c_str());
    ExecOnFile(dir.File("old.vrn"), "DELETE FROM FileInfo WHERE name = 'platform'");
    CModel model;
    std::string error;
    ASSERT_TRUE(ReadModelFile(dir.File("old.vrn"), model, error)) << error;
    EXPECT_FALSE(model.hasPlatform);
}

// The type name table, walked: every datatype code the builder can give has
// a spelling in every dialect, and the spellings take the arguments they say.
TEST(TypeNamesTest, EveryDatatypeCodeHasASpellingInEveryDialect) {
    std::set<std::string> codes;
    for (int i = 0; i < kDatatypeCodeCount; ++i) codes.insert(kDatatypeCodes[i]);
    std::set<std::string> named;
    for (int i = 0; i < kTypeNameCount; ++i) {
        named.insert(kTypeNames[i].code);
        for (const CTypeSpelling& spelling : kTypeNames[i].spellings) {
            ASSERT_NE(spelling.name, nullptr) << kTypeNames[i].code;
            EXPECT_NE(std::string(spelling.name), "") << kTypeNames[i].code;
            // A name with its own parentheses takes no more arguments, unless it marks where they go.
            const std::string name = spelling.name;
            if (name.find('(') != std::string::npos && name.find("()") == std::string::npos) {
                EXPECT_EQ(spelling.arguments, ETypeArguments::None) << name;
            }
        }
    }
    EXPECT_EQ(named, codes);
}

TEST(TypeNamesTest, TypesReadAsTheirPlatformWritesThem) {
    const struct {
        int platform;
        const char* code;
        int width, scale;
        const char* expected;
    } cases[] = {
        {41, "SI", 10, 0, "smallint"},
        {41, "DT", 10, 0, "datetime"},
        {41, "DTX", 10, 0, "text"},
        {41, "NUM", 10, 2, "numeric(10,2)"},
        {41, "VAR", 40, 0, "varchar(40)"},
        {54, "VAN", 12, 0, "nvarchar(12)"},
        {47, "NUM", 10, 2, "NUMBER(10,2)"},
        {34, "NUM", 0, 0, "NUMBER"},
        {47, "VAR", 30, 0, "VARCHAR2(30)"},
        {44, "VBN", 16, 0, "VARCHAR(16) FOR BIT DATA"},
        {46, "DC", 7, 0, "DECIMAL(7)"},
        {48, "CHN", 4, 0, "GRAPHIC(4)"},
        {0, "INT", 10, 0, "INTEGER"},
        {60, "DBL", 0, 0, "DOUBLE PRECISION"},
        {0, "XYZ", 5, 0, "XYZ"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(SqlTypeName(TypeDialectOf(c.platform), c.code, c.width, c.scale), c.expected)
            << c.platform << " " << c.code;
}

TEST(TypeNamesTest, GenericNamesReadBackAsTheirOwnCode) {
    // The generic dialect writes the names the model itself knows: for every
    // code that some datatype name gives, its spelling gives it back.
    std::set<std::string> reachable;
    for (int i = 0; i < kDatatypeNameCount; ++i) reachable.insert(kDatatypeCodes[kDatatypeNames[i].codeIndex]);
    ASSERT_EQ(reachable.count("MEM"), 0u);  // MEM and UNK are reached by no name
    for (int i = 0; i < kTypeNameCount; ++i) {
        const std::string code = kTypeNames[i].code;
        if (!reachable.count(code)) continue;
        const std::string name = kTypeNames[i].spellings[static_cast<int>(ETypeDialect::Generic)].name;
        const char* back = TranslateDatatypeName(name.c_str(), 0);
        ASSERT_NE(back, nullptr) << name;
        EXPECT_STREQ(back, code.c_str()) << name;
    }
}

}  // namespace
