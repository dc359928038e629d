// The diagram of a model file: one box per table, one line per written
// foreign key with the right style, subsets and the column modes, owners as
// frames, a picture shaped for a screen, every output format, and the HTML
// page used in a real browser.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <regex>

#include "CommandLineTest.h"
#include "HeadlessBrowser.h"
#include "ImportedModel.h"
#include "ModelDiagram.h"
#include "ModelFileReader.h"
#include "TestBuilder.h"

namespace {

int Occurrences(const std::string& text, const std::string& what) {
    int count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
    return count;
}

// Graphviz and Chromium are installed by CI; elsewhere a test that needs
// them says it did not run.
#define REQUIRE_COMMAND(command)                                                                           \
    if (std::system("command -v " command " > /dev/null 2>&1") != 0) GTEST_SKIP() << command " is not installed"

// Width over height of an SVG as dot sizes it.
double AspectRatio(const std::string& svg) {
    std::smatch size;
    if (!std::regex_search(svg, size, std::regex("<svg width=\"([0-9.]+)pt\" height=\"([0-9.]+)pt\"")))
        return 0;
    return std::stod(size[1]) / std::stod(size[2]);
}

std::string Render(const std::string& dot, const std::string& format = "svg") {
    std::string drawn, error;
    EXPECT_TRUE(RenderDiagram(dot, format, drawn, error)) << error;
    return drawn;
}

class DiagramTest : public ::testing::Test {
protected:
    // DEPT <- EMP (non-identifying), EMP <- EMP_SKILL (identifying), a
    // foreign key made invalid (not written), and a lone table of another
    // owner.
    void SetUp() override {
        CVrnAPI builder;
        ASSERT_EQ(builder.Initialize(34, nullptr), 1);
        const unsigned long dept = Table(builder, "HR", "DEPT", {"ID", "NAME"}, {"ID"});
        const unsigned long emp = Table(builder, "HR", "EMP", {"ID", "DEPT_ID", "NAME"}, {"ID"});
        const unsigned long skill = Table(builder, "HR", "EMP_SKILL", {"EMP_ID", "SKILL"}, {"EMP_ID", "SKILL"});
        Table(builder, "OPS", "LONE", {"X"}, {});
        const unsigned long worksIn = builder.AddForeignKey(dept, emp, "FK_EMP_DEPT", nullptr, nullptr);
        builder.AddForeignKeyColumnPair(worksIn, "ID", "DEPT_ID", 0);
        const unsigned long has = builder.AddForeignKey(emp, skill, "FK_SKILL_EMP", nullptr, nullptr);
        builder.AddForeignKeyColumnPair(has, "ID", "EMP_ID", 0);
        const unsigned long broken = builder.AddForeignKey(dept, skill, "FK_BROKEN", nullptr, nullptr);
        builder.AddForeignKeyColumnPair(broken, "NAME", "SKILL", 0);  // not the parent's key: invalid
        m_model = SaveAndRead(builder, m_dir.File("model.vrn"));
    }
    static unsigned long Table(CVrnAPI& builder, const char* owner, const char* name,
                               std::initializer_list<const char*> columns, std::initializer_list<const char*> keys) {
        const unsigned long table = builder.AddEntity(name, owner, 0, 0);
        for (const char* column : columns) builder.AddAttribute(table, column, "NUMBER", 6, -1, 1, 0);
        if (keys.size() != 0) {
            builder.AddPrimaryKey(table, nullptr);
            for (const char* key : keys) builder.AddPrimaryKeyColumn(table, key, 0);
        }
        return table;
    }
    std::string Dot(const CDiagramOptions& options) {
        return WriteDiagramDot(m_model, DiagramTables(m_model, options), options);
    }

