// A failed or interrupted save loses nothing: the previous model file stays
// intact and opens, no temporary file is left beside it, and a model of which
// any write failed is never saved as if it were complete.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include "ModelFileReader.h"
#include "TestBuilder.h"
#include "store/StoreDb.h"

namespace {

class SaveFailureTest : public ::testing::Test {
protected:
    // A model of `tables` tables with 20 columns each.
    static void Describe(CVrnAPI& builder, int tables) {
        for (int t = 0; t < tables; ++t) {
            const std::string name = "T" + std::to_string(t);
            const unsigned long entity = builder.AddEntity(name.c_str(), "APP", 0, 0);
            for (int c = 0; c < 20; ++c)
                builder.AddAttribute(entity, ("C" + std::to_string(c)).c_str(), "varchar", 40, -1, 1, 0);
        }
    }
    // Saves a first, small model at `path`: the file every failure must keep.
    void SavePrevious(const std::string& path) {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(34, nullptr), 1);
        Describe(builder, 3);
        builder.SaveToFile(path.c_str());
        ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    }
    void ExpectPreviousIntact(const std::string& path) {
        CVrnFile file;
        EXPECT_EQ(file.Open(path.c_str()), 1) << file.GetLastError();
        CModelFileReader reader(path);
        EXPECT_EQ(reader.Count("Entity"), 3);
    }

    CScratchDir m_dir;
};

TEST_F(SaveFailureTest, AFullFileSystemKeepsThePreviousModel) {
    const std::string target = m_dir.File("model.vrn");
    SavePrevious(target);
    // The child may write no more than 64 KiB per file: the larger model's
    // write fails part way, as on a full file system.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{64 * 1024, 64 * 1024};
        setrlimit(RLIMIT_FSIZE, &limit);
        CVrnAPI builder;
        builder.Initialize(34, nullptr);
        Describe(builder, 200);
        builder.SaveToFile(target.c_str());
        const std::string reason = builder.GetVrnFile()->GetLastError();
        _exit(reason.find("too large") != std::string::npos ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the save should have failed with the file system's reason";
    ExpectPreviousIntact(target);
    EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
}

TEST_F(SaveFailureTest, ASaveKilledAtAnyPointLeavesAWholeModel) {
    const std::string target = m_dir.File("model.vrn");
    SavePrevious(target);
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    Describe(builder, 400);
    std::mt19937 random(42);
    for (int round = 0; round < 25; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) builder.SaveToFile(target.c_str());
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 60000));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        SCOPED_TRACE(round);
        CVrnFile file;
        EXPECT_EQ(file.Open(target.c_str()), 1) << file.GetLastError();
        // A save killed in the instant between naming its finished file and
        // renaming it over the target leaves that file: a whole model too.
        for (const std::string& entry : m_dir.Entries()) {
            if (entry == "model.vrn") continue;
            EXPECT_EQ(entry.rfind("model.vrn.", 0), 0u) << entry;
            EXPECT_EQ(entry.substr(entry.size() - 4), ".tmp") << entry;
            CVrnFile leftover;
            EXPECT_EQ(leftover.Open(m_dir.File(entry).c_str()), 1) << leftover.GetLastError();
            std::remove(m_dir.File(entry).c_str());
        }
    }
}

TEST_F(SaveFailureTest, OpenAndSaveNeverDeleteOtherFiles) {
    // Temporary files of saves that look dead from here may belong to a save
    // on another host or in another PID namespace that shares the directory.
    const std::string target = m_dir.File("model.vrn");
    SavePrevious(target);
    const std::vector<std::string> planted = {"model.vrn.999999999.0.tmp", "model.vrn.1.0.tmp", "model.vrn.XXXXXX",
                                              "other.vrn.999999999.0.tmp"};
    for (const std::string& name : planted) WriteBytes(m_dir.File(name), "a save in progress elsewhere");
    CVrnAPI opened;
    ASSERT_EQ(opened.Initialize(34, target.c_str()), 1);
    Describe(opened, 1);
    opened.SaveToFile(target.c_str());
    ASSERT_STREQ(opened.GetVrnFile()->GetLastError(), "");
    std::vector<std::string> expected = planted;
    expected.push_back("model.vrn");
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(m_dir.Entries(), expected);
    for (const std::string& name : planted) EXPECT_EQ(ReadBytes(m_dir.File(name)), "a save in progress elsewhere");
}

