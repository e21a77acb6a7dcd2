// The command line of `tornwalzen study` and `tornwalzen collect`.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

struct StudyOptions {
  std::string table;                   // CSV file
  std::string program = "tornwalzen";  // as it was called: first word of the lines
  std::string out;                     // folder of the rows' folders; empty: <table without extension>_study
  bool print = false;                  // the command lines
  bool slurm = false;                  // as a script for an array of jobs
  bool again = false;                  // rows that are complete, too
};

struct CollectOptions {
  std::vector<std::string> folders;  // of results, or of folders of results
  std::string out;                   // folder of the two files; empty: the first of those
  bool force = false;                // replace files of those names that are not collect's
};

CLI::App* describeStudy(CLI::App& app, StudyOptions& options);
CLI::App* describeCollect(CLI::App& app, CollectOptions& options);

}  // namespace host
