#include "ModelDiagram.h"

#include "ModelReport.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

namespace {

// Text inside one of dot's double-quoted strings (an id, a tooltip):
// escaped for the SVG it ends in, and with backslashes doubled, since dot
// reads a backslash as the start of an escape.
std::string DotString(const std::string& text) {
    std::string out;
    for (char ch : MarkupEscape(text)) {
        if (ch == '\\') out += '\\';
        out += ch;
    }
    return out;
}

struct CColumn {
    std::string name, type;
    bool key = false, foreign = false;
};

// HTML-like label of a table: its name (and owner) on a shaded row, then
// its key columns, a rule, and its other columns.
std::string Label(const CModel& model, const CModelTable& table, const CDiagramOptions& options) {
    std::vector<CColumn> columns;
    if (options.columns != EDiagramColumns::None) {
        // The physical table: each column once, whatever copies the model
        // keeps of columns that several relationships share.
        for (const CModelColumn& column : table.columns) {
            const bool foreign = !column.foreignKeys.empty();
            if (options.columns == EDiagramColumns::Keys && !column.inPrimaryKey && !foreign) continue;
            columns.push_back(CColumn{column.name, ColumnType(model, column), column.inPrimaryKey, foreign});
        }
    }
    std::ostringstream label;
    label << "<<TABLE BORDER=\"1\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"3\">";
    label << "<TR><TD BGCOLOR=\"" << kDiagramHeaderFill << "\" COLSPAN=\"2\"><FONT POINT-SIZE=\"13\"><B>"
          << MarkupEscape(table.name)
          << "</B></FONT>";
    // Inside an owner's frame the owner goes without saying.
    if (!options.groupByOwner && !table.owner.empty())
        label << "<BR/><FONT POINT-SIZE=\"9\">" << MarkupEscape(TrimmedOwner(table.owner)) << "</FONT>";
    label << "</TD></TR>";
    auto rows = [&](bool keys) {
        for (const CColumn& column : columns) {
            if (column.key != keys) continue;
            label << "<TR><TD ALIGN=\"LEFT\">" << (column.key ? "<U>" : "") << MarkupEscape(column.name)
                  << (column.key ? "</U>" : "") << (column.foreign ? " (FK)" : "")
                  << "</TD><TD ALIGN=\"LEFT\"><FONT COLOR=\"#555555\">" << MarkupEscape(column.type) << "</FONT></TD></TR>";
        }
    };
    // The rule stands between two rows: only when there are keys and other columns.
    bool keys = false, others = false;
    for (const CColumn& column : columns) (column.key ? keys : others) = true;
    rows(true);
    if (keys && others) label << "<HR/>";
    rows(false);
    label << "</TABLE>>";
    return label.str();
}

}  // namespace

std::vector<int> DiagramTables(const CModel& model, const CDiagramOptions& options) {
    std::vector<int> tables;
    for (std::size_t i = 0; i < model.tables.size(); ++i) {
        if (options.tablePattern.empty() ||
            fnmatch(options.tablePattern.c_str(), model.tables[i].name.c_str(), FNM_CASEFOLD) == 0)
            tables.push_back(static_cast<int>(i));
    }
    return tables;
}

std::string DiagramNodeId(int table) { return "t" + std::to_string(table); }

