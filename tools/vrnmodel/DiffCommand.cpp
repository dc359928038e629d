// vrnmodel diff: what changed from one model to another. Either side may be
// a model file or what import reads (scripts, SQLite databases), made into
// a model on the fly. Exit status as diff(1): 0 equal, 1 different, 2 trouble.
#include <iostream>
#include <sstream>

#include "Command.h"
#include "DiffReport.h"
#include "ModelSources.h"
#include "OutputFile.h"

int RunDiff(const CCommand& command, const std::vector<std::string>& args) {
    std::vector<std::string> sides;
    std::string output = kStandardOutput;
    enum class EFormat { Text, Json, Markdown } format = EFormat::Text;
    CArguments arguments(args);
    for (std::string arg; arguments.Next(arg);) {
        if (arg == "--help" || arg == "-h") return CommandHelp(command);
        if (arg == "--json") {
            format = EFormat::Json;
        } else if (arg == "--markdown") {
            format = EFormat::Markdown;
        } else if (arg == "-o" || arg == "--output") {
            if (!arguments.Value(output)) return UsageError(command, arg + " needs a file name, or - for standard output");
        } else if (!arg.empty() && arg[0] == '-') {
            return UsageError(command, "unknown option " + arg);
        } else {
            sides.push_back(arg);
        }
    }
    if (sides.size() != 2) return UsageError(command, "two models to compare, the old one and the new one");
    std::string error;
    if (!CheckOutputIsNoInput(output, sides, error)) {
        std::cerr << "vrnmodel: " << error << "\n";
        return 2;
    }
    CModel before, after;
    if (!LoadModel(sides[0], before, error) || !LoadModel(sides[1], after, error)) {
        std::cerr << "vrnmodel: " << error << "\n";
        return 2;
    }
    const std::vector<CModelChange> changes = CompareModels(before, after);
    const CDiffSides names{sides[0], sides[1]};
    std::ostringstream report;
    if (format == EFormat::Json) WriteDiffJson(names, changes, report);
    else if (format == EFormat::Markdown) WriteDiffMarkdown(names, changes, report);
    else WriteDiffText(names, changes, report);
    if (!WriteOutput(output, report.str(), error)) {
        std::cerr << "vrnmodel: " << error << "\n";
        return 2;
    }
    return changes.empty() ? 0 : 1;
}
