#pragma once

// The desktop's clipboard through Qt.

#include "platform/clipboard.h"

namespace kelvane {

class QtClipboard final : public Clipboard {
 public:
  void Put(const std::string& items, const std::string& text) override;
  void PutText(const std::string& utf8) override;
  std::string Items() const override;
  std::string Text() const override;
  std::string CodesOf(const std::string& utf8, std::string& untypable) const override;
};

}  // namespace kelvane
