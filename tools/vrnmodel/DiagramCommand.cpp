// vrnmodel diagram: a model's tables and relationships drawn by Graphviz, as
// SVG, PNG, PDF, one HTML page, or Graphviz's own source.
#include <cctype>

#include <VrnIntf.h>

#include "Command.h"
#include "ModelDiagram.h"
#include "OutputFile.h"

namespace {

const char* const kFormats[] = {"svg", "html", "png", "pdf", "dot"};

bool KnownFormat(const std::string& format) {
    for (const char* known : kFormats)
        if (format == known) return true;
    return false;
}

// The format a file's name asks for: its extension in any case ("htm" is
// "html"); SVG for standard output and for devices, which have none.
std::string FormatOf(const std::string& output) {
    if (output == kStandardOutput || output.compare(0, 5, "/dev/") == 0 || output.compare(0, 6, "/proc/") == 0)
        return "svg";
    const std::size_t dot = output.find_last_of("./");
    if (dot == std::string::npos || output[dot] != '.') return "";
    std::string extension = output.substr(dot + 1);
    for (char& ch : extension) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
    if (extension == "htm") return "html";
    return KnownFormat(extension) ? extension : "";
}

}  // namespace

int RunDiagram(const CCommand& command, const std::vector<std::string>& args) {
    std::string model, output, format;
    CDiagramOptions options;
    CArguments arguments(args);
    for (std::string arg; arguments.Next(arg);) {
        if (arg == "--help" || arg == "-h") return CommandHelp(command);
        if (arg == "-o" || arg == "--output") {
            if (!arguments.Value(output))
                return UsageError(command, arg + " needs a file name (OUT.svg, OUT.html, OUT.png, OUT.pdf, OUT.dot or -)");
        } else if (arg == "--format") {
            if (!arguments.Value(format) || !KnownFormat(format))
                return UsageError(command, "--format needs one of svg, html, png, pdf, dot");
        } else if (arg == "--tables") {
            if (!arguments.Value(options.tablePattern)) return UsageError(command, "--tables needs a pattern");
        } else if (arg == "--no-columns") {
            options.columns = EDiagramColumns::None;
        } else if (arg == "--keys-only") {
            options.columns = EDiagramColumns::Keys;
        } else if (arg == "--group-by") {
            std::string by;
            if (!arguments.Value(by) || by != "owner") return UsageError(command, "--group-by takes 'owner'");
            options.groupByOwner = true;
        } else if (!arg.empty() && arg[0] == '-') {
            return UsageError(command, "unknown option " + arg);
        } else if (!model.empty()) {
            return UsageError(command, "one model file at a time ('" + model + "' and '" + arg + "')");
        } else {
            model = arg;
        }
    }
    if (model.empty()) return UsageError(command, "no model file given");
    if (output.empty())
        return UsageError(command, "no output file given (-o OUT.svg, OUT.html, OUT.png, OUT.pdf, OUT.dot, or - for SVG "
                                   "on standard output)");
    CModel read;
    if (const int status = ReadCommandModel(command, model, output, read)) return status;
    if (format.empty()) format = FormatOf(output);
    if (format.empty())
        return UsageError(command, "cannot tell the format of '" + output +
                                       "': name it .svg, .html, .png, .pdf or .dot, or give --format");
    const std::vector<int> tables = DiagramTables(read, options);
    if (read.tables.empty()) return Failure("the model " + model + " has no tables to draw");
    if (tables.empty())
        return Failure("no table of " + std::to_string(read.tables.size()) + " matches --tables '" +
                       options.tablePattern + "'");
    const std::string dot = WriteDiagramDot(read, tables, options);
    std::string drawn, error;
    if (format == "dot") {
        drawn = dot;
    } else if (!RenderDiagram(dot, format == "html" ? "svg" : format, drawn, error)) {
        return Failure(error);
    }
    if (format == "html") drawn = DiagramPage(read, tables, model.substr(model.find_last_of('/') + 1), drawn);
    if (!WriteOutput(output, drawn, error)) return Failure(error);
    return 0;
}
