#include "platform/sound_ring.h"

#include <algorithm>
#include <array>
#include <thread>

#include <gtest/gtest.h>

namespace orma {
namespace {

TEST(SoundRing, TakesWholeBlocksOnlyAndKeepsTheOldestWhenItIsFull) {
    SoundRing ring(10);
    const Bytes bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    EXPECT_EQ(ring.Write(bytes, 4), 8u);
    EXPECT_EQ(ring.Write(bytes, 4), 0u);
    std::array<std::uint8_t, 6> out{};
    EXPECT_EQ(ring.Read(out), 6u);
    EXPECT_EQ(out, (std::array<std::uint8_t, 6>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(ring.Write(ByteSpan(bytes).subspan(8), 4), 4u);  // over the end of the memory
    EXPECT_EQ(ring.Available(), 6u);
    EXPECT_EQ(ring.Read(out), 6u);
    EXPECT_EQ(out, (std::array<std::uint8_t, 6>{7, 8, 9, 10, 11, 12}));
    EXPECT_EQ(ring.Write(bytes, 4), 8u);
    EXPECT_EQ(ring.Discard(), 8u);
    EXPECT_EQ(ring.Read(out), 0u);
}

TEST(SoundRing, CarriesEveryByteFromOneThreadToAnother) {
    SoundRing ring(1000);
    constexpr std::size_t kTotal = 500'000;
    std::thread producer([&] {
        std::array<std::uint8_t, 97> chunk{};
        for (std::size_t made = 0; made < kTotal;) {
            const std::size_t count = std::min(chunk.size(), kTotal - made);
            for (std::size_t i = 0; i < count; ++i)
                chunk[i] = static_cast<std::uint8_t>((made + i) * 7 / 3);
            made += ring.Write({chunk.data(), count}, 1);
        }
    });
    std::array<std::uint8_t, 131> out{};
    std::size_t wrong = 0;
    for (std::size_t got = 0; got < kTotal;) {
        const std::size_t count = ring.Read(out);
        for (std::size_t i = 0; i < count; ++i)
            wrong += out[i] != static_cast<std::uint8_t>((got + i) * 7 / 3);
        got += count;
    }
    producer.join();
    EXPECT_EQ(wrong, 0u);
}

}  // namespace
}  // namespace orma
