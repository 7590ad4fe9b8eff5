#include "platform/qt/qt_controls.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QToolTip>
#include <QValidator>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/handlers.h"
#include "platform/qt/qt_icons.h"
#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

// A run has no bound of its own; Qt's own bound of 32,767 would cut a long one.
constexpr int kLongestText = 1 << 24;
// Positions of a scroll bar over its whole range.
constexpr float kScrollSteps = 100000;

bool EntersNoRun(char16_t character) {
  return character == u'\0' || character == u'\n' || character == u'\r';
}

// Puts the characters of an edit into the form in which the box shows them. For those without a code it asks
// the box's owner, or takes them out. An edit that would then add nothing is refused, before it changes the
// text or the undo history of the box.
class RunValidator final : public QValidator {
 public:
  RunValidator(TextBox& box, QObject* parent) : QValidator(parent), box_(box) {}
  State validate(QString& text, int& caret) const override {
    std::string run;
    qsizetype runCaret = caret;
    bool drops = false;
    for (qsizetype i = 0; i < text.size();) {
      if (const auto code = CodeOf(text[i])) {
        run += static_cast<char>(*code);
        ++i;
        continue;
      }
      qsizetype end = i;
      while (end < text.size() && !CodeOf(text[end])) ++end;
      const std::string signs = SignsFor(run, text.sliced(i, end - i));
      drops = drops || signs.empty();
      run += signs;
      if (caret >= end) runCaret += static_cast<qsizetype>(signs.size()) - (end - i);
      i = end;
    }
    const QString shown = VisibleText(run);
    if (drops && (shown == accepted_ || shown.size() < accepted_.size())) return Invalid;
    text = accepted_ = shown;
    caret = static_cast<int>(runCaret);
    return Acceptable;
  }
  // The characters taken out since this was last asked. Qt has a text that was changed checked again.
  QString TakeDropped() const { return std::exchange(dropped_, QString()); }

 private:
  static std::optional<unsigned char> CodeOf(QChar character) {
    if (EntersNoRun(character.unicode()) || character == QChar::LineSeparator ||
        character == QChar::ParagraphSeparator) {
      return static_cast<unsigned char>(' ');
    }
    const auto code = CodeOfVisible(character.unicode());
    return code && !EntersNoRun(*code) ? code : std::nullopt;
  }
  std::string SignsFor(const std::string& before, const QString& unknown) const {
    std::string signs;
    if (box_.SignsFor) {
      RunHandler([&] { signs = box_.SignsFor(before, unknown.toStdString()); });
    } else {
      dropped_ += unknown;
    }
    return signs;
  }

  TextBox& box_;
  mutable QString accepted_;
  mutable QString dropped_;
};

class BoxEdit final : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;
  TextBox* Box = nullptr;
  bool HoldsRun = false;
  bool IsShort = false;

 protected:
  // Entering a box by Tab would select its text, so that typing replaces it. In a run being typed, where one
  // goes on typing behind it, that would throw it away: what its owner selected stays selected, no more.
  void focusInEvent(QFocusEvent* event) override {
    const int start = selectionStart();
    const int length = selectionLength();
    const int caret = cursorPosition();
    QLineEdit::focusInEvent(event);
    entered_ = event->reason() == Qt::MouseFocusReason;
    if (!HoldsRun) return;
    setCursorPosition(caret);
    if (start >= 0) setSelection(start, length);
  }
  // The click that enters a box of a number or the like selects all of it, as Tab does, so that the new one
  // replaces the old one.
  void mouseReleaseEvent(QMouseEvent* event) override {
    QLineEdit::mouseReleaseEvent(event);
    if (entered_ && IsShort && !hasSelectedText()) selectAll();
    entered_ = false;
  }

  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      RunHandler(Box->OnEnter);
    } else if (event->key() == Qt::Key_Escape) {
      RunHandler(Box->OnEscape);
    } else if (event->key() == Qt::Key_Down && Box->OnDown) {
      RunHandler(Box->OnDown);
    } else {
      QLineEdit::keyPressEvent(event);
    }
  }

 private:
  bool entered_ = false;
};

constexpr int kSmallestFont = 9;  // pixels; can still be read

