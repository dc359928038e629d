/// @file
/// VrnReader: the one header a client includes to read a model file.
///
/// @code
///   CModel model;
///   std::string error;
///   if (!ReadModelFile("sales.vrn", model, error)) ...;
///   for (const CModelTable& table : model.tables) ...
///   for (const CModelChange& change : CompareModels(model, other)) ...
/// @endcode
///
/// Link with the CMake target VrnIntf::vrnreader.
#pragma once

#include "reader/ModelCompare.h"
#include "reader/ModelReader.h"
#include "reader/TypeNames.h"
