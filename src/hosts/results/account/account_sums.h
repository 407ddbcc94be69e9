// SPDX-License-Identifier: MIT
// The sums of an account, over bands of rows of its grid.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "hosts/results/account/account.h"
#include "hosts/results/account/account_grids.h"
#include "hosts/results/account/account_layers.h"

namespace velmora {

class AccountSums {
  public:
    // Adds to the account's entries and months; all must outlive the sums.
    AccountSums(IPlatform& platform, Account& account, const KeyedPolygons& zones,
                const KeyedPolygons& crops);

    // Whole rows of the account's grid, whose first is the first of a row of tiles. Sums come from
    // the same parts whatever the number of threads. Throws PlatformError.
    void beginBand(int firstRow, int rows);
    void addMonth(std::size_t month, const AccountGrids& grids);
    void endBand();

  private:
    struct Part;
    void sumTiles(const AccountGrids& grids, std::size_t begin, std::size_t end, Part& part);
    void sumTile(const AccountGrids& grids, const CellBlock& tile, Part& part);
    std::size_t entryOf(std::size_t zone, std::size_t crop);

    IPlatform& platform_;
    Account& account_;
    const KeyedPolygons& zones_;
    const KeyedPolygons& crops_;
    std::unordered_map<std::uint64_t, std::size_t> entries_;
    int firstRow_ = 0;
    int rows_ = 0;
    // By cell of the band.
    std::vector<std::uint32_t> entry_;
    std::vector<std::uint8_t> least_;  // the kind of land that lacks least so far
};

}  // namespace velmora
