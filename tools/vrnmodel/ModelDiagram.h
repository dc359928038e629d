// An entity-relationship diagram of a model file in IE (crow's foot)
// notation, laid out by Graphviz's dot program: each table a box with its
// name and owner, key columns above a rule and the other columns below,
// foreign key columns marked; identifying relationships as solid lines,
// non-identifying ones dashed; the parent end "exactly one" or "zero or one"
// as the foreign key's optionality says, the child end "zero or more".
//
// Each connected group of tables is laid out on its own and the groups
// (lone tables among them) are packed into a grid, so a model with many
// unrelated tables still makes a picture about as wide as it is tall.
#pragma once

#include <string>
#include <vector>

#include <VrnReader.h>

enum class EDiagramColumns {
    All,   // every column
    Keys,  // primary key and foreign key columns only
    None,  // table names only, for a bird's-eye view
};

struct CDiagramOptions {
    std::string tablePattern;  // shell pattern on table names (any letter case); empty for all
    EDiagramColumns columns = EDiagramColumns::All;
    bool groupByOwner = false;  // each owner (schema) a labelled frame
};

// The fill of a table's name row; the page finds the row by it to mark a
// table that a search found.
constexpr const char* kDiagramHeaderFill = "#dde6f0";

// The tables a diagram draws, as indexes into model.tables, in model order.
std::vector<int> DiagramTables(const CModel& model, const CDiagramOptions& options);

// The node name that a table of that index gets in the dot text, and the id
// its group carries in the SVG.
std::string DiagramNodeId(int table);

// The diagram of those tables in Graphviz's language, with each column once,
// typed as the model's platform writes types, and the foreign keys between
// two drawn tables.
std::string WriteDiagramDot(const CModel& model, const std::vector<int>& tables, const CDiagramOptions& options);

// Lays `dot` out with the dot program in one of its output formats ("svg",
// "png", "pdf"); false with a reason when dot is missing or fails.
bool RenderDiagram(const std::string& dot, const std::string& format, std::string& output, std::string& error);

// One self-contained page around the SVG, which works offline: it opens
// fitted to the window, pans and zooms, finds tables by name, and shows a
// table's columns, keys, indexes, foreign keys and checks when it is
// clicked, from the model data the page carries.
std::string DiagramPage(const CModel& model, const std::vector<int>& tables, const std::string& title,
                        const std::string& svg);
