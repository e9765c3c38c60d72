#include "fx/frames.h"
#include "zrdraw/wipes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

struct Codes {
    zrfxKernel* kernel;
    std::vector<unsigned int> ends; // the first and the last code of each range
};

const std::vector<Codes> table = {
    {zrfxSMPTE_Horizontal,
     {1,   1,   102, 114, 119, 125, 127, 131, 201, 207, 211, 214, 221, 228, 231, 236, 241,
      246, 251, 254, 261, 264, 301, 306, 310, 317, 320, 329, 340, 345, 350, 353, 409, 409}},
    {zrfxSMPTE_Vertical, {2, 2}},
    {zrfxSMPTE_TopLeft, {3, 3}},
    {zrfxSMPTE_TopRight, {4, 4}},
    {zrfxSMPTE_BottomRight, {5, 5}},
    {zrfxSMPTE_BottomLeft, {6, 6}},
    {zrfxSMPTE_FourCorners, {7, 7}},
    {zrfxSMPTE_FourSquare, {8, 8}},
    {zrfxSMPTE_BarnDoorVertical, {21, 21}},
    {zrfxSMPTE_BarnDoorHorizontal, {22, 22}},
    {zrfxSMPTE_TopCenter, {23, 23}},
    {zrfxSMPTE_RightCenter, {24, 24}},
    {zrfxSMPTE_BottomCenter, {25, 25}},
    {zrfxSMPTE_LeftCenter, {26, 26}},
    {zrfxSMPTE_Rectangle, {41, 48, 61, 68, 71, 74, 101, 101}},
    {zrfxSLIDE_Basic, {500, 515}},
};

zrfxKernel* kernelOf(unsigned int code) {
    for (const Codes& codes : table)
        for (std::size_t i = 0; i < codes.ends.size(); i += 2)
            if (code >= codes.ends[i] && code <= codes.ends[i + 1])
                return codes.kernel;
    return zrfxDISSOLVE;
}

class Selection : public ::testing::Test {
protected:
    static constexpr unsigned int width = 12, height = 10, pitch = width * 4;

    Frame draw(zrfxKernel* kernel, unsigned int code) {
        Frame dst(pitch * height);
        zrfxFXArgs args = argsOf(m_a, m_b, dst, pitch, code, ptRGBA32, width, height);
        args.rangeEnd = 16;
        args.position = 8;
        if (kernel == nullptr)
            EXPECT_EQ(callWith(ZRDraw_DisplayWipe, args), 0U);
        else
            EXPECT_TRUE(runBands(kernel, args));
        return dst;
    }

    Random m_random{seed};
    Frame m_a{pitch * height, m_random}, m_b{pitch * height, m_random};
};

TEST_F(Selection, NamedRowsShowPicturesThatAllDifferAndOthersOneOfThese) {
    std::vector<std::pair<std::string, Frame>> named{{"nothing", Frame(pitch * height)}};
    for (const bool wantsName : {true, false})
        for (const zrWipe& row : zrWipes) {
            if ((row.name != nullptr) != wantsName)
                continue;
            EXPECT_EQ(row.help != nullptr, wantsName) << row.first;
            const Frame picture = draw(nullptr, row.last);
            const auto known = std::find_if(named.begin(), named.end(), [&](const auto& other) {
                return other.second == picture;
            });
            EXPECT_EQ(known == named.end(), wantsName) << row.first << " shows " << known->first;
            if (wantsName)
                named.emplace_back(row.name, picture);
        }
    EXPECT_EQ(named.size(), 21U) << "fifteen wipes, four slides, the dissolve";
}

TEST_F(Selection, EveryCodeHasItsKernel) {
    std::vector<unsigned int> codes{1000, 0x8000, 0x10001, 0x1000001, 0x40000001, 0x7FFFFFFF};
    for (unsigned int code = 0; code <= 600; ++code)
        codes.push_back(code);
    for (const unsigned int code : codes)
        for (const unsigned int full : {code, code | zrWipeSwap})
            ASSERT_EQ(draw(nullptr, full), draw(kernelOf(code), full)) << std::hex << full;
}

// The slide knows them all, as of four bytes a pixel.
TEST(Kernels, OfUnknownLayoutsOrEmptyBandsWriteNothing) {
    std::vector<zrfxKernel*> kernels{zrfxDISSOLVE, zrfxDISSOLVE2};
    for (const Codes& codes : table)
        if (codes.kernel != zrfxSLIDE_Basic)
            kernels.push_back(codes.kernel);
    Frame a(256, 1), b(256, 2), dst(256);
    zrfxFXArgs args{a.data(), 64, b.data(), 64, dst.data(), 64, zrWipeHorizontal, 0, 4, 4};
    args.rangeEnd = 4;
    args.position = 2;
    for (std::size_t i = 0; i < kernels.size(); ++i) {
        for (const unsigned int type : {0U, 7U, 10U, 28U, 37U, unsigned{ptV210},
                                        unsigned{ptRGBHalf48}, 10000U, 0xFFFFFFFFU}) {
            args.pixelType = type;
            EXPECT_TRUE(runBands(kernels[i], args));
        }
        args.pixelType = ptRGBA32;
        EXPECT_EQ(callWith(kernels[i], args, 0U, 4U, 2U, 2U), 0U);
        EXPECT_EQ(callWith(kernels[i], args, 0U, 4U, 3U, 2U), 0U);
        EXPECT_EQ(callWith(kernels[i], args, 2U, 2U, 0U, 4U), 0U);
        ASSERT_EQ(dst, Frame(256)) << "kernel " << i;
    }
}

} // namespace
