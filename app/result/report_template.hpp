// The page of app/report/dist/report.html as it was built into the program.
#ifndef TORNWALZEN_APP_REPORT_TEMPLATE_HPP
#define TORNWALZEN_APP_REPORT_TEMPLATE_HPP

#include <string>

namespace host {

// HTML with the marks @@TITLE@@, @@DATA@@ and @@MESH@@, once each and in this order. Its definition is generated from
// the file (cmake/embed_page.cmake).
std::string reportTemplate();

}  // namespace host

#endif
