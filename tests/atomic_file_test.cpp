// The atomic replacement of a file, step by step: a file system that fails
// any one step on demand shows what each failure leaves behind, on both ways
// of making the temporary file (without a name, and named where a file
// system has no unnamed files).
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "ModelFileReader.h"
#include "store/AtomicFile.h"
#include "store/FileSystem.h"
#include "store/ModelCopy.h"

using vrn::CFileSystem;
using vrn::DirectoryOf;
using vrn::TemporaryStem;
using vrn::WriteFileAtomically;

namespace {

enum class EStep {
    kCreateUnnamed, kCreateTemporary, kLinkUnnamed, kSetMode, kWrite, kSync,
    kClose, kRename, kRemove, kSyncDirectory, kModeOf,
};

const char* StepName(EStep step) {
    static const char* const kNames[] = {"CreateUnnamed", "CreateTemporary", "LinkUnnamed", "SetMode",
                                         "Write",         "Sync",            "Close",       "Rename",
                                         "Remove",        "SyncDirectory",   "ModeOf"};
    return kNames[static_cast<int>(step)];
}

// The real file system, except for the calls it is told to fail: those answer
// the chosen errno having done nothing, like a call refused at its start.
// Close is the one exception: it releases the descriptor whatever it answers,
// as the real one does.
class CFaultyFileSystem final : public CFileSystem {
public:
    static constexpr int kEvery = -1;

    // Calls `nth` (counted from 1) to `nth + times - 1` of `step` fail with
    // `error`; with kEvery, every call from the `nth` on.
    void FailCall(EStep step, int error, int nth = 1, int times = 1) { m_faults.push_back({step, error, nth, times}); }
    // What the kernel answers for a file system without unnamed files.
    void PretendNoUnnamedFiles(int error) { FailCall(EStep::kCreateUnnamed, error, 1, kEvery); }
    // Every write writes at most `bytes`, as a write cut short by a signal.
    void LimitWrites(std::size_t bytes) { m_writeLimit = bytes; }

    int Calls(EStep step) const { return static_cast<int>(std::count(m_log.begin(), m_log.end(), step)); }
    // The position of the first or last call of `step` among all calls; -1 if none.
    int First(EStep step) const {
        const auto found = std::find(m_log.begin(), m_log.end(), step);
        return found == m_log.end() ? -1 : static_cast<int>(found - m_log.begin());
    }
    int Last(EStep step) const {
        const auto found = std::find(m_log.rbegin(), m_log.rend(), step);
        return found == m_log.rend() ? -1 : static_cast<int>(m_log.rend() - found - 1);
    }
    // The names that the unnamed file was offered, and the directories given.
    const std::vector<std::string>& LinkNames() const { return m_linkNames; }
    const std::vector<std::string>& TemporaryNames() const { return m_temporaryNames; }
    const std::vector<std::string>& Directories() const { return m_directories; }

    // Each call is logged, then fails if told to, or else is made on the real file system.
    int CreateUnnamed(const std::string& directory, int* fd) override {
        m_directories.push_back(directory);
        return Step(EStep::kCreateUnnamed, [&] { return m_real.CreateUnnamed(directory, fd); });
    }
    int CreateTemporary(const std::string& nameTemplate, std::string* name, int* fd) override {
        return Step(EStep::kCreateTemporary, [&] {
            const int error = m_real.CreateTemporary(nameTemplate, name, fd);
            if (error == 0) m_temporaryNames.push_back(*name);
            return error;
        });
    }
    int LinkUnnamed(int fd, const std::string& name) override {
        m_linkNames.push_back(name);
        return Step(EStep::kLinkUnnamed, [&] { return m_real.LinkUnnamed(fd, name); });
    }
    int SetMode(int fd, mode_t mode) override {
        return Step(EStep::kSetMode, [&] { return m_real.SetMode(fd, mode); });
    }
    int Write(int fd, const void* data, std::size_t size, std::uint64_t offset, std::size_t* written) override {
        const std::size_t limited = std::min(size, m_writeLimit);
        return Step(EStep::kWrite, [&] { return m_real.Write(fd, data, limited, offset, written); });
    }
    int Read(int fd, void* data, std::size_t size, std::uint64_t offset, std::size_t* read) override {
        return m_real.Read(fd, data, size, offset, read);
    }
    int Sync(int fd) override { return Step(EStep::kSync, [&] { return m_real.Sync(fd); }); }
    int Close(int fd) override {
        const int error = Fault(EStep::kClose);
        const int real = m_real.Close(fd);
        return error ? error : real;
    }
    int Rename(const std::string& from, const std::string& to) override {
        return Step(EStep::kRename, [&] { return m_real.Rename(from, to); });
    }
    int Remove(const std::string& name) override { return Step(EStep::kRemove, [&] { return m_real.Remove(name); }); }
    int SyncDirectory(const std::string& directory) override {
        m_directories.push_back(directory);
        return Step(EStep::kSyncDirectory, [&] { return m_real.SyncDirectory(directory); });
    }
    int ModeOf(const std::string& path, mode_t* mode) override {
        return Step(EStep::kModeOf, [&] { return m_real.ModeOf(path, mode); });
    }
    mode_t DefaultFileMode() override { return m_real.DefaultFileMode(); }

private:
    struct CFault {
        EStep step;
        int error;
        int nth;
        int times;
    };

