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

// Text for Graphviz's HTML-like labels.
std::string Escape(const std::string& text) {
    std::string out;
    for (char ch : text) {
        switch (ch) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += ch;
        }
    }
    return out;
}

// Text inside one of dot's double-quoted strings (an id, a tooltip):
// escaped for the SVG it ends in, and with backslashes doubled, since dot
// reads a backslash as the start of an escape.
std::string DotString(const std::string& text) {
    std::string out;
    for (char ch : Escape(text)) {
        if (ch == '\\') out += '\\';
        out += ch;
    }
    return out;
}

struct CColumn {
    std::string name, type;
    bool key = false, foreign = false;
};

struct CTable {
    std::string owner, name;
    std::vector<CColumn> columns;
};

std::string Label(const CTable& table, bool columns) {
    std::ostringstream label;
    label << "<<TABLE BORDER=\"1\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"3\">";
    label << "<TR><TD BGCOLOR=\"#dde6f0\" COLSPAN=\"2\"><B>" << Escape(table.name) << "</B>"
          << (table.owner.empty() ? "" : "<BR/><FONT POINT-SIZE=\"9\">" + Escape(table.owner) + "</FONT>")
          << "</TD></TR>";
    if (columns) {
        auto rows = [&](bool keys) {
            for (const CColumn& column : table.columns) {
                if (column.key != keys) continue;
                label << "<TR><TD ALIGN=\"LEFT\">" << (column.key ? "<U>" : "") << Escape(column.name)
                      << (column.key ? "</U>" : "") << (column.foreign ? " (FK)" : "")
                      << "</TD><TD ALIGN=\"LEFT\"><FONT COLOR=\"#555555\">" << Escape(column.type)
                      << "</FONT></TD></TR>";
            }
        };
        // The rule stands between two rows: only when there are keys and other columns.
        bool keys = false, others = false;
        for (const CColumn& column : table.columns) (column.key ? keys : others) = true;
        rows(true);
        if (keys && others) label << "<HR/>";
        rows(false);
    }
    label << "</TABLE>>";
    return label.str();
}

}  // namespace

bool WriteDiagramDot(const CModel& model, const CDiagramOptions& options, std::string& dot) {
    // The physical tables: each column once, whatever copies the model keeps
    // of columns that several relationships share.
    std::map<std::uint32_t, CTable> tables;  // by table key
    for (const CModelTable& table : model.tables) {
        if (!options.tablePattern.empty() &&
            fnmatch(options.tablePattern.c_str(), table.name.c_str(), FNM_CASEFOLD) != 0)
            continue;
        CTable& drawn = tables[table.key];
        drawn.owner = table.owner;
        drawn.name = table.name;
        if (!options.columns) continue;
        for (const CModelColumn& column : table.columns)
            drawn.columns.push_back(
                CColumn{column.name, ColumnType(model, column), column.inPrimaryKey, !column.foreignKeys.empty()});
    }

    std::ostringstream out;
    out << "digraph model {\n"
        << "  graph [rankdir=LR, splines=true, nodesep=0.4, ranksep=1.0, fontname=\"Helvetica\"];\n"
        << "  node [shape=plaintext, fontname=\"Helvetica\", fontsize=10];\n"
        << "  edge [fontname=\"Helvetica\", fontsize=8, color=\"#44546a\", dir=both];\n";
    for (const auto& [key, table] : tables)
        out << "  t" << key << " [id=\"table_" << DotString(table.name) << "\", label=" << Label(table, options.columns)
            << "];\n";
    for (const CModelForeignKey& foreignKey : model.foreignKeys) {
        if (foreignKey.parentTable < 0 || foreignKey.childTable < 0) continue;
        const std::uint32_t parent = model.tables[foreignKey.parentTable].key;
        const std::uint32_t child = model.tables[foreignKey.childTable].key;
        if (!tables.count(parent) || !tables.count(child)) continue;
        out << "  t" << parent << " -> t" << child << " [style=" << (foreignKey.identifying ? "solid" : "dashed")
            << ", arrowtail=" << (foreignKey.optional ? "teeodot" : "teetee") << ", arrowhead=crowodot, tooltip=\""
            << DotString(foreignKey.name) << "\"];\n";
    }
    out << "}\n";
    dot = out.str();
    return true;
}

