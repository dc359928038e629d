/// @file
/// The texts a host application lends the library by number, through its
/// string table (AfxSetResourceString). A text the host does not provide is
/// empty.
#pragma once

/// The numbers of the host texts the library loads. The host registers each with
/// AfxSetResourceString before the builder needs it; the message formats take their
/// arguments as `%1`, `%2` and `%3` (see AfxFormatMessage).
enum EHostText : unsigned {
    // Texts of the model's own rows, written by every save.
    /// The program that wrote the model, written into the version row and the diagram row.
    kHostTextProductName = 1008,
    /// The name of the model row.
    kHostTextModelName = 1349,
    /// The name of the diagram row.
    kHostTextDiagramName = 1362,

    // Message formats of relationship resolution (ResolveForeignKeyConstraints).
    /// A pending foreign key's parent entity was not found; `%1` is the parent entity's name.
    kHostTextParentNotFound = 44,
    /// Follows kHostTextParentNotFound when the foreign key has no name (or is named UNKNOWN): it was not added.
    kHostTextUnnamedKeyNotAdded = 45,
    /// Follows kHostTextParentNotFound for a named foreign key; `%1` is its name: it was not added.
    kHostTextForeignKeyNotAdded = 46,
    /// A column pair of a resolved foreign key could not be added; `%1` is the foreign key's name, `%2` the
    /// parent entity's and `%3` the child entity's.
    kHostTextColumnPairNotAdded = 3742,
};
