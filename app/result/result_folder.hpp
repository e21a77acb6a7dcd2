// Whose results lie in a folder: summary.json notes the part that they belong to.
#pragma once

#include <string>
#include <vector>

#include "system/file_identity.hpp"

namespace host {

// Throws Failure if one of `names` lies in the folder already and the summary.json there does not say that it is
// a result of this part: results of another part and files of another program are not replaced. A folder that
// does not exist is free.
void checkFolderIsFree(const std::string& folder, const std::vector<std::string>& names,
                       const FileIdentity& part);

}  // namespace host
