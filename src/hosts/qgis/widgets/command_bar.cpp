// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/command_bar.h"

#include <QMenu>
#include <QToolButton>
#include <exception>

#include "hosts/chain/input_warnings.h"
#include "hosts/chain/steps.h"
#include "hosts/components/menu_item.h"
#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

namespace {

void addSeparator(QWidget& owner) {
    auto* separator = new QAction(&owner);
    separator->setSeparator(true);
    owner.addAction(separator);
}

}  // namespace

CommandBar::CommandBar(const LoadedExtension& extension, const std::string& toolBar,
                       IApplication& application, QWidget* mainWindow, Ended ended)
    : extension_(extension), application_(application), ended_(std::move(ended)) {
    const auto definition = extension.create<IToolBarDef>(toolBar);
    toolBar_ = std::make_unique<QToolBar>(toQt(definition->Caption()), mainWindow);
    toolBar_->setObjectName(toQt(definition->Name()));
    addItems(*toolBar_, *definition.get());
}

CommandBar::~CommandBar() = default;

template <class Definition>
void CommandBar::addItems(QWidget& owner, Definition& definition) {
    for (std::int32_t i = 0; i < definition.ItemCount(); ++i) {
        MenuItem item;
        definition.GetItemInfo(i, item);
        if (item.group) addSeparator(owner);
        item.isMenu() ? addMenu(owner, item.id) : addCommand(owner, item.id);
    }
}

// On the toolbar a menu is a drop-down button, in a menu a menu of its own.
void CommandBar::addMenu(QWidget& owner, const std::string& progId) {
    const auto definition = extension_.create<IMenuDef>(progId);
    auto* menu = new QMenu(toQt(definition->Caption()), &owner);
    menu->setObjectName(toQt(progId));
    addItems(*menu, *definition.get());
    if (&owner != toolBar_.get()) {
        owner.addAction(menu->menuAction());
        return;
    }
    auto* button = new QToolButton(toolBar_.get());
    button->setObjectName(toQt(progId) + ".button");
    button->setText(menu->title());
    button->setToolTip(menu->title());
    button->setPopupMode(QToolButton::InstantPopup);
    button->setFocusPolicy(Qt::TabFocus);
    button->setMenu(menu);
    toolBar_->addWidget(button);
}

void CommandBar::addCommand(QWidget& owner, const std::string& progId) {
    auto command = extension_.create<ICommand>(progId);
    command->OnCreate(&application_);
    auto* action = new QAction(toQt(command->Caption()), &owner);
    action->setObjectName(toQt(progId));
    action->setStatusTip(toQt(command->Message()));
    action->setEnabled(command->Enabled());
    QObject::connect(action, &QAction::triggered, toolBar_.get(),
                     [this, clicked = command.get(), progId] { click(*clicked, progId); });
    owner.addAction(action);
    commands_.push_back(std::move(command));
}

// One click at a time: while a step shows a box, a shortcut could start another one.
void CommandBar::click(ICommand& command, const std::string& progId) {
    if (running_) return;
    running_ = true;
    try {
        const std::string step = stepOfProgId(progId);
        if (!step.empty()) tellInputWarnings(application_, step);
        command.OnClick();
    } catch (const std::exception& e) {
        application_.prompts().message(e.what());
    }
    running_ = false;
    if (ended_) ended_(progId);
}

QAction* CommandBar::action(const std::string& progId) const {
    return toolBar_->findChild<QAction*>(toQt(progId));
}

}  // namespace velmora::qt
