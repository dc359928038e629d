// Copies the C++ examples of a Markdown guide into one source file, so that
// the tests compile the guide's own text: an example that no longer compiles,
// or no longer does what the guide says, fails the build or a test instead of
// misleading a reader. Each block keeps its place in the guide through #line,
// so a compiler error points at the line of the guide.
//
//   extract_examples GUIDE.md OUTPUT.inc
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: extract_examples GUIDE.md OUTPUT.inc\n";
        return 2;
    }
    std::ifstream guide(argv[1]);
    if (!guide) {
        std::cerr << "extract_examples: cannot read " << argv[1] << "\n";
        return 1;
    }
    std::string code;
    std::string line;
    int lineNo = 0, blocks = 0;
    bool inBlock = false;
    while (std::getline(guide, line)) {
        ++lineNo;
        if (!inBlock && line == "```cpp") {
            inBlock = true;
            ++blocks;
            code += "#line " + std::to_string(lineNo + 1) + " \"" + argv[1] + "\"\n";
        } else if (inBlock && line.rfind("```", 0) == 0) {
            inBlock = false;
        } else if (inBlock) {
            code += line + "\n";
        }
    }
    if (inBlock) {
        std::cerr << argv[1] << ": a C++ block is not closed\n";
        return 1;
    }
    if (blocks == 0) {
        std::cerr << argv[1] << ": no C++ block found\n";
        return 1;
    }
    // Written only when it changed, so that an edit of the guide's prose
    // does not recompile the tests.
    std::ifstream old(argv[2], std::ios::binary);
    const std::string previous((std::istreambuf_iterator<char>(old)), std::istreambuf_iterator<char>());
    if (previous == code) return 0;
    std::ofstream out(argv[2], std::ios::binary | std::ios::trunc);
    out << code;
    if (!out.flush()) {
        std::cerr << "extract_examples: cannot write " << argv[2] << "\n";
        return 1;
    }
    return 0;
}
