// SPDX-License-Identifier: MIT
// Fingerprints of files: SHA-256 where somebody may want to forge one, XXH3 (128 bits) where only
// accidents are to be found, which is fast enough to go along while a grid is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmora::platform {

// 64 hexadecimal digits. Throws PlatformError when the file cannot be read.
std::string sha256OfFile(const std::string& path);
std::string sha256Of(std::span<const char> bytes);

// 32 hexadecimal digits.
std::string xxh3Of(std::span<const char> bytes);
std::string xxh3OfFile(const std::string& path);

// The hash of a file that is written piece by piece in any order: the hash of the hashes of its
// pieces, each of 16 bytes, high byte first, in the order of the pieces.
class PiecesHash {
  public:
    explicit PiecesHash(std::size_t pieces) : hashes_(pieces * kBytes) {}
    void set(std::size_t piece, std::span<const char> bytes);  // from several threads at once
    std::string text() const;

  private:
    static constexpr std::size_t kBytes = 16;
    std::vector<char> hashes_;
};

// The pieces of a grid's tile file: its header, and each tile with its length word.
constexpr std::size_t kGridHeaderPiece = 100;
constexpr std::size_t kGridTilePiece = 2 + std::size_t{256} * 16 * 4;

// That hash of a file whose first piece has `first` bytes and every other `rest`; the last may be
// shorter.
std::string piecesHashOfFile(const std::string& path, std::size_t first, std::size_t rest);

}  // namespace velmora::platform
