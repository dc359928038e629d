// The README's commands, run exactly as written. Newcomers copy them from
// there, so a command that stops working has to fail here first.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "ModelFileReader.h"

namespace {

namespace fs = std::filesystem;

// Every line of the README's ```sh blocks, comment lines left out.
std::vector<std::string> ReadmeCommandLines() {
    std::ifstream readme(std::string(VRN_SOURCE_DIR) + "/README.md");
    std::vector<std::string> lines;
    bool inBlock = false;
    for (std::string line; std::getline(readme, line);) {
        if (line.rfind("```", 0) == 0) {
            inBlock = !inBlock && line == "```sh";
            continue;
        }
        if (inBlock && !line.empty() && line[0] != '#') lines.push_back(line);
    }
    return lines;
}

// The steps of command lines joined by " && " that run the client. The cmake
// and ctest steps are the build itself, which CI runs from the README.
std::vector<std::string> ClientSteps() {
    std::vector<std::string> steps;
    for (const std::string& line : ReadmeCommandLines()) {
        std::size_t from = 0;
        for (;;) {
            const std::size_t to = line.find(" && ", from);
            const std::string step = line.substr(from, to == std::string::npos ? std::string::npos : to - from);
            if (step.rfind("cmake ", 0) != 0 && step.rfind("ctest ", 0) != 0) steps.push_back(step);
            if (to == std::string::npos) break;
            from = to + 4;
        }
    }
    return steps;
}

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// The file a step names after -o, or "" when it writes to standard output.
std::string OutputFile(const std::string& step) {
    std::istringstream words(step);
    for (std::string word; words >> word;)
        if (word == "-o" && words >> word) return word;
    return "";
}

bool GraphvizInstalled() { return std::system("command -v dot > /dev/null 2>&1") == 0; }

}  // namespace

// The tour must show each thing the client does; were the extraction to find
// nothing, the test below would pass without running anything.
TEST(ReadmeTest, TheTourShowsEveryCommandOfTheClient) {
    std::string all;
    for (const std::string& step : ClientSteps()) all += step + "\n";
    for (const char* command : {"vrnmodel import build/examples/example.db", "vrnmodel show build/example.vrn\n",
                                "vrnmodel show build/example.vrn --markdown", "--json", "vrnmodel import tests/data/",
                                "vrnmodel ddl", "--platform oracle", "vrnmodel diff", "vrnmodel diff --ddl",
                                "vrnmodel diagram"})
        EXPECT_TRUE(Has(all, command)) << "no README command with \"" << command << "\" in:\n" << all;
}

// Each step runs from the top of a source tree whose build folder is this
// build, in README order (the tour reads what the main job saved), and does
// what its line says: it succeeds (a diff exits 1 for "they differ") and
// writes something.
TEST(ReadmeTest, EveryClientCommandRunsAsWritten) {
    const CScratchDir top;
    for (const fs::directory_entry& entry : fs::directory_iterator(VRN_SOURCE_DIR))
        if (entry.path().filename() != "build") fs::create_symlink(entry.path(), top.File(entry.path().filename()));
    fs::create_symlink(VRN_BINARY_DIR, top.File("build"));
    const CScratchDir out;

    for (const std::string& step : ClientSteps()) {
        SCOPED_TRACE(step);
        if (Has(step, " diagram ") && !GraphvizInstalled()) {
            std::printf("[  SKIPPED ] %s: Graphviz (dot) is not installed\n", step.c_str());
            continue;
        }
        const std::string command = "cd '" + top.Path() + "' && (" + step + ") > " + out.File("stdout") + " 2> " +
                                    out.File("stderr");
        const int status = std::system(command.c_str());
        const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        const int expected = Has(step, "vrnmodel diff ") ? 1 : 0;
        EXPECT_EQ(code, expected) << ReadBytes(out.File("stderr"));

        const std::string written = OutputFile(step);
        if (written.empty())
            EXPECT_FALSE(ReadBytes(out.File("stdout")).empty());
        else
            EXPECT_TRUE(fs::exists(top.File(written)) && fs::file_size(top.File(written)) > 0) << written;
    }
}
