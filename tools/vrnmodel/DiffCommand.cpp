// vrnmodel diff: what changed from one model to another. Either side may be
// a model file or what import reads (scripts, SQLite databases), made into
// a model on the fly. With --ddl the output is the script that migrates a
// database from the old model to the new one. Exit status as diff(1): 0
// equal, 1 different, 2 trouble.
#include <iostream>
#include <sstream>

#include "Command.h"
#include "DiffReport.h"
#include "MigrationWriter.h"
#include "ModelSources.h"
#include "OutputFile.h"

int RunDiff(const CCommand& command, const std::vector<std::string>& args) {
    std::vector<std::string> sides;
    std::string output = kStandardOutput;
    enum class EFormat { Text, Json, Markdown, Ddl } format = EFormat::Text;
    CDdlOptions ddl;
    CArguments arguments(args);
    for (std::string arg; arguments.Next(arg);) {
        if (arg == "--help" || arg == "-h") return CommandHelp(command);
        if (arg == "--json") {
            format = EFormat::Json;
        } else if (arg == "--markdown") {
            format = EFormat::Markdown;
        } else if (arg == "--ddl") {
            format = EFormat::Ddl;
        } else if (arg == "--platform") {
            std::string text;
            if (!arguments.Value(text)) return UsageError(command, "--platform needs a value");
            if (!ParsePlatform(text, ddl.platform))
                return UsageError(command, "unknown platform '" + text + "'; the platform names are " + PlatformNames() +
                                               ", or any code of the platform table that names a platform");
        } else if (arg == "--no-storage") {
            ddl.storage = false;
        } else if (arg == "--no-code") {
            ddl.code = false;
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
    CMigrationScript migration;
    if (format == EFormat::Ddl) {
        migration = WriteMigration(before, after, ddl);
        report << migration.text;
    } else if (format == EFormat::Json) WriteDiffJson(names, changes, report);
    else if (format == EFormat::Markdown) WriteDiffMarkdown(names, changes, report);
    else WriteDiffText(names, changes, report);
    if (!WriteOutput(output, report.str(), error)) {
        std::cerr << "vrnmodel: " << error << "\n";
        return 2;
    }
    for (const std::string& warning : migration.warnings) std::cerr << "vrnmodel: warning: " << warning << "\n";
    for (const std::string& step : migration.manualSteps) std::cerr << "vrnmodel: manual step: " << step << "\n";
    return changes.empty() ? 0 : 1;
}
