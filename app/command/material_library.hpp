// The library of sheet materials: the program's own, and files of the user in the same form.
#pragma once

#include <string>
#include <vector>

#include "result/material.hpp"

namespace host {

struct LibraryMaterial {
  Material material;
  std::string origin;  // the file; empty: the program's own library
};

// The materials of the program, and those of the user's file before them, which replace those of the same name.
// path: empty for none. Throws Failure with file, material and key: no JSON, not of the form of docs/formats.md, a name
// that a number of --material stands for or that occurs twice, a value without source or out of its range.
std::vector<LibraryMaterial> readMaterials(const std::string& path);

// The materials in the bytes of such a file. source: begins messages. Throws Failure likewise.
std::vector<Material> materialsIn(const std::string& content, const std::string& source);

// The material of that name, capital or small letters. Throws Failure that names those there are.
Material materialNamed(const std::vector<LibraryMaterial>& library, const std::string& name);

// The program's own library as a file: what a user begins with.
std::string ownLibraryText();

}  // namespace host
