// The headless BMP reader and writer: rows padded to four bytes, bottom-up
// and top-down files, palettes, alpha, and files that lie about their size.
#include <gtest/gtest.h>

#include "platform/images.h"

namespace korvex::platform {
namespace {

uint32_t u32_at(const std::string& b, size_t at) {
    return static_cast<uint8_t>(b[at]) | static_cast<uint8_t>(b[at + 1]) << 8 | static_cast<uint8_t>(b[at + 2]) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(b[at + 3])) << 24;
}
void put_u32(std::string& b, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + static_cast<size_t>(i)] = static_cast<char>(v >> (8 * i) & 0xFF);
}

TEST(BmpCodec, AnOddWidthRoundTripsWithPaddedBottomUpRows) {
    const Image img{3, 2, {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFF010203, 0xFFFFFFFF, 0xFF000000}};
    const std::string b = encode_bmp24(img);
    ASSERT_EQ(b.size(), 54u + 2 * 12);
    EXPECT_EQ(b.substr(0, 2), "BM");
    EXPECT_EQ(u32_at(b, 2), b.size());
    EXPECT_EQ(b[28], 24);
    // The last row of the picture is the first in the file, blue green red.
    EXPECT_EQ(b.substr(54, 12), std::string("\x03\x02\x01\xFF\xFF\xFF\x00\x00\x00\x00\x00\x00", 12));
    EXPECT_EQ(b.substr(66, 3), std::string("\x00\x00\xFF", 3));
    Image back;
    ASSERT_TRUE(decode_bmp(b, back));
    EXPECT_EQ(back, img);
    // Alpha is dropped on the way out: what comes back is opaque.
    Image half{1, 1, {0x40123456}};
    ASSERT_TRUE(decode_bmp(encode_bmp24(half), back));
    EXPECT_EQ(back.argb[0], 0xFF123456u);
}

TEST(BmpCodec, PalettesTopDownRowsAndAlphaOf32Bits) {
    // A top-down 8-bit file of 2 x 2 with a table of two colours.
    std::string b = encode_bmp24(Image{2, 2, std::vector<uint32_t>(4, 0)});
    b.resize(54);
    put_u32(b, 10, 54 + 8);
    put_u32(b, 22, static_cast<uint32_t>(-2));
    b[28] = 8;
    put_u32(b, 46, 2);
    b += std::string("\x00\x00\xFF\x00\x00\xFF\x00\x00", 8);  // red, green
    b += std::string("\x00\x01\x00\x00\x01\x01\x00\x00", 8);
    Image img;
    ASSERT_TRUE(decode_bmp(b, img));
    EXPECT_EQ(img.argb, (std::vector<uint32_t>{0xFFFF0000, 0xFF00FF00, 0xFF00FF00, 0xFF00FF00}));

    // 32 bits: the fourth byte is alpha when any pixel has one, else the file is opaque.
    std::string c = encode_bmp24(Image{1, 2, {0, 0}});
    c.resize(54);
    c[28] = 32;
    put_u32(c, 10, 54);
    c += std::string("\x10\x20\x30\x80\x01\x02\x03\x00", 8);
    ASSERT_TRUE(decode_bmp(c, img));
    EXPECT_EQ(img.argb, (std::vector<uint32_t>{0x00030201, 0x80302010}));
    c[57] = 0;
    ASSERT_TRUE(decode_bmp(c, img));
    EXPECT_EQ(img.argb[1], 0xFF302010u);
}

TEST(BmpCodec, BadFilesAreRefusedWithoutHarm) {
    const std::string good = encode_bmp24(Image{4, 4, std::vector<uint32_t>(16, 0xFF808080)});
    Image img;
    EXPECT_FALSE(decode_bmp(good.substr(0, good.size() - 1), img));  // the last row cut short
    EXPECT_FALSE(decode_bmp("BM", img));
    EXPECT_FALSE(decode_bmp(std::string(64, 'x'), img));
    std::string huge = good;
    put_u32(huge, 18, 0x7FFFFFFF);
    EXPECT_FALSE(decode_bmp(huge, img));
    std::string rle = good;
    put_u32(rle, 30, 1);
    EXPECT_FALSE(decode_bmp(rle, img));
    std::string offset = good;
    put_u32(offset, 10, 0xFFFFFFF0);
    EXPECT_FALSE(decode_bmp(offset, img));
}

}  // namespace
}  // namespace korvex::platform