    CScratchDir m_dir;
    CModel m_model;
};

// What each choice of options draws: how often each text stands in the SVG.
TEST_F(DiagramTest, OptionsChooseWhatIsDrawn) {
    REQUIRE_COMMAND("dot");
    CDiagramOptions all, subset, keys, names, grouped;
    subset.tablePattern = "emp*";
    keys.columns = EDiagramColumns::Keys;
    names.columns = EDiagramColumns::None;
    grouped.groupByOwner = true;
    const std::string node = "class=\"node\"", edge = "class=\"edge\"";
    const struct {
        const char* name;
        const CDiagramOptions& options;
        std::vector<std::pair<std::string, int>> counts;
    } cases[] = {
        // One box per table and one line per written foreign key, only the
        // non-identifying one dashed; every column with its type as the
        // platform writes it, and the owner in each box.
        {"all", all,
         {{node, 4}, {edge, 2}, {"stroke-dasharray", 1}, {">EMP_SKILL</text>", 1}, {"DEPT_ID (FK)", 1},
          {"NUMBER(6)", 8}, {"FK_BROKEN", 0}, {">HR</text>", 3}}},
        // Only the line between two drawn tables.
        {"emp*", subset, {{node, 2}, {edge, 1}}},
        // Key columns, foreign or not, and no other.
        {"keys", keys, {{"DEPT_ID (FK)", 1}, {">SKILL</text>", 1}, {">NAME</text>", 0}, {">X</text>", 0}}},
        {"names", names, {{node, 4}, {edge, 2}, {"DEPT_ID", 0}}},
        // The owner is the frame's label instead of a line in each box.
        {"frames", grouped, {{"class=\"cluster\"", 2}, {">HR</text>", 1}, {">OPS</text>", 1}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string svg = Render(Dot(c.options));
        for (const auto& [text, count] : c.counts) EXPECT_EQ(Occurrences(svg, text), count) << text;
    }
    EXPECT_EQ(DiagramTables(m_model, subset).size(), 2u);
    // Each box carries the id the page finds it by.
    const std::string svg = Render(Dot(all));
    for (int table = 0; table < 4; ++table)
        EXPECT_NE(svg.find("id=\"" + DiagramNodeId(table) + "\""), std::string::npos) << table;
}

TEST_F(DiagramTest, SaysWhenDotIsMissingOrFails) {
    std::string drawn, error;
    const std::string path = std::getenv("PATH") ? std::getenv("PATH") : "";
    setenv("PATH", "/nonexistent", 1);
    const bool rendered = RenderDiagram(Dot(CDiagramOptions()), "svg", drawn, error);
    setenv("PATH", path.c_str(), 1);
    EXPECT_FALSE(rendered);
    EXPECT_NE(error.find("install Graphviz"), std::string::npos) << error;

    REQUIRE_COMMAND("dot");
    EXPECT_FALSE(RenderDiagram("digraph { a -> }", "svg", drawn, error));
    EXPECT_NE(error.find("could not lay out the diagram: "), std::string::npos) << error;
}

// 60 tables of 8 columns: 40 in chains and stars, 20 related to nothing.
// Lone tables once stacked into a strip ten times taller than wide.
TEST(DiagramShape, ManyLoneTablesStillMakeAPictureShapedForAScreen) {
    REQUIRE_COMMAND("dot");
    CScratchDir dir;
    CVrnAPI builder;
    ASSERT_EQ(builder.Initialize(34, nullptr), 1);
    std::vector<unsigned long> tables;
    for (int i = 0; i < 60; ++i) {
        const std::string name = "TABLE_" + std::to_string(i);
        const unsigned long table = builder.AddEntity(name.c_str(), "APP", 0, 0);
        for (int c = 0; c < 8; ++c)
            builder.AddAttribute(table, ("COLUMN_" + std::to_string(c)).c_str(), "VARCHAR2", 30, -1, 1, 0);
        builder.AddPrimaryKey(table, nullptr);
        builder.AddPrimaryKeyColumn(table, "COLUMN_0", 0);
        tables.push_back(table);
    }
    for (int i = 1; i < 40; ++i) {  // four stars of ten, each hub under the previous one
        const int parent = i % 10 == 0 ? i - 10 : i - i % 10;
        const unsigned long fk = builder.AddForeignKey(tables[parent], tables[i], nullptr, nullptr, nullptr);
        builder.AddForeignKeyColumnPair(fk, "COLUMN_0", "COLUMN_1", 0);
    }
    const CModel model = SaveAndRead(builder, dir.File("shape.vrn"));
    for (EDiagramColumns columns : {EDiagramColumns::All, EDiagramColumns::Keys, EDiagramColumns::None}) {
        CDiagramOptions options;
        options.columns = columns;
        const double ratio = AspectRatio(Render(WriteDiagramDot(model, DiagramTables(model, options), options)));
        EXPECT_GE(ratio, 0.5) << static_cast<int>(columns);
        EXPECT_LE(ratio, 3.0) << static_cast<int>(columns);
    }
}

class DiagramCommandTest : public CommandLineTest {
protected:
    void SetUp() override {
        m_model = m_dir.File("pubs.vrn");
        ASSERT_EQ(Run("import " + Sample("mssql_instpubs.sql") + " -o " + m_model), 0) << Err();
    }
    static std::string Sample(const std::string& name) { return std::string(VRN_SAMPLES_DIR) + "/" + name; }
    std::string m_model;
};

TEST_F(DiagramCommandTest, EachFormatIsWhatItsNameSays) {
    REQUIRE_COMMAND("dot");
    const struct {
        const char* file;
        const char* options;
        const char* starts;
    } outputs[] = {
        {"d.svg", "", "<?xml"},     {"d.png", "", "\x89PNG"},       {"d.pdf", "", "%PDF"},
        {"d.dot", "", "digraph"},   {"d.html", "", "<!DOCTYPE html>"}, {"d.HTM", "", "<!DOCTYPE html>"},
        {"d.txt", "--format pdf", "%PDF"},
    };
    for (const auto& output : outputs) {
        SCOPED_TRACE(output.file);
        const std::string path = m_dir.File(output.file);
        ASSERT_EQ(Run("diagram " + m_model + " " + output.options + " -o " + path), 0) << Err();
        EXPECT_EQ(ReadBytes(path).rfind(output.starts, 0), 0u);
    }
    EXPECT_EQ(Run("diagram " + m_model + " -o " + m_dir.File("d.jpg")), 2);
    EXPECT_NE(Err().find("cannot tell the format of"), std::string::npos) << Err();
    EXPECT_FALSE(std::ifstream(m_dir.File("d.jpg")).good());
}

TEST_F(DiagramCommandTest, NothingToDrawIsAFailureNotAnEmptyPicture) {
    const std::string out = m_dir.File("none.svg");
    EXPECT_EQ(Run("diagram " + m_model + " --tables 'nosuch*' -o " + out), 1);
    EXPECT_NE(Err().find("no table of 11 matches --tables 'nosuch*'"), std::string::npos) << Err();
    EXPECT_FALSE(std::ifstream(out).good());

    const std::string empty = m_dir.File("empty.vrn");
    BuildModelFile(empty, 34, [](CVrnAPI&) {});
    EXPECT_EQ(Run("diagram " + empty + " -o " + out), 1);
    EXPECT_NE(Err().find("has no tables to draw"), std::string::npos) << Err();
    EXPECT_FALSE(std::ifstream(out).good());
}

TEST_F(DiagramCommandTest, ThePageCarriesTheModelDataWithoutEndingItsScript) {
    REQUIRE_COMMAND("dot");
    const std::string model = m_dir.File("odd.vrn"), page = m_dir.File("odd.html");
    BuildModelFile(model, 34, [](CVrnAPI& builder) {
        builder.AddAttribute(builder.AddEntity("</script><b>x", "O", 0, 0), "A&B", "NUMBER", 6, -1, 1, 0);
    });
    ASSERT_EQ(Run("diagram " + model + " -o " + page), 0) << Err();
    const std::string html = ReadBytes(page);
    EXPECT_EQ(Occurrences(html, "</script>"), 2);  // the page's own two
    EXPECT_NE(html.find("\"name\":\"\\u003c/script>\\u003cb>x\""), std::string::npos);
    EXPECT_NE(html.find("\"name\":\"A&B\""), std::string::npos);
}

// The page of the 62-table sample in headless Chromium at 1400x900, used as
// a person uses it: read the first view, type a name and press Enter, click
// a table. Set VRN_SCREENSHOTS to a directory to keep the pictures.
class DiagramPageTest : public DiagramCommandTest {
protected:
    void SetUp() override {
        if (std::system("command -v dot > /dev/null 2>&1") != 0 ||
            std::system("command -v chromium > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "Graphviz or Chromium is not installed";
        m_model = m_dir.File("flowable.vrn");
        ASSERT_EQ(Run("import " + Sample("flowable_mssql_all_create.sql") + " -o " + m_model), 0) << Err();
        m_read = ReadModel(m_model);
        ASSERT_EQ(m_read.tables.size(), 62u);
        const std::string page = m_dir.File("flowable.html");
        ASSERT_EQ(Run("diagram " + m_model + " -o " + page), 0) << Err();
        std::string why;
        ASSERT_TRUE(m_browser.Start(1400, 900, m_dir.File("profile"), m_dir.File("chromium.log"), why)) << why;
        ASSERT_TRUE(m_browser.Open("file://" + page, why)) << why;
    }
    void TearDown() override {
        if (IsSkipped() || HasFailure()) return;
        const std::vector<std::string> messages = m_browser.ConsoleMessages();
        EXPECT_TRUE(messages.empty()) << messages[0];
    }
    // A table's box on screen: left, top, width, height in CSS pixels.
    nlohmann::json Box(const std::string& id) {
        return m_browser.Evaluate("(function(){var r=document.getElementById('" + id +
                                  "').getBoundingClientRect();return [r.left,r.top,r.width,r.height];})()");
    }
    // Inside the window and below the page's bar.
    static bool OnScreen(const nlohmann::json& box) {
        return box.is_array() && box[0] >= 0 && box[1] >= 40 && box[0].get<double>() + box[2].get<double>() <= 1400 &&
               box[1].get<double>() + box[3].get<double>() <= 900;
    }
    void Keep(const std::string& name) {
        const char* dir = std::getenv("VRN_SCREENSHOTS");
        if (dir) {
            EXPECT_TRUE(m_browser.SaveScreenshot(std::string(dir) + "/" + name)) << name;
        }
    }
    std::string IdOf(const std::string& name) {
        for (std::size_t i = 0; i < m_read.tables.size(); ++i)
            if (m_read.tables[i].name == name) return DiagramNodeId(static_cast<int>(i));
        ADD_FAILURE() << "no table " << name;
        return "";
    }

    CModel m_read;
    CHeadlessBrowser m_browser;
};

TEST_F(DiagramPageTest, OpensWithTableNamesLargeEnoughToRead) {
    // The name's text on screen, in pixels, and how many boxes are in view.
    const nlohmann::json view = m_browser.Evaluate(
        "(function(){var names=document.querySelectorAll('g.node text[font-weight=\"bold\"]');var shown=0;"
        "document.querySelectorAll('g.node').forEach(function(n){var r=n.getBoundingClientRect();"
        "if(r.right>0&&r.left<innerWidth&&r.bottom>40&&r.top<innerHeight)shown++;});"
        "return [names[0].getBoundingClientRect().height,shown];})()");
    ASSERT_TRUE(view.is_array()) << view.dump();
    EXPECT_GE(view[0].get<double>(), 9.0);
    EXPECT_GE(view[1].get<int>(), 5);
    Keep("diagram-first-view.png");
    // "Whole diagram" shows every box, smaller.
    m_browser.Evaluate("document.getElementById('fit').click()");
    const nlohmann::json all = m_browser.Evaluate(
        "(function(){var n=0;document.querySelectorAll('g.node').forEach(function(g){var r=g.getBoundingClientRect();"
        "if(r.left>=0&&r.right<=innerWidth&&r.top>=40&&r.bottom<=innerHeight)n++;});return n;})()");
    EXPECT_EQ(all, 62);
}

TEST_F(DiagramPageTest, SearchCentresAndZoomsOnTheTableAndEnterMovesOn) {
    // The search box is clicked and the name typed, as a person would.
    const nlohmann::json input = m_browser.Evaluate(
        "(function(){var r=document.getElementById('search').getBoundingClientRect();"
        "return [r.left+r.width/2,r.top+r.height/2];})()");
    ASSERT_TRUE(input.is_array()) << input.dump();
    m_browser.Click(input[0], input[1]);
    m_browser.Type("ACT_HI_VARINST");
    m_browser.Press("Enter");
    const nlohmann::json box = Box(IdOf("ACT_HI_VARINST"));
    EXPECT_TRUE(OnScreen(box)) << box.dump();
    EXPECT_GE(box[3].get<double>(), 40.0) << box.dump();
    EXPECT_EQ(m_browser.Evaluate("document.getElementById('found').textContent"), "1 table");
    Keep("diagram-search.png");

    // A text several names hold: all listed, the first centred, Enter the next.
    m_browser.Press("Escape");
    m_browser.Type("act_ru_");
    int expected = 0;
    for (const CModelTable& table : m_read.tables) expected += table.name.rfind("ACT_RU_", 0) == 0;
    ASSERT_GT(expected, 2);
    EXPECT_EQ(m_browser.Evaluate("document.querySelectorAll('#matches div').length"), expected);
    const std::string first = m_browser.Evaluate("document.querySelector('g.node.current').id");
    EXPECT_TRUE(OnScreen(Box(first)));
    m_browser.Press("Enter");
    const std::string second = m_browser.Evaluate("document.querySelector('g.node.current').id");
    EXPECT_NE(second, first);
    EXPECT_TRUE(OnScreen(Box(second))) << Box(second).dump();
    EXPECT_EQ(m_browser.Evaluate("document.querySelectorAll('g.node.hit').length"), expected);
}

TEST_F(DiagramPageTest, ClickingATableShowsItsDetails) {
    const std::string id = IdOf("ACT_RU_TASK");
    m_browser.Evaluate("document.getElementById('search').focus()");
    m_browser.Type("ACT_RU_TASK");
    m_browser.Press("Escape");  // clears the search; the view stays on the table
    const nlohmann::json box = Box(id);
    ASSERT_TRUE(OnScreen(box)) << box.dump();
    m_browser.Click(box[0].get<double>() + box[2].get<double>() / 2, box[1].get<double>() + 12);
    ASSERT_EQ(m_browser.Evaluate("getComputedStyle(document.getElementById('panel')).display"), "block");
    const std::string panel = m_browser.Evaluate("document.getElementById('panel').innerText");
    const CModelTable* table = FindTable(m_read, "ACT_RU_TASK");
    ASSERT_NE(table, nullptr);
    EXPECT_NE(panel.find("ACT_RU_TASK"), std::string::npos);
    for (const CModelColumn& column : table->columns)
        EXPECT_NE(panel.find(column.name), std::string::npos) << column.name;
    EXPECT_NE(panel.find("nvarchar(64)"), std::string::npos);
    EXPECT_NE(panel.find("not null"), std::string::npos);
    for (const char* section : {"COLUMNS", "KEYS AND INDEXES", "FOREIGN KEYS"})
        EXPECT_NE(panel.find(section), std::string::npos) << section;
    // A related table's name in the panel leads to it.
    const int parent = m_read.foreignKeys[table->foreignKeys.at(0)].parentTable;
    m_browser.Evaluate("document.querySelector('#panel a').click()");
    EXPECT_EQ(m_browser.Evaluate("document.querySelector('#panel h2').textContent"), m_read.tables[parent].name);
}

}  // namespace
