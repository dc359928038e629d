#include "DiffReport.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace {

// A change as told within its table's group: "column QTY: width 10 -> 12".
std::string WithinTable(const CModelChange& change) {
    const std::string described = change.Describe();
    const std::string prefix = "table " + change.table + ": ";
    if (!change.table.empty() && described.compare(0, prefix.size(), prefix) == 0) return described.substr(prefix.size());
    const std::string objectPrefix = "table " + change.table + " ";
    if (!change.table.empty() && described.compare(0, objectPrefix.size(), objectPrefix) == 0)
        return described.substr(objectPrefix.size());
    return described;
}

bool SpansLines(const CModelChange& change) {
    return change.change == EModelChange::Changed &&
           (change.before.find('\n') != std::string::npos || change.after.find('\n') != std::string::npos);
}

const char* ChangeName(EModelChange change) {
    switch (change) {
        case EModelChange::Added: return "added";
        case EModelChange::Dropped: return "dropped";
        case EModelChange::Changed: break;
    }
    return "changed";
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::string Json(const std::string& text) {
    std::string out = "\"";
    for (unsigned char ch : text) {
        switch (ch) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (ch < 0x20) {
                    char escaped[8];
                    std::snprintf(escaped, sizeof escaped, "\\u%04x", ch);
                    out += escaped;
                } else {
                    out += static_cast<char>(ch);
                }
        }
    }
    return out + "\"";
}

// Markdown table cells hold no pipes or line breaks of their own.
std::string Cell(const std::string& text) {
    std::string out;
    for (char ch : text) {
        if (ch == '|') out += "\\|";
        else if (ch == '\n') out += "<br>";
        else if (ch != '\r') out += ch;
    }
    return out.empty() ? " " : out;
}

// Changes in groups: each table's in the order they come, then the model's own.
template <class Table, class Model>
void Grouped(const std::vector<CModelChange>& changes, Table table, Model model) {
    std::vector<std::string> tables;
    for (const CModelChange& change : changes)
        if (!change.table.empty() && std::find(tables.begin(), tables.end(), change.table) == tables.end())
            tables.push_back(change.table);
    for (const std::string& name : tables) {
        std::vector<const CModelChange*> own;
        for (const CModelChange& change : changes)
            if (change.table == name) own.push_back(&change);
        table(name, own);
    }
    std::vector<const CModelChange*> rest;
    for (const CModelChange& change : changes)
        if (change.table.empty()) rest.push_back(&change);
    if (!rest.empty()) model(rest);
}

}  // namespace

std::vector<std::string> LineDiff(const std::string& before, const std::string& after) {
    const std::vector<std::string> a = Lines(before), b = Lines(after);
    std::vector<std::string> lines;
    // Longest common subsequence of lines: its table grows with the product
    // of the two lengths, so two long texts are shown whole, old then new.
    constexpr std::size_t kLargestTable = 4000000;
    if ((a.size() + 1) * (b.size() + 1) > kLargestTable) {
        for (const std::string& line : a) lines.push_back("-" + line);
        for (const std::string& line : b) lines.push_back("+" + line);
        return lines;
    }
    std::vector<std::vector<int>> common(a.size() + 1, std::vector<int>(b.size() + 1, 0));
    for (std::size_t i = a.size(); i-- > 0;)
        for (std::size_t j = b.size(); j-- > 0;)
            common[i][j] = a[i] == b[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    std::size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            lines.push_back(" " + a[i++]);
            ++j;
        } else if (i < a.size() && (j == b.size() || common[i + 1][j] >= common[i][j + 1])) {
            lines.push_back("-" + a[i++]);  // what went comes before what came
        } else {
            lines.push_back("+" + b[j++]);
        }
    }
    return lines;
}

void WriteDiffText(const CDiffSides& sides, const std::vector<CModelChange>& changes, std::ostream& out) {
    if (changes.empty()) {
        out << sides.oldName << " and " << sides.newName << " hold the same model\n";
        return;
    }
    out << "From " << sides.oldName << " to " << sides.newName << ":\n";
    auto line = [&](const CModelChange& change, const std::string& told) {
        out << "  " << told << "\n";
        if (!SpansLines(change)) return;
        for (const std::string& diff : LineDiff(change.before, change.after)) out << "    " << diff << "\n";
    };
    Grouped(
        changes,
        [&](const std::string& table, const std::vector<const CModelChange*>& own) {
            // A table added or dropped is one change: its contents are not listed.
            if (own.size() == 1 && own[0]->object == "table " + table && own[0]->change != EModelChange::Changed) {
                out << "\nTable " << table << " " << ChangeName(own[0]->change) << "\n";
                return;
            }
            out << "\nTable " << table << "\n";
            for (const CModelChange* change : own) line(*change, WithinTable(*change));
        },
        [&](const std::vector<const CModelChange*>& rest) {
            out << "\nModel\n";
            for (const CModelChange* change : rest) line(*change, change->Describe());
        });
    out << "\n" << changes.size() << (changes.size() == 1 ? " change\n" : " changes\n");
}

void WriteDiffJson(const CDiffSides& sides, const std::vector<CModelChange>& changes, std::ostream& out) {
    out << "{\"format\":1,\"old\":" << Json(sides.oldName) << ",\"new\":" << Json(sides.newName)
        << ",\"equal\":" << (changes.empty() ? "true" : "false") << ",\"changes\":[";
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const CModelChange& change = changes[i];
        out << (i ? "," : "") << "{\"change\":\"" << ChangeName(change.change) << "\",\"object\":" << Json(change.object)
            << ",\"table\":" << Json(change.table) << ",\"field\":" << Json(change.field)
            << ",\"before\":" << Json(change.before) << ",\"after\":" << Json(change.after)
            << ",\"description\":" << Json(change.Describe()) << "}";
    }
    out << "]}\n";
}

void WriteDiffMarkdown(const CDiffSides& sides, const std::vector<CModelChange>& changes, std::ostream& out) {
    out << "## Changes from `" << sides.oldName << "` to `" << sides.newName << "`\n\n";
    if (changes.empty()) {
        out << "No change.\n";
        return;
    }
    auto table = [&](const std::vector<const CModelChange*>& group, bool withinTable) {
        out << "| Object | Change | Before | After |\n|---|---|---|---|\n";
        for (const CModelChange* change : group) {
            std::string object = change->object;
            const std::string prefix = "table " + change->table + " ";
            if (withinTable && object.compare(0, prefix.size(), prefix) == 0) object = object.substr(prefix.size());
            const std::string what = change->change == EModelChange::Changed ? change->field : ChangeName(change->change);
            out << "| " << Cell(object) << " | " << Cell(what) << " | " << Cell(change->before) << " | "
                << Cell(change->after) << " |\n";
        }
        out << "\n";
    };
    Grouped(
        changes,
        [&](const std::string& name, const std::vector<const CModelChange*>& own) {
            out << "### Table `" << name << "`\n\n";
            table(own, true);
        },
        [&](const std::vector<const CModelChange*>& rest) {
            out << "### Model\n\n";
            table(rest, false);
        });
    out << changes.size() << (changes.size() == 1 ? " change.\n" : " changes.\n");
}
