#include "SqlLexer.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

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
            if (i + 1 < text.size() && text[i + 1] == close) {
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

// Most words asked about differ in length from the token: that is looked at first.
bool CToken::IsWord(const char* word) const {
    return kind == CTokenKind::Word && text.size() == std::strlen(word) && AfxCompareNoCase(text.c_str(), word) == 0;
}

bool CLexer::Read(CToken& token) {
    const std::string& text = m_text;
    std::size_t& i = m_at;
    int& line = m_line;
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

        token = CToken();
        token.begin = i;
        token.line = line;
        token.firstOnLine = line != m_lastLine;
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
            token.text.assign(text, token.begin, i - token.begin);
        } else if (IsWordStart(ch)) {
            token.kind = CTokenKind::Word;
            while (i < text.size() && IsWordPart(static_cast<unsigned char>(text[i]))) ++i;
            token.text.assign(text, token.begin, i - token.begin);
        } else {
            token.kind = CTokenKind::Symbol;
            token.text.assign(1, static_cast<char>(ch));
            ++i;
        }
        token.end = i;
        m_lastLine = line;
        return true;
    }
    return false;
}

bool CLexer::Next(CToken& token) {
    if (!m_started) {
        m_started = true;
        m_haveAhead = Read(m_ahead);
    }
    if (!m_haveAhead) return false;
    token = std::move(m_ahead);
    m_haveAhead = Read(m_ahead);
    // The last token of the text ends its line too.
    token.lastOnLine = !m_haveAhead || m_ahead.line != token.line;
    return true;
}

std::string UpperAscii(std::string text) {
    for (char& ch : text) ch = AfxToUpperAscii(ch);
    return text;
}

long SizeWithUnit(const std::string& text, double kilo) {
    char* unit = nullptr;
    double size = std::strtod(text.c_str(), &unit);
    switch (unit && *unit ? AfxToUpperAscii(*unit) : 0) {
        case 'K': size *= kilo; break;
        case 'M': size *= kilo * 1024; break;
        case 'G': size *= kilo * 1024 * 1024; break;
        default: break;
    }
    return size > 2147483647.0 ? 2147483647L : static_cast<long>(size);
}

std::vector<CToken> Tokenize(const std::string& text) {
    std::vector<CToken> tokens;
    CLexer lexer(text);
    for (CToken token; lexer.Next(token);) tokens.push_back(std::move(token));
    return tokens;
}