    template <class FReal>
    int Step(EStep step, FReal real) {
        const int error = Fault(step);
        return error ? error : real();
    }
    int Fault(EStep step) {
        m_log.push_back(step);
        const int call = Calls(step);
        for (const CFault& fault : m_faults)
            if (fault.step == step && call >= fault.nth && (fault.times == kEvery || call < fault.nth + fault.times))
                return fault.error;
        return 0;
    }

    CFileSystem& m_real = CFileSystem::Default();
    std::vector<CFault> m_faults;
    std::vector<EStep> m_log;
    std::size_t m_writeLimit = static_cast<std::size_t>(-1);
    std::vector<std::string> m_linkNames;
    std::vector<std::string> m_temporaryNames;
    std::vector<std::string> m_directories;
};

const char kPrevious[] = "the previous model, which every failure keeps";

mode_t PermissionsOf(const std::string& path) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0) return 0;
    return info.st_mode & 07777;
}

// Which way the temporary file is made.
enum class EPath { kUnnamed, kNamed };

void PrintTo(EPath path, std::ostream* out) { *out << (path == EPath::kUnnamed ? "unnamed" : "named"); }

class AtomicFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_mask = umask(022);
        // More than two write chunks of 1 MiB, so that a write can fail or be
        // cut short after others succeeded.
        std::mt19937 random(7);
        m_bytes.resize((std::size_t(2) << 20) + 12345);
        for (char& byte : m_bytes) byte = static_cast<char>(random());
    }
    void TearDown() override { umask(m_mask); }

    // Whether the scratch directory's file system has unnamed files; tests of
    // that way skip where it has none (every save there takes the other way).
    bool UnnamedFilesWork() const {
        int fd = -1;
        if (CFileSystem::Default().CreateUnnamed(m_dir.Path(), &fd) != 0) return false;
        close(fd);
        return true;
    }
    // Expects the temporary file to have been made the way `path` says.
    static void ExpectTook(EPath path, const CFaultyFileSystem& fs) {
        if (path == EPath::kUnnamed) {
            EXPECT_EQ(fs.Calls(EStep::kCreateTemporary), 0);
        } else {
            EXPECT_EQ(fs.Calls(EStep::kCreateTemporary), 1);
            EXPECT_EQ(fs.Calls(EStep::kLinkUnnamed), 0);
        }
    }

    // An existing target with its own bytes and permissions.
    void PlacePrevious(mode_t mode = 0640) {
        WriteBytes(m_target, kPrevious);
        ASSERT_EQ(chmod(m_target.c_str(), mode), 0);
    }
    void ExpectPreviousKept() {
        EXPECT_EQ(ReadBytes(m_target), kPrevious);
        EXPECT_EQ(PermissionsOf(m_target), 0640u);
        EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
    }
    void ExpectSaved(mode_t mode) {
        EXPECT_TRUE(ReadBytes(m_target) == m_bytes) << "the target does not hold exactly the bytes written";
        EXPECT_EQ(PermissionsOf(m_target), mode);
        EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
    }

    bool Save(CFaultyFileSystem& fs, std::string* reason) {
        return WriteFileAtomically(fs, m_target, m_bytes.data(), m_bytes.size(), reason);
    }
    std::string ReasonFor(int error) const { return "cannot save '" + m_target + "': " + std::strerror(error); }

    CScratchDir m_dir;
    const std::string m_target = m_dir.File("model.vrn");
    std::string m_bytes;
    mode_t m_mask = 0;
};

