#include "platform/qt/qt_text_view.h"

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <QSettings>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QUrl>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "platform/files.h"
#include "platform/handlers.h"
#include "platform/qt/qt_image_painter.h"
#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

constexpr int kSmallestZoom = -6;
constexpr int kLargestZoom = 20;
constexpr double kZoomStep = 1.1;
// Heading sizes by level, times the size of the text.
constexpr double kHeadingSizes[] = {1.7, 1.3, 1.15, 1.0, 1.0, 1.0};
// The height of a sign's picture, and the size of the sign, beside the size of the text.
constexpr double kSignHeight = 2;
constexpr double kSignSize = 1.2;

// "Arial" and "Letter Gothic" by name, so that they are taken where they are installed, and what is nearest.
QFont TextFont() {
  QFont font = QGuiApplication::font();
  font.setFamilies({QStringLiteral("Arial"), QStringLiteral("Nimbus Sans"), QStringLiteral("Liberation Sans"),
                    QStringLiteral("DejaVu Sans"), font.family()});
  return font;
}

QFont TableFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setFamilies(QStringList{QStringLiteral("Letter Gothic"), QStringLiteral("Letter Gothic Std"),
                               QStringLiteral("DejaVu Sans Mono"), QStringLiteral("Liberation Mono"),
                               QStringLiteral("Nimbus Mono PS")} +
                   font.families());
  font.setStyleHint(QFont::Monospace);
  return font;
}

double UsualPoints() {
  const QFont font = QGuiApplication::font();
  return font.pointSizeF() > 0 ? font.pointSizeF() : 10;
}

}  // namespace

class QtTextView::View final : public QTextBrowser {
 public:
  View(QtTextView& view, QWidget* parent) : QTextBrowser(parent), view_(view) {}

 protected:
  void wheelEvent(QWheelEvent* event) override {
    if (!(event->modifiers() & Qt::ControlModifier)) {
      QTextBrowser::wheelEvent(event);
      return;
    }
    const int turned = event->angleDelta().y();
    if (turned != 0) view_.ChangeTextSize(turned > 0 ? 1 : -1);
    event->accept();
  }
  void resizeEvent(QResizeEvent* event) override {
    QTextBrowser::resizeEvent(event);
    if (view_.picturesLaidOut_ && view_.PictureRoom() != view_.roomLaidOut_) view_.LayOut();
  }
  void changeEvent(QEvent* event) override {
    QTextBrowser::changeEvent(event);
    const bool looks = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
    if (looks && view_.widget_ != nullptr) view_.LayOut();
  }

 private:
  QtTextView& view_;
};

QtTextView::QtTextView(QWidget* parent, const std::string& accessibleName)
    : QtControl(static_cast<QTextBrowser*>(nullptr)) {
  auto* view = new View(*this, parent);
  view->setAccessibleName(PlainText(accessibleName));
  view->setOpenLinks(false);
  view->setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
  view->document()->setDocumentMargin(10);
  QObject::connect(view, &QTextBrowser::anchorClicked, view, [this](const QUrl& url) {
    const std::string link = url.toString(QUrl::FullyDecoded).toStdString();
    RunHandler([this, link] {
      if (OnLink) OnLink(link);
    });
  });
  widget_ = view;
}

void QtTextView::Show(const std::vector<TextBlock>& blocks) {
  blocks_ = blocks;
  marked_.clear();
  LayOut();
  widget_->verticalScrollBar()->setValue(0);
  widget_->horizontalScrollBar()->setValue(0);
}

void QtTextView::LayOut() {
  const TextPlace top = Top();
  const double points = UsualPoints() * std::pow(kZoomStep, zoom_);
  QTextDocument* document = widget_->document();
  roomLaidOut_ = PictureRoom();
  picturesLaidOut_ = std::ranges::any_of(
      blocks_, [](const TextBlock& block) { return block.kind == TextBlock::Kind::Picture; });
  document->clear();
  firstLines_.clear();
  QTextCursor cursor(document);
  cursor.beginEditBlock();
  for (const TextBlock& block : blocks_) {
    firstLines_.push_back(cursor.block().blockNumber() + (cursor.atStart() ? 0 : 1));
    InsertBlock(cursor, block, points);
  }
  cursor.endEditBlock();
  ShowMarks();
  GoTo(top);
}

