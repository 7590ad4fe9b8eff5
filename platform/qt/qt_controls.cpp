#include "platform/qt/qt_controls.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QToolTip>
#include <QValidator>
#include <algorithm>
#include <cmath>

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

// Puts characters into the form in which the box shows them, before they change its text or undo history.
// Those without a code the owner is asked about; an edit that adds nothing in the end is refused.
class RunValidator final : public QValidator {
 public:
  RunValidator(TextBox& box, QObject* parent) : QValidator(parent), box_(box) {}
  State validate(QString& text, int& caret) const override {
    std::string run;
    QString unknown;
    qsizetype run_caret = caret;
    bool refused = false;
    for (qsizetype i = 0; i <= text.size(); ++i) {
      const auto code = i < text.size() ? CodeOf(text[i]) : std::nullopt;
      if (i < text.size() && !code) {
        unknown += text[i];
        continue;
      }
      if (!unknown.isEmpty()) {
        const std::string signs = SignsFor(run, unknown);
        refused = refused || signs.empty();
        run += signs;
        if (caret >= i) run_caret += static_cast<qsizetype>(signs.size()) - unknown.size();
        unknown.clear();
      }
      if (code) run += static_cast<char>(*code);
    }
    const QString shown = VisibleText(run);
    if (refused && shown.size() <= last_) return Invalid;
    text = shown;
    caret = static_cast<int>(run_caret);
    last_ = shown.size();
    return Acceptable;
  }

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
    if (box_.SignsFor) RunHandler([&] { signs = box_.SignsFor(before, unknown.toStdString()); });
    return signs;
  }

  TextBox& box_;
  mutable qsizetype last_ = 0;  // length of the text that was accepted last
};

class BoxEdit final : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;
  TextBox* Box = nullptr;
  bool HoldsRun = false;

 protected:
  // Entering a box by Tab would select its text, so that typing replaces it. In a run being typed, where one
  // goes on typing behind it, that would throw it away: what its owner selected stays selected, no more.
  void focusInEvent(QFocusEvent* event) override {
    const int start = selectionStart();
    const int length = selectionLength();
    const int caret = cursorPosition();
    QLineEdit::focusInEvent(event);
    if (!HoldsRun) return;
    setCursorPosition(caret);
    if (start >= 0) setSelection(start, length);
  }

  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
      RunHandler(Box->OnEnter);
    } else if (event->key() == Qt::Key_Escape) {
      RunHandler(Box->OnEscape);
    } else {
      QLineEdit::keyPressEvent(event);
    }
  }
};

// The font around the widget, smaller where the text needs it to fit into `width` pixels, but not so small
// that it could not be read.
QFont FittingFont(const QWidget& widget, const QString& text, int width) {
  constexpr double kSmallest = 0.75;
  QFont font = widget.parentWidget()->font();
  const int usual = QFontInfo(font).pixelSize();
  for (int size = usual; size >= usual * kSmallest; --size) {
    if (size != usual) font.setPixelSize(size);
    // Advances are rounded; words of the very width of their place would still be shortened.
    if (QFontMetrics(font).horizontalAdvance(text) < width) break;
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

QtLabel::QtLabel(QWidget* parent, const std::string& text) : QtControl(new QLabel(parent)) {
  widget_->setTextFormat(Qt::PlainText);
  SetText(text);
}

void QtLabel::SetPlace(const Place& place) {
  QtControl::SetPlace(place);
  placed_ = true;
  Fit();
}

void QtLabel::SetText(const std::string& text) {
  text_ = text;
  Fit();
}

void QtLabel::Fit() {
  const QString whole = PlainText(text_);
  QString shown = whole;
  if (placed_) {
    const QFont font = FittingFont(*widget_, whole, widget_->width());
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
  QObject::connect(widget_, &QPushButton::clicked, widget_, [this] { RunHandler(OnClick); });
}

void QtButton::SetPlace(const Place& place) {
  constexpr int kBorder = 2;
  QtControl::SetPlace(place);
  widget_->setFont(FittingFont(*widget_, widget_->text().remove(u'&'), place.width - 2 * kBorder));
}

void QtButton::SetDown(bool down) {
  widget_->setCheckable(true);
  widget_->setChecked(down);
}

QtTextBox::QtTextBox(QWidget* parent, const std::string& accessibleName, bool fixedPitch)
    : QtControl(new BoxEdit(parent)) {
  static_cast<BoxEdit*>(widget_)->Box = this;
  widget_->setAccessibleName(PlainText(accessibleName));
  widget_->setToolTip(PlainText(accessibleName).toHtmlEscaped());
  widget_->setMaxLength(kLongestText);
  if (fixedPitch) {
    widget_->setFont(FixedPitchFont());
    static_cast<BoxEdit*>(widget_)->HoldsRun = true;
  }
  widget_->setValidator(new RunValidator(*this, widget_));
  QObject::connect(widget_, &QLineEdit::textEdited, widget_, [this] { RunHandler(OnChange); });
  QObject::connect(widget_, &QLineEdit::inputRejected, widget_, [this] {
    QToolTip::showText(widget_->mapToGlobal(QPoint(0, widget_->height())),
                       QStringLiteral("There is no code for this character, so it was not entered."),
                       widget_);
  });
}

void QtTextBox::SetText(const std::string& text) {
  std::string run = text;
  std::replace_if(
      run.begin(), run.end(), [](char byte) { return EntersNoRun(static_cast<unsigned char>(byte)); }, ' ');
  widget_->setText(VisibleText(run));
}

std::string QtTextBox::Text() const {
  return RunOfVisible(widget_->text());
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
