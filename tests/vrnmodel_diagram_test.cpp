// The diagram of a model file: one box per table, one line per written
// foreign key with the right style, subsets and the bird's-eye view, and the
// HTML page in a real browser.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <regex>

#include "ModelDiagram.h"
#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

int Occurrences(const std::string& text, const std::string& what) {
    int count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
    return count;
}

bool HaveCommand(const char* command) {
    return std::system((std::string("command -v ") + command + " > /dev/null 2>&1").c_str()) == 0;
}

class DiagramTest : public ::testing::Test {
protected:
    // DEPT <- EMP (non-identifying), EMP <- EMP_SKILL (identifying), a
    // foreign key made invalid (not written), and a lone table.
    void SetUp() override {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(34, nullptr), 1);
        const unsigned long dept = Table(builder, "DEPT", {"ID", "NAME"}, {"ID"});
        const unsigned long emp = Table(builder, "EMP", {"ID", "DEPT_ID", "NAME"}, {"ID"});
        const unsigned long skill = Table(builder, "EMP_SKILL", {"EMP_ID", "SKILL"}, {"EMP_ID", "SKILL"});
        Table(builder, "LONE", {"X"}, {});
        const unsigned long worksIn = builder.AddForeignKey(dept, emp, "FK_EMP_DEPT", nullptr, nullptr);
        builder.AddForeignKeyColumnPair(worksIn, "ID", "DEPT_ID", 0);
        const unsigned long has = builder.AddForeignKey(emp, skill, "FK_SKILL_EMP", nullptr, nullptr);
        builder.AddForeignKeyColumnPair(has, "ID", "EMP_ID", 0);
        const unsigned long broken = builder.AddForeignKey(dept, skill, "FK_BROKEN", nullptr, nullptr);
        builder.AddForeignKeyColumnPair(broken, "NAME", "SKILL", 0);  // not the parent's key: invalid
        m_model = m_dir.File("model.vrn");
        builder.SaveToFile(m_model.c_str());
        ASSERT_STREQ(builder.GetVrnFile()->GetLastError(), "");
    }
    static unsigned long Table(CVrnAPI& builder, const char* name, std::initializer_list<const char*> columns,
                               std::initializer_list<const char*> keys) {
        const unsigned long table = builder.AddEntity(name, "HR", 0, 0);
        for (const char* column : columns) builder.AddAttribute(table, column, "NUMBER", 6, -1, 1, 0);
        if (keys.size() != 0) {
            builder.AddPrimaryKey(table, nullptr);
            for (const char* key : keys) builder.AddPrimaryKeyColumn(table, key, 0);
        }
        return table;
    }
    std::string Dot(const CDiagramOptions& options) {
        CModel model;
        std::string dot, error;
        EXPECT_TRUE(ReadModelFile(m_model, model, error)) << error;
        WriteDiagramDot(model, options, dot);
        return dot;
    }
    std::string Svg(const CDiagramOptions& options) {
        std::string svg, error;
        EXPECT_TRUE(RenderSvg(Dot(options), svg, error)) << error;
        return svg;
    }

    CScratchDir m_dir;
    std::string m_model;
};

TEST_F(DiagramTest, OneBoxPerTableAndOneLinePerWrittenForeignKey) {
    if (!HaveCommand("dot")) GTEST_SKIP() << "Graphviz is not installed";
    const std::string svg = Svg(CDiagramOptions());
    EXPECT_EQ(Occurrences(svg, "class=\"node\""), 4);
    EXPECT_EQ(Occurrences(svg, "class=\"edge\""), 2);
    // Only the non-identifying line is dashed.
    EXPECT_EQ(Occurrences(svg, "stroke-dasharray"), 1);
    EXPECT_NE(svg.find("id=\"table_EMP_SKILL\""), std::string::npos);
    EXPECT_NE(svg.find("DEPT_ID (FK)"), std::string::npos);
    EXPECT_NE(svg.find("NUMBER(6)"), std::string::npos);  // types as the platform writes them
    EXPECT_EQ(svg.find("FK_BROKEN"), std::string::npos);
}

TEST_F(DiagramTest, PatternsDrawASubsetAndNoColumnsOnlyNames) {
    if (!HaveCommand("dot")) GTEST_SKIP() << "Graphviz is not installed";
    CDiagramOptions subset;
    subset.tablePattern = "emp*";
    const std::string some = Svg(subset);
    EXPECT_EQ(Occurrences(some, "class=\"node\""), 2);
    EXPECT_EQ(Occurrences(some, "class=\"edge\""), 1);  // only the line between two drawn tables
    CDiagramOptions names;
    names.columns = false;
    const std::string bare = Svg(names);
    EXPECT_EQ(Occurrences(bare, "class=\"node\""), 4);
    EXPECT_EQ(bare.find("DEPT_ID"), std::string::npos);
}

TEST_F(DiagramTest, SaysWhenDotIsMissing) {
    std::string svg, error;
    const std::string dot = Dot(CDiagramOptions());
    const std::string path = std::getenv("PATH") ? std::getenv("PATH") : "";
    setenv("PATH", "/nonexistent", 1);
    const bool rendered = RenderSvg(dot, svg, error);
    setenv("PATH", path.c_str(), 1);
    EXPECT_FALSE(rendered);
    EXPECT_NE(error.find("install Graphviz"), std::string::npos) << error;
}

TEST_F(DiagramTest, ThePageOpensInABrowserWithoutConsoleMessages) {
    if (!HaveCommand("dot") || !HaveCommand("chromium")) GTEST_SKIP() << "Graphviz or Chromium is not installed";
    const std::string page = m_dir.File("diagram.html");
    WriteBytes(page, DiagramPage("model.vrn", Svg(CDiagramOptions())));
    const std::string shot = m_dir.File("shot.png");
    const std::string log = m_dir.File("chromium.log");
    const std::string command =
        "chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
        "--disable-background-networking --disable-component-update --disable-sync --user-data-dir=" +
        m_dir.File("profile") + " --enable-logging=stderr --v=0 --window-size=1200,800 --screenshot=" + shot +
        " file://" + page + " > " + log + " 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << ReadBytes(log);
    EXPECT_GT(ReadBytes(shot).size(), 1000u);
    EXPECT_EQ(ReadBytes(log).find("CONSOLE"), std::string::npos) << ReadBytes(log);
}

}  // namespace
