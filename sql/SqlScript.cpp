#include "SqlScript.h"

#include <algorithm>
#include <cctype>
#include <set>

#include <VrnIntf.h>

namespace {

bool AloneOnLine(const CToken& token) { return token.firstOnLine && token.lastOnLine; }

bool IsBatchEnd(const CToken& token) { return AloneOnLine(token) && token.IsWord("GO"); }

bool IsBlockEnd(const CToken& token) {
    return AloneOnLine(token) && (token.IsSymbol('/') || token.IsSymbol('~'));
}

// Statement terminators other than ";", as the DB2 command line processor
// takes them (-td@, -td~, -td!): the character at the end of a line ends
// the statement, code bodies included. A script announces one with
// "--#SET TERMINATOR x"; without that, a script whose lines end with one of
// them more often than with ";" uses it throughout.
class CTerminators {
public:
    explicit CTerminators(const std::string& text) {
        int line = 1;
        int semicolons = 0;
        int counts[3] = {};
        for (std::size_t at = 0; at <= text.size(); ++line) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            const std::string current = text.substr(at, end - at);
            at = end + 1;
            const std::size_t first = current.find_first_not_of(" \t\r");
            if (first == std::string::npos) continue;
            static const char kDirective[] = "--#SET TERMINATOR";
            if (AfxCompareNoCase(current.substr(first, sizeof kDirective - 1).c_str(), kDirective) == 0) {
                const std::size_t value = current.find_first_not_of(" \t", first + sizeof kDirective - 1);
                if (value != std::string::npos) m_changes.emplace_back(line, current[value]);
                continue;
            }
            if (current.compare(first, 2, "--") == 0) continue;
            const char last = current[current.find_last_not_of(" \t\r")];
            if (last == ';') ++semicolons;
            for (int k = 0; k < 3; ++k)
                if (last == kCandidates[k]) ++counts[k];
        }
        if (!m_changes.empty()) return;
        for (int k = 0; k < 3; ++k)
            if (counts[k] > semicolons) m_changes.emplace_back(1, kCandidates[k]);
    }
    // The terminator in force on `line`.
    char At(int line) const {
        char terminator = ';';
        for (const auto& change : m_changes)
            if (change.first <= line) terminator = change.second;
        return terminator;
    }
    // `text` with a space before every terminator that ends a line where it
    // is in force, so that the lexer reads it apart ("END@" is no word).
    std::string Separate(const std::string& text) const {
        if (m_changes.empty()) return text;
        std::string out;
        int line = 1;
        for (std::size_t at = 0; at <= text.size(); ++line) {
            const std::size_t end = std::min(text.find('\n', at), text.size());
            std::string current = text.substr(at, end - at);
            const char terminator = At(line);
            const std::size_t last = current.find_last_not_of(" \t\r");
            if (terminator != ';' && last != std::string::npos && last > 0 && current[last] == terminator &&
                current.compare(current.find_first_not_of(" \t"), 2, "--") != 0)
                current.insert(last, " ");
            out += current;
            if (end < text.size()) out += '\n';
            at = end + 1;
        }
        return out;
    }
    // Whether `token` is the terminator `terminator` (other than ";") at the end of its line.
    static bool Ends(const CToken& token, char terminator) {
        return terminator != ';' && token.lastOnLine &&
               (token.kind == CTokenKind::Symbol || token.kind == CTokenKind::Word) && token.text.size() == 1 &&
               token.text[0] == terminator;
    }

private:
    static constexpr char kCandidates[3] = {'@', '~', '!'};
    std::vector<std::pair<int, char>> m_changes;  // (from line, terminator)
};

// Commands of the client tools, ended by their line rather than by a terminator.
bool IsLineCommand(const std::vector<CToken>& tokens, std::size_t i) {
    static const char* const kCommands[] = {"SET",     "SPOOL",   "CONNECT", "CONN",   "DEFINE",  "UNDEFINE",
                                            "WHENEVER", "EXIT",   "QUIT",    "PAUSE",  "ACCEPT",  "COLUMN",
                                            "TTITLE",  "BTITLE",  "BREAK",   "COMPUTE", "CLEAR",  "SHOW",
                                            "DESCRIBE", "HOST",   "START",   "USE",    "TERMINATE", "CHECKPOINT",
                                            "VARIABLE", "PRINT",  "STORE",   "ECHO"};
    const CToken& token = tokens[i];
    if (!token.firstOnLine) return false;
    if (token.IsSymbol('@')) return true;
    for (const char* command : kCommands)
        if (token.IsWord(command)) return true;
    return false;
}

