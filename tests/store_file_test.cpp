// The model file: what Open refuses, how Save replaces a file atomically, and
// the order in which rows reach the file.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <functional>

#include "ModelFileReader.h"
#include "TestBuilder.h"
#include "store/StoreDb.h"

namespace {

class ModelFileTest : public ::testing::Test {
protected:
    // Saves an empty model for Oracle 8.x to `name` in the scratch directory.
    std::string SaveEmptyModel(const std::string& name = "model.vrn") {
        const std::string path = m_dir.File(name);
        CVrnAPI builder;
        EXPECT_EQ(builder.Initialize(34, nullptr), 1);
        builder.SaveToFile(path.c_str());
        EXPECT_STREQ(builder.GetVrnFile()->GetLastError(), "");
        return path;
    }

    // Opens `path` and expects a refusal whose reason mentions `words`;
    // checking it without opening it is refused for the same reason.
    void ExpectRefused(const std::string& path, const std::string& words) {
        CVrnFile file;
        EXPECT_EQ(file.Open(path.c_str()), 0) << path;
        EXPECT_NE(std::string(file.GetLastError()).find(words), std::string::npos)
            << "reason: " << file.GetLastError();
        EXPECT_FALSE(file.IsOpenedFile());
        CVrnFile checked;
        EXPECT_EQ(checked.Check(path.c_str()), 0) << path;
        EXPECT_STREQ(checked.GetLastError(), file.GetLastError());
    }

    CScratchDir m_dir;
};

TEST_F(ModelFileTest, OpensWhatItSaved) {
    const std::string path = SaveEmptyModel();
    CVrnFile file;
    EXPECT_EQ(file.Open(path.c_str()), 1) << file.GetLastError();
    EXPECT_TRUE(file.IsOpenedFile());
    EXPECT_STREQ(file.GetLastError(), "");
    // A check takes the file, and loads nothing.
    CVrnFile checked;
    EXPECT_EQ(checked.Check(path.c_str()), 1) << checked.GetLastError();
    EXPECT_FALSE(checked.IsOpenedFile());
    const std::string rows = "SELECT (SELECT count(*) FROM Diagram) + (SELECT count(*) FROM Model)";
    EXPECT_GT(file.GetDb().QueryInt(rows, -1), 0);
    EXPECT_EQ(checked.GetDb().QueryInt(rows, -1), 0);
}

TEST_F(ModelFileTest, RefusesWhatIsNoModelFileAndSaysWhatItIs) {
    // Each case makes the file `name` (or nothing), and the words the refusal must contain.
    struct CCase {
        const char* name;
        std::function<void(const std::string&)> make;
        const char* words;
    };
    const auto bytes = [](std::string content) {
        return [content](const std::string& path) { WriteBytes(path, content); };
    };
    const auto sql = [](std::string statements) {
        return [statements](const std::string& path) { ExecOnFile(path, statements); };
    };
    // An empty model saved as the case's file, then changed by `statements`.
    const auto changed = [this](std::string statements) {
        return [this, statements](const std::string& path) {
            SaveEmptyModel(path.substr(m_dir.Path().size() + 1));
            ExecOnFile(path, statements);
        };
    };
    const auto truncated = [this](const std::string& path) {
        SaveEmptyModel(path.substr(m_dir.Path().size() + 1));
        const std::string whole = ReadBytes(path);
        ASSERT_GT(whole.size(), 8192u);
        WriteBytes(path, whole.substr(0, whole.size() / 2));
    };
    const CCase cases[] = {
        {"absent.vrn", nullptr, "No such file"},
        {"", nullptr, "directory"},
        {"empty.vrn", bytes(""), "empty"},
        {"script.sql", bytes("CREATE TABLE ITEM (QTY NUMBER);\n"), "it is a text file, not an SQLite database"},
        {"short.vrn", bytes("SQLite"), "not an SQLite database"},
        // What a file is, named from its first bytes.
        {"picture.vrn", bytes(std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16)), "it is a PNG image"},
        {"archive.vrn", bytes(std::string("PK\x03\x04\x14\0\0\0", 8)), "it is a ZIP archive"},
        {"noise.vrn", bytes(std::string("\x01\x02\0\x03", 4)), "binary data of an unknown kind"},
        {"other.db", sql("CREATE TABLE customers (id INTEGER, name TEXT); INSERT INTO customers VALUES (1, 'x');"),
         "an SQLite database that is not a model"},
        {"foreign.vrn", changed("UPDATE FileInfo SET value = 'other-model' WHERE name = 'format'"), "other-model"},
        {"newer.vrn", changed("UPDATE FileInfo SET value = '3' WHERE name = 'format_version'"), "newer version"},
        {"unversioned.vrn", changed("UPDATE FileInfo SET value = 'one' WHERE name = 'format_version'"), "format version"},
        {"partial.vrn", changed("DROP TABLE Attribute"), "Attribute"},
        {"truncated.vrn", truncated, "damaged"},
    };
    for (const CCase& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string path = *c.name ? m_dir.File(c.name) : m_dir.Path();
        if (c.make) c.make(path);
        ExpectRefused(path, c.words);
    }
    CVrnFile file;
    EXPECT_EQ(file.Open(nullptr), 0);
    EXPECT_EQ(file.Open(""), 0);
}

