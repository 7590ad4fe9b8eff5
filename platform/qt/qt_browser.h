#pragma once

// The browser control: the plugin with the web engine, loaded when a window asks for the control.

#include <QWidget>
#include <memory>
#include <string>

#include "platform/qt/qt_controls.h"
#include "platform/qt/web_page.h"
#include "platform/text_view.h"

namespace kelvane {

class QtBrowser final : public QtControl<Browser, QWidget> {
 public:
  // Null where the plugin, or the engine it needs, is not there.
  static std::unique_ptr<QtBrowser> Make(QWidget* parent, const std::string& accessibleName);

  void Open(const std::string& home, const std::string& offline) override;
  void Back() override { page_->Back(); }
  void Forward() override { page_->Forward(); }
  void Reload() override { page_->Reload(); }
  void Stop() override { page_->Stop(); }

 private:
  QtBrowser(std::unique_ptr<WebPage> page, const std::string& accessibleName);

  std::unique_ptr<WebPage> page_;
};

}  // namespace kelvane