// The tests that hold for both ways of making the temporary file.
class AtomicFileWayTest : public AtomicFileTest, public ::testing::WithParamInterface<EPath> {
protected:
    void SetUp() override {
        AtomicFileTest::SetUp();
        if (GetParam() == EPath::kUnnamed && !UnnamedFilesWork())
            GTEST_SKIP() << "no unnamed files in " << m_dir.Path();
    }
    // Makes `fs` take this test's way.
    void Prepare(CFaultyFileSystem& fs) const {
        if (GetParam() == EPath::kNamed) fs.PretendNoUnnamedFiles(EOPNOTSUPP);
    }
};

INSTANTIATE_TEST_SUITE_P(BothWays, AtomicFileWayTest, ::testing::Values(EPath::kUnnamed, EPath::kNamed),
                         [](const ::testing::TestParamInfo<EPath>& info) {
                             return std::string(info.param == EPath::kUnnamed ? "Unnamed" : "Named");
                         });

// One failure of one step.
struct CFailure {
    EStep step;
    int nth;
    int error;
};

// Every step that, failing, fails the replacement: the first write or a later
// one, the sync, the naming, the close (what was written may be lost) and
// the rename. Making the unnamed file is not among them: a failure there
// turns to a named file.
const CFailure kUnnamedFailures[] = {
    {EStep::kWrite, 1, ENOSPC},
    {EStep::kWrite, 2, EIO},
    {EStep::kSync, 1, EIO},
    {EStep::kLinkUnnamed, 1, EDQUOT},
    {EStep::kLinkUnnamed, 1, ENOENT},  // no /proc to name the file through
    {EStep::kClose, 1, EIO},
    {EStep::kRename, 1, EBUSY},
};
const CFailure kNamedFailures[] = {
    {EStep::kCreateTemporary, 1, EACCES},
    {EStep::kCreateTemporary, 1, EMFILE},
    {EStep::kWrite, 1, EFBIG},
    {EStep::kWrite, 3, ENOSPC},  // the last chunk
    {EStep::kSync, 1, EIO},
    {EStep::kClose, 1, EDQUOT},
    {EStep::kRename, 1, EXDEV},
};

TEST_P(AtomicFileWayTest, AFailureAtAnyStepKeepsTheTargetAndLeavesNothing) {
    const bool unnamed = GetParam() == EPath::kUnnamed;
    for (const CFailure& failure : unnamed ? kUnnamedFailures : kNamedFailures) {
        for (const bool existed : {true, false}) {
            SCOPED_TRACE(std::string("call ") + std::to_string(failure.nth) + " of " + StepName(failure.step) +
                         " fails with " + std::strerror(failure.error) + (existed ? ", over a file" : ", no file before"));
            std::remove(m_target.c_str());
            if (existed) PlacePrevious();
            CFaultyFileSystem fs;
            Prepare(fs);
            fs.FailCall(failure.step, failure.error, failure.nth);

            std::string reason;
            EXPECT_FALSE(Save(fs, &reason));
            EXPECT_EQ(reason, ReasonFor(failure.error));
            EXPECT_GE(fs.Calls(failure.step), failure.nth) << "the failing call was never made";
            ExpectTook(GetParam(), fs);
            if (existed)
                ExpectPreviousKept();
            else
                EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{});
        }
    }
}