TEST_F(ModelFileTest, ReadsAVersion1FileWithItsPackageColumnUnderItsNewName) {
    const std::string old = m_dir.File("old.vrn");
    {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(47, nullptr), 1);
        builder.AddPackage("PKG", "HR", "package PKG is end;", false);
        builder.SaveToFile(old.c_str());
    }
    ExecOnFile(old, "ALTER TABLE DbPackage RENAME COLUMN header_text TO spec_text; "
                    "UPDATE FileInfo SET value = '1' WHERE name = 'format_version'");
    CVrnAPI continued;
    ASSERT_EQ(continued.Initialize(47, old.c_str()), 1) << continued.GetVrnFile()->GetLastError();
    const std::string saved = m_dir.File("new.vrn");
    continued.SaveToFile(saved.c_str());
    CModelFileReader reader(saved);
    EXPECT_EQ(reader.Scalar("SELECT header_text FROM DbPackage"), "package PKG is end;");
    EXPECT_EQ(reader.Scalar("SELECT value FROM FileInfo WHERE name = 'format_version'"), "2");
}

TEST_F(ModelFileTest, RefusesACorruptedModelFile) {
    const std::string path = SaveEmptyModel();
    std::string bytes = ReadBytes(path);
    // Overwrite the pages after the first with noise, keeping the header.
    for (std::size_t i = 4096; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7919 % 251);
    WriteBytes(path, bytes);
    CVrnFile file;
    EXPECT_EQ(file.Open(path.c_str()), 0);
    EXPECT_STRNE(file.GetLastError(), "");
}

TEST_F(ModelFileTest, ARefusedOpenLeavesAnEmptyModelThatStillSaves) {
    const std::string path = SaveEmptyModel();
    ExecOnFile(path, "UPDATE FileInfo SET value = '9' WHERE name = 'format_version'");
    CTestBuilder builder;
    EXPECT_EQ(builder.Initialize(34, path.c_str()), 0);
    CVrnFile* file = builder.GetVrnFile();
    ASSERT_NE(file, nullptr);
    const std::string copy = m_dir.File("copy.vrn");
    EXPECT_EQ(file->Save(copy.c_str(), 0), 1);
    CModelFileReader reader(copy);
    EXPECT_EQ(reader.Count("Version"), 0);  // nothing of the refused file came along
}

TEST_F(ModelFileTest, SaveIntoAMissingDirectoryLeavesNothingAndSaysWhy) {
    CVrnFile file;
    const std::string path = m_dir.File("no/such/dir/model.vrn");
    EXPECT_EQ(file.Save(path.c_str(), 0), 0);
    EXPECT_NE(std::string(file.GetLastError()).find("No such file"), std::string::npos) << file.GetLastError();
    EXPECT_TRUE(m_dir.Entries().empty());
}

TEST_F(ModelFileTest, SaveOntoADirectoryLeavesItAloneAndNoTemporaryFile) {
    const std::string target = m_dir.File("model.vrn");
    ASSERT_EQ(mkdir(target.c_str(), 0755), 0);
    WriteBytes(target + "/keep.txt", "keep");
    CVrnFile file;
    EXPECT_EQ(file.Save(target.c_str(), 0), 0);
    EXPECT_NE(std::string(file.GetLastError()).find("model.vrn"), std::string::npos);
    EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
    EXPECT_EQ(ReadBytes(target + "/keep.txt"), "keep");
}

TEST_F(ModelFileTest, SaveWithoutAPathIsRefusedAndAFailedSavesReasonClearsAfterASuccessfulOne) {
    CVrnFile file;
    EXPECT_EQ(file.Save(nullptr, 0), 0);
    EXPECT_EQ(file.Save("", 0), 0);
    EXPECT_STRNE(file.GetLastError(), "");
    EXPECT_EQ(file.Save(m_dir.File("model.vrn").c_str(), 0), 1);
    EXPECT_STREQ(file.GetLastError(), "");
}

