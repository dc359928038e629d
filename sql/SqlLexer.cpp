#include "SqlLexer.h"

#include <cctype>

#include <VrnIntf.h>

namespace {

bool IsWordStart(unsigned char ch) { return std::isalpha(ch) || ch == '_' || ch == '#' || ch == '@' || ch == '$' || ch >= 0x80; }
bool IsWordPart(unsigned char ch) { return IsWordStart(ch) || std::isdigit(ch); }

// Reads a quoted run from `at` (the opening quote) to its closing quote; a
// doubled closing quote stands for itself. Unterminated runs end the text.
std::size_t ReadQuoted(const std::string& text, std::size_t at, char close, std::string& value, int& line) {
    std::size_t i = at + 1;
    while (i < text.size()) {
        if (text[i] == close) {
            if (i + 1 < text.size() && text[i + 1] == close && close != ']') {
                value += close;
                i += 2;
                continue;
            }
            return i + 1;
        }
        if (text[i] == '\n') ++line;
        value += text[i++];
    }
    return i;
}

}  // namespace

bool CToken::IsWord(const char* word) const { return kind == CTokenKind::Word && AfxCompareNoCase(text.c_str(), word) == 0; }

std::vector<CToken> Tokenize(const std::string& text) {
    std::vector<CToken> tokens;
    int line = 1;
    int lastLine = 0;
    std::size_t i = 0;
    while (i < text.size()) {
        const unsigned char ch = static_cast<unsigned char>(text[i]);
        if (ch == '\n') {
            ++line;
            ++i;
            continue;
        }
        if (std::isspace(ch)) {
            ++i;
            continue;
        }
        if (ch == '-' && i + 1 < text.size() && text[i + 1] == '-') {
            while (i < text.size() && text[i] != '\n') ++i;
            continue;
        }
        if (ch == '/' && i + 1 < text.size() && text[i + 1] == '*') {
            i += 2;
            while (i + 1 < text.size() && !(text[i] == '*' && text[i + 1] == '/')) {
                if (text[i] == '\n') ++line;
                ++i;
            }
            i = std::min(text.size(), i + 2);
            continue;
        }

        CToken token;
        token.begin = i;
        token.line = line;
        token.firstOnLine = line != lastLine;
        if ((ch == 'N' || ch == 'n') && i + 1 < text.size() && text[i + 1] == '\'') {
            token.kind = CTokenKind::String;
            i = ReadQuoted(text, i + 1, '\'', token.text, line);
        } else if (ch == '\'') {
            token.kind = CTokenKind::String;
            i = ReadQuoted(text, i, '\'', token.text, line);
        } else if (ch == '"' || ch == '`' || ch == '[') {
            token.kind = CTokenKind::QuotedIdent;
            i = ReadQuoted(text, i, ch == '[' ? ']' : static_cast<char>(ch), token.text, line);
        } else if (std::isdigit(ch) || (ch == '.' && i + 1 < text.size() && std::isdigit(static_cast<unsigned char>(text[i + 1])))) {
            token.kind = CTokenKind::Number;
            while (i < text.size() && (std::isdigit(static_cast<unsigned char>(text[i])) || text[i] == '.')) ++i;
            if (i < text.size() && (text[i] == 'e' || text[i] == 'E') && i + 1 < text.size() &&
                (std::isdigit(static_cast<unsigned char>(text[i + 1])) || text[i + 1] == '-' || text[i + 1] == '+')) {
                i += 2;
                while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]))) ++i;
            }
            // A size such as 64K or 10M stays one token.
            while (i < text.size() && std::isalpha(static_cast<unsigned char>(text[i]))) ++i;
            token.text = text.substr(token.begin, i - token.begin);
        } else if (IsWordStart(ch)) {
            token.kind = CTokenKind::Word;
            while (i < text.size() && IsWordPart(static_cast<unsigned char>(text[i]))) ++i;
            token.text = text.substr(token.begin, i - token.begin);
        } else {
            token.kind = CTokenKind::Symbol;
            token.text = std::string(1, static_cast<char>(ch));
            ++i;
        }
        token.end = i;
        if (!tokens.empty() && tokens.back().line != token.line) tokens.back().lastOnLine = true;
        lastLine = line;
        tokens.push_back(std::move(token));
    }
    if (!tokens.empty()) tokens.back().lastOnLine = true;
    return tokens;
}
