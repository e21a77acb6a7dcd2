// The page of app/report/dist/report.html as it was built into the program.
#pragma once

#include <string>

namespace host {

// HTML with the marks @@TITLE@@, @@DATA@@ and @@MESH@@, once each and in this order. Its definition is generated from
// the file (cmake/embed_page.cmake).
std::string reportTemplate();

}  // namespace host
