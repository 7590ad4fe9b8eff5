#pragma once

// Laid out text in Qt's text browser.

#include <QTextBrowser>
#include <string>
#include <vector>

#include "platform/qt/qt_controls.h"
#include "platform/text_view.h"

namespace kelvane {

class QtTextView final : public QtControl<TextView, QTextBrowser> {
 public:
  QtTextView(QWidget* parent, const std::string& accessibleName);

  void Show(const std::vector<TextBlock>& blocks) override;
  void GoTo(TextPlace place) override;
  TextPlace Top() const override;
  void Mark(const std::vector<std::string>& words) override;
  bool Find(const std::string& text, bool backwards) override;
  void ChangeTextSize(int steps) override;
  void KeepTextSizeAs(const std::string& name) override;
  void Print(const std::string& title) override;
  void CopyAll() override;
  void Focus() override;

 private:
  class View;

  // Lays the blocks out anew, as faces, sizes and colours are now.
  void LayOut();
  void ShowMarks();
  void InsertBlock(QTextCursor& cursor, const TextBlock& block, double points);
  int PictureRoom() const;
  void InsertPicture(QTextCursor& cursor, const std::string& path, const QTextCharFormat& words);
  void InsertLine(QTextCursor& cursor, const TextLine& line, const QTextCharFormat& format, double points);
  void InsertSign(QTextCursor& cursor, const TextPiece& piece, const QTextCharFormat& format, double points);

  std::vector<TextBlock> blocks_;
  std::vector<std::string> marked_;
  std::vector<int> firstLines_;  // of each block: the number of its first text block
  int roomLaidOut_ = 0;          // for pictures, in pixels
  bool picturesLaidOut_ = false;
  int zoom_ = 0;
  std::string keptAs_;
};

}  // namespace kelvane
