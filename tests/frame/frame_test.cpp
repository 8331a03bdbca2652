// The version record, the cache query and the streaming-store helpers.
#include "frame/stream.hpp"
#include "tpxcc.h"
#include "tpxcore.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

TEST(Version, RecordIsTheConstantOfThisBuild) {
    const TpxLibraryVersion* v = tpxccGetLibVersion();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v, tpxccGetLibVersion());
    EXPECT_EQ(v->major, 2022);
    EXPECT_EQ(v->minor, 0);
    EXPECT_EQ(v->update, 0);
    EXPECT_EQ(v->build, 0x131E93B0);
    EXPECT_EQ(0, std::memcmp(v->targetTag, "e9\0\0", 4));
    EXPECT_STREQ(v->name, "tpxCC AVX (e9)");
    EXPECT_STREQ(v->versionText, "2022.0.0 (r0x131e93b0)");
    EXPECT_STREQ(v->buildDate, "Sep  4 2024");
}

TEST(CacheQuery, ReportsAPlausibleSizeOrFails) {
    EXPECT_NE(tpxGetMaxCacheSizeB(nullptr), 0);
    int32_t size = -1;
    if (tpxGetMaxCacheSizeB(&size) == 0) {
        EXPECT_GE(size, 16 * 1024);
        EXPECT_LE(size, 2047 * 1024 * 1024);
    } else {
        EXPECT_EQ(size, -1);
    }
}

// Streamed and cached stores write the same bytes at every alignment and length.
TEST(Streaming, CopyAndFillMatchPlainStores) {
    std::vector<uint8_t> src(300);
    for (size_t i = 0; i < src.size(); ++i) src[i] = uint8_t(i * 7 + 1);
    for (int nt = 0; nt < 2; ++nt)
        for (size_t off = 0; off < 16; ++off)
            for (size_t len : {0u, 1u, 15u, 16u, 17u, 63u, 200u}) {
                std::vector<uint8_t> a(300, 0xEE), b(300, 0xEE);
                tpx::stream::copyRow(a.data() + off, src.data(), len, nt);
                std::memcpy(b.data() + off, src.data(), len);
                EXPECT_EQ(a, b) << "copy off " << off << " len " << len;
                std::vector<uint16_t> f(150, 0x1111), g(150, 0x1111);
                tpx::stream::fillRow16(f.data() + off, 0xABCD, len / 2, nt);
                for (size_t i = 0; i < len / 2; ++i) g[off + i] = 0xABCD;
                EXPECT_EQ(f, g) << "fill16 off " << off;
                std::vector<uint32_t> h(100, 7), k(100, 7);
                tpx::stream::fillRow32(h.data() + off, 0xDEADBEEF, len / 4, nt);
                for (size_t i = 0; i < len / 4; ++i) k[off + i] = 0xDEADBEEF;
                EXPECT_EQ(h, k) << "fill32 off " << off;
                tpx::stream::fence(nt);
            }
    EXPECT_FALSE(tpx::stream::worthStreaming(1000, 524288));
}
