// Model files at any path a user can spell: every name that the file system
// accepts saves and opens again under exactly that name.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "ModelFileReader.h"
#include "TestBuilder.h"
#include "store/StoreDb.h"

namespace {

class ModelPathTest : public ::testing::Test {
protected:
    // Saves a model of one table at `path`, opens it again to continue it,
    // and expects its row back.
    static void ExpectSavesAndOpens(const std::string& path) {
        SCOPED_TRACE(path);
        {
            CVrnAPI builder;
            ASSERT_EQ(builder.Initialize(34, nullptr), 1);
            builder.AddEntity("ITEM", "SALES", 0, 0);
            builder.SaveToFile(path.c_str());
            ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
        }
        CVrnAPI continued;
        ASSERT_EQ(continued.Initialize(34, path.c_str()), 1) << continued.GetVrnFile()->GetLastError();
        EXPECT_EQ(continued.GetVrnFile()->GetDb().QueryInt("SELECT count(*) FROM Entity WHERE entity_name = 'ITEM'", 0), 1);
    }

    CScratchDir m_dir;
};

TEST_F(ModelPathTest, NamesWithURISyntaxOrBytesThatAreNotUTF8AndPathsThatStartWithTwoSlashes) {
    const std::vector<std::string> names = {
        "plain.vrn", "with space.vrn", "what?.vrn", "a#b.vrn", "100%.vrn", "%41.vrn", "x.vrn?mode=rwc",
        "file:model.vrn", "latin1-\xE9t\xE9.vrn", "\xFF\xFE.vrn", "\xE6\xA8\xA1\xE5\x9E\x8B.vrn",
    };
    for (const std::string& name : names) ExpectSavesAndOpens(m_dir.File(name));
    // What joining "/" and "/abs/file" gives: "//" is not a host name here.
    ExpectSavesAndOpens("/" + m_dir.File("slashes.vrn"));
    ExpectSavesAndOpens(m_dir.Path() + "//slashes2.vrn");
    std::vector<std::string> expected = names;
    expected.insert(expected.end(), {"slashes.vrn", "slashes2.vrn"});
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(m_dir.Entries(), expected);  // each under its own name, nothing beside them
}

// Works in another directory while it lives, and goes back whatever happens.
class CWorkingDirectory {
public:
    explicit CWorkingDirectory(const std::string& path) {
        m_entered = getcwd(m_previous, sizeof m_previous) != nullptr && chdir(path.c_str()) == 0;
    }
    ~CWorkingDirectory() {
        if (m_entered && chdir(m_previous) != 0) std::abort();  // the other tests would run in the wrong place
    }
    bool Entered() const { return m_entered; }

private:
    char m_previous[4096] = {};
    bool m_entered = false;
};

TEST_F(ModelPathTest, RelativePaths) {
    {
        const CWorkingDirectory inside(m_dir.Path());
        ASSERT_TRUE(inside.Entered());
        ExpectSavesAndOpens("model.vrn");
        ExpectSavesAndOpens("./file:x.vrn");
        ExpectSavesAndOpens("../" + m_dir.Path().substr(m_dir.Path().rfind('/') + 1) + "/up.vrn");
    }
    EXPECT_EQ(m_dir.Entries(), (std::vector<std::string>{"file:x.vrn", "model.vrn", "up.vrn"}));
}

TEST_F(ModelPathTest, TheLongestNameTheFileSystemAllows) {
    // 83 CJK letters of three bytes and ".vrn": 253 bytes, within the limit
    // of 255 that a temporary name made of the target's name would pass.
    std::string name;
    for (int i = 0; i < 83; ++i) name += "\xE6\xA8\xA1";
    name += ".vrn";
    ASSERT_EQ(name.size(), 253u);
    ExpectSavesAndOpens(m_dir.File(name));
    ExpectSavesAndOpens(m_dir.File(name));  // replacing it, too
    EXPECT_EQ(m_dir.Entries(), std::vector<std::string>{name});
}

}  // namespace
