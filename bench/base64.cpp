// bench_base64: the encoder of attachments against OpenSSL's, which here makes no lines at all.

#include <openssl/evp.h>

#include "measure.h"
#include "stream/base64_encoder.h"

namespace orma::bench {
namespace {

constexpr std::size_t kPiece = 48 * 1024;  // whole groups, for the library knows no others
constexpr std::size_t kPieces = 2000;

Bytes Sound() {
    Bytes bytes(kPiece);
    std::uint32_t state = 1;
    for (std::uint8_t& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    return bytes;
}

void Run() {
    const Bytes piece = Sound();
    Bytes library(kPiece / 3 * 4 + 1);
    const auto encodeLibrary = [&] {
        return static_cast<std::size_t>(
            ::EVP_EncodeBlock(library.data(), piece.data(), static_cast<int>(piece.size())));
    };
    Base64Encoder encoder;
    std::string lines(encoder.Encode(piece));
    std::erase_if(lines, [](char c) { return c == '\r' || c == '\n'; });
    const std::size_t size = encodeLibrary();
    Require(size == lines.size() && std::equal(lines.begin(), lines.end(), library.begin()),
            "the encoders differ");

    Compare("base64", {{"ours",
                        [&] {
                            encoder.Reset();
                            std::size_t made = 0;
                            for (std::size_t i = 0; i < kPieces; ++i)
                                made += encoder.Encode(piece).size();
                            Require(made > kPieces * size, "output is missing");
                        }},
                       {"library", [&] {
                            std::size_t made = 0;
                            for (std::size_t i = 0; i < kPieces; ++i)
                                made += encodeLibrary();
                            Require(made == kPieces * size, "output is missing");
                        }}});
}

}  // namespace
}  // namespace orma::bench

int main() {
    orma::bench::Run();
}
