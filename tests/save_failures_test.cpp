// A failed or interrupted save loses nothing: the previous model file stays
// intact and opens, and no temporary file is left beside it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "ModelFileReader.h"
#include "TestBuilder.h"

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
        // Opening the target also removes the named temporary file a save
        // killed between naming and renaming it leaves behind.
        CVrnFile file;
        EXPECT_EQ(file.Open(target.c_str()), 1) << file.GetLastError();
        EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
    }
}

TEST_F(SaveFailureTest, TemporariesOfDeadSavesAreRemovedButNotThoseOfLiveOnes) {
    const std::string target = m_dir.File("model.vrn");
    SavePrevious(target);
    WriteBytes(target + ".999999999.0.tmp", "left by a save that died");
    WriteBytes(target + "." + std::to_string(getppid()) + ".0.tmp", "a live process's");
    WriteBytes(m_dir.File("other.vrn.999999999.0.tmp"), "another target's");
    CVrnFile file;
    ASSERT_EQ(file.Open(target.c_str()), 1);
    EXPECT_EQ(m_dir.Entries(), (std::vector<std::string>{"model.vrn", "model.vrn." + std::to_string(getppid()) + ".0.tmp",
                                                         "other.vrn.999999999.0.tmp"}));
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
