#pragma once

// A clipboard of two strings. The sign of a code from 128 on is the character of the same number.

#include <string>

#include "platform/clipboard.h"

namespace kelvane {

class FakeClipboard : public Clipboard {
 public:
  std::string items;
  std::string text;  // UTF-8

  void Put(const std::string& newItems, const std::string& codes) override {
    items = newItems;
    text.clear();
    for (const char c : codes) {
      const auto code = static_cast<unsigned char>(c);
      if (code >= 0x80) text += static_cast<char>(0xC0 | code >> 6);
      text += static_cast<char>(code < 0x80 ? code : 0x80 | (code & 0x3F));
    }
  }
  std::vector<Form> forms;
  void PutForms(const std::vector<Form>& newForms) override {
    forms = newForms;
    items.clear();
    text = forms.size() == 1 && forms[0].kind == "text/plain" ? forms[0].bytes : "";
  }
  std::string Items() const override { return items; }
  std::string Text() const override { return text; }
  std::string CodesOf(const std::string& utf8, std::string& untypable) const override {
    std::string codes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
      const auto first = static_cast<unsigned char>(utf8[i]);
      if (first < 0x80) {
        if (first != '\r') codes += utf8[i];
        continue;
      }
      std::size_t end = i + 1;
      while (end < utf8.size() && (utf8[end] & 0xC0) == 0x80) ++end;
      if (first == 0xC2 || first == 0xC3) {
        codes += static_cast<char>(first << 6 | (utf8[end - 1] & 0x3F));
      } else {
        untypable += (untypable.empty() ? "" : " ") + utf8.substr(i, end - i);
      }
      i = end - 1;
    }
    return codes;
  }
};

}  // namespace kelvane
