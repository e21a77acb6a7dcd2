// A folder for files that only this process needs.
#pragma once

#include <string>
#include <vector>

namespace host {

// A folder of its own below the system's folder for such, removed with the files in it at the end of its life
// and on a signal that ends the process. Throws Failure if it cannot be made.
class WorkFolder {
 public:
  WorkFolder();
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  const std::string& path() const { return path_; }
  // The path of a file in it, which the removal includes. At most ten files.
  std::string file(const std::string& name);

 private:
  std::string path_;
  std::vector<std::string> files_;
};

}  // namespace host