void QtTextView::InsertBlock(QTextCursor& cursor, const TextBlock& block, double points) {
  QTextBlockFormat lines;
  QTextCharFormat words;
  QFont font = block.kind == TextBlock::Kind::Table ? TableFont() : TextFont();
  const double gap = points * 0.7;
  lines.setBottomMargin(gap);
  double size = points;
  if (block.kind == TextBlock::Kind::Heading) {
    const int level = std::clamp(block.level, 1, 6);
    size = points * kHeadingSizes[level - 1];
    font.setBold(level <= 4);
    font.setItalic(level >= 5);
    lines.setHeadingLevel(level);
    lines.setTopMargin(cursor.atStart() ? 0 : gap * 0.8);
    lines.setBottomMargin(gap * 0.7);
  } else if (block.kind == TextBlock::Kind::Note) {
    lines.setBackground(widget_->palette().alternateBase());
    lines.setLeftMargin(points);
    font.setItalic(true);
  } else if (block.kind == TextBlock::Kind::Table) {
    lines.setNonBreakableLines(true);
    lines.setLeftMargin(points);
  }
  font.setPointSizeF(size);
  words.setFont(font);
  for (std::size_t i = 0; i < block.lines.size(); ++i) {
    const bool last = i + 1 == block.lines.size();
    QTextBlockFormat format = lines;
    if (!last) format.setBottomMargin(0);
    if (i > 0) format.setTopMargin(0);
    if (cursor.atStart()) {
      cursor.setBlockFormat(format);
      cursor.setBlockCharFormat(words);
    } else {
      cursor.insertBlock(format, words);
    }
    if (block.kind == TextBlock::Kind::Picture) {
      InsertPicture(cursor, WordsOf(block.lines[i]), words);
    } else {
      InsertLine(cursor, block.lines[i], words, size);
    }
  }
}

// The room for pictures, whether the scroll bar is there or not: it may come and go with them.
int QtTextView::PictureRoom() const {
  const int bar = widget_->verticalScrollBar()->sizeHint().width();
  const double margins = 2 * (widget_->document()->documentMargin() + widget_->frameWidth());
  return std::max(static_cast<int>(widget_->width() - bar - margins), 40);
}

void QtTextView::InsertPicture(QTextCursor& cursor, const std::string& path, const QTextCharFormat& words) {
  const QString file = PlainText(MachinePath(path));
  QImage image(file);
  if (image.isNull()) {
    cursor.insertText(QStringLiteral("[The picture %1 cannot be shown.]").arg(file), words);
    return;
  }
  const int room = PictureRoom();
  QTextImageFormat picture;
  picture.setName(file);
  if (image.width() > room) {
    const double ratio = widget_->devicePixelRatioF();
    image = image.scaledToWidth(static_cast<int>(room * ratio), Qt::SmoothTransformation);
    picture.setWidth(room);
    picture.setHeight(image.height() / ratio);
  }
  widget_->document()->addResource(QTextDocument::ImageResource, QUrl(file), image);
  cursor.insertImage(picture);
}

void QtTextView::InsertLine(QTextCursor& cursor, const TextLine& line, const QTextCharFormat& format,
                            double points) {
  for (const TextPiece& piece : line) {
    if (!piece.picture.empty()) {
      InsertSign(cursor, piece, format, points);
      continue;
    }
    QTextCharFormat words = format;
    if (!piece.link.empty()) {
      words.setAnchor(true);
      words.setAnchorHref(PlainText(piece.link));
      words.setForeground(widget_->palette().link());
      words.setFontUnderline(true);
    }
    cursor.insertText(PlainText(piece.text), words);
  }
}

// The sign is painted in black and then given the colour of the text, which the palette may have light.
void QtTextView::InsertSign(QTextCursor& cursor, const TextPiece& piece, const QTextCharFormat& format,
                            double points) {
  if (!OnPaintPicture) return;
  const double ratio = widget_->devicePixelRatioF();
  const double text = points * widget_->logicalDpiY() / 72;
  const double em = text * kSignSize;
  const QFontMetricsF metrics(format.font(), widget_);
  const double width = metrics.horizontalAdvance(u'0') * piece.columns;
  const double height = std::round(kSignHeight * text);
  // A picture in the middle of a line has the middle of its small letters in its own middle; the baseline of
  // the sign is to be that of the line.
  const double above = (height + metrics.xHeight()) / 2;
  const Box shown{0, static_cast<float>(-above), static_cast<float>(width),
                  static_cast<float>(height - above)};
  QtImagePainter painter(QSizeF(width * ratio, height * ratio).toSize(), shown, ratio, Qt::transparent);
  RunHandler(
      [&] { OnPaintPicture(piece.picture, static_cast<float>(em), static_cast<float>(ratio), painter); });
  QImage image = painter.Image();
  QPainter tint(&image);
  tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
  tint.fillRect(image.rect(), widget_->palette().color(QPalette::Text));
  tint.end();
  image.setDevicePixelRatio(ratio);
  const QString name = QStringLiteral("sign:%1").arg(PlainText(piece.picture));
  widget_->document()->addResource(QTextDocument::ImageResource, QUrl(name), image);
  QTextImageFormat picture;
  picture.setFont(format.font());
  picture.setName(name);
  picture.setWidth(width);
  picture.setHeight(height);
  picture.setVerticalAlignment(QTextCharFormat::AlignMiddle);
  cursor.insertImage(picture);
}

