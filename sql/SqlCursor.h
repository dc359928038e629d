// Walking the tokens of one statement: the small vocabulary the statement
// handlers are written in.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "SqlLexer.h"

// A possibly qualified name: owner.name, db.owner.name, [dbo].[T].
struct CQualifiedName {
    std::vector<std::string> parts;
    std::string Name() const { return parts.empty() ? std::string() : parts.back(); }
    // The part before the name; empty when unqualified.
    std::string Owner() const { return parts.size() < 2 ? std::string() : parts[parts.size() - 2]; }
    bool Empty() const { return parts.empty(); }
};

class CSqlCursor {
public:
    // `source` is the text the tokens' offsets refer to.
    CSqlCursor(const std::vector<CToken>& tokens, const std::string& source) : m_tokens(tokens), m_source(source) {}

    bool AtEnd() const { return m_at >= m_tokens.size(); }
    const CToken* Peek(std::size_t ahead = 0) const {
        return m_at + ahead < m_tokens.size() ? &m_tokens[m_at + ahead] : nullptr;
    }
    bool IsWord(const char* word, std::size_t ahead = 0) const {
        const CToken* token = Peek(ahead);
        return token && token->IsWord(word);
    }
    bool IsSymbol(char symbol, std::size_t ahead = 0) const {
        const CToken* token = Peek(ahead);
        return token && token->IsSymbol(symbol);
    }
    bool IsAnyWord(std::initializer_list<const char*> words) const;
    bool AcceptWord(const char* word);
    // All the words in order, or nothing is consumed.
    bool AcceptWords(std::initializer_list<const char*> words);
    bool AcceptSymbol(char symbol);
    const CToken* Next() { return m_at < m_tokens.size() ? &m_tokens[m_at++] : nullptr; }
    void Skip() { if (m_at < m_tokens.size()) ++m_at; }
    std::size_t Position() const { return m_at; }
    void Seek(std::size_t at) { m_at = at; }

    CQualifiedName ReadName();
    // At "(": moves past the matching ")"; otherwise past one token.
    void SkipItem();
    // At "(": the source text between the parentheses, moving past them.
    std::string ReadParenthesized();
    // The source text from here up to (not including) the first token at
    // depth 0 for which `stop` holds, or to the end; moves there.
    template <class Stop>
    std::string ReadUntil(Stop stop);
    // ( name [ASC|DESC] [, ...] ): the names and whether each is descending.
    bool ReadColumnList(std::vector<std::string>& names, std::vector<bool>* descending = nullptr);
    // A number such as 10, 64K, 1M (in units of K for the size forms); false when none.
    bool ReadNumber(long& value);
    std::string SourceText(std::size_t from, std::size_t to) const;

private:
    const std::vector<CToken>& m_tokens;
    const std::string& m_source;
    std::size_t m_at = 0;
};

template <class Stop>
std::string CSqlCursor::ReadUntil(Stop stop) {
    const std::size_t from = m_at;
    int depth = 0;
    while (m_at < m_tokens.size()) {
        const CToken& token = m_tokens[m_at];
        if (depth == 0 && stop(token)) break;
        if (token.IsSymbol('(')) ++depth;
        if (token.IsSymbol(')')) {
            if (depth == 0) break;
            --depth;
        }
        ++m_at;
    }
    return SourceText(from, m_at);
}
