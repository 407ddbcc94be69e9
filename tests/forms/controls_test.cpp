// SPDX-License-Identifier: MIT
#include "forms/controls.h"

#include <gtest/gtest.h>

#include "forms/form.h"
#include "gis/errors.h"

namespace velmora {
namespace {

struct TwoBoxes : Form {
    TwoBoxes() : Form("frmTwo", "Two") {}
    TextBox txtFirst{*this, "txtFirst", "1"};
    Label lblSecond{*this, "lblSecond", "second"};
    TextBox apart{"apart"};
};

TEST(Controls, JoinTheFormThatDeclaresThem) {
    TwoBoxes form;
    EXPECT_EQ(form.controls(), (std::vector<Control*>{&form.txtFirst, &form.lblSecond}));
    EXPECT_EQ(form.find("lblSecond"), &form.lblSecond);
    EXPECT_EQ(form.find("apart"), nullptr);
    EXPECT_EQ(form.txtFirst.text(), "1");
}

TEST(Controls, OneOptionOfAGroupIsOn) {
    OptionButton a("a");
    OptionButton b("b");
    OptionButton::group({&a, &b});
    int clicks = 0;
    b.onClick = [&] { ++clicks; };
    a.choose();
    b.choose();
    EXPECT_FALSE(a.value());
    EXPECT_TRUE(b.value());
    EXPECT_EQ(clicks, 1);
}

TEST(Controls, ListChoosesByPositionAndText) {
    ListBox list("list");
    list.addItem("x");
    list.addItem("y");
    list.select(1);
    EXPECT_EQ(list.text(), "y");
    list.setText("x");
    EXPECT_EQ(list.listIndex(), 0);
    list.setText("other");
    EXPECT_EQ(list.listIndex(), -1);
    EXPECT_EQ(list.text(), "other");
    EXPECT_THROW(list.select(2), PlatformError);
    EXPECT_THROW(list.select(-1), PlatformError);
}

TEST(Controls, TextTellsOfChangesOnly) {
    TextBox box("box");
    int changes = 0;
    int leaves = 0;
    int refreshes = 0;
    box.onChange = [&] { ++changes; };
    box.onLeave = [&] { ++leaves; };
    box.hostRefresh = [&] { ++refreshes; };
    box.enter("a");
    box.enter("a");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(leaves, 2);
    EXPECT_EQ(refreshes, 2);
}

TEST(Controls, DisabledButtonDoesNothing) {
    CommandButton button("b");
    int clicks = 0;
    button.onClick = [&] { ++clicks; };
    button.setEnabled(false);
    button.click();
    EXPECT_EQ(clicks, 0);
}

class SmallForm : public Form {
  public:
    SmallForm() : Form("frmSmall", "Small") {}
    TextBox box{*this, "txtBox"};
};

TEST(Form, FindsItsControls) {
    SmallForm form;
    EXPECT_EQ(&form.control<TextBox>("txtBox"), &form.box);
    EXPECT_THROW(form.control<CheckBox>("txtBox"), PlatformError);
    EXPECT_EQ(form.find("other"), nullptr);
    int focused = 0;
    form.box.onFocus = [&] { ++focused; };
    form.setFocus(form.box);
    EXPECT_EQ(focused, 1);
    EXPECT_EQ(form.focused(), &form.box);
    int closed = 0;
    form.hostClose = [&] { ++closed; };
    form.load();
    EXPECT_TRUE(form.isOpen());
    form.close();
    EXPECT_FALSE(form.isOpen());
    EXPECT_EQ(closed, 1);
}

TEST(MultiSelectListTest, AnyNumberOfEntries) {
    MultiSelectList list("lst");
    int clicks = 0;
    list.onClick = [&] { ++clicks; };
    for (const char* item : {"a", "b", "c"}) list.addItem(item);
    EXPECT_TRUE(list.chosenItems().empty());
    list.choose(2);
    list.choose(0);
    EXPECT_EQ(list.chosenItems(), (std::vector<std::string>{"a", "c"}));
    list.choose(2, false);
    EXPECT_FALSE(list.isChosen(2));
    EXPECT_EQ(clicks, 3);
    EXPECT_THROW(list.choose(3), std::out_of_range);
    list.clear();
    EXPECT_TRUE(list.items().empty());
}

TEST(ProgressBarTest, TellsTheHost) {
    ProgressBar bar("PBar1");
    double told = 0;
    bar.hostRefresh = [&] { told = bar.fraction(); };
    bar.setFraction(0.4);
    EXPECT_EQ(told, 0.4);
}

TEST(DataGrid, KeepsItsCurrentRowForTheSameColumns) {
    DataGrid grid{"grd"};
    grid.show({"a"}, {{"1"}, {"2"}, {"3"}});
    grid.select(2);
    grid.show({"a"}, {{"1"}, {"2"}, {"4"}});
    EXPECT_EQ(grid.currentRow(), 2U);
    grid.show({"a"}, {{"1"}});
    EXPECT_EQ(grid.currentRow(), 0U);
    grid.show({"a"}, {{"1"}, {"2"}});
    grid.select(1);
    grid.show({"b"}, {{"1"}, {"2"}});
    EXPECT_EQ(grid.currentRow(), 0U);
}

TEST(Form, TellsItsHostAboutFocusAndPage) {
    struct OneBox : Form {
        OneBox() : Form("frm", "Title") {}
        TextBox box{*this, "txt"};
    } form;
    const Control* focused = nullptr;
    int page = -1;
    form.hostFocus = [&] { focused = form.focused(); };
    form.hostPage = [&] { page = form.page(); };
    form.setFocus(form.box);
    form.showPage(2);
    EXPECT_EQ(focused, &form.box);
    EXPECT_EQ(page, 2);
}

}  // namespace
}  // namespace velmora