// `font` smaller where the text needs it to fit into a place of so many pixels, but not below `smallest`.
QFont FittingFont(QFont font, const QString& text, int width, int height, int smallest = kSmallestFont) {
  if (width <= 0 || height <= 0) return font;
  const int usual = QFontInfo(font).pixelSize();
  for (int size = usual; size >= std::min(smallest, usual); --size) {
    if (size != usual) font.setPixelSize(size);
    const QFontMetrics metrics(font);
    const int advance = metrics.horizontalAdvance(text);
    // Advances are rounded; words of the very width of their place would still be shortened.
    if (advance < width && metrics.ascent() + metrics.descent() <= height) break;
    // No font is loaded of a size that will be too wide as well.
    if (advance > width) size = std::clamp(size * width / advance + 1, std::min(smallest, usual) + 1, size);
  }
  return font;
}

QFont FixedPitchFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setFamilies(QStringList{QStringLiteral("Letter Gothic")} + font.families());
  font.setStyleHint(QFont::Monospace);
  return font;
}

}  // namespace

// A label in the status bar: it asks for the room of its whole text, and is content with less. One without a
// text leaves its room to the others.
class QtLabel::FootLabel final : public QLabel {
 public:
  FootLabel(QtLabel& owner, QWidget* parent, int room) : QLabel(parent), owner_(owner), room_(room) {}
  QSize sizeHint() const override {
    return {owner_.text_.empty() ? 0 : std::max(room_, WholeWidth()), QLabel::sizeHint().height()};
  }
  QSize minimumSizeHint() const override {
    return {std::min(room_, WholeWidth()), QLabel::minimumSizeHint().height()};
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    owner_.placed_ = true;
    owner_.Fit();
  }

 private:
  int WholeWidth() const {
    return QFontMetrics(parentWidget()->font()).horizontalAdvance(PlainText(owner_.text_)) + 1;
  }

  QtLabel& owner_;
  int room_;
};

QtLabel::QtLabel(QWidget* parent, const std::string& text) : QtControl(new QLabel(parent)) {
  widget_->setTextFormat(Qt::PlainText);
  SetText(text);
}

QtLabel::QtLabel(QStatusBar* bar, int width) : QtControl(new FootLabel(*this, bar, width)), foot_(true) {
  widget_->setTextFormat(Qt::PlainText);
  bar->addWidget(widget_);
}

void QtLabel::SetPlace(const Place& place) {
  QtControl::SetPlace(place);
  placed_ = true;
  Fit();
}

void QtLabel::SetText(const std::string& text) {
  text_ = text;
  Fit();
  widget_->updateGeometry();
}

void QtLabel::Fit() {
  const QString whole = PlainText(text_);
  QString shown = whole;
  if (placed_) {
    const QFont usual = widget_->parentWidget()->font();
    // What stands at the foot may be a long path, which is better shortened than hard to read.
    const int smallest = foot_ ? QFontInfo(usual).pixelSize() * 3 / 4 : kSmallestFont;
    const QFont font = FittingFont(usual, whole, widget_->width(), widget_->height(), smallest);
    widget_->setFont(font);
    shown = QFontMetrics(font).elidedText(whole, Qt::ElideMiddle, widget_->width());
    widget_->setToolTip(shown == whole ? QString() : whole.toHtmlEscaped());
  }
  widget_->setText(shown);
}

void QtLabel::Repaint() {
  widget_->repaint();
}

QtButton::QtButton(QWidget* parent, const std::string& caption, const IconDrawing& icon,
                   const std::string& toolTip)
    : QtControl(icon.empty() ? static_cast<QPushButton*>(new ModeButton(parent))
                             : new IconButton(parent, icon)) {
  widget_->setText(PlainText(caption));
  widget_->setAccessibleName(PlainText(caption).remove(u'&'));
  widget_->setToolTip(PlainText(toolTip).toHtmlEscaped());
  QObject::connect(widget_, &QPushButton::clicked, widget_, [this] {
    // A button takes no focus, and so does not end what an input method has in the making.
    QGuiApplication::inputMethod()->commit();
    RunHandler(OnClick);
  });
}

void QtButton::SetPlace(const Place& place) {
  constexpr int kBorder = 2;
  QtControl::SetPlace(place);
  // A font loaded for a caption that an icon stands for would only cost time.
  if (dynamic_cast<IconButton*>(widget_) != nullptr) return;
  widget_->setFont(FittingFont(widget_->parentWidget()->font(), widget_->text().remove(u'&'),
                               place.width - 2 * kBorder, place.height - 2 * kBorder));
}