// T-SQL statements that may start a new statement on a new line without a
// terminator before them.
bool StartsStatement(const CToken& token) {
    static const char* const kStarts[] = {"CREATE", "ALTER",  "EXEC",   "EXECUTE", "INSERT",  "UPDATE", "DELETE",
                                          "GRANT",  "REVOKE", "DROP",   "USE",     "DECLARE", "SELECT", "PRINT",
                                          "RAISERROR", "IF",  "SET",    "CHECKPOINT", "TRUNCATE", "DENY", "COMMIT"};
    if (token.kind != CTokenKind::Word) return false;
    for (const char* word : kStarts)
        if (token.IsWord(word)) return true;
    return token.text.size() > 3 && AfxCompareNoCase(token.text.substr(0, 3).c_str(), "sp_") == 0;
}

enum class CBodyKind { None, View, Code };

// What the statement starting at `i` is: code (procedures, functions,
// triggers, packages, type bodies) runs to the end of its block; a view runs
// to the end of its batch in T-SQL.
CBodyKind BodyKindAt(const std::vector<CToken>& tokens, std::size_t i) {
    if (i >= tokens.size() || !(tokens[i].IsWord("CREATE") || tokens[i].IsWord("ALTER"))) return CBodyKind::None;
    for (std::size_t j = i + 1; j < tokens.size() && j < i + 8; ++j) {
        const CToken& t = tokens[j];
        if (t.IsWord("OR") || t.IsWord("REPLACE") || t.IsWord("EDITIONABLE") || t.IsWord("NONEDITIONABLE") ||
            t.IsWord("FORCE") || t.IsWord("NOFORCE") || t.IsWord("NO") || t.IsWord("CASCADE"))
            continue;
        if (t.IsWord("PROCEDURE") || t.IsWord("PROC") || t.IsWord("FUNCTION") || t.IsWord("TRIGGER") ||
            t.IsWord("PACKAGE"))
            return CBodyKind::Code;
        if (t.IsWord("TYPE") && j + 1 < tokens.size() && tokens[j + 1].IsWord("BODY")) return CBodyKind::Code;
        if (t.IsWord("VIEW")) return CBodyKind::View;
        return CBodyKind::None;
    }
    return CBodyKind::None;
}

}  // namespace

std::string PrepareScriptText(const std::string& text, const std::vector<std::pair<std::string, std::string>>& tags,
                              std::vector<std::string>& unresolvedTags) {
    std::string out;
    out.reserve(text.size());
    std::set<std::string> unresolved;
    // Whether the next line may be an SQL*Plus command: not when the last line
    // (blank and comment lines aside) ended with "," or "(", inside a list
    // where a column may be named PROMPT or REM.
    bool atStatementStart = true;
    std::size_t lineStart = 0;
    while (lineStart < text.size()) {
        std::size_t lineEnd = text.find('\n', lineStart);
        if (lineEnd == std::string::npos) lineEnd = text.size();
        const std::string line = text.substr(lineStart, lineEnd - lineStart);
        const std::size_t first = line.find_first_not_of(" \t");
        const std::size_t last = line.find_last_not_of(" \t");
        std::string word;
        for (std::size_t i = first; i != std::string::npos && i < line.size() &&
                                    std::isalpha(static_cast<unsigned char>(line[i]));
             ++i)
            word += static_cast<char>(std::toupper(static_cast<unsigned char>(line[i])));
        const bool dropped = atStatementStart && (word == "REM" || word == "REMARK" || word == "PROMPT");
        if (!dropped) {
            for (std::size_t i = 0; i < line.size(); ++i) {
                if (line[i] == '&' && i + 1 < line.size() && line[i + 1] == '$') {
                    const std::size_t dot = line.find('.', i + 2);
                    if (dot != std::string::npos) {
                        const std::string name = line.substr(i + 2, dot - i - 2);
                        const auto tag = std::find_if(tags.begin(), tags.end(),
                                                      [&](const auto& entry) { return entry.first == name; });
                        if (tag != tags.end()) {
                            out += tag->second;
                        } else {
                            out += name;
                            unresolved.insert(name);
                        }
                        i = dot;
                        continue;
                    }
                }
                out += line[i];
            }
        }
        if (lineEnd < text.size()) out += '\n';
        lineStart = lineEnd + 1;

        const bool blankOrComment = first == std::string::npos || line.compare(first, 2, "--") == 0;
        if (dropped)
            atStatementStart = true;
        else if (!blankOrComment)
            atStatementStart = line[last] != ',' && line[last] != '(';
    }
    unresolvedTags.assign(unresolved.begin(), unresolved.end());
    return out;
}