// A write into the model that fails, made to fail by a trigger in the
// in-memory database that aborts the one insert it names.
class WriteFailureTest : public SaveFailureTest {
protected:
    void SetUp() override { SavePrevious(m_target); }
    static void FailInsertsInto(CVrnAPI& builder, const std::string& table, const std::string& when) {
        const std::string sql = "CREATE TEMP TRIGGER injected BEFORE INSERT ON main." + table + " WHEN " + when +
                                " BEGIN SELECT RAISE(ABORT, 'injected failure'); END";
        ASSERT_TRUE(builder.GetVrnFile()->GetDb().Exec(sql)) << builder.GetVrnFile()->GetDb().LastError();
    }
    void ExpectRefusedAndPreviousKept(CVrnAPI& builder, const std::string& table) {
        const std::string before = ReadBytes(m_target);
        builder.SaveToFile(m_target.c_str());
        const std::string reason = builder.GetVrnFile()->GetLastError();
        EXPECT_NE(reason.find("incomplete"), std::string::npos) << reason;
        EXPECT_NE(reason.find(table), std::string::npos) << reason;
        EXPECT_NE(reason.find("injected failure"), std::string::npos) << reason;
        EXPECT_TRUE(ReadBytes(m_target) == before) << "the previous model was changed";
        EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
    }

    const std::string m_target = m_dir.File("model.vrn");
};

TEST_F(WriteFailureTest, OneRowThatFailsToBeWrittenFailsTheSave) {
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    Describe(builder, 5);
    FailInsertsInto(builder, "Attribute", "NEW.attribute_name = 'C7'");
    ExpectRefusedAndPreviousKept(builder, "Attribute");
}

TEST_F(WriteFailureTest, AManagerTableThatFailsToBeWrittenFailsTheSave) {
    const CHostTexts texts("product", "model", "diagram");  // the product's name enters the name space
    for (const char* table : {"NameSpace", "ObjectType", "KeyAllocator", "Property", "MetaTable", "PropertyValue"}) {
        SCOPED_TRACE(table);
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(34, nullptr), 1);
        const unsigned long entity = builder.AddEntity("T", "APP", 0, 0);
        ASSERT_EQ(builder.SetEntityProperty(entity, 28, 1), 1);  // one Property row
        FailInsertsInto(builder, table, "1");
        ExpectRefusedAndPreviousKept(builder, table);
    }
}

TEST_F(WriteFailureTest, AFailedWriteFailsEveryLaterSaveToo) {
    // The rows that failed are missing from the model in memory; saving it
    // again, even once the cause is gone, would write it as if complete.
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    Describe(builder, 2);
    FailInsertsInto(builder, "Entity", "NEW.entity_name = 'T1'");
    ExpectRefusedAndPreviousKept(builder, "Entity");
    ASSERT_TRUE(builder.GetVrnFile()->GetDb().Exec("DROP TRIGGER temp.injected"));
    ExpectRefusedAndPreviousKept(builder, "Entity");
    builder.SaveToFile(m_dir.File("elsewhere.vrn").c_str());
    EXPECT_STRNE(builder.GetVrnFile()->GetLastError(), "");
    EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
}

TEST_F(SaveFailureTest, ARefusedSaveOntoAReadOnlyDirectoryKeepsThePreviousModel) {
    if (geteuid() == 0) GTEST_SKIP() << "permissions do not bind the super-user";
    const std::string directory = m_dir.File("locked");
    ASSERT_EQ(mkdir(directory.c_str(), 0755), 0);
    const std::string target = directory + "/model.vrn";
    SavePrevious(target);
    ASSERT_EQ(chmod(directory.c_str(), 0555), 0);
    CVrnAPI builder;
    builder.Initialize(34, nullptr);
    Describe(builder, 10);
    builder.SaveToFile(target.c_str());
    EXPECT_STRNE(builder.GetVrnFile()->GetLastError(), "");
    chmod(directory.c_str(), 0755);
    ExpectPreviousIntact(target);
}

}  // namespace
