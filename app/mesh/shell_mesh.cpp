// From shells under numbers of their own to the triangle mesh; see the header.
#include "mesh/shell_mesh.hpp"

#include <algorithm>
#include <cctype>
#include <tuple>

#include "system/failure.hpp"
#include "system/text.hpp"

namespace host {

namespace {

constexpr std::size_t mostListed = 5;  // parts that a sentence names before it breaks off

// Places of the nodes or shells in ascending order of scope and id.
template <class Entry>
std::vector<std::size_t> sortedById(const std::string& file, const std::vector<Entry>& entries,
                                    const std::string& noun) {
  std::vector<std::size_t> order(entries.size());
  for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
  const auto key = [&](std::size_t k) { return std::tuple(entries[k].scope, entries[k].id, k); };
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
  for (std::size_t k = 1; k < order.size(); ++k) {
    const Entry &first = entries[order[k - 1]], &second = entries[order[k]];
    if (first.scope == second.scope && first.id == second.id)
      refuseLine(file, second.line,
                 noun + " " + std::to_string(second.id) + " is given a second time, after line " +
                     std::to_string(first.line));
  }
  return order;
}

// A part as sentences name it: number, name if it has one, number of elements.
std::string partText(const ShellFile& shells, std::int64_t part, std::int64_t elements) {
  const auto name = shells.partNames.find(part);
  return std::to_string(part) +
         (name == shells.partNames.end() ? " (" : " (\"" + shown(name->second) + "\", ") +
         counted(elements, "element") + ")";
}

std::map<std::int64_t, std::int64_t> elementsOfParts(const ShellFile& shells) {
  std::map<std::int64_t, std::int64_t> elements;
  for (const Shell& shell : shells.shells) ++elements[shell.part];
  return elements;
}

std::string listOfParts(const ShellFile& shells) {
  std::string list;
  std::size_t listed = 0;
  for (const auto& [part, elements] : elementsOfParts(shells)) {
    if (++listed > mostListed) return list + ", ...";
    list += (listed > 1 ? ", " : "") + partText(shells, part, elements);
  }
  return list;
}

// The numbers of the parts that are meant, ascending.
std::vector<std::int64_t> chosenParts(const ShellFile& shells, const std::vector<std::string>& parts) {
  const auto elements = elementsOfParts(shells);
  std::vector<std::int64_t> chosen;
  for (const std::string& wanted : parts) {
    const std::size_t before = chosen.size();
    std::int64_t number = 0;
    if (readInteger(wanted, number) && elements.count(number) == 1) chosen.push_back(number);
    for (const auto& [part, name] : shells.partNames)
      if (elements.count(part) == 1 && capitals(name) == capitals(wanted)) chosen.push_back(part);
    if (chosen.size() == before)
      throw Failure(shells.file + ": there is no part \"" + shown(wanted) + "\"; the file has " +
                    listOfParts(shells));
  }
  std::sort(chosen.begin(), chosen.end());
  return chosen;
}

// The corners of the shell ; of a quad, without one that stands in the node of its neighbour.
std::vector<std::int64_t> distinctCorners(const std::string& file, const Shell& shell) {
  std::vector<std::int64_t> corners;
  for (int k = 0; k < shell.count; ++k) {
    const std::int64_t node = shell.nodes[static_cast<std::size_t>(k)];
    const bool repeats = k > 0 && (node == corners.back() || (k == 3 && node == corners.front()));
    if (shell.count == 3 || !repeats) corners.push_back(node);
  }
  std::vector<std::int64_t> sorted = corners;
  std::sort(sorted.begin(), sorted.end());
  if (corners.size() < 3 || std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end())
    refuseLine(file, shell.line, "element " + std::to_string(shell.id) + " names a node more than once");
  return corners;
}

// The shells that are taken, with places of nodes for their ids: what is left to do is to split and number.
struct TakenShells {
  std::vector<const Shell*> shells;
  std::vector<std::vector<std::size_t>> corners;  // of each, places in ShellFile::nodes from 0
};

TakenShells takeShells(const ShellFile& file, const std::vector<std::string>& parts) {
  const std::vector<std::size_t> nodesById = sortedById(file.file, file.nodes, "node");
  sortedById(file.file, file.shells, "element");
  const std::vector<std::int64_t> chosen = chosenParts(file, parts);
  TakenShells taken;
  for (const Shell& shell : file.shells) {
    if (!parts.empty() && !std::binary_search(chosen.begin(), chosen.end(), shell.part)) continue;
    std::vector<std::size_t> places;
    for (const std::int64_t id : distinctCorners(file.file, shell)) {
      const auto wanted = std::pair(shell.scope, id);
      const auto place =
          std::lower_bound(nodesById.begin(), nodesById.end(), wanted, [&](std::size_t k, const auto& value) {
            return std::pair(file.nodes[k].scope, file.nodes[k].id) < value;
          });
      if (place == nodesById.end() || file.nodes[*place].scope != shell.scope || file.nodes[*place].id != id)
        refuseLine(file.file, shell.line,
                   "element " + std::to_string(shell.id) + " names node " + std::to_string(id) +
                       ", which the file does not have");
      places.push_back(*place);
    }
    taken.shells.push_back(&shell);
    taken.corners.push_back(std::move(places));
  }
  return taken;
}

// Appends the nodes that taken shells use. Returns their numbers from 1 by place, 0 for those left out.
std::vector<std::int64_t> addUsedNodes(const ShellFile& file, const TakenShells& taken, Mesh& mesh) {
  std::vector<std::int64_t> number(file.nodes.size(), 0);
  for (const auto& corners : taken.corners)
    for (const std::size_t place : corners) number[place] = 1;
  std::int64_t used = 0;
  for (std::size_t k = 0; k < number.size(); ++k) {
    if (number[k] == 0) continue;
    number[k] = ++used;
    const ShellNode& node = file.nodes[k];
    mesh.points.insert(mesh.points.end(), node.xyz.begin(), node.xyz.end());
    mesh.ids.node.push_back(node.id);
  }
  return number;
}

void addTriangle(const Shell& shell, const std::array<std::int64_t, 3>& nodes, Mesh& mesh) {
  mesh.corners.insert(mesh.corners.end(), nodes.begin(), nodes.end());
  mesh.ids.element.push_back(shell.id);
  mesh.ids.part.push_back(shell.part);
}

// Appends the triangles; returns the number of quads that were split.
std::int64_t addTriangles(const ShellFile& file, const TakenShells& taken,
                          const std::vector<std::int64_t>& number, Mesh& mesh) {
  std::int64_t quads = 0;
  for (std::size_t s = 0; s < taken.shells.size(); ++s) {
    const std::vector<std::size_t>& place = taken.corners[s];
    const Shell& shell = *taken.shells[s];
    const std::int64_t a = number[place[0]], b = number[place[1]], c = number[place[2]];
    if (place.size() == 3) {
      addTriangle(shell, {a, b, c}, mesh);
      continue;
    }
    ++quads;
    const std::int64_t d = number[place[3]];
    const bool fromFirst = splitFromFirst({file.nodes[place[0]].xyz, file.nodes[place[1]].xyz,
                                           file.nodes[place[2]].xyz, file.nodes[place[3]].xyz});
    addTriangle(shell, {a, b, fromFirst ? c : d}, mesh);
    addTriangle(shell, fromFirst ? std::array{a, c, d} : std::array{b, c, d}, mesh);
  }
  return quads;
}

void tell(const ShellFile& file, std::int64_t quads, bool allParts, Mesh& mesh) {
  if (allParts && elementsOfParts(file).size() > 1)
    mesh.remarks.push_back("took all " + std::to_string(elementsOfParts(file).size()) +
                           " parts of the file, " + listOfParts(file) + "; --part takes one");
  if (quads > 0) mesh.remarks.push_back("split " + counted(quads, "quad") + " over the shorter diagonal");
  const std::size_t unused = file.nodes.size() - mesh.nodes();
  if (unused > 0)
    mesh.remarks.push_back("left out " + counted(static_cast<std::int64_t>(unused), "node") +
                           " that no shell uses");
  std::string names;
  for (const auto& [name, count] : file.passedOver)
    names +=
        (names.empty() ? "" : ", ") + shown(name) + (count > 1 ? " (" + std::to_string(count) + ")" : "");
  if (!names.empty()) mesh.remarks.push_back("passed over: " + names);
}

}  // namespace

void refuseLine(const std::string& file, std::size_t line, const std::string& what) {
  throw Failure(file + ", line " + std::to_string(line) + ": " + what);
}

bool splitFromFirst(const std::array<std::array<double, 3>, 4>& corners) {
  double first = 0.0, second = 0.0;  // squares of the diagonals
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double d1 = corners[2][axis] - corners[0][axis], d2 = corners[3][axis] - corners[1][axis];
    first += d1 * d1;
    second += d2 * d2;
  }
  return first <= second;
}

Mesh meshOfShells(const ShellFile& shells, const std::vector<std::string>& parts) {
  if (shells.shells.empty()) throw Failure(shells.file + ": no shell element in the file");
  const TakenShells taken = takeShells(shells, parts);
  Mesh mesh;
  mesh.file = shells.file;
  const std::vector<std::int64_t> number = addUsedNodes(shells, taken, mesh);
  const std::int64_t quads = addTriangles(shells, taken, number, mesh);
  tell(shells, quads, parts.empty(), mesh);
  return mesh;
}

std::string capitals(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return upper;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace host
