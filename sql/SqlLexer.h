// Tokens of an SQL script, in the union of the dialects the client reads:
// words, "quoted" / [bracketed] / `backquoted` identifiers, 'strings' and
// N'national strings', numbers and single-character symbols. Comments
// (-- to line end, /* ... */) are dropped. Every token keeps its line and its
// place in the text, so statements can be cut out of the source verbatim.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

enum class CTokenKind { Word, QuotedIdent, String, Number, Symbol };

struct CToken {
    CTokenKind kind;
    std::string text;  // identifiers and strings without their quotes
    std::size_t begin = 0;  // byte range in the source text
    std::size_t end = 0;
    int line = 0;
    bool firstOnLine = false;
    bool lastOnLine = false;

    bool IsWord(const char* word) const;  // an unquoted word, any letter case
    bool IsSymbol(char symbol) const { return kind == CTokenKind::Symbol && text.size() == 1 && text[0] == symbol; }
    bool IsName() const { return kind == CTokenKind::Word || kind == CTokenKind::QuotedIdent; }
};

std::vector<CToken> Tokenize(const std::string& text);
