#pragma once

#include "output/TreeLines.h"

#include <iosfwd>

namespace cimhttp {

struct ObjectGraph;

/// Draws a graph as a tree below its first object, each object where it was found first, and over which association. An
/// association that leads to an object that stands elsewhere in the tree says so.
void WriteTree(const ObjectGraph& graph, const TreeLines& lines, std::ostream& output);

/// Writes a graph as JSON. Associations name objects by their places in the list of these, from 0:
///
///     {"objects":[{"path":"root/cimv2:CIM_Disk.Name=\"a\"","class":"CIM_Disk","label":"CIM_Disk.Name=\"a\"",
///                  "depth":0,"state":"asked"}],
///      "associations":[{"class":"CIM_SystemDevice","path":"…","from":0,"from_role":"PartComponent","to":1,
///                       "to_role":"GroupComponent"}],"complete":true}
///
/// About `label` see LabelsOf(), about `state` and `complete` see ObjectGraph; the former is "asked", "not asked",
/// "failed" or "on another server".
void WriteGraphJson(const ObjectGraph& graph, std::ostream& output);

/// Writes an undirected graph in the language of Graphviz, `dot`: objects with their labels, see LabelsOf(), and their
/// paths as tool tips; associations with their classes.
void WriteDot(const ObjectGraph& graph, std::ostream& output);

} // namespace cimhttp
