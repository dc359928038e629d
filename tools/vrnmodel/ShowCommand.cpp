// vrnmodel show: what a model file holds, as text, JSON or Markdown.
#include <sstream>

#include "Command.h"
#include "ModelReport.h"
#include "OutputFile.h"

int RunShow(const CCommand& command, const std::vector<std::string>& args) {
    std::string path, output = kStandardOutput;
    enum class EFormat { Text, Json, Markdown } format = EFormat::Text;
    CReportOptions options;
    CArguments arguments(args);
    for (std::string arg; arguments.Next(arg);) {
        if (arg == "--help" || arg == "-h") return CommandHelp(command);
        if (arg == "--json") {
            format = EFormat::Json;
        } else if (arg == "--markdown") {
            format = EFormat::Markdown;
        } else if (arg == "--code") {
            options.code = true;
        } else if (arg == "-o" || arg == "--output") {
            if (!arguments.Value(output)) return UsageError(command, arg + " needs a file name, or - for standard output");
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
    std::ostringstream report;
    if (format == EFormat::Json) WriteJsonReport(model, report);
    else if (format == EFormat::Markdown) WriteMarkdownReport(model, report);
    else WriteTextReport(model, options, report);
    if (!WriteOutput(output, report.str(), error)) return Failure(error);
    return 0;
}
