#include "services/menus.h"

#include <cstdint>
#include <vector>

#include "tests/stand_ins/stand_ins.h"

namespace {

using services::itemEnabled;
using services::itemMark;
using services::MenuRow;
using services::MenuRowKind;
using services::menuState;
using services::setItemEnabled;
using services::setItemMark;

class Menus : public stand_ins::StandInTest {
  protected:
    void SetUp() override {
        StandInTest::SetUp();
        services::buildMenuBar(0, rows);
    }

    const std::vector<MenuRow> rows = {
        {MenuRowKind::title, 7, "Programm"},
        {MenuRowKind::item, 4, "Speichern"},
        {MenuRowKind::separator, 8, ""},
        {MenuRowKind::submenuStart, 9, "Watt"},
        {MenuRowKind::checkItem, 100, "Balken"},
        {MenuRowKind::checkItem, 1001, "Linie"},
        {MenuRowKind::submenuEnd, 10, ""},
        {MenuRowKind::checkItem, 1002, "zu hoch"},
        {MenuRowKind::item, services::quitItem, "Beenden"},
    };
};

TEST_F(Menus, EveryItemStartsUnmarkedAndEnabled) {
    for (const int number : {4, 100, 1001}) {
        EXPECT_FALSE(itemMark(number)) << number;
        EXPECT_TRUE(itemEnabled(number)) << number;
    }
}

TEST_F(Menus, MarksAndEnablingAreKeptByNumber) {
    setItemMark(100, true);
    setItemEnabled(4, false);
    EXPECT_TRUE(itemMark(100));
    EXPECT_FALSE(itemMark(1001));
    EXPECT_FALSE(itemEnabled(4));
    EXPECT_TRUE(itemEnabled(100));
    setItemMark(100, false);
    setItemEnabled(4, true);
    EXPECT_FALSE(itemMark(100));
    EXPECT_TRUE(itemEnabled(4));
}

TEST_F(Menus, NumbersWithoutAnItemHaveNeitherMarkNorEffect) {
    for (const int number : {INT32_MIN, -1, 0, 7, 8, 9, 10, 101, 1002, INT32_MAX}) {
        setItemMark(number, true);
        setItemEnabled(number, true);
        EXPECT_FALSE(itemMark(number)) << number;
        EXPECT_FALSE(itemEnabled(number)) << number;
    }
    for (const services::MenuItemState& item : menuState.items)
        EXPECT_FALSE(item.marked);
}

TEST_F(Menus, TheWindowGetsTheRowsAsTheyAre) {
    ASSERT_EQ(rows.size(), stand_ins::world.menuRows.size());
    EXPECT_EQ("Balken", stand_ins::world.menuRows[4].text);
}

TEST_F(Menus, BuildingAgainForgetsItemsAndMarks) {
    setItemMark(100, true);
    setItemEnabled(1001, false);
    services::buildMenuBar(0, std::vector<MenuRow>{{MenuRowKind::checkItem, 100, "Balken"}});
    EXPECT_FALSE(itemMark(100));
    setItemMark(1001, true);
    EXPECT_FALSE(itemMark(1001));
}

}  // namespace
