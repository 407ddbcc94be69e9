// SPDX-License-Identifier: MIT
// What `velmora run STEP --diagnose` tells about a step's surfaces.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "gis/diagnostics.h"
#include "gis/files.h"

namespace velmora {

class DiagnosticsReport : public IDiagnostics {
  public:
    void add(const SurfaceDiagnostics& surface) override { surfaces_.push_back(surface); }
    const std::vector<SurfaceDiagnostics>& surfaces() const { return surfaces_; }

    std::string table() const;  // for a terminal
    std::string json() const;
    std::string csv() const;  // one line per surface, numbers in full precision

    // Writes `name`.csv and one picture SURFACE_semivariogram.png per surface that has a
    // semivariogram into the folder. Returns the paths. Throws PlatformError.
    std::vector<std::string> write(IFileSystem& files, const std::string& folder,
                                   const std::string& name) const;

  private:
    std::map<std::string, std::vector<std::string>> exclusions() const;

    std::vector<SurfaceDiagnostics> surfaces_;
};

}  // namespace velmora
