# Writes a C++ source that returns the text of a file. The text is ASCII; it is cut into literals that every compiler
# takes. usage: cmake -DPAGE=file -DSOURCE=file.cpp -P embed_page.cmake
file(READ ${PAGE} page)
string(LENGTH "${page}" length)
set(literals "")
set(at 0)
while(at LESS length)
  string(SUBSTRING "${page}" ${at} 8000 piece)
  string(APPEND literals "    R\"=page=(${piece})=page=\",\n")
  math(EXPR at "${at} + 8000")
endwhile()
file(WRITE ${SOURCE} "// Generated from app/report/dist/report.html.
#include \"result/report_template.hpp\"

namespace {
const char* const piece[] = {
${literals}};
}  // namespace

std::string host::reportTemplate() {
  std::string page;
  page.reserve(${length});
  for (const char* const text : piece) page += text;
  return page;
}
")