TEST_P(AtomicFileWayTest, ARemovalThatFailsIsReportedWithTheFileItLeaves) {
    // The unnamed file has a name only from its linking on, and the rename is
    // the one step after that which fails the save.
    const CFailure failure = GetParam() == EPath::kUnnamed ? CFailure{EStep::kRename, 1, EBUSY}
                                                           : CFailure{EStep::kWrite, 2, ENOSPC};
    PlacePrevious();
    CFaultyFileSystem fs;
    Prepare(fs);
    fs.FailCall(failure.step, failure.error, failure.nth);
    fs.FailCall(EStep::kRemove, EACCES);

    std::string reason;
    EXPECT_FALSE(Save(fs, &reason));
    const std::vector<std::string>& made = GetParam() == EPath::kUnnamed ? fs.LinkNames() : fs.TemporaryNames();
    ASSERT_EQ(made.size(), 1u);
    EXPECT_EQ(reason, ReasonFor(failure.error) + "; its temporary file '" + made[0] + "' could not be removed: " +
                          std::strerror(EACCES));
    EXPECT_EQ(ReadBytes(m_target), kPrevious);
    EXPECT_EQ(m_dir.Entries(), (std::vector<std::string>{"model.vrn", made[0].substr(m_dir.Path().size() + 1)}));
}

TEST_P(AtomicFileWayTest, ANewFileGetsThePermissionsOfAnyNewFileAndAReplacedOneKeepsItsOwn) {
    struct CCase {
        int previous;  // the replaced file's permissions; -1 for no file
        mode_t mask, expected;
    };
    const CCase cases[] = {{-1, 022, 0644}, {-1, 027, 0640}, {0640, 022, 0640}, {0604, 022, 0604}, {0755, 077, 0755}};
    for (const CCase& c : cases) {
        SCOPED_TRACE(testing::Message() << "previous " << c.previous << ", mask " << c.mask);
        std::remove(m_target.c_str());
        if (c.previous >= 0) PlacePrevious(static_cast<mode_t>(c.previous));
        umask(c.mask);
        CFaultyFileSystem fs;
        Prepare(fs);
        std::string reason = "a reason left from before";
        EXPECT_TRUE(Save(fs, &reason)) << reason;
        EXPECT_EQ(reason, "");
        ExpectTook(GetParam(), fs);
        ExpectSaved(c.expected);
    }
}

TEST_P(AtomicFileWayTest, StepsAfterWhichTheSaveGoesOn) {
    // File systems that keep no permissions refuse to set them: the file
    // stays as private as it was made. A target that cannot be examined is
    // replaced as a new file would be. The directory is synced after the
    // rename, which has already replaced the target: the save is done.
    struct CCase {
        EStep step;
        int error;
        mode_t mode;
    };
    const CCase cases[] = {{EStep::kSetMode, EPERM, 0600}, {EStep::kModeOf, EACCES, 0644},
                           {EStep::kSyncDirectory, EIO, 0640}, {EStep::kSyncDirectory, EACCES, 0640}};
    for (const CCase& step : cases) {
        SCOPED_TRACE(StepName(step.step));
        PlacePrevious();
        CFaultyFileSystem fs;
        Prepare(fs);
        fs.FailCall(step.step, step.error);
        std::string reason;
        EXPECT_TRUE(Save(fs, &reason)) << reason;
        EXPECT_EQ(reason, "");
        EXPECT_EQ(fs.Calls(step.step), 1);
        ExpectSaved(step.mode);
    }
}

TEST_P(AtomicFileWayTest, InterruptedAndShortWritesAreContinued) {
    PlacePrevious();
    CFaultyFileSystem fs;
    Prepare(fs);
    fs.LimitWrites(65537);
    fs.FailCall(EStep::kWrite, EINTR, 2, 3);
    fs.FailCall(EStep::kWrite, EINTR, 20);
    std::string reason;
    EXPECT_TRUE(Save(fs, &reason)) << reason;
    EXPECT_GT(fs.Calls(EStep::kWrite), static_cast<int>(m_bytes.size() / 65537) + 4);
    ExpectSaved(0640);
}

TEST_P(AtomicFileWayTest, AWriteThatWritesNothingFails) {
    PlacePrevious();
    CFaultyFileSystem fs;
    Prepare(fs);
    fs.LimitWrites(0);
    std::string reason;
    EXPECT_FALSE(Save(fs, &reason));
    EXPECT_EQ(reason, "cannot save '" + m_target + "': nothing could be written");
    ExpectPreviousKept();
}

