// vrnmodel ddl: the script that creates a model, for its own platform or
// another; what the target cannot hold is said in the script and on
// standard error.
#include <iostream>

#include "Command.h"
#include "DdlWriter.h"
#include "OutputFile.h"

int RunDdl(const CCommand& command, const std::vector<std::string>& args) {
    std::string path, output = kStandardOutput, text;
    CDdlOptions options;
    CArguments arguments(args);
    for (std::string arg; arguments.Next(arg);) {
        if (arg == "--help" || arg == "-h") return CommandHelp(command);
        if (arg == "-o" || arg == "--output") {
            if (!arguments.Value(output)) return UsageError(command, arg + " needs a file name, or - for standard output");
        } else if (arg == "--platform") {
            if (!arguments.Value(text)) return UsageError(command, "--platform needs a value");
            if (!ParsePlatform(text, options.platform))
                return UsageError(command, "unknown platform '" + text + "'; the platform names are " + PlatformNames() +
                                               ", or any code of the platform table that names a platform");
        } else if (arg == "--tables") {
            if (!arguments.Value(options.tablePattern)) return UsageError(command, "--tables needs a pattern");
        } else if (arg == "--no-storage") {
            options.storage = false;
        } else if (arg == "--no-code") {
            options.code = false;
        } else if (!arg.empty() && arg[0] == '-') {
            return UsageError(command, "unknown option " + arg);
        } else if (!path.empty()) {
            return UsageError(command, "one model file at a time ('" + path + "' and '" + arg + "')");
        } else {
            path = arg;
        }
    }
    CModel model;
    if (const int status = ReadCommandModel(command, path, output, model)) return status;
    std::string error;
    const CDdlScript script = WriteDdl(model, options);
    if (!options.tablePattern.empty() && script.tables == 0)
        return Failure("no table of '" + path + "' matches --tables " + options.tablePattern);
    if (!WriteOutput(output, script.text, error)) return Failure(error);
    for (const std::string& warning : script.warnings) std::cerr << "vrnmodel: warning: " << warning << "\n";
    return 0;
}
