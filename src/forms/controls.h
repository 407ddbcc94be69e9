// SPDX-License-Identifier: MIT
// The controls of a form, free of any toolkit: each holds what the user sees (text, items, value,
// enabled) and tells a listener when that changes. A host binds its widgets to them by name and
// calls the user's actions (type, choose, tick, click); a form sets the handlers. A control joins
// the form that it is declared in: TextBox txtYear{*this, "txtYear"}.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace velmora {

using Handler = std::function<void()>;

class Form;

class Control {
  public:
    // A control that belongs to no form.
    explicit Control(std::string controlName, std::string initialText = {})
        : name_(std::move(controlName)), text_(std::move(initialText)) {}
    // A control that joins its form, whose member it is.
    Control(Form& form, std::string controlName, std::string initialText = {});
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    const std::string& name() const { return name_; }
    const std::string& text() const { return text_; }
    virtual void setText(const std::string& text);
    bool enabled() const { return enabled_; }
    void setEnabled(bool enabled);

    Handler onFocus;      // the control receives the focus
    Handler hostRefresh;  // the host's binder: something the user sees has changed

    void focus() {
        if (onFocus) onFocus();
    }

  protected:
    void refresh() {
        if (hostRefresh) hostRefresh();
    }

  private:
    std::string name_;
    std::string text_;
    bool enabled_ = true;
};

class Label : public Control {
  public:
    using Control::Control;
};

class TextBox : public Control {
  public:
    using Control::Control;
    Handler onChange;  // every change of the text, by the user or by the form
    Handler onLeave;   // the user leaves the box after changing it
    Handler onDoubleClick;

    void setText(const std::string& text) override;
    // The user types a text and leaves the box.
    void enter(const std::string& text);
};

class ListBox : public Control {
  public:
    using Control::Control;
    Handler onClick;  // another entry is chosen, by the user or by the form

    const std::vector<std::string>& items() const { return items_; }
    int listIndex() const { return index_; }
    void clear();
    void addItem(const std::string& item);
    // Chooses by position. Throws PlatformError for a position that the list does not have.
    void select(int index);
    // Chooses the entry of that text; an unknown text is shown but is no entry.
    void setText(const std::string& text) override;

  private:
    std::vector<std::string> items_;
    int index_ = -1;
};

// A list of which any number of entries may be chosen.
class MultiSelectList : public Control {
  public:
    using Control::Control;
    Handler onClick;  // an entry is chosen, or no longer

    const std::vector<std::string>& items() const { return items_; }
    void clear();
    void addItem(const std::string& item);
    // Throws std::out_of_range for a position that the list does not have.
    void choose(std::size_t position, bool chosen = true);
    bool isChosen(std::size_t position) const { return chosen_.at(position); }
    std::vector<std::string> chosenItems() const;  // in the order of the list

  private:
    std::vector<std::string> items_;
    std::vector<bool> chosen_;
};

class CheckBox : public Control {
  public:
    using Control::Control;
    bool value() const { return value_; }
    void setValue(bool value);

  private:
    bool value_ = false;
};

// How far a piece of work has come.
class ProgressBar : public Control {
  public:
    using Control::Control;
    double fraction() const { return fraction_; }  // 0 to 1
    void setFraction(double fraction);

  private:
    double fraction_ = 0;
};

// A group of controls with a caption.
class Frame : public Control {
  public:
    using Control::Control;
};

// One of a group of options, of which one at most is on.
class OptionButton : public Control {
  public:
    using Control::Control;
    Handler onClick;  // the option is switched on

    bool value() const { return value_; }
    void choose();
    void clear();  // off, and none of its group on instead; no click
    static void group(const std::vector<OptionButton*>& members);

  private:
    bool value_ = false;
    std::vector<OptionButton*> others_;
};

class CommandButton : public Control {
  public:
    using Control::Control;
    Handler onClick;
    // Does nothing while the button is disabled.
    void click() {
        if (enabled() && onClick) onClick();
    }
};

// A table of texts whose cells the user may edit.
class DataGrid : public Control {
  public:
    using Control::Control;
    // The user has typed a text into a cell; the row one behind the last begins a new one. The
    // form decides what becomes of it.
    std::function<void(std::size_t row, std::size_t column, const std::string& text)> onEdit;
    Handler onSelect;  // another row is the current one

    const std::vector<std::string>& columns() const { return columns_; }
    std::size_t rowCount() const { return rows_.size(); }
    // Throws std::out_of_range for a cell that the grid does not have.
    const std::string& cell(std::size_t row, std::size_t column) const {
        return rows_.at(row).at(column);
    }
    std::size_t currentRow() const { return current_; }

    // The current row stays where the new rows have the same columns and reach it.
    void show(std::vector<std::string> columns, std::vector<std::vector<std::string>> rows);
    void setCell(std::size_t row, std::size_t column, const std::string& text);
    void addRow(std::vector<std::string> cells);
    void select(std::size_t row);
    void edit(std::size_t row, std::size_t column, const std::string& text) {
        if (enabled() && onEdit) onEdit(row, column, text);
    }

  private:
    std::vector<std::string> columns_;
    std::vector<std::vector<std::string>> rows_;
    std::size_t current_ = 0;
};

// A line through one value per label.
class Chart : public Control {
  public:
    using Control::Control;
    const std::vector<std::string>& labels() const { return labels_; }
    const std::vector<double>& values() const { return values_; }
    void show(const std::string& title, std::vector<std::string> labels,
              std::vector<double> values);
    void clear() { show({}, {}, {}); }

  private:
    std::vector<std::string> labels_;
    std::vector<double> values_;
};

}  // namespace velmora
