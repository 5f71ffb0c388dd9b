// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ColumnLayout.h"

#include <gtest/gtest.h>

namespace {

std::string Kept(char const* text) {
    return CColumnLayout::FromText(text).Text().toStdString();
}

} // namespace

TEST(ColumnLayoutTest, FactoryHasTheThreeColumns) {
    EXPECT_EQ(CColumnLayout::Factory().Text(), "title artist tempo");
}

TEST(ColumnLayoutTest, OrderAndWidthsComeBack) {
    EXPECT_EQ(Kept("title:500 key:80 tempo artist stored"), "title:500 key:80 tempo artist stored");
}

TEST(ColumnLayoutTest, WhatCantBeMeantIsLeftOut) {
    EXPECT_EQ(Kept("title:1000 artist:-3 tempo:9999999999 key:x key:70 colour or:"),
              "title artist tempo key or");
    EXPECT_EQ(Kept("  key   tempo "), "title key tempo artist");
}
