// DDL statements to declarations. The parser reads one statement at a time
// and never looks at a model: whether a table named in an ALTER or an index
// exists, and what a LIKE or OF refers to, is the importer's business.
#pragma once

#include <string>
#include <vector>

#include "DdlDecl.h"
#include "Dialect.h"
#include "SqlScript.h"

// The declaration of one statement of a split script; `source` is the text
// its tokens point into.
CStatementDecl ParseStatement(const CSqlStatement& statement, const std::string& source);

// Every statement of a script read in `dialect`, in order, prepared as an
// import prepares it (template tags read as their names).
std::vector<CStatementDecl> ParseScript(const std::string& text, const CDialect& dialect);
