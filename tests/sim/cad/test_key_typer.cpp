#include "sim/cad/control/KeyTyper.h"

#include <gtest/gtest.h>

using cad::KeyTyper;

TEST(KeyTyper, FindsKeysByName) {
    EXPECT_EQ(KeyTyper::keyOf("Return"), VK_RETURN);
    EXPECT_EQ(KeyTyper::keyOf("escape"), VK_ESCAPE);
    EXPECT_EQ(KeyTyper::keyOf("a"), 'A');
    EXPECT_EQ(KeyTyper::keyOf("7"), '7');
    EXPECT_EQ(KeyTyper::keyOf("F12"), VK_F12);
    EXPECT_EQ(KeyTyper::keyOf("F13"), 0);
    EXPECT_EQ(KeyTyper::keyOf("Frobnicate"), 0);
    EXPECT_EQ(KeyTyper::keyOf(""), 0);
}
