// vrnmodel diagram: a model's tables and relationships drawn by Graphviz, as
// SVG or as one HTML page.
#include <VrnIntf.h>

#include "Command.h"
#include "ModelDiagram.h"
#include "OutputFile.h"

int RunDiagram(const CCommand& command, const std::vector<std::string>& args) {
    std::string model, output;
    CDiagramOptions options;
    CArguments arguments(args);
    for (std::string arg; arguments.Next(arg);) {
        if (arg == "--help" || arg == "-h") return CommandHelp(command);
        if (arg == "-o" || arg == "--output") {
            if (!arguments.Value(output)) return UsageError(command, arg + " needs a file name (OUT.svg, OUT.html or -)");
        } else if (arg == "--tables") {
            if (!arguments.Value(options.tablePattern)) return UsageError(command, "--tables needs a pattern");
        } else if (arg == "--no-columns") {
            options.columns = false;
        } else if (!arg.empty() && arg[0] == '-') {
            return UsageError(command, "unknown option " + arg);
        } else if (!model.empty()) {
            return UsageError(command, "one model file at a time ('" + model + "' and '" + arg + "')");
        } else {
            model = arg;
        }
    }
    if (model.empty()) return UsageError(command, "no model file given");
    if (output.empty()) return UsageError(command, "no output file given (-o OUT.svg, OUT.html, or - for SVG on standard output)");
    CModel read;
    if (const int status = ReadCommandModel(command, model, output, read)) return status;
    std::string dot, svg, error;
    WriteDiagramDot(read, options, dot);
    if (!RenderSvg(dot, svg, error)) return Failure(error);
    const bool html = output.size() > 5 && AfxCompareNoCase(output.substr(output.size() - 5).c_str(), ".html") == 0;
    if (!WriteOutput(output, html ? DiagramPage(model, svg) : svg, error)) return Failure(error);
    return 0;
}