bool RenderSvg(const std::string& dot, std::string& svg, std::string& error) {
    char input[] = "/tmp/vrnmodel-diagram-XXXXXX";
    const int inputFd = mkstemp(input);
    if (inputFd < 0) {
        error = std::string("cannot make a temporary file: ") + std::strerror(errno);
        return false;
    }
    const bool written = ::write(inputFd, dot.data(), dot.size()) == static_cast<ssize_t>(dot.size());
    ::close(inputFd);
    const std::string output = std::string(input) + ".svg";
    int status = -1;
    if (written) {
        const pid_t child = fork();
        if (child == 0) {
            const int devnull = ::open("/dev/null", O_WRONLY);
            if (devnull >= 0) ::dup2(devnull, STDERR_FILENO);
            execlp("dot", "dot", "-Tsvg", input, "-o", output.c_str(), static_cast<char*>(nullptr));
            _exit(127);  // no dot program
        }
        if (child > 0) waitpid(child, &status, 0);
    }
    ::unlink(input);
    std::ifstream in(output, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    ::unlink(output.c_str());
    if (!written || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        error = WIFEXITED(status) && WEXITSTATUS(status) == 127
                    ? "Graphviz's dot program was not found: install Graphviz (Debian package graphviz)"
                    : "Graphviz's dot program could not lay out the diagram";
        return false;
    }
    svg = content.str();
    return true;
}

std::string DiagramPage(const std::string& title, const std::string& svg) {
    // The SVG as dot writes it, without its XML prologue.
    std::string body = svg;
    const std::size_t start = body.find("<svg");
    if (start != std::string::npos) body = body.substr(start);
    std::ostringstream page;
    page << "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" << Escape(title) << "</title>\n"
         << "<style>\n"
         << "body{margin:0;font-family:Helvetica,Arial,sans-serif;overflow:hidden}\n"
         << "#bar{position:fixed;top:0;left:0;right:0;padding:6px 10px;background:#f4f6f9;border-bottom:1px solid "
            "#ccd;z-index:1}\n"
         << "#view{position:absolute;top:40px;left:0;right:0;bottom:0;cursor:grab}\n"
         << "#view svg{width:100%;height:100%}\n"
         << "g.node.hit polygon{stroke:#d9480f;stroke-width:3}\n"
         << "</style></head><body>\n"
         << "<div id=\"bar\"><b>" << Escape(title) << "</b> &nbsp; <input id=\"search\" placeholder=\"find a table\"> "
         << "<span id=\"found\"></span> &nbsp; drag to pan, wheel to zoom</div>\n"
         << "<div id=\"view\">" << body << "</div>\n"
         << "<script>\n"
         << "(function(){\n"
         << "var svg=document.querySelector('#view svg');\n"
         << "var box=svg.viewBox.baseVal;var vb={x:box.x,y:box.y,w:box.width,h:box.height};\n"
         << "svg.removeAttribute('width');svg.removeAttribute('height');\n"
         << "function apply(){svg.setAttribute('viewBox',vb.x+' '+vb.y+' '+vb.w+' '+vb.h);}\n"
         << "apply();\n"
         << "svg.addEventListener('wheel',function(e){e.preventDefault();var k=e.deltaY>0?1.15:1/1.15;"
            "var r=svg.getBoundingClientRect();var px=vb.x+(e.clientX-r.left)/r.width*vb.w;"
            "var py=vb.y+(e.clientY-r.top)/r.height*vb.h;vb.x=px-(px-vb.x)*k;vb.y=py-(py-vb.y)*k;vb.w*=k;vb.h*=k;"
            "apply();},{passive:false});\n"
         << "var drag=null;svg.addEventListener('mousedown',function(e){drag={x:e.clientX,y:e.clientY};});\n"
         << "window.addEventListener('mouseup',function(){drag=null;});\n"
         << "window.addEventListener('mousemove',function(e){if(!drag)return;var r=svg.getBoundingClientRect();"
            "vb.x-=(e.clientX-drag.x)/r.width*vb.w;vb.y-=(e.clientY-drag.y)/r.height*vb.h;"
            "drag={x:e.clientX,y:e.clientY};apply();});\n"
         << "document.getElementById('search').addEventListener('input',function(e){\n"
         << " var q=e.target.value.toLowerCase();var hits=0;var first=null;\n"
         << " document.querySelectorAll('g.node').forEach(function(n){var t=(n.id||'').replace(/^table_/,'')"
            ".toLowerCase();var hit=q.length>0&&t.indexOf(q)>=0;n.classList.toggle('hit',hit);"
            "if(hit){hits++;if(!first)first=n;}});\n"
         << " document.getElementById('found').textContent=q?hits+' found':'';\n"
         << " if(first){var b=first.getBBox();vb.x=b.x-vb.w/2+b.width/2;vb.y=b.y-vb.h/2+b.height/2;apply();}\n"
         << "});\n"
         << "})();\n"
         << "</script></body></html>\n";
    return page.str();
}
