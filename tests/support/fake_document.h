// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gis/map_document.h"

namespace velmora::test {

class FakeLayer : public IRasterLayer {
  public:
    FakeLayer(std::string path, bool fails) : path_(std::move(path)), fails_(fails) {}
    std::string name() const override { return path_.substr(path_.rfind('/') + 1); }
    std::string path() const override { return path_; }
    void setStretchedRenderer(const AlgorithmicColorRamp& given) override;
    AlgorithmicColorRamp ramp;

  private:
    std::string path_;
    bool fails_;
};

class FakeDocument : public IMxDocument {
  public:
    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override {
        return std::make_unique<FakeLayer>(path, layersFail);
    }
    void addLayer(std::unique_ptr<IRasterLayer> layer) override {
        layers.push_back(std::move(layer));
    }
    void addTable(std::shared_ptr<ITable> table) override;
    void refreshContents() override { ++refreshed; }
    std::vector<std::unique_ptr<IRasterLayer>> layers;
    std::vector<std::shared_ptr<ITable>> tables;
    int refreshed = 0;
    bool layersFail = false;
    bool tablesFail = false;
};

}  // namespace velmora::test
