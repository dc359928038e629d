// What the client does with a user's files: it never writes an output over
// one of its inputs, never reports success for output that did not arrive,
// and never leaves a file half written.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "CommandLineTest.h"
#include "ModelFileReader.h"

namespace {

constexpr auto npos = std::string::npos;

class ClientFilesTest : public CommandLineTest {
protected:
    void SetUp() override {
        ExecOnFile(m_dir.File("data.db"),
                   "CREATE TABLE customer (id INTEGER PRIMARY KEY, name TEXT); INSERT INTO customer VALUES (1, 'kept');");
        WriteBytes(m_dir.File("schema.sql"), "create table extra (a int primary key);\n");
        ASSERT_EQ(Run("import " + m_dir.File("data.db") + " -o " + m_dir.File("m.vrn")), 0) << Err();
    }
    // Every entry of the scratch directory with its content.
    std::map<std::string, std::string> Snapshot() const {
        std::map<std::string, std::string> files;
        for (const std::string& name : m_dir.Entries()) files[name] = ReadBytes(m_dir.File(name));
        return files;
    }
    void ExpectRefusedAndNothingTouched(const std::string& arguments) {
        SCOPED_TRACE(arguments);
        const auto before = Snapshot();
        EXPECT_EQ(Run(arguments), 1);
        EXPECT_NE(Err().find("is the input"), npos) << Err();
        EXPECT_TRUE(Snapshot() == before) << "a file in the directory changed";
    }
    static bool HaveDot() { return std::system("command -v dot > /dev/null 2>&1") == 0; }
};

TEST_F(ClientFilesTest, AnOutputThatIsAnInputIsRefusedBeforeAnythingIsRead) {
    ASSERT_EQ(symlink("data.db", m_dir.File("link.db").c_str()), 0);
    ASSERT_EQ(link(m_dir.File("data.db").c_str(), m_dir.File("hard.db").c_str()), 0);
    const std::string db = m_dir.File("data.db"), script = m_dir.File("schema.sql"), model = m_dir.File("m.vrn");
    ExpectRefusedAndNothingTouched("import " + db + " -o " + db);
    ExpectRefusedAndNothingTouched("import " + db + " -o " + m_dir.Path() + "/./data.db");
    ExpectRefusedAndNothingTouched("import " + m_dir.File("link.db") + " -o " + db);
    ExpectRefusedAndNothingTouched("import " + db + " -o " + m_dir.File("hard.db"));
    ExpectRefusedAndNothingTouched("import " + script + " -o " + script);
    ExpectRefusedAndNothingTouched("import " + script + " " + db + " -o " + db);
    ExpectRefusedAndNothingTouched("show " + model + " -o " + model);
    ExpectRefusedAndNothingTouched("diagram " + model + " -o " + model);
    CModelFileReader data(db);
    EXPECT_EQ(data.Scalar("SELECT name FROM customer"), "kept");
}

TEST_F(ClientFilesTest, TheModelBeingContinuedMayBeTheOutput) {
    const std::string model = m_dir.File("m.vrn");
    ASSERT_EQ(Run("import " + m_dir.File("schema.sql") + " --continue " + model + " -o " + model), 0) << Err();
    CModelFileReader reader(model);
    EXPECT_EQ(reader.Column("SELECT entity_name FROM Entity ORDER BY row_seq"),
              (std::vector<std::string>{"customer", "extra"}));
}

TEST_F(ClientFilesTest, OutputThatCannotBeWrittenFailsTheCommand) {
    const std::string model = m_dir.File("m.vrn");
    EXPECT_EQ(Run("show " + model, "/dev/full"), 1);
    EXPECT_NE(Err().find("No space left on device"), npos) << Err();
    EXPECT_EQ(Run("show " + model + " --json", "/dev/full"), 1);
    EXPECT_EQ(Run("show " + model + " -o /dev/full"), 1);
    EXPECT_NE(Err().find("No space left on device"), npos) << Err();
    // The import's model is saved; its summary is lost, and that is said.
    EXPECT_EQ(Run("import " + m_dir.File("schema.sql") + " -o " + m_dir.File("n.vrn"), "/dev/full"), 1);
    EXPECT_NE(Err().find("standard output"), npos) << Err();
    EXPECT_EQ(Run("show " + model + " -o " + m_dir.File("no/such/dir/report.txt")), 1);
    EXPECT_NE(Err().find("No such file"), npos) << Err();
    EXPECT_EQ(Run("show " + model + " -o " + m_dir.Path()), 1);
    EXPECT_NE(Err().find("directory"), npos) << Err();
}

TEST_F(ClientFilesTest, AFailedCommandLeavesItsPreviousOutputAsItWas) {
    WriteBytes(m_dir.File("report.txt"), "yesterday's report");
    WriteBytes(m_dir.File("picture.svg"), "yesterday's picture");
    WriteBytes(m_dir.File("bad.vrn"), "not a model");
    EXPECT_EQ(Run("show " + m_dir.File("bad.vrn") + " -o " + m_dir.File("report.txt")), 1);
    EXPECT_EQ(Run("diagram " + m_dir.File("bad.vrn") + " -o " + m_dir.File("picture.svg")), 1);
    EXPECT_EQ(ReadBytes(m_dir.File("report.txt")), "yesterday's report");
    EXPECT_EQ(ReadBytes(m_dir.File("picture.svg")), "yesterday's picture");
    // A report replaces the file a link names, and the link stays.
    ASSERT_EQ(symlink("report.txt", m_dir.File("latest.txt").c_str()), 0);
    ASSERT_EQ(Run("show " + m_dir.File("m.vrn") + " -o " + m_dir.File("latest.txt")), 0) << Err();
    EXPECT_TRUE(std::filesystem::is_symlink(m_dir.File("latest.txt")));
    EXPECT_NE(ReadBytes(m_dir.File("report.txt")).find("Table customer"), npos);
}

TEST_F(ClientFilesTest, OutputsFollowLinksAndNeverReplaceDevicesOrPipes) {
    const std::string model = m_dir.File("m.vrn"), script = m_dir.File("schema.sql");
    // A model saved through a link replaces the file the link names.
    ASSERT_EQ(symlink("real.vrn", m_dir.File("latest.vrn").c_str()), 0);
    ASSERT_EQ(Run("import " + script + " -o " + m_dir.File("latest.vrn")), 0) << Err();
    EXPECT_TRUE(std::filesystem::is_symlink(m_dir.File("latest.vrn")));
    EXPECT_TRUE(std::filesystem::is_regular_file(m_dir.File("real.vrn")));
    // A named pipe or a device is refused as a model file, and stays.
    ASSERT_EQ(mkfifo(m_dir.File("pipe").c_str(), 0600), 0);
    EXPECT_EQ(Run("import " + script + " -o " + m_dir.File("pipe")), 1);
    EXPECT_NE(Err().find("a device, a pipe or a socket"), npos) << Err();
    EXPECT_TRUE(std::filesystem::is_fifo(m_dir.File("pipe")));
    EXPECT_EQ(Run("import " + script + " -o /dev/null"), 1);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    // A report to /dev/stdout goes where standard output goes: appended to a log.
    WriteBytes(m_dir.File("log.txt"), "earlier line\n");
    ASSERT_EQ(Shell("vrnmodel show " + model + " -o /dev/stdout >> " + m_dir.File("log.txt")), 0) << Err();
    const std::string log = ReadBytes(m_dir.File("log.txt"));
    EXPECT_EQ(log.rfind("earlier line\n", 0), 0u) << log;
    EXPECT_NE(log.find("Table customer"), npos);
}

TEST_F(ClientFilesTest, AWriteThatFailsPartWayLeavesThePreviousOutput) {
    // At most 512 bytes per file, and writes past that fail (EFBIG) instead of killing the program.
    WriteBytes(m_dir.File("report.txt"), "yesterday's report");
    const std::string before = ReadBytes(m_dir.File("report.txt"));
    EXPECT_EQ(Shell("trap '' XFSZ; ulimit -f 1; exec vrnmodel show " + m_dir.File("m.vrn") + " --json -o " +
                    m_dir.File("report.txt")),
              1);
    EXPECT_NE(Err().find("File too large"), npos) << Err();
    EXPECT_EQ(ReadBytes(m_dir.File("report.txt")), before);
    for (const std::string& name : m_dir.Entries()) EXPECT_EQ(name.find(".vrnmodel-"), npos) << name;
}

TEST_F(ClientFilesTest, ASourceCanBeAPipe) {
    ASSERT_EQ(Shell("vrnmodel import /dev/stdin -o " + m_dir.File("piped.vrn") + " < " + m_dir.File("schema.sql") +
                    " > /dev/null"),
              0)
        << Err();
    CModelFileReader reader(m_dir.File("piped.vrn"));
    EXPECT_EQ(reader.Scalar("SELECT entity_name FROM Entity"), "extra");
}

TEST_F(ClientFilesTest, ADashMeansStandardOutputWhereTheFormatIsText) {
    ASSERT_FALSE(std::filesystem::exists("-"));
    ASSERT_EQ(Run("show " + m_dir.File("m.vrn") + " -o -"), 0) << Err();
    EXPECT_NE(Out().find("Table customer"), npos) << Out();
    EXPECT_EQ(Run("import " + m_dir.File("schema.sql") + " -o -"), 2);
    EXPECT_NE(Err().find("standard output"), npos) << Err();
    EXPECT_FALSE(std::filesystem::exists("-"));
    if (!HaveDot()) GTEST_SKIP() << "Graphviz's dot program is not installed: the SVG case is not run";
    ASSERT_EQ(Run("diagram " + m_dir.File("m.vrn") + " -o -"), 0) << Err();
    EXPECT_NE(Out().find("<svg"), npos);
    EXPECT_NE(Out().find("customer"), npos);
    EXPECT_FALSE(std::filesystem::exists("-"));
}

}  // namespace
