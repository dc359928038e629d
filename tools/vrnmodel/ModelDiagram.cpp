#include "ModelDiagram.h"

#include "ModelReport.h"

#include <fcntl.h>
#include <fnmatch.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
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

// Point sizes of the label's texts, and the layout's gaps in points.
constexpr double kNamePoints = 13, kOwnerPoints = 9, kColumnPoints = 10;
constexpr double kNodeGap = 25, kRankGap = 50;

// One table's box: what it shows and about how big dot will make it, in
// points (an average letter is about 0.6 of the point size wide).
struct CBox {
    int table = -1;
    std::vector<CColumn> columns;
    double width = 0, height = 0;
};

CBox MakeBox(const CModel& model, int index, const CDiagramOptions& options) {
    const CModelTable& table = model.tables[index];
    CBox box;
    box.table = index;
    double width = table.name.size() * kNamePoints * 0.6;
    box.height = kNamePoints + 10;
    if (!options.groupByOwner && !TrimmedOwner(table.owner).empty()) {
        width = std::max(width, TrimmedOwner(table.owner).size() * kOwnerPoints * 0.6);
        box.height += kOwnerPoints + 3;
    }
    if (options.columns != EDiagramColumns::None) {
        // The physical table: each column once, whatever copies the model
        // keeps of columns that several relationships share.
        for (const CModelColumn& column : table.columns) {
            const bool foreign = !column.foreignKeys.empty();
            if (options.columns == EDiagramColumns::Keys && !column.inPrimaryKey && !foreign) continue;
            box.columns.push_back(CColumn{column.name, ColumnType(model, column), column.inPrimaryKey, foreign});
            const CColumn& added = box.columns.back();
            const std::size_t letters = added.name.size() + (foreign ? 5 : 0) + added.type.size();
            width = std::max(width, letters * kColumnPoints * 0.6 + 12);
            box.height += kColumnPoints + 6;
        }
    }
    box.width = width + 10;
    return box;
}

// HTML-like label of a table: its name (and owner) on a shaded row, then
// its key columns, a rule, and its other columns.
std::string Label(const CModelTable& table, const CBox& box, const CDiagramOptions& options) {
    std::ostringstream label;
    label << "<<TABLE BORDER=\"1\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"3\">";
    label << "<TR><TD BGCOLOR=\"" << kDiagramHeaderFill << "\" COLSPAN=\"2\"><FONT POINT-SIZE=\"" << kNamePoints
          << "\"><B>" << MarkupEscape(table.name) << "</B></FONT>";
    // Inside an owner's frame the owner goes without saying.
    if (!options.groupByOwner && !TrimmedOwner(table.owner).empty())
        label << "<BR/><FONT POINT-SIZE=\"" << kOwnerPoints << "\">" << MarkupEscape(TrimmedOwner(table.owner))
              << "</FONT>";
    label << "</TD></TR>";
    auto rows = [&](bool keys) {
        for (const CColumn& column : box.columns) {
            if (column.key != keys) continue;
            label << "<TR><TD ALIGN=\"LEFT\">" << (column.key ? "<U>" : "") << MarkupEscape(column.name)
                  << (column.key ? "</U>" : "") << (column.foreign ? " (FK)" : "")
                  << "</TD><TD ALIGN=\"LEFT\"><FONT COLOR=\"#555555\">" << MarkupEscape(column.type)
                  << "</FONT></TD></TR>";
        }
    };
    // The rule stands between two rows: only when there are keys and other columns.
    bool keys = false, others = false;
    for (const CColumn& column : box.columns) (column.key ? keys : others) = true;
    rows(true);
    if (keys && others) label << "<HR/>";
    rows(false);
    label << "</TABLE>>";
    return label.str();
}

