// SPDX-License-Identifier: MIT
#include "platform/files/file_hash.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "gis/errors.h"
#include "platform/grid/esri_grid.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

using test::TempFolder;

// The SHA-256 of "abc": FIPS 180-2, appendix B.1; of nothing: RFC 6234's test vectors.
TEST(FileHash, Sha256MeetsThePublishedDigests) {
    const std::string abc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
    EXPECT_EQ(sha256Of(std::string_view("abc")), abc);
    EXPECT_EQ(sha256Of(std::string_view()),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    const TempFolder folder;
    test::write(folder.file("abc"), "abc");
    EXPECT_EQ(sha256OfFile(folder.file("abc")), abc);
    EXPECT_THROW(sha256OfFile(folder.file("none")), PlatformError);
}

TEST(FileHash, AFileHasTheHashOfItsBytesWhateverItsLength) {
    const TempFolder folder;
    for (const std::size_t size : {0U, 1U, 99U, 1'048'576U, 1'048'577U, 3'000'000U}) {
        std::string bytes(size, 'v');
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * i);
        test::write(folder.file("bytes"), bytes);
        EXPECT_EQ(xxh3OfFile(folder.file("bytes")), xxh3Of(bytes)) << size;
        EXPECT_EQ(sha256OfFile(folder.file("bytes")), sha256Of(bytes)) << size;
    }
    EXPECT_EQ(xxh3Of({}), "99aa06d3014798d86001c324468d497f");  // the library's own for no bytes
}

TEST(FileHash, PiecesMayComeInAnyOrder) {
    const TempFolder folder;
    test::write(folder.file("pieces"), "HHHaaaabbbbcc");
    const std::string whole = piecesHashOfFile(folder.file("pieces"), 3, 4);
    PiecesHash hash(4);
    hash.set(2, std::string_view("bbbb"));
    hash.set(0, std::string_view("HHH"));
    hash.set(3, std::string_view("cc"));
    hash.set(1, std::string_view("aaaa"));
    EXPECT_EQ(hash.text(), whole);
    test::write(folder.file("pieces"), "HHHaaaabbbbcd");
    EXPECT_NE(piecesHashOfFile(folder.file("pieces"), 3, 4), whole);
    test::write(folder.file("pieces"), "HHHbbbbaaaacc");
    EXPECT_NE(piecesHashOfFile(folder.file("pieces"), 3, 4), whole);
}

TEST(FileHash, AGridIsHashedWhileItIsWritten) {
    const TempFolder folder;
    EsriGridWriter writer(folder.file("grid"), {300, 20, 1000, 2000, 10, {}});
    std::array<float, 256 * 16> cells{};
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = static_cast<float>(i) / 7;
    writer.writeTile(3, std::span(cells).first(44 * 4));
    writer.writeTile(1, std::span(cells).first(44 * 16));
    writer.writeTile(0, cells);
    writer.writeTile(2, std::span(cells).first(256 * 4));
    writer.finish();
    ASSERT_EQ(writer.files().size(), 5U);  // no coordinate system, so no prj.adf
    for (const WrittenFile& file : writer.files()) {
        const std::string path = folder.file("grid/" + file.name);
        EXPECT_EQ(file.bytes, test::contentOf(path).size()) << file.name;
        EXPECT_EQ(file.hash, file.inPieces
                                 ? piecesHashOfFile(path, kGridHeaderPiece, kGridTilePiece)
                                 : xxh3OfFile(path))
            << file.name;
    }
}

}  // namespace
}  // namespace velmora::platform
