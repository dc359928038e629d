// Cutting a script into statements. Three styles of script are recognised
// from their terminators: T-SQL batches ended by GO lines (statements inside
// a batch may also end where the next one starts on a new line), SQL*Plus
// scripts whose code blocks end with a line holding only "/", and plain
// ";"-terminated scripts (DB2, most tools), where code blocks are delimited
// by their BEGIN ... END. A line holding only "~" also ends a statement.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "SqlLexer.h"

struct CSqlStatement {
    std::vector<CToken> tokens;  // without the terminator
    std::string text;            // the statement as written
    int line = 0;                // its first line
    bool lineCommand = false;    // a client command such as SET, SPOOL or CONNECT, ended by its line
};

struct CSqlScript {
    std::string source;  // the text the statements' tokens point into
    std::vector<CSqlStatement> statements;
    bool usesGo = false;
    bool usesSlash = false;
};

// Prepares raw script text: drops SQL*Plus REM/REMARK/PROMPT lines (their
// free text may hold unbalanced quotes) and replaces template tags &$NAME.
// with `tagValue(NAME)`.
std::string PrepareScriptText(const std::string& text, const std::vector<std::pair<std::string, std::string>>& tags,
                              std::vector<std::string>& unresolvedTags);

using CStatementSink = std::function<void(const CSqlStatement& statement, const std::string& source)>;

// Cuts a script into statements and hands each to `each` as soon as it is
// cut, with the text its tokens point into; only one statement's tokens are
// held at a time, so a large script costs little more memory than its text.
// `transactSql`: the script is T-SQL, where a statement also ends where the
// next one starts on a new line, with or without GO batches. A script with
// no terminator at all is read that way too: as one statement it would be
// lost without a word.
void ForEachStatement(const std::string& text, bool transactSql, const CStatementSink& each);
// Every statement of a script at once, as ForEachStatement cuts them.
CSqlScript SplitScript(const std::string& text, bool transactSql = false);

// The words that cut a script: client commands ended by their line, and the
// T-SQL statements that start a new statement without a terminator.
void AppendScriptWords(std::vector<std::string>& words);
