#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cli/device.h"
#include "cli/exit_code.h"
#include "cli/places.h"

namespace korvane::cli {

struct DeploymentOptions {
    std::string file, address;
    std::string folder = ".";  // takes what the device had
    std::optional<Format> format;
    bool yes = false, force = false, dryRun = false, restoreOnFailure = false;
};

// Makes a device take the configuration of a file, and sees that it has: what it had is kept, what
// it then holds is read back, and if the two are not the same, what it had can be written back.
class Deployment {
  public:
    Deployment(Context& context, const DeploymentOptions& options);
    ExitCode run();

  private:
    void readBoth();
    void showDifferences();
    bool acceptable();
    void keep();
    ExitCode commit();
    ExitCode readBack(const Configuration& expected);
    ExitCode tell(const Outcome& outcome, const std::string& state);
    ExitCode sentInPart(const Outcome& outcome);
    ExitCode backOut(ExitCode code);
    bool wantsBackOut();
    void restore();

    Context& context_;
    const DeploymentOptions& options_;
    Device device_;
    std::unique_ptr<Configuration> wanted_, held_;
    std::string kept_;  // the file
};

}  // namespace korvane::cli
