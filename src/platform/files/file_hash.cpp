// SPDX-License-Identifier: MIT
#include "platform/files/file_hash.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <xxhash.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "gis/errors.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20U;

std::string hexadecimal(std::span<const unsigned char> bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const unsigned char byte : bytes) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 15U];
    }
    return text;
}

std::string textOf(XXH128_hash_t hash) {
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, hash);
    return hexadecimal(canonical.digest);
}

// Gives the bytes of a file, some at a time, to `take`.
template <class Take>
void readThrough(const std::string& path, std::size_t chunk, Take take) {
    PosixFile file(path, O_RDONLY | O_CLOEXEC, "Cannot read");
    std::vector<char> bytes(chunk);
    for (std::size_t size = chunk; size == chunk;) {
        size = file.read(bytes.data(), bytes.size());
        if (size > 0) take(std::span<const char>(bytes.data(), size));
    }
}

class Sha256 {
  public:
    // Without the machine's configuration of the library, which has nothing to say here and would
    // be loaded by whichever thread hashes first.
    Sha256() {
        OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr);
        context_.reset(EVP_MD_CTX_new());
        check(context_ && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1);
    }
    void add(std::span<const char> bytes) {
        check(EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1);
    }
    std::string text() {
        std::array<unsigned char, 32> digest{};
        unsigned size = 0;
        check(EVP_DigestFinal_ex(context_.get(), digest.data(), &size) == 1);
        return hexadecimal(digest);
    }

  private:
    static void check(bool done) {
        if (!done) throw PlatformError("The library of SHA-256 fails");
    }
    struct Free {
        void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
    };
    std::unique_ptr<EVP_MD_CTX, Free> context_;
};

struct FreeState {
    void operator()(XXH3_state_t* state) const { XXH3_freeState(state); }
};

}  // namespace

std::string sha256OfFile(const std::string& path) {
    Sha256 hash;
    readThrough(path, kChunk, [&](std::span<const char> bytes) { hash.add(bytes); });
    return hash.text();
}

std::string sha256Of(std::span<const char> bytes) {
    Sha256 hash;
    hash.add(bytes);
    return hash.text();
}

std::string xxh3Of(std::span<const char> bytes) {
    return textOf(XXH3_128bits(bytes.data(), bytes.size()));
}

std::string xxh3OfFile(const std::string& path) {
    const std::unique_ptr<XXH3_state_t, FreeState> state(XXH3_createState());
    XXH3_128bits_reset(state.get());
    readThrough(path, kChunk, [&](std::span<const char> bytes) {
        XXH3_128bits_update(state.get(), bytes.data(), bytes.size());
    });
    return textOf(XXH3_128bits_digest(state.get()));
}

void PiecesHash::set(std::size_t piece, std::span<const char> bytes) {
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, XXH3_128bits(bytes.data(), bytes.size()));
    std::memcpy(hashes_.data() + piece * kBytes, canonical.digest, kBytes);
}

std::string PiecesHash::text() const { return xxh3Of(hashes_); }

std::string piecesHashOfFile(const std::string& path, std::size_t first, std::size_t rest) {
    PosixFile file(path, O_RDONLY | O_CLOEXEC, "Cannot read");
    std::string bytes(std::max(first, rest), '\0');
    const std::size_t size = file.size();
    const std::size_t beyond = size > first ? size - first : 0;
    PiecesHash hash(1 + (beyond + rest - 1) / rest);
    std::size_t piece = 0;
    for (std::size_t at = 0; at < size || piece == 0; ++piece) {
        const std::size_t got = file.read(bytes.data(), piece == 0 ? first : rest);
        hash.set(piece, {bytes.data(), got});
        if (got == 0) break;  // it has become shorter meanwhile
        at += got;
    }
    return hash.text();
}

}  // namespace velmora::platform
