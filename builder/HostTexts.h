// The texts a host application lends the library by number, through its
// string table (AfxSetResourceString). A text the host does not provide is
// empty.
#pragma once

enum EHostText : unsigned {
    // Texts of the model's own rows, written by every save.
    kHostTextProductName = 1008,  // the program that wrote the model (version and diagram rows)
    kHostTextModelName = 1349,    // the model row's name
    kHostTextDiagramName = 1362,  // the diagram row's name

    // Message formats of relationship resolution (ResolveForeignKeyConstraints).
    kHostTextParentNotFound = 44,        // %1: the parent entity's name
    kHostTextUnnamedKeyNotAdded = 45,    // a foreign key without a name was dropped
    kHostTextForeignKeyNotAdded = 46,    // %1: the foreign key's name
    kHostTextColumnPairNotAdded = 3742,  // %1: foreign key, %2: parent entity, %3: child entity
};