TEST_P(AtomicFileWayTest, TheFileIsCompleteOnTheDeviceBeforeItReplacesTheTarget) {
    // A crash may come between any two steps: the target must never be
    // replaced by a file whose bytes or permissions are not all there, and
    // the rename is made durable by syncing the target's directory after it.
    CFaultyFileSystem fs;
    Prepare(fs);
    std::string reason;
    ASSERT_TRUE(Save(fs, &reason)) << reason;
    EXPECT_LT(fs.Last(EStep::kSetMode), fs.First(EStep::kRename));
    EXPECT_LT(fs.Last(EStep::kWrite), fs.First(EStep::kSync));
    EXPECT_LT(fs.Last(EStep::kSync), fs.First(EStep::kClose));
    EXPECT_LT(fs.Last(EStep::kClose), fs.First(EStep::kRename));
    EXPECT_LT(fs.Last(EStep::kRename), fs.First(EStep::kSyncDirectory));
    if (GetParam() == EPath::kUnnamed) {
        EXPECT_LT(fs.Last(EStep::kSync), fs.First(EStep::kLinkUnnamed));
    }
    EXPECT_EQ(fs.Directories(), std::vector<std::string>(2, m_dir.Path()));
}

TEST_F(AtomicFileTest, WithoutUnnamedFilesANamedTemporaryFileIsUsed) {
    // EOPNOTSUPP from a file system without them, EISDIR from a kernel that
    // does not know the flag; any other refusal is met again, with its own
    // reason, by the named file.
    for (const int error : {EOPNOTSUPP, EISDIR, EINVAL}) {
        SCOPED_TRACE(std::strerror(error));
        PlacePrevious();
        CFaultyFileSystem fs;
        fs.PretendNoUnnamedFiles(error);
        std::string reason;
        EXPECT_TRUE(Save(fs, &reason)) << reason;
        ExpectTook(EPath::kNamed, fs);
        ASSERT_EQ(fs.TemporaryNames().size(), 1u);
        const std::string made = fs.TemporaryNames()[0];
        EXPECT_EQ(made.rfind(m_target + ".", 0), 0u) << made;
        EXPECT_EQ(made.size(), m_target.size() + 7) << made;
        ExpectSaved(0640);
    }
}

TEST_F(AtomicFileTest, TakenNamesAreSkipped) {
    if (!UnnamedFilesWork()) GTEST_SKIP() << "no unnamed files in " << m_dir.Path();
    // Files of another save that had this process's number, or of one killed
    // before its rename: they are neither used nor touched.
    const std::string stem = "model.vrn." + std::to_string(getpid()) + ".";
    const std::vector<std::string> taken = {stem + "0.tmp", stem + "1.tmp"};
    for (const std::string& name : taken) WriteBytes(m_dir.File(name), "another save's file");
    PlacePrevious();
    CFaultyFileSystem fs;
    std::string reason;
    EXPECT_TRUE(Save(fs, &reason)) << reason;
    EXPECT_EQ(fs.LinkNames(), (std::vector<std::string>{m_dir.File(taken[0]), m_dir.File(taken[1]),
                                                        m_dir.File(stem + "2.tmp")}));
    EXPECT_TRUE(ReadBytes(m_target) == m_bytes);
    for (const std::string& name : taken) EXPECT_EQ(ReadBytes(m_dir.File(name)), "another save's file");
    EXPECT_EQ(m_dir.Entries(), (std::vector<std::string>{"model.vrn", taken[0], taken[1]}));
}

TEST_F(AtomicFileTest, NamingGivesUpWhenEveryNameIsTaken) {
    if (!UnnamedFilesWork()) GTEST_SKIP() << "no unnamed files in " << m_dir.Path();
    PlacePrevious();
    CFaultyFileSystem fs;
    fs.FailCall(EStep::kLinkUnnamed, EEXIST, 1, CFaultyFileSystem::kEvery);
    std::string reason;
    EXPECT_FALSE(Save(fs, &reason));
    EXPECT_EQ(reason, ReasonFor(EEXIST));
    const std::vector<std::string>& names = fs.LinkNames();
    EXPECT_GE(names.size(), 100u);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size()) << "a name was tried twice";
    ExpectPreviousKept();
}

