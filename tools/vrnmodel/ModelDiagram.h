// An entity-relationship diagram of a model file in IE (crow's foot)
// notation, laid out by Graphviz's dot program: each table a box with its
// name and owner, key columns above a rule and the other columns below,
// foreign key columns marked; identifying relationships as solid lines,
// non-identifying ones dashed; the parent end "exactly one" or "zero or one"
// as the foreign key's optionality says, the child end "zero or more".
#pragma once

#include <string>

#include <VrnReader.h>

struct CDiagramOptions {
    std::string tablePattern;  // shell pattern on table names (any letter case); empty for all
    bool columns = true;       // false: table names only, for a bird's-eye view
};

// The diagram of a model in Graphviz's language: its tables with each column
// once, typed as the model's platform writes types.
bool WriteDiagramDot(const CModel& model, const CDiagramOptions& options, std::string& dot);

// Lays `dot` out as SVG with the dot program; false with a reason when dot is
// missing or fails.
bool RenderSvg(const std::string& dot, std::string& svg, std::string& error);

// One self-contained page around the SVG: pan, zoom and a search box that
// highlights a table.
std::string DiagramPage(const std::string& title, const std::string& svg);