void QtTextView::GoTo(TextPlace place) {
  if (place.block < 0 || place.block >= static_cast<int>(firstLines_.size())) return;
  const QTextBlock line =
      widget_->document()->findBlockByNumber(firstLines_[static_cast<std::size_t>(place.block)] + place.line);
  if (!line.isValid()) return;
  // The first block shows the margin above it too.
  const double top = widget_->document()->documentLayout()->blockBoundingRect(line).top();
  widget_->verticalScrollBar()->setValue(line.blockNumber() == 0 ? 0 : static_cast<int>(top));
  widget_->setTextCursor(QTextCursor(line));
  widget_->verticalScrollBar()->setValue(line.blockNumber() == 0 ? 0 : static_cast<int>(top));
}

TextPlace QtTextView::Top() const {
  if (widget_ == nullptr || widget_->verticalScrollBar()->value() == 0) return {};
  const int line = widget_->cursorForPosition(QPoint(2, 2)).blockNumber();
  const auto after = std::upper_bound(firstLines_.begin(), firstLines_.end(), line);
  if (after == firstLines_.begin()) return {};
  return {static_cast<int>(after - firstLines_.begin()) - 1, line - *(after - 1)};
}

void QtTextView::Mark(const std::vector<std::string>& words) {
  marked_ = words;
  ShowMarks();
}

void QtTextView::ShowMarks() {
  QList<QTextEdit::ExtraSelection> marks;
  QTextCharFormat format;
  format.setBackground(widget_->palette().highlight());
  format.setForeground(widget_->palette().highlightedText());
  for (const std::string& word : marked_) {
    const QString text = PlainText(word);
    if (text.isEmpty()) continue;
    for (QTextCursor at = widget_->document()->find(text); !at.isNull();
         at = widget_->document()->find(text, at)) {
      marks += {at, format};
    }
  }
  widget_->setExtraSelections(marks);
}

bool QtTextView::Find(const std::string& text, bool backwards) {
  const QTextDocument::FindFlags way = backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  if (text.empty()) return false;
  if (widget_->find(PlainText(text), way)) return true;
  const QTextCursor before = widget_->textCursor();
  widget_->moveCursor(backwards ? QTextCursor::End : QTextCursor::Start);
  if (widget_->find(PlainText(text), way)) return true;
  widget_->setTextCursor(before);
  return false;
}

void QtTextView::ChangeTextSize(int steps) {
  const int zoom = steps == 0 ? 0 : std::clamp(zoom_ + steps, kSmallestZoom, kLargestZoom);
  if (zoom == zoom_) return;
  zoom_ = zoom;
  if (!keptAs_.empty()) QSettings().setValue(PlainText(keptAs_), zoom_);
  LayOut();
}

void QtTextView::KeepTextSizeAs(const std::string& name) {
  keptAs_ = name;
  zoom_ = std::clamp(QSettings().value(PlainText(name), 0).toInt(), kSmallestZoom, kLargestZoom);
  LayOut();
}

void QtTextView::Print(const std::string& title) {
  QPrinter printer;
  printer.setDocName(PlainText(title));
  QPrintDialog dialog(&printer, widget_->window());
  if (dialog.exec() != QDialog::Accepted) return;
  // Marks and colours of the screen stay there: what is printed is black on white.
  const std::unique_ptr<QTextDocument> copy(widget_->document()->clone());
  copy->print(&printer);
}

void QtTextView::CopyAll() {
  QGuiApplication::clipboard()->setText(QTextDocumentFragment(widget_->document()).toPlainText());
}

void QtTextView::Focus() {
  widget_->setFocus(Qt::OtherFocusReason);
}

}  // namespace kelvane