CSqlScript SplitScript(const std::string& original, bool transactSql) {
    CSqlScript script;
    const CTerminators terminators(original);
    script.source = terminators.Separate(original);
    const std::string& text = script.source;
    const std::vector<CToken> tokens = Tokenize(text);
    bool usesSemicolon = false;
    for (const CToken& token : tokens) {
        script.usesGo = script.usesGo || IsBatchEnd(token);
        script.usesSlash = script.usesSlash || (AloneOnLine(token) && token.IsSymbol('/'));
        usesSemicolon = usesSemicolon || token.IsSymbol(';');
    }
    const bool endsAtNextStart = script.usesGo || transactSql || (!usesSemicolon && !script.usesSlash);

    auto emit = [&](std::size_t from, std::size_t to, bool lineCommand) {
        if (from >= to) return;
        CSqlStatement statement;
        statement.tokens.assign(tokens.begin() + static_cast<std::ptrdiff_t>(from),
                                tokens.begin() + static_cast<std::ptrdiff_t>(to));
        statement.text = text.substr(tokens[from].begin, tokens[to - 1].end - tokens[from].begin);
        statement.line = tokens[from].line;
        statement.lineCommand = lineCommand;
        script.statements.push_back(std::move(statement));
    };

    std::size_t i = 0;
    while (i < tokens.size()) {
        const CToken& first = tokens[i];
        const char terminator = terminators.At(first.line);
        if (IsBatchEnd(first) || IsBlockEnd(first) || first.IsSymbol(';') || CTerminators::Ends(first, terminator)) {
            ++i;
            continue;
        }
        if (IsLineCommand(tokens, i)) {
            std::size_t j = i;
            while (j < tokens.size() && tokens[j].line == first.line && !tokens[j].IsSymbol(';') &&
                   !CTerminators::Ends(tokens[j], terminator))
                ++j;
            emit(i, j, true);
            i = j;
            continue;
        }

        const CBodyKind body = BodyKindAt(tokens, i);
        int depth = 0;
        int blockDepth = 0;
        std::size_t j = i;
        std::size_t end = tokens.size();
        std::size_t next = tokens.size();
        for (; j < tokens.size(); ++j) {
            const CToken& t = tokens[j];
            if (j > i && (IsBatchEnd(t) || IsBlockEnd(t))) {
                end = j;
                next = j + 1;
                break;
            }
            if (terminator != ';') {
                // Only the announced terminator ends a statement; ";" belongs to code bodies.
                if (CTerminators::Ends(t, terminator)) {
                    end = j;
                    next = j + 1;
                    break;
                }
                continue;
            }
            if (t.IsSymbol('(')) ++depth;
            if (t.IsSymbol(')')) depth = std::max(0, depth - 1);
            if (body == CBodyKind::Code) {
                if (script.usesGo || script.usesSlash) continue;  // the block ends at its GO or "/" line
                if (t.IsWord("BEGIN") || t.IsWord("CASE")) ++blockDepth;
                if (t.IsWord("END")) {
                    const bool closesStatement = j + 1 < tokens.size() &&
                                                 (tokens[j + 1].IsWord("IF") || tokens[j + 1].IsWord("LOOP") ||
                                                  tokens[j + 1].IsWord("WHILE") || tokens[j + 1].IsWord("FOR") ||
                                                  tokens[j + 1].IsWord("REPEAT"));
                    if (!closesStatement) blockDepth = std::max(0, blockDepth - 1);
                }
                if (t.IsSymbol(';') && depth == 0 && blockDepth == 0) {
                    end = j;
                    next = j + 1;
                    break;
                }
                continue;
            }
            if (body == CBodyKind::View && script.usesGo) continue;
            if (t.IsSymbol(';') && depth == 0) {
                end = j;
                next = j + 1;
                break;
            }
            if (endsAtNextStart && j > i && depth == 0 && t.firstOnLine && StartsStatement(t) &&
                !(t.IsWord("SELECT") && tokens[j - 1].IsWord("AS"))) {
                end = j;
                next = j;
                break;
            }
        }
        emit(i, std::min(end, tokens.size()), false);
        i = next;
    }
    return script;
}
