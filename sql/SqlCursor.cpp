#include "SqlCursor.h"

#include <cctype>
#include <cstdlib>

bool CSqlCursor::IsAnyWord(std::initializer_list<const char*> words) const {
    for (const char* word : words)
        if (IsWord(word)) return true;
    return false;
}

bool CSqlCursor::AcceptWord(const char* word) {
    if (!IsWord(word)) return false;
    ++m_at;
    return true;
}

bool CSqlCursor::AcceptWords(std::initializer_list<const char*> words) {
    std::size_t ahead = 0;
    for (const char* word : words)
        if (!IsWord(word, ahead++)) return false;
    m_at += words.size();
    return true;
}

bool CSqlCursor::AcceptSymbol(char symbol) {
    if (!IsSymbol(symbol)) return false;
    ++m_at;
    return true;
}

CQualifiedName CSqlCursor::ReadName() {
    CQualifiedName name;
    while (const CToken* token = Peek()) {
        if (token->IsName() || token->kind == CTokenKind::String) {
            name.parts.push_back(token->text);
            ++m_at;
        } else if (token->IsSymbol('.') && !name.parts.empty()) {
            // "a..b": an empty middle part (the default owner)
            name.parts.emplace_back();
        } else {
            break;
        }
        if (!IsSymbol('.')) break;
        ++m_at;
        if (IsSymbol('.')) continue;
    }
    // Drop empty parts left by "a..b".
    std::vector<std::string> parts;
    for (std::string& part : name.parts)
        if (!part.empty()) parts.push_back(std::move(part));
    name.parts = std::move(parts);
    return name;
}

void CSqlCursor::SkipItem() {
    if (!IsSymbol('(')) {
        Skip();
        return;
    }
    int depth = 0;
    while (const CToken* token = Next()) {
        if (token->IsSymbol('(')) ++depth;
        if (token->IsSymbol(')') && --depth == 0) return;
    }
}

std::string CSqlCursor::ReadParenthesized() {
    if (!IsSymbol('(')) return std::string();
    const std::size_t open = m_at;
    SkipItem();
    const std::size_t close = m_at - 1;
    if (close <= open + 1) return std::string();
    return SourceText(open + 1, close);
}

bool CSqlCursor::ReadColumnList(std::vector<std::string>& names, std::vector<bool>* descending) {
    if (!AcceptSymbol('(')) return false;
    while (!AtEnd() && !IsSymbol(')')) {
        const CToken* token = Peek();
        if (token->IsName() || token->kind == CTokenKind::String) {
            names.push_back(ReadName().Name());
            bool desc = false;
            // Anything after the name up to the next comma: sort order, lengths, expressions.
            while (!AtEnd() && !IsSymbol(',') && !IsSymbol(')')) {
                if (IsWord("DESC")) desc = true;
                SkipItem();
            }
            if (descending) descending->push_back(desc);
        } else {
            SkipItem();
        }
        AcceptSymbol(',');
    }
    AcceptSymbol(')');
    return true;
}

bool CSqlCursor::ReadNumber(long& value) {
    const CToken* token = Peek();
    if (!token) return false;
    if (token->IsWord("UNLIMITED")) {
        value = 2147483647;
        ++m_at;
        return true;
    }
    if (token->kind != CTokenKind::Number) return false;
    ++m_at;
    value = SizeWithUnit(token->text, 1);  // in kilobytes: 64K is 64
    return true;
}

std::string CSqlCursor::SourceText(std::size_t from, std::size_t to) const {
    if (from >= to || from >= m_tokens.size()) return std::string();
    const std::size_t last = std::min(to, m_tokens.size()) - 1;
    return m_source.substr(m_tokens[from].begin, m_tokens[last].end - m_tokens[from].begin);
}
