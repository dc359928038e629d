/// @file
/// VrnIntf: the one header a client includes to build a model.
///
/// @code
///   AfxSetResourceString(kHostTextProductName, "My Modeler");  // optional host texts
///   CVrnAPI builder;
///   builder.Initialize(34, nullptr);            // a new model for Oracle 8.x
///   ...                                         // describe the model
///   builder.SaveToFile("model.vrn");
/// @endcode
///
/// Link with the CMake target VrnIntf::vrnintf.
#pragma once

#include "builder/HostTexts.h"
#include "builder/Platforms.h"
#include "builder/VrnAPI.h"
#include "entity/VrnApiAttribute.h"
#include "entity/VrnApiEntity.h"
#include "framework/AfxColl.h"
#include "framework/AfxObject.h"
#include "framework/AfxString.h"
#include "framework/OleDateTime.h"
#include "keys/VrnApiForeignKey.h"
#include "keys/VrnApiIndex.h"
