// SPDX-License-Identifier: MIT
// Binds the widgets of a window to the controls of a form by their names: what the user does
// reaches the control, what the form changes is shown. It knows the kinds of controls and nothing
// of any form.
#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>
#include <functional>
#include <vector>

#include "forms/form.h"
#include "gis/prompts.h"

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QRadioButton;
class QTableView;

namespace velmora::qt {

class CurveChart;

class FormBinder : public QObject {
  public:
    // The form, the window and the prompts must outlive the binder. Throws PlatformError that names
    // a control without a widget of its kind.
    FormBinder(Form& form, QWidget& window, IPrompts& prompts);
    ~FormBinder() override { letGo(); }
    FormBinder(const FormBinder&) = delete;
    FormBinder& operator=(const FormBinder&) = delete;

    // The form's controls forget the widgets; the form may end before the window from then on.
    void letGo();

    QWidget* widgetOf(const Control& control) const;

  private:
    using Action = std::function<void()>;

    template <class ControlKind, class WidgetKind>
    bool bindAs(Control& control);
    void bindControl(Control& control);

    void bind(Label& control, QLabel& widget);
    void bind(TextBox& control, QLineEdit& widget);
    void bind(ListBox& control, QComboBox& widget);
    void bind(MultiSelectList& control, QListWidget& widget);
    void bind(CheckBox& control, QCheckBox& widget);
    void bind(OptionButton& control, QRadioButton& widget);
    void bind(CommandButton& control, QAbstractButton& widget);
    void bind(Frame& control, QGroupBox& widget);
    void bind(ProgressBar& control, QProgressBar& widget);
    void bind(DataGrid& control, QTableView& widget);
    void bind(Chart& control, CurveChart& widget);

    // Shows the control now and whenever it changes.
    void show(Control& control, QWidget& widget, const Action& action);
    // Does what the user asked for; shows what escapes from the form.
    void act(const Action& action);
    void leaveBox();
    void watch(QWidget& widget, QEvent::Type type, const Action& action);
    bool eventFilter(QObject* watched, QEvent* event) override;

    struct Watch {
        QObject* widget;
        QEvent::Type type;
        Action action;
    };

    Form* form_;
    QWidget& window_;
    IPrompts& prompts_;
    std::vector<Watch> watches_;
};

}  // namespace velmora::qt
