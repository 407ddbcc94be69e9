// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/form_binder.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTableView>
#include <cmath>
#include <exception>
#include <memory>

#include "gis/errors.h"
#include "hosts/qgis/widgets/curve_chart.h"
#include "hosts/qgis/widgets/keep_painted.h"
#include "hosts/qgis/widgets/table_model.h"
#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

namespace {

// Whether the focus came because the user wants the control, not with its window.
bool isChosen(const QEvent& event) {
    const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
    return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

// A button or option keeps the text of its window, where a letter may be marked for the keyboard.
template <class Widget>
void showCaption(Widget& widget, const std::string& text) {
    if (withoutMnemonic(widget.text()) != toQt(text)) widget.setText(toQt(text));
}

// Columns are as wide as their texts at first; later they only grow, so that a width that the user
// gave stays when it is enough.
void fitColumns(QTableView& table, bool fromAnew) {
    if (fromAnew) table.resizeColumnsToContents();
    for (int column = 0; column < table.model()->columnCount(); ++column) {
        const int needed = static_cast<QAbstractItemView&>(table).sizeHintForColumn(column) + 1;
        if (table.columnWidth(column) < needed) table.setColumnWidth(column, needed);
    }
}

}  // namespace

FormBinder::FormBinder(Form& form, QWidget& window, IPrompts& prompts)
    : form_(&form), window_(window), prompts_(prompts) {
    for (Control* control : form.controls()) bindControl(*control);
}

void FormBinder::letGo() {
    if (!form_) return;
    for (Control* control : form_->controls()) control->hostRefresh = nullptr;
    form_ = nullptr;
}

QWidget* FormBinder::widgetOf(const Control& control) const {
    return window_.findChild<QWidget*>(toQt(control.name()));
}

template <class ControlKind, class WidgetKind>
bool FormBinder::bindAs(Control& control) {
    auto* kind = dynamic_cast<ControlKind*>(&control);
    if (!kind) return false;
    auto* widget = dynamic_cast<WidgetKind*>(widgetOf(control));
    if (!widget) {
        throw PlatformError("The window of " + form_->name() + " has no widget for " +
                            control.name());
    }
    bind(*kind, *widget);
    return true;
}

void FormBinder::bindControl(Control& control) {
    const bool bound =
        bindAs<Label, QLabel>(control) || bindAs<TextBox, QLineEdit>(control) ||
        bindAs<ListBox, QComboBox>(control) || bindAs<MultiSelectList, QListWidget>(control) ||
        bindAs<CheckBox, QCheckBox>(control) || bindAs<OptionButton, QRadioButton>(control) ||
        bindAs<CommandButton, QAbstractButton>(control) || bindAs<Frame, QGroupBox>(control) ||
        bindAs<ProgressBar, QProgressBar>(control) || bindAs<DataGrid, QTableView>(control) ||
        bindAs<Chart, CurveChart>(control);
    if (!bound) throw PlatformError("No widget shows controls of the kind of " + control.name());
}

void FormBinder::show(Control& control, QWidget& widget, const Action& action) {
    control.hostRefresh = [&control, &widget, action] {
        const QSignalBlocker quiet(widget);
        action();
        widget.setEnabled(control.enabled());
    };
    control.hostRefresh();
}

void FormBinder::act(const Action& action) {
    try {
        action();
    } catch (const std::exception& e) {
        prompts_.message(e.what());
    }
}

void FormBinder::watch(QWidget& widget, QEvent::Type type, const Action& action) {
    widget.installEventFilter(this);
    watches_.push_back({&widget, type, action});
}

bool FormBinder::eventFilter(QObject* watched, QEvent* event) {
    for (const Watch& watch : watches_) {
        if (watch.widget != watched || watch.type != event->type()) continue;
        if (event->type() != QEvent::FocusIn || isChosen(*event)) act(watch.action);
    }
    return QObject::eventFilter(watched, event);
}

// What a step tells through a label is seen at once.
void FormBinder::bind(Label& control, QLabel& widget) {
    widget.setTextFormat(Qt::PlainText);
    show(control, widget, [this, &control, &widget] {
        const bool changed = withoutMnemonic(widget.text()) != toQt(control.text());
        showCaption(widget, control.text());
        if (changed && window_.isVisible()) paintNow();
    });
}

// The end of a text too long for its box is shown, for that is where the name of a file stands; the
// tool tip has the whole.
void FormBinder::bind(TextBox& control, QLineEdit& widget) {
    const QString help = widget.toolTip();
    const auto left = std::make_shared<QString>();  // what the box held when it was left last
    show(control, widget, [&control, &widget, help, left] {
        const QString text = toQt(control.text());
        widget.setToolTip(text.isEmpty() ? help : help + "\n" + text);
        if (widget.text() == text) return;
        widget.setText(text);
        *left = text;
    });
    *left = widget.text();
    connect(&widget, &QLineEdit::textEdited, this, [this, &control](const QString& text) {
        act([&] { control.setText(text.toStdString()); });
    });
    connect(&widget, &QLineEdit::editingFinished, this, [this, &control, &widget, left] {
        if (widget.text() == *left) return;
        *left = widget.text();
        act([&] {
            if (control.onLeave) control.onLeave();
        });
    });
    watch(widget, QEvent::MouseButtonDblClick, [&control] {
        if (control.onDoubleClick) control.onDoubleClick();
    });
}

// A text that is no entry, such as a stored field of a file that has not been opened yet, is shown
// as one more entry, which cannot be chosen again once it is left.
void FormBinder::bind(ListBox& control, QComboBox& widget) {
    show(control, widget, [&control, &widget] {
        QStringList items;
        for (const std::string& item : control.items()) items << toQt(item);
        int index = control.listIndex();
        if (index < 0 && !control.text().empty()) {
            index = static_cast<int>(items.size());
            items << toQt(control.text());
        }
        QStringList shown;
        for (int i = 0; i < widget.count(); ++i) shown << widget.itemText(i);
        if (items != shown) {
            widget.clear();
            widget.addItems(items);
        }
        widget.setCurrentIndex(index);
    });
    connect(&widget, QOverload<int>::of(&QComboBox::activated), this, [this, &control](int index) {
        const bool entry = index < static_cast<int>(control.items().size());
        if (entry) act([&] { control.select(index); });
    });
    watch(widget, QEvent::FocusIn, [&control] { control.focus(); });
}

void FormBinder::bind(MultiSelectList& control, QListWidget& widget) {
    show(control, widget, [&control, &widget] {
        const auto& items = control.items();
        if (widget.count() != static_cast<int>(items.size())) {
            widget.clear();
            for (const std::string& item : items) widget.addItem(toQt(item));
        }
        for (int i = 0; i < widget.count(); ++i) {
            widget.item(i)->setText(toQt(items[static_cast<std::size_t>(i)]));
            widget.item(i)->setSelected(control.isChosen(static_cast<std::size_t>(i)));
        }
    });
    connect(&widget, &QListWidget::itemSelectionChanged, this, [this, &control, &widget] {
        std::vector<bool> chosen;
        for (int i = 0; i < widget.count(); ++i) chosen.push_back(widget.item(i)->isSelected());
        act([&] {
            for (std::size_t i = 0; i < chosen.size(); ++i) {
                if (chosen[i] != control.isChosen(i)) control.choose(i, chosen[i]);
            }
        });
    });
}

void FormBinder::bind(CheckBox& control, QCheckBox& widget) {
    show(control, widget, [&control, &widget] {
        showCaption(widget, control.text());
        widget.setChecked(control.value());
    });
    connect(&widget, &QCheckBox::clicked, this,
            [this, &control](bool ticked) { act([&] { control.setValue(ticked); }); });
}

void FormBinder::bind(OptionButton& control, QRadioButton& widget) {
    show(control, widget, [&control, &widget] {
        showCaption(widget, control.text());
        widget.setChecked(control.value());
    });
    connect(&widget, &QRadioButton::clicked, this,
            [this, &control] { act([&] { control.choose(); }); });
}

void FormBinder::bind(CommandButton& control, QAbstractButton& widget) {
    show(control, widget, [&control, &widget] { showCaption(widget, control.text()); });
    connect(&widget, &QAbstractButton::clicked, this, [this, &control] {
        leaveBox();
        act([&] { control.click(); });
    });
}

// A button pressed by its letter does not move the focus: the box that was typed into is left
// first, as with the mouse.
void FormBinder::leaveBox() {
    auto* box = qobject_cast<QLineEdit*>(window_.focusWidget());
    if (box) emit box->editingFinished();
}

void FormBinder::bind(Frame& control, QGroupBox& widget) {
    show(control, widget, [&control, &widget] { widget.setTitle(toQt(control.text())); });
}

void FormBinder::bind(ProgressBar& control, QProgressBar& widget) {
    show(control, widget, [&control, &widget] {
        widget.setRange(0, 1000);
        widget.setValue(static_cast<int>(std::lround(control.fraction() * 1000)));
        keepPainted();
    });
}

void FormBinder::bind(DataGrid& control, QTableView& widget) {
    auto* model = new TableModel(
        control,
        [this, &control](std::size_t row, std::size_t column, const std::string& text) {
            const std::size_t rows = control.rowCount();
            act([&] { control.edit(row, column, text); });
            const bool begun = row == rows && control.rowCount() > rows;
            if (begun) act([&] { control.select(row); });
        },
        &widget);
    widget.setModel(model);
    widget.verticalHeader()->setDefaultSectionSize(widget.fontMetrics().height() + 6);
    const auto columns = std::make_shared<std::vector<std::string>>();
    const auto current = std::make_shared<std::size_t>(0);
    show(control, widget, [&control, &widget, model, columns, current] {
        model->refresh();
        const bool other = *columns != control.columns();
        *columns = control.columns();
        fitColumns(widget, other);
        if (*current == control.currentRow()) return;
        *current = control.currentRow();
        const QSignalBlocker quiet(widget.selectionModel());
        const int column = std::max(0, widget.currentIndex().column());
        widget.setCurrentIndex(model->index(static_cast<int>(*current), column));
        widget.viewport()->update();
    });
    connect(widget.selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this, &control, current](const QModelIndex& now) {
                const auto row = static_cast<std::size_t>(now.row());
                if (!now.isValid() || row >= control.rowCount() || row == control.currentRow()) {
                    return;
                }
                *current = row;
                act([&] { control.select(row); });
            });
}

void FormBinder::bind(Chart& control, CurveChart& widget) {
    show(control, widget,
         [&control, &widget] { widget.show(control.text(), control.labels(), control.values()); });
}

}  // namespace velmora::qt
