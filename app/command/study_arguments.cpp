// The command line of `tornwalzen study` and `tornwalzen collect`; see the header.
#include "command/study_arguments.hpp"

#include <CLI/CLI.hpp>

#include "command/help_examples.hpp"

namespace host {

CLI::App* describeStudy(CLI::App& app, StudyOptions& options) {
  CLI::App* study =
      app.add_subcommand("study", "Print the command lines of many runs, a row of a table each.");
  study
      ->add_option(
          "STUDY", options.table,
          "table with the columns PART (the mesh file), name (of the row's folder, optional) and options of "
          "solve")
      ->type_name("STUDY.csv")
      ->required();
  study
      ->add_option("--out", options.out,
                   "folder for the rows' folders (default: the table's name with _study)")
      ->type_name("DIR");
  CLI::Option* print = study->add_flag("--print", options.print, "print a command line per row");
  study->add_flag("--slurm", options.slurm, "print them as a script for an array of jobs")->needs(print);
  study->add_flag("--again", options.again, "print the rows that are complete, too");
  study->footer(studyExamples);
  return study;
}

CLI::App* describeCollect(CLI::App& app, CollectOptions& options) {
  CLI::App* collect =
      app.add_subcommand("collect", "Gather the results of many runs into one table and one page.");
  collect->add_option("FOLDER", options.folders, "folders of results, or of folders of results")->required();
  collect
      ->add_option("--out", options.out,
                   "folder for collected.csv and overview.html (default: the first FOLDER)")
      ->type_name("DIR");
  collect->add_flag("--force", options.force, "replace files of those names that are not of this command");
  collect->footer(collectExamples);
  return collect;
}

}  // namespace host