std::string WriteDiagramDot(const CModel& model, const std::vector<int>& tables, const CDiagramOptions& options) {
    std::vector<bool> drawn(model.tables.size(), false);
    for (int table : tables) drawn[table] = true;

    std::ostringstream out;
    // A parent's children share a rank. Tall boxes (tables with their
    // columns) stand side by side, top to bottom, rather than in one tall
    // column; flat boxes (names or keys only) stand one above another, left
    // to right, rather than in one long row. pack lays out each connected
    // group on its own and puts the groups in an array, largest first.
    const char* direction = options.columns == EDiagramColumns::All ? "TB" : "LR";
    out << "digraph model {\n"
        << "  graph [rankdir=" << direction << ", pack=true, packmode=\"array\", splines=true, nodesep=0.35, ranksep=0.7, "
           "fontname=\"Helvetica\"];\n"
        << "  node [shape=plaintext, fontname=\"Helvetica\", fontsize=10];\n"
        << "  edge [fontname=\"Helvetica\", fontsize=8, color=\"#44546a\", dir=both];\n";
    auto node = [&](int table, const char* indent) {
        out << indent << DiagramNodeId(table) << " [id=\"" << DiagramNodeId(table)
            << "\", label=" << Label(model, model.tables[table], options) << "];\n";
    };
    if (options.groupByOwner) {
        // One frame per owner, in the order owners first appear.
        std::vector<std::string> owners;
        std::map<std::string, std::vector<int>> byOwner;
        for (int table : tables) {
            const std::string owner = TrimmedOwner(model.tables[table].owner);
            if (!byOwner.count(owner)) owners.push_back(owner);
            byOwner[owner].push_back(table);
        }
        for (std::size_t i = 0; i < owners.size(); ++i) {
            out << "  subgraph cluster_" << i << " {\n"
                << "    label=<<B>" << MarkupEscape(owners[i].empty() ? "(no owner)" : owners[i]) << "</B>>;\n"
                << "    fontsize=14; labeljust=l; style=\"rounded,filled\"; color=\"#8a9bb0\"; fillcolor=\"#f6f8fb\";\n";
            for (int table : byOwner[owners[i]]) node(table, "    ");
            out << "  }\n";
        }
    } else {
        for (int table : tables) node(table, "  ");
    }
    for (const CModelForeignKey& foreignKey : model.foreignKeys) {
        if (foreignKey.parentTable < 0 || foreignKey.childTable < 0) continue;
        if (!drawn[foreignKey.parentTable] || !drawn[foreignKey.childTable]) continue;
        out << "  " << DiagramNodeId(foreignKey.parentTable) << " -> " << DiagramNodeId(foreignKey.childTable)
            << " [style=" << (foreignKey.identifying ? "solid" : "dashed")
            << ", arrowtail=" << (foreignKey.optional ? "teeodot" : "teetee") << ", arrowhead=crowodot, tooltip=\""
            << DotString(foreignKey.name) << "\"];\n";
    }
    out << "}\n";
    return out.str();
}

bool RenderDiagram(const std::string& dot, const std::string& format, std::string& output, std::string& error) {
    char input[] = "/tmp/vrnmodel-diagram-XXXXXX";
    const int inputFd = mkstemp(input);
    if (inputFd < 0) {
        error = std::string("cannot make a temporary file: ") + std::strerror(errno);
        return false;
    }
    const bool written = ::write(inputFd, dot.data(), dot.size()) == static_cast<ssize_t>(dot.size());
    ::close(inputFd);
    const std::string result = std::string(input) + "." + format;
    const std::string messages = std::string(input) + ".log";
    const std::string type = "-T" + format;
    int status = -1;
    if (written) {
        const pid_t child = fork();
        if (child == 0) {
            const int log = ::open(messages.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            if (log >= 0) ::dup2(log, STDERR_FILENO);
            execlp("dot", "dot", type.c_str(), input, "-o", result.c_str(), static_cast<char*>(nullptr));
            _exit(127);  // no dot program
        }
        if (child > 0) waitpid(child, &status, 0);
    }
    ::unlink(input);
    std::ostringstream content, said;
    content << std::ifstream(result, std::ios::binary).rdbuf();
    said << std::ifstream(messages).rdbuf();
    ::unlink(result.c_str());
    ::unlink(messages.c_str());
    if (!written || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        if (WIFEXITED(status) && WEXITSTATUS(status) == 127) {
            error = "Graphviz's dot program was not found: install Graphviz (Debian package graphviz)";
        } else {
            std::string reason = said.str();
            reason = reason.substr(0, reason.find('\n'));
            error = "Graphviz's dot program could not lay out the diagram" + (reason.empty() ? "" : ": " + reason);
        }
        return false;
    }
    output = content.str();
    return true;
}