// A database copied page by page into the temporary file (the model's save):
// the copy is the same database, and a write the file system refuses fails
// the save with the file system's reason, leaving the previous file.
class DatabaseCopyTest : public AtomicFileTest {
protected:
    void SetUp() override {
        AtomicFileTest::SetUp();
        ASSERT_EQ(sqlite3_open(":memory:", &m_source), SQLITE_OK);
        // About 3 MiB: more pages than the copy's cache of 2 MiB holds, so
        // that it writes while it copies, not only at its end.
        ASSERT_EQ(sqlite3_exec(m_source,
                               "CREATE TABLE t (n INTEGER, text TEXT);"
                               "WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM s WHERE n < 3000)"
                               " INSERT INTO t SELECT n, printf('%.1000c', 'a') || n FROM s",
                               nullptr, nullptr, nullptr),
                  SQLITE_OK);
    }
    void TearDown() override {
        sqlite3_close(m_source);
        AtomicFileTest::TearDown();
    }
    bool Copy(CFaultyFileSystem& fs, std::string* reason) {
        const auto copy = [this](vrn::CTemporaryFile& file, std::string* why) {
            return vrn::CopyDatabase(m_source, file, why);
        };
        return WriteFileAtomically(fs, m_target, copy, reason);
    }

    sqlite3* m_source = nullptr;
};

TEST_F(DatabaseCopyTest, TheCopyIsTheSameDatabase) {
    PlacePrevious();
    CFaultyFileSystem fs;
    std::string reason;
    ASSERT_TRUE(Copy(fs, &reason)) << reason;
    EXPECT_GT(fs.Calls(EStep::kWrite), 700) << "written a page at a time";
    CModelFileReader reader(m_target);
    EXPECT_EQ(reader.Scalar("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(reader.Scalar("SELECT count(*) || ' ' || sum(n) || ' ' || sum(length(text)) FROM t"),
              "3000 4501500 3010893");
    EXPECT_EQ(PermissionsOf(m_target), 0640u);
    EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{"model.vrn"});
}

TEST_F(DatabaseCopyTest, ARefusedWriteFailsTheCopyWithTheFileSystemsReason) {
    for (const int nth : {1, 2, 500}) {
        SCOPED_TRACE(nth);
        PlacePrevious();
        CFaultyFileSystem fs;
        fs.FailCall(EStep::kWrite, ENOSPC, nth);
        std::string reason;
        EXPECT_FALSE(Copy(fs, &reason));
        EXPECT_EQ(reason, ReasonFor(ENOSPC));
        ExpectPreviousKept();
    }
}

TEST(AtomicFileNamesTest, TheDirectoryOfAPath) {
    const std::pair<const char*, const char*> cases[] = {
        {"model.vrn", "."}, {"/model.vrn", "/"}, {"//model.vrn", "/"}, {"a/model.vrn", "a"},
        {"/a/b/model.vrn", "/a/b"}, {"./model.vrn", "."}, {"a//model.vrn", "a/"},
    };
    for (const auto& [path, directory] : cases) EXPECT_EQ(DirectoryOf(path), directory) << path;
}

TEST(AtomicFileNamesTest, TemporaryNamesStayShortAndWholeLetters) {
    EXPECT_EQ(TemporaryStem("model.vrn"), "model.vrn");
    EXPECT_EQ(TemporaryStem("/a/b/model.vrn"), "/a/b/model.vrn");
    const std::string ascii(100, 'm');
    EXPECT_EQ(TemporaryStem("dir/" + ascii), "dir/" + ascii.substr(0, 64));
    EXPECT_EQ(TemporaryStem("dir/" + ascii.substr(0, 64)), "dir/" + ascii.substr(0, 64));
    // Three-byte letters: the 22nd spans bytes 63 to 65 and is left out whole.
    std::string letters;
    for (int i = 0; i < 30; ++i) letters += "\xE6\xA8\xA1";
    EXPECT_EQ(TemporaryStem("/d/" + letters), "/d/" + letters.substr(0, 63));
    // Only the file name is cut, never the directory.
    const std::string longDirectory = "/" + ascii + "/" + ascii + "/";
    EXPECT_EQ(TemporaryStem(longDirectory + "x.vrn"), longDirectory + "x.vrn");
}

}  // namespace
