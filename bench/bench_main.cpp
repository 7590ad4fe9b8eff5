// Runs all that a person waits for, prints the medians and, at the end, a table of them with the ratios to
// the bare forms.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "app/startup.h"
#include "platform/files.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_toolkit.h"

namespace kelvane {
namespace {

// Keeps the medians for the table of ratios.
class MedianReporter : public benchmark::ConsoleReporter {
 public:
  MedianReporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.aggregate_name != "median") continue;
      // Processor time: what else the machine does must not decide a ratio. Where waiting is what is measured
      // there is none.
      const bool waiting = run.run_name.time_type.find("real_time") != std::string::npos;
      medians_[run.run_name.function_name][run.run_name.args] =
          waiting ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime();
    }
  }

  // Milliseconds, and how many times those of the bare forms.
  void PrintTable() const {
    std::printf("\n| | | Kelvane | bare | ratio | images | ratio |\n|---|---|---|---|---|---|---|\n");
    for (const auto& [name, times] : medians_) {
      if (name.starts_with("Bare") || name.starts_with("Images")) continue;
      for (const auto& [arguments, time] : times) {
        std::printf("| %s | %s | %.2f |", name.c_str(), arguments.c_str(), time);
        for (const char* form : {"Bare", "Images"}) PrintRatio(form + name, arguments, time);
        std::printf("\n");
      }
    }
  }

 private:
  void PrintRatio(const std::string& name, const std::string& arguments, double time) const {
    const auto form = medians_.find(name);
    const auto other = form == medians_.end() ? Times::const_iterator() : form->second.find(arguments);
    if (form == medians_.end() || other == form->second.end()) {
      std::printf(" | |");
    } else {
      std::printf(" %.2f | %.2f |", other->second, time / other->second);
    }
  }

  using Times = std::map<std::string, double>;  // by arguments
  std::map<std::string, Times> medians_;
};

}  // namespace
}  // namespace kelvane

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  // Interleaved, so that what else the machine does meets both sides of a ratio.
  std::vector<char*> arguments(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  std::string medians = "--benchmark_report_aggregates_only=true";
  arguments.insert(arguments.begin() + 1, {interleave.data(), medians.data()});
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  kelvane::QtToolkit toolkit;
  kelvane::QtDialogs dialogs;
  kelvane::TheToolkit = &toolkit;
  kelvane::TheDialogs = &dialogs;
  kelvane::StateFolder =
      kelvane::BackslashPath((std::filesystem::temp_directory_path() / "kelvane-bench-state").string()) +
      "\\";
  if (!kelvane::StartUp(kelvane::BackslashPath(KELVANE_PROGRAM_FOLDER))) return 1;
  kelvane::MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintTable();
}
