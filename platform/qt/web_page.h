#pragma once

// What the plugin with the web engine gives the editor. The editor neither links nor loads the engine before
// a window asks for it.

#include <QString>
#include <functional>

class QWidget;

namespace kelvane {

class WebPage {
 public:
  virtual ~WebPage() = default;
  virtual QWidget* Widget() = 0;  // a child of the parent it was made with
  virtual void Open(const QString& home, const QString& offline) = 0;
  virtual void Back() = 0;
  virtual void Forward() = 0;
  virtual void Reload() = 0;
  virtual void Stop() = 0;
  std::function<void(const QString&)> OnAddress;
  std::function<void(bool, bool, bool)> OnProgress;
  std::function<void(const QString&)> OnLeave;
};

// The one symbol of the plugin, beside the program.
inline constexpr char kWebPlugin[] = "kelvane_web";
inline constexpr char kNewWebPage[] = "kelvane_new_web_page";
using NewWebPage = WebPage* (*)(QWidget* parent);

}  // namespace kelvane
