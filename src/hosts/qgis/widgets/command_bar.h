// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QToolBar>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gis/application.h"
#include "hosts/components/loaded_extension.h"

namespace velmora::qt {

// The extension's toolbar as it declares itself: items, groups, captions, and messages as status
// tips. Its menus hang on it as drop-downs. The toolbar goes with this object, and so do the
// commands.
class CommandBar {
  public:
    // Called when a click of a command has ended.
    using Ended = std::function<void(const std::string& progId)>;

    // The extension and the application must outlive the bar. Throws PlatformError when an item
    // cannot be made.
    CommandBar(const LoadedExtension& extension, const std::string& toolBar,
               IApplication& application, QWidget* mainWindow, Ended ended);
    ~CommandBar();
    CommandBar(const CommandBar&) = delete;
    CommandBar& operator=(const CommandBar&) = delete;

    QToolBar& toolBar() const { return *toolBar_; }
    // The action of a command, nullptr for an unknown one.
    QAction* action(const std::string& progId) const;

  private:
    template <class Definition>
    void addItems(QWidget& owner, Definition& definition);
    void addMenu(QWidget& owner, const std::string& progId);
    void addCommand(QWidget& owner, const std::string& progId);
    void click(ICommand& command, const std::string& progId);

    const LoadedExtension& extension_;
    IApplication& application_;
    Ended ended_;
    std::vector<ComPtr<ICommand>> commands_;
    std::unique_ptr<QToolBar> toolBar_;
    bool running_ = false;
};

}  // namespace velmora::qt