TEST_F(ModelFileTest, EveryModelFileHasEveryTable) {
    const std::string path = SaveEmptyModel();
    CModelFileReader reader(path);
    const std::vector<std::string> tables =
        reader.Column("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    const std::vector<std::string> expected = {
        "Attribute",  "CheckConstraints", "DbPackage",        "DbTrigger",         "Defaults",   "Diagram",
        "Entity",     "FileInfo",         "ForeignKey",       "ForeignKeyColumn",  "IndexColumn", "IndexStorage",
        "Indexes",    "KeyAllocator",     "MetaTable",        "Model",             "NameSpace",  "ObjectType",
        "Partition",  "PrimaryKey",       "Proc",             "Property",          "PropertyValue",
        "Referenced_Object", "Rules",     "Storage_Object",   "TableStorage",      "UserDatatype", "Version"};
    EXPECT_EQ(tables, expected);
}

TEST_F(ModelFileTest, RowTablesCarryTheDocumentedColumns) {
    const std::string path = SaveEmptyModel();
    CModelFileReader reader(path);
    auto columns = [&reader](const std::string& table) {
        return reader.Column("SELECT name FROM pragma_table_info('" + table + "')");
    };
    EXPECT_EQ(columns("Version"), (std::vector<std::string>{"row_seq", "version_no", "n2", "product"}));
    EXPECT_EQ(columns("Model"),
              (std::vector<std::string>{"row_seq", "diagram_no", "model_no", "n3", "n4", "n5", "name"}));
    EXPECT_EQ(columns("ForeignKeyColumn"),
              (std::vector<std::string>{"row_seq", "column_key", "diagram_no", "model_no", "fk_key_copy", "fk_key",
                                        "sequence_no", "parent_entity_key", "parent_attribute_no",
                                        "child_entity_key", "child_attribute_no", "origin_entity_key",
                                        "origin_attribute_no"}));
    EXPECT_EQ(columns("DbTrigger"), (std::vector<std::string>{"row_seq", "trigger_key", "parent_value", "is_invalid",
                                                              "kind", "owner", "name", "t3", "sql_text", "trailing"}));
    EXPECT_EQ(columns("Attribute").size(), 42u);
    EXPECT_EQ(columns("ForeignKey").size(), 33u);
    EXPECT_EQ(columns("TableStorage").back(), "param11");
}

TEST_F(ModelFileTest, RowsWrittenAfterAnOpenContinueTheRowSequence) {
    const std::string first = SaveEmptyModel("first.vrn");
    const std::string second = m_dir.File("second.vrn");
    {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(34, first.c_str()), 1);
        builder.SaveToFile(second.c_str());
    }
    CModelFileReader reader(second);
    EXPECT_EQ(reader.Column("SELECT row_seq FROM Version ORDER BY row_seq"), (std::vector<std::string>{"1", "4"}));
    EXPECT_EQ(reader.Column("SELECT row_seq FROM Model ORDER BY row_seq"), (std::vector<std::string>{"3", "6"}));
}

}  // namespace

// A model larger than its page cache spills to its temporary file and is
// saved whole from there: its rows never all sit in memory, and it can be
// saved again.
TEST_F(ModelFileTest, AModelLargerThanItsCacheIsSavedWhole) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    const unsigned long entity = builder.AddEntity("NOTES", "APP", 0, 0);
    const std::string text(64 * 1024, 'x');
    constexpr int kColumns = 200;  // 12.5 MiB of definitions
    for (int i = 0; i < kColumns; ++i) {
        const std::string name = "C" + std::to_string(i);
        const unsigned long id = builder.AddAttribute(entity, name.c_str(), "varchar", 10, -1, 1, 0);
        ASSERT_EQ(builder.SetAttributeStringProperty(id, 2, (text + name).c_str()), 1);
    }
    const std::string first = m_dir.File("first.vrn");
    builder.SaveToFile(first.c_str());
    ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");

    int used = 0;
    int highest = 0;
    ASSERT_EQ(sqlite3_db_status(builder.GetVrnFile()->GetDb().Handle(), SQLITE_DBSTATUS_CACHE_USED, &used, &highest, 0),
              SQLITE_OK);
    EXPECT_LT(used, 10 << 20) << "the model's rows are all held in memory";

    const std::string second = m_dir.File("second.vrn");
    builder.SaveToFile(second.c_str());
    ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    for (const std::string& path : {first, second}) {
        CModelFileReader reader(path);
        if (path == first) {
            EXPECT_EQ(reader.Scalar("SELECT count(*) FROM Attribute WHERE length(definition) > 65536"), "200");
        }
        EXPECT_EQ(reader.Scalar("SELECT substr(definition, 65537) FROM Attribute ORDER BY row_seq DESC LIMIT 1"),
                  "C199");
        EXPECT_EQ(reader.Scalar("PRAGMA integrity_check"), "ok");
    }
}
