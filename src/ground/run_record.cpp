// The fatal text of the record.
#include "ground/run_record.hpp"

#include <cstring>

namespace tornwalzen {

void noteFatalText(RunRecord& record, const char* text) {
  while (*text == ' ') ++text;
  std::size_t length = 0;
  while (length + 1 < fatalTextLength && text[length] != '\0') ++length;
  while (length > 0 && (text[length - 1] == ' ' || text[length - 1] == '@' || text[length - 1] == '\n'))
    --length;
  std::memcpy(record.fatalText, text, length);
  record.fatalText[length] = '\0';
}

}  // namespace tornwalzen
