#pragma once

#include <pugixml.hpp>

#include "logic/schema/structure/Structure.h"

namespace tessel {

// The structure of a database in its schema file. It stands in attributes and elements of its own,
// which a reader that looks for tables and columns only passes over.

/// Adds to the element of a table, which holds those of its columns, what is known of it.
void WriteTableStructure(pugi::xml_node table, const TableFacts& facts, const Structure& structure);
/// Adds views and routines to the element of a database.
void WriteObjects(pugi::xml_node database, const Structure& structure);
/// What the element of a database tells, which is nothing in a file without structure.
[[nodiscard]] Structure ReadStructure(pugi::xml_node database);

}  // namespace tessel