void QtButton::SetDown(bool down) {
  widget_->setCheckable(true);
  widget_->setChecked(down);
  if (!widget_->icon().isNull()) return;
  // A dark desktop hardly tells a button that is down from one that is not.
  QPalette palette;
  if (down) {
    palette.setColor(QPalette::Button, palette.color(QPalette::Highlight));
    palette.setColor(QPalette::ButtonText, palette.color(QPalette::HighlightedText));
  }
  widget_->setPalette(palette);
}

QtTextBox::QtTextBox(QWidget* parent, const std::string& accessibleName, Holds holds)
    : QtControl(new BoxEdit(parent)), holds_(holds) {
  static_cast<BoxEdit*>(widget_)->Box = this;
  widget_->setAccessibleName(PlainText(accessibleName));
  widget_->setToolTip(PlainText(accessibleName).toHtmlEscaped());
  widget_->setMaxLength(kLongestText);
  if (holds == Holds::Words) {
    widget_->setPlaceholderText(PlainText(accessibleName));
    QObject::connect(widget_, &QLineEdit::textEdited, widget_, [this] { RunHandler(OnChange); });
    return;
  }
  static_cast<BoxEdit*>(widget_)->HoldsRun = holds == Holds::Run;
  static_cast<BoxEdit*>(widget_)->IsShort = holds == Holds::Codes;
  widget_->setValidator(new RunValidator(*this, widget_));
  QObject::connect(widget_, &QLineEdit::textEdited, widget_, [this] { Edited(true); });
  QObject::connect(widget_, &QLineEdit::inputRejected, widget_, [this] { Edited(false); });
}

void QtTextBox::Edited(bool accepted) {
  FitRun();
  const std::string dropped = ListOf(static_cast<const RunValidator*>(widget_->validator())->TakeDropped());
  if (accepted) RunHandler(OnChange);
  if (dropped.empty()) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(widget_->mapToGlobal(QPoint(0, widget_->height())),
                       PlainText("There is no code for " + dropped + "."), widget_);
  }
}

void QtTextBox::SetPlace(const Place& place) {
  QtControl::SetPlace(place);
  FitFont(runFitted_ ? FixedPitchFont() : widget_->parentWidget()->font());
}

void QtTextBox::FitFont(const QFont& usual) {
  constexpr int kBorder = 1;
  widget_->setFont(FittingFont(usual, {}, widget_->width(), widget_->height() - 2 * kBorder));
}

void QtTextBox::FitRun() {
  if (holds_ != Holds::Run || runFitted_ || widget_->text().isEmpty()) return;
  runFitted_ = true;
  FitFont(FixedPitchFont());
}

void QtTextBox::SetText(const std::string& text) {
  if (holds_ == Holds::Words) {
    widget_->setText(PlainText(text));
    return;
  }
  std::string run = text;
  std::replace_if(
      run.begin(), run.end(), [](char byte) { return EntersNoRun(static_cast<unsigned char>(byte)); }, ' ');
  widget_->setText(VisibleText(run));
  FitRun();
}

std::string QtTextBox::Text() const {
  return holds_ == Holds::Words ? widget_->text().toStdString() : RunOfVisible(widget_->text());
}
void QtTextBox::Focus() {
  widget_->setFocus(Qt::OtherFocusReason);
}
void QtTextBox::SelectAll() {
  widget_->selectAll();
}

QtScrollBar::QtScrollBar(QWidget* parent, bool horizontal)
    : QtControl(new QScrollBar(horizontal ? Qt::Horizontal : Qt::Vertical, parent)) {
  widget_->setAccessibleName(horizontal ? QStringLiteral("Scroll sideways") : QStringLiteral("Scroll"));
  QObject::connect(widget_, &QScrollBar::valueChanged, widget_, [this](int step) {
    if (!OnScroll) return;
    const float value = least_ + static_cast<float>(step) * valuePerStep_;
    RunHandler([this, value] { OnScroll(value); });
  });
}

void QtScrollBar::SetRange(float least, float most, float page, float value) {
  const QSignalBlocker silent(widget_);
  const float whole = std::max(most - least, page);
  if (!(whole > 0)) return;
  least_ = least;
  valuePerStep_ = whole / kScrollSteps;
  const auto steps = [this](float size) { return static_cast<int>(std::lround(size / valuePerStep_)); };
  widget_->setRange(0, steps(whole - page));
  widget_->setPageStep(std::max(steps(page), 1));
  widget_->setSingleStep(std::max(steps(page / 10), 1));
  widget_->setValue(steps(std::clamp(value - least, 0.0F, whole)));
}

}  // namespace kelvane
