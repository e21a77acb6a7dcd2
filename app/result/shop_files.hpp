// The files for the workshop: drawings and tables.
#ifndef TORNWALZEN_APP_SHOP_FILES_HPP
#define TORNWALZEN_APP_SHOP_FILES_HPP

#include <string>
#include <vector>

#include "result/drawing.hpp"
#include "result/result_files.hpp"
#include "result/run_report.hpp"

namespace host {

// blank.dxf and blank.svg, with a limit curve fld.svg, with a web strip.svg, and with `tables` triangles.csv and nodes.csv.
std::vector<std::string> shopFileNames(const ShopReport& shop, bool tables);
void addShopFiles(ResultFiles& files, const RunReport& report, bool tables);

// The blank with its notes. What forbids to cut it stands first: not converged, folded over, an outline that crosses
// itself.
Drawing drawingOf(const RunReport& report);

// Sentences without full stop about the shape that a user must see before the blank is cut; none: all is well.
std::vector<std::string> shapeWarnings(const RunReport& report);

}  // namespace host

#endif
