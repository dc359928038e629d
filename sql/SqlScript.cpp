#include "SqlScript.h"

#include <algorithm>
#include <cctype>
#include <deque>
#include <set>
#include <string_view>

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
            const std::string_view current(text.data() + at, end - at);
            at = end + 1;
            const std::size_t first = current.find_first_not_of(" \t\r");
            if (first == std::string::npos) continue;
            static const char kDirective[] = "--#SET TERMINATOR";
            if (current.compare(first, 2, "--") == 0 &&
                AfxCompareNoCase(std::string(current.substr(first, sizeof kDirective - 1)).c_str(), kDirective) == 0) {
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
    // Whether any terminator other than ";" is in force somewhere.
    bool Any() const { return !m_changes.empty(); }
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
const char* const kLineCommands[] = {"SET",     "SPOOL",    "CONNECT",  "CONN",    "DEFINE",    "UNDEFINE",
                                     "WHENEVER", "EXIT",    "QUIT",     "PAUSE",   "ACCEPT",    "COLUMN",
                                     "TTITLE",  "BTITLE",   "BREAK",    "COMPUTE", "CLEAR",     "SHOW",
                                     "DESCRIBE", "HOST",    "START",    "USE",     "TERMINATE", "CHECKPOINT",
                                     "VARIABLE", "PRINT",   "STORE",    "ECHO"};

// T-SQL statements that may start a new statement on a new line without a
// terminator before them.
const char* const kStatementStarts[] = {"CREATE",  "ALTER",     "EXEC",   "EXECUTE", "INSERT",     "UPDATE",
                                        "DELETE",  "GRANT",     "REVOKE", "DROP",    "USE",        "DECLARE",
                                        "SELECT",  "PRINT",     "RAISERROR", "IF",   "SET",        "CHECKPOINT",
                                        "TRUNCATE", "DENY",     "COMMIT"};

bool IsLineCommand(const CToken& token) {
    if (!token.firstOnLine) return false;
    if (token.IsSymbol('@')) return true;
    for (const char* command : kLineCommands)
        if (token.IsWord(command)) return true;
    return false;
}

bool StartsStatement(const CToken& token) {
    if (token.kind != CTokenKind::Word) return false;
    for (const char* word : kStatementStarts)
        if (token.IsWord(word)) return true;
    return token.text.size() > 3 && AfxCompareNoCase(token.text.substr(0, 3).c_str(), "sp_") == 0;
}

enum class CBodyKind { None, View, Code };

// The tokens of a script being cut, read on demand and forgotten once
// handed out with their statement: at most one statement's tokens (and a
// few ahead of it) are held at a time. Tokens are numbered from the start
// of the script.
class CTokenWindow {
public:
    explicit CTokenWindow(const std::string& text) : m_lexer(text) {}

    // The token numbered `i`, null past the end of the script. Pointers stay
    // valid until the token is taken.
    const CToken* At(std::size_t i) {
        while (m_base + m_tokens.size() <= i) {
            CToken token;
            if (!m_lexer.Next(token)) return nullptr;
            m_tokens.push_back(std::move(token));
        }
        return &m_tokens[i - m_base];
    }
    // Moves tokens [from, to) out, forgetting every token before `to`.
    std::vector<CToken> Take(std::size_t from, std::size_t to) {
        At(to - 1);
        std::vector<CToken> taken;
        taken.reserve(to - from);
        for (std::size_t i = from; i < to; ++i) taken.push_back(std::move(m_tokens[i - m_base]));
        m_tokens.erase(m_tokens.begin(), m_tokens.begin() + static_cast<std::ptrdiff_t>(to - m_base));
        m_base = to;
        return taken;
    }

private:
    CLexer m_lexer;
    std::deque<CToken> m_tokens;
    std::size_t m_base = 0;  // the number of the first token held
};

// What the statement starting at `i` is: code (procedures, functions,
// triggers, packages, type bodies) runs to the end of its block; a view runs
// to the end of its batch in T-SQL.
CBodyKind BodyKindAt(CTokenWindow& tokens, std::size_t i) {
    const CToken* first = tokens.At(i);
    if (!first || !(first->IsWord("CREATE") || first->IsWord("ALTER"))) return CBodyKind::None;
    for (std::size_t j = i + 1; j < i + 8; ++j) {
        const CToken* at = tokens.At(j);
        if (!at) break;
        const CToken& t = *at;
        if (t.IsWord("OR") || t.IsWord("REPLACE") || t.IsWord("EDITIONABLE") || t.IsWord("NONEDITIONABLE") ||
            t.IsWord("FORCE") || t.IsWord("NOFORCE") || t.IsWord("NO") || t.IsWord("CASCADE"))
            continue;
        if (t.IsWord("PROCEDURE") || t.IsWord("PROC") || t.IsWord("FUNCTION") || t.IsWord("TRIGGER") ||
            t.IsWord("PACKAGE"))
            return CBodyKind::Code;
        if (t.IsWord("TYPE")) {
            const CToken* next = tokens.At(j + 1);
            if (next && next->IsWord("BODY")) return CBodyKind::Code;
        }
        if (t.IsWord("VIEW")) return CBodyKind::View;
        return CBodyKind::None;
    }
    return CBodyKind::None;
}

// How a script ends its statements, from all of its tokens.
struct CScriptStyle {
    bool usesGo = false;
    bool usesSlash = false;
    bool usesSemicolon = false;
};

CScriptStyle StyleOf(const std::string& text) {
    CScriptStyle style;
    CLexer lexer(text);
    for (CToken token; lexer.Next(token);) {
        style.usesGo = style.usesGo || IsBatchEnd(token);
        style.usesSlash = style.usesSlash || (AloneOnLine(token) && token.IsSymbol('/'));
        style.usesSemicolon = style.usesSemicolon || token.IsSymbol(';');
    }
    return style;
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
        const std::string_view line(text.data() + lineStart, lineEnd - lineStart);
        const std::size_t first = line.find_first_not_of(" \t");
        const std::size_t last = line.find_last_not_of(" \t");
        std::string word;
        for (std::size_t i = first; i != std::string::npos && i < line.size() &&
                                    std::isalpha(static_cast<unsigned char>(line[i]));
             ++i)
            word += static_cast<char>(std::toupper(static_cast<unsigned char>(line[i])));
        const bool dropped = atStatementStart && (word == "REM" || word == "REMARK" || word == "PROMPT");
        if (!dropped) {
            // The line as it stands, but for its template tags.
            std::size_t copied = 0;
            for (std::size_t tag = line.find("&$"); tag != std::string::npos; tag = line.find("&$", copied)) {
                const std::size_t dot = line.find('.', tag + 2);
                if (dot == std::string::npos) break;
                out.append(line.data() + copied, tag - copied);
                const std::string name(line.substr(tag + 2, dot - tag - 2));
                const auto value = std::find_if(tags.begin(), tags.end(), [&](const auto& entry) { return entry.first == name; });
                if (value != tags.end()) {
                    out += value->second;
                } else {
                    out += name;
                    unresolved.insert(name);
                }
                copied = dot + 1;
            }
            out.append(line.data() + copied, line.size() - copied);
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

void ForEachStatement(const std::string& original, bool transactSql, const CStatementSink& each) {
    const CTerminators terminators(original);
    std::string separated;
    if (terminators.Any()) separated = terminators.Separate(original);
    const std::string& text = terminators.Any() ? separated : original;
    const CScriptStyle style = StyleOf(text);
    const bool endsAtNextStart = style.usesGo || transactSql || (!style.usesSemicolon && !style.usesSlash);
    CTokenWindow tokens(text);

    auto emit = [&](std::size_t from, std::size_t to, bool lineCommand) {
        if (from >= to) return;
        CSqlStatement statement;
        statement.tokens = tokens.Take(from, to);
        const CToken& first = statement.tokens.front();
        statement.text = text.substr(first.begin, statement.tokens.back().end - first.begin);
        statement.line = first.line;
        statement.lineCommand = lineCommand;
        each(statement, text);
    };

    std::size_t i = 0;
    while (const CToken* at = tokens.At(i)) {
        const CToken& first = *at;
        const char terminator = terminators.At(first.line);
        if (IsBatchEnd(first) || IsBlockEnd(first) || first.IsSymbol(';') || CTerminators::Ends(first, terminator)) {
            ++i;
            continue;
        }
        if (IsLineCommand(first)) {
            const int line = first.line;
            std::size_t j = i;
            for (const CToken* t = tokens.At(j); t && t->line == line && !t->IsSymbol(';') &&
                                                 !CTerminators::Ends(*t, terminator);
                 t = tokens.At(++j)) {
            }
            emit(i, j, true);
            i = j;
            continue;
        }

        const CBodyKind body = BodyKindAt(tokens, i);
        int depth = 0;
        int blockDepth = 0;
        std::size_t j = i;
        std::size_t end = 0, next = 0;
        bool ended = false;
        auto endAt = [&](std::size_t last, std::size_t resume) {
            end = last;
            next = resume;
            ended = true;
        };
        for (const CToken* at = tokens.At(j); at && !ended; at = ended ? nullptr : tokens.At(++j)) {
            const CToken& t = *at;
            if (j > i && (IsBatchEnd(t) || IsBlockEnd(t))) {
                endAt(j, j + 1);
                continue;
            }
            if (terminator != ';') {
                // Only the announced terminator ends a statement; ";" belongs to code bodies.
                if (CTerminators::Ends(t, terminator)) endAt(j, j + 1);
                continue;
            }
            if (t.IsSymbol('(')) ++depth;
            if (t.IsSymbol(')')) depth = std::max(0, depth - 1);
            if (body == CBodyKind::Code) {
                if (style.usesGo || style.usesSlash) continue;  // the block ends at its GO or "/" line
                if (t.IsWord("BEGIN") || t.IsWord("CASE")) ++blockDepth;
                if (t.IsWord("END")) {
                    const CToken* after = tokens.At(j + 1);
                    const bool closesStatement = after && (after->IsWord("IF") || after->IsWord("LOOP") ||
                                                           after->IsWord("WHILE") || after->IsWord("FOR") ||
                                                           after->IsWord("REPEAT"));
                    if (!closesStatement) blockDepth = std::max(0, blockDepth - 1);
                }
                if (t.IsSymbol(';') && depth == 0 && blockDepth == 0) endAt(j, j + 1);
                continue;
            }
            if (body == CBodyKind::View && style.usesGo) continue;
            if (t.IsSymbol(';') && depth == 0) {
                endAt(j, j + 1);
                continue;
            }
            if (endsAtNextStart && j > i && depth == 0 && t.firstOnLine && StartsStatement(t) &&
                !(t.IsWord("SELECT") && tokens.At(j - 1)->IsWord("AS")))
                endAt(j, j);
        }
        if (!ended) end = next = j;  // the script ended inside the statement
        emit(i, end, false);
        i = next;
    }
}

CSqlScript SplitScript(const std::string& original, bool transactSql) {
    CSqlScript script;
    ForEachStatement(original, transactSql, [&](const CSqlStatement& statement, const std::string& source) {
        if (script.source.empty()) script.source = source;
        script.statements.push_back(statement);
    });
    if (script.source.empty()) script.source = original;
    const CScriptStyle style = StyleOf(script.source);
    script.usesGo = style.usesGo;
    script.usesSlash = style.usesSlash;
    return script;
}

void AppendScriptWords(std::vector<std::string>& words) {
    words.insert(words.end(), std::begin(kLineCommands), std::end(kLineCommands));
    words.insert(words.end(), std::begin(kStatementStarts), std::end(kStatementStarts));
}
