// Numbers as texts, in the default platform layer.
#include "zrdraw/platform/config_store.h"

#include <climits>
#include <gtest/gtest.h>

namespace {

TEST(Itoa, WritesSignsInBaseTenOnly) {
    const struct {
        int value, base;
        const char* text;
    } cases[] = {
        {0, 10, "0"},
        {-1, 10, "-1"},
        {INT_MIN, 10, "-2147483648"},
        {INT_MAX, 36, "zik0zj"},
        {-1, 16, "ffffffff"},
        {INT_MIN, 2, "10000000000000000000000000000000"},
        {35, 36, "z"},
        {5, 1, ""},
        {5, 37, ""},
    };
    for (const auto& [value, base, text] : cases) {
        char buffer[33] = "#";
        EXPECT_EQ(+buffer, itoa(value, buffer, base));
        EXPECT_STREQ(text, buffer) << value << " in base " << base;
    }
}

} // namespace