// The direction of the ranks. A parent's children share a rank, so a
// direction turns a wide fan of children into a tall column or the other
// way round. Each connected group's size is estimated both ways from its
// ranks (a table's distance from the group's roots), its leaves and its
// boxes' sizes,
// and the direction whose groups come closer to a screen's shape, weighted
// by their area, wins. Without relationships the boxes decide: tall boxes
// side by side, flat ones one above another.
const char* Direction(const std::vector<CBox>& boxes, const std::vector<std::pair<int, int>>& edges,
                      const CDiagramOptions& options) {
    const std::size_t count = boxes.size();
    std::vector<std::vector<int>> children(count), neighbours(count);
    std::vector<int> parents(count, 0);
    for (const auto& [parent, child] : edges) {
        if (parent == child) continue;
        children[parent].push_back(child);
        ++parents[child];
        neighbours[parent].push_back(child);
        neighbours[child].push_back(parent);
    }
    // Ranks by breadth-first search from the roots; a cycle without a root
    // starts from its first table.
    std::vector<int> rank(count, -1);
    std::vector<int> queue;
    auto walk = [&](std::size_t from) {
        for (std::size_t at = from; at < queue.size(); ++at)
            for (int child : children[queue[at]])
                if (rank[child] < 0) {
                    rank[child] = rank[queue[at]] + 1;
                    queue.push_back(child);
                }
    };
    for (std::size_t i = 0; i < count; ++i)
        if (parents[i] == 0) rank[i] = 0, queue.push_back(static_cast<int>(i));
    walk(0);
    for (std::size_t i = 0; i < count; ++i)
        if (rank[i] < 0) {
            rank[i] = 0;
            queue.push_back(static_cast<int>(i));
            walk(queue.size() - 1);
        }
    // Connected groups, and the badness of each direction.
    std::vector<int> group(count, -1);
    double badness[2] = {0, 0};  // top to bottom, left to right
    for (std::size_t start = 0; start < count; ++start) {
        if (group[start] >= 0 || neighbours[start].empty()) continue;
        std::vector<int> members{static_cast<int>(start)};
        group[start] = static_cast<int>(start);
        for (std::size_t at = 0; at < members.size(); ++at)
            for (int next : neighbours[members[at]])
                if (group[next] < 0) group[next] = static_cast<int>(start), members.push_back(next);
        std::map<int, std::array<double, 4>> ranks;  // width sum, height sum, widest, tallest
        for (int member : members) {
            std::array<double, 4>& r = ranks[rank[member]];
            r[0] += boxes[member].width + kNodeGap;
            r[1] += boxes[member].height + kNodeGap;
            r[2] = std::max(r[2], boxes[member].width);
            r[3] = std::max(r[3], boxes[member].height);
        }
        // dot sets subtrees side by side, so a group is at least as broad
        // as its leaves (tables without children) put together.
        double across[2] = {0, 0}, along[2] = {0, 0};
        for (int member : members)
            if (children[member].empty()) {
                across[0] += boxes[member].width + kNodeGap;
                across[1] += boxes[member].height + kNodeGap;
            }
        for (const auto& entry : ranks) {
            const std::array<double, 4>& r = entry.second;
            across[0] = std::max(across[0], r[0]);  // top to bottom: ranks are rows
            along[0] += r[3] + kRankGap;
            across[1] = std::max(across[1], r[1]);  // left to right: ranks are columns
            along[1] += r[2] + kRankGap;
        }
        const double shape[2] = {across[0] / along[0], along[1] / across[1]};
        for (int way = 0; way < 2; ++way)
            badness[way] += across[way] * along[way] * std::fabs(std::log(shape[way] / 1.6));
    }
    if (badness[0] != badness[1]) return badness[0] < badness[1] ? "TB" : "LR";
    return options.columns == EDiagramColumns::All ? "TB" : "LR";
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
    std::vector<int> boxOf(model.tables.size(), -1);
    std::vector<CBox> boxes;
    for (int table : tables) {
        boxOf[table] = static_cast<int>(boxes.size());
        boxes.push_back(MakeBox(model, table, options));
    }
    std::vector<std::pair<int, int>> edges;  // parent and child boxes, one per drawn foreign key
    std::vector<const CModelForeignKey*> drawnKeys;
    for (const CModelForeignKey& foreignKey : model.foreignKeys) {
        if (foreignKey.parentTable < 0 || foreignKey.childTable < 0) continue;
        if (boxOf[foreignKey.parentTable] < 0 || boxOf[foreignKey.childTable] < 0) continue;
        edges.emplace_back(boxOf[foreignKey.parentTable], boxOf[foreignKey.childTable]);
        drawnKeys.push_back(&foreignKey);
    }

    std::ostringstream out;
    // pack lays out each connected group on its own and puts the groups in
    // an array, largest first.
    out << "digraph model {\n"
        << "  graph [rankdir=" << Direction(boxes, edges, options) << ", pack=true, packmode=\"array\", "
        << "splines=true, nodesep=" << kNodeGap / 72 << ", ranksep=" << kRankGap / 72 << ", fontname=\"Helvetica\"];\n"
        << "  node [shape=plaintext, fontname=\"Helvetica\", fontsize=" << kColumnPoints << "];\n"
        << "  edge [fontname=\"Helvetica\", fontsize=8, color=\"#44546a\", dir=both];\n";
    auto node = [&](const CBox& box, const char* indent) {
        out << indent << DiagramNodeId(box.table) << " [id=\"" << DiagramNodeId(box.table)
            << "\", label=" << Label(model.tables[box.table], box, options) << "];\n";
    };
    if (options.groupByOwner) {
        // One frame per owner, in the order owners first appear.
        std::vector<std::string> owners;
        std::map<std::string, std::vector<const CBox*>> byOwner;
        for (const CBox& box : boxes) {
            const std::string owner = TrimmedOwner(model.tables[box.table].owner);
            if (!byOwner.count(owner)) owners.push_back(owner);
            byOwner[owner].push_back(&box);
        }
        for (std::size_t i = 0; i < owners.size(); ++i) {
            out << "  subgraph cluster_" << i << " {\n"
                << "    label=<<B>" << MarkupEscape(owners[i].empty() ? "(no owner)" : owners[i]) << "</B>>;\n"
                << "    fontsize=14; labeljust=l; style=\"rounded,filled\"; color=\"#8a9bb0\"; "
                   "fillcolor=\"#f6f8fb\";\n";
            for (const CBox* box : byOwner[owners[i]]) node(*box, "    ");
            out << "  }\n";
        }
    } else {
        for (const CBox& box : boxes) node(box, "  ");
    }
    for (const CModelForeignKey* foreignKey : drawnKeys) {
        out << "  " << DiagramNodeId(foreignKey->parentTable) << " -> " << DiagramNodeId(foreignKey->childTable)
            << " [style=" << (foreignKey->identifying ? "solid" : "dashed")
            << ", arrowtail=" << (foreignKey->optional ? "teeodot" : "teetee") << ", arrowhead=crowodot, tooltip=\""
            << DotString(foreignKey->name) << "\"];\n";
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
