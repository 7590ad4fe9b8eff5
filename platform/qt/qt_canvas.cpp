#include "platform/qt/qt_canvas.h"

#include <QBackingStore>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/handlers.h"
#include "platform/qt/qt_image_painter.h"
#include "platform/qt/qt_pointers.h"
#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

constexpr float kWheelNotch = 120;  // angle units

// Posted to itself by a canvas that was drawn on.
const QEvent::Type kShowDrawn = static_cast<QEvent::Type>(QEvent::registerEventType());

MouseButton ToButton(Qt::MouseButton button) {
  if (button == Qt::MiddleButton) return MouseButton::Middle;
  return button == Qt::RightButton ? MouseButton::Right : MouseButton::Left;
}

bool IsOurButton(Qt::MouseButton button) {
  return button == Qt::LeftButton || button == Qt::MiddleButton || button == Qt::RightButton;
}

std::size_t Index(Layer layer) {
  return layer == Layer::Page ? 0 : 1;
}

Qt::MouseButton HeldButton(Qt::MouseButtons buttons) {
  if (buttons & Qt::LeftButton) return Qt::LeftButton;
  if (buttons & Qt::MiddleButton) return Qt::MiddleButton;
  return buttons & Qt::RightButton ? Qt::RightButton : Qt::LeftButton;
}

}  // namespace

QtCanvas::QtCanvas(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_InputMethodEnabled);
  setAccessibleName(QStringLiteral("Page"));
}

int QtCanvas::PixelWidth() const {
  return page_.Size().isEmpty() ? 0 : width();
}
int QtCanvas::PixelHeight() const {
  return page_.Size().isEmpty() ? 0 : height();
}

QColor QtCanvas::DeskColour() const {
  // Text and marks lie beside the paper too, in black and blue, so a dark desktop must not make them vanish.
  constexpr int kDarkest = 150;
  const QColor desk = palette().color(QPalette::Dark);
  return desk.lightness() >= kDarkest ? desk : QColor(kDarkest, kDarkest, kDarkest);
}

void QtCanvas::ResizeLayers() {
  ratio_ = devicePixelRatioF();
  const QSize pixels(static_cast<int>(std::lround(width() * ratio_)),
                     static_cast<int>(std::lround(height() * ratio_)));
  UseCoordinates();
  if (pixels == page_.Size()) return;
  page_.Resize(pixels);
  overlay_.Resize(pixels);
  if (OnPaint) {
    Invalidate(Layer::Page);
  } else {
    page_.Clear(DeskColour());
  }
}

void QtCanvas::SetCoordinates(float left, float top, float width, float height) {
  left_ = left;
  top_ = top;
  width_ = width;
  height_ = height;
  UseCoordinates();
}

void QtCanvas::ScrollTo(float left, float top, float width, float height) {
  const bool same = width == width_ && height == height_;
  const QPoint before = corner_;
  SetCoordinates(left, top, width, height);
  const QPoint by = before - corner_;
  Invalidate(Layer::Overlay);
  if (!same) {
    Invalidate(Layer::Page);
  } else if (!by.isNull()) {
    const QRect whole(QPoint(0, 0), page_.Size());
    QRegion& invalid = invalid_[Index(Layer::Page)];
    invalid = (invalid.translated(by) & whole) | QRegion(whole).subtracted(whole.translated(by));
    if (invalid != QRegion(whole)) page_.Move(by);
  }
}

void QtCanvas::UseCoordinates() {
  static constexpr double kFarthest = 1 << 28;
  scaleX_ = width() * ratio_ / width_;
  scaleY_ = height() * ratio_ / height_;
  const auto whole = [](double position) {
    // Written so that what is no number becomes 0.
    return std::abs(position) < kFarthest ? static_cast<int>(std::floor(position + 0.5)) : 0;
  };
  corner_ = QPoint(whole(left_ * scaleX_), whole(top_ * scaleY_));
}

float QtCanvas::PixelRatio() const {
  return static_cast<float>(ratio_);
}

std::span<const FixedPoint> QtCanvas::ToDevice(std::span<const Point> points) {
  points_.clear();
  for (const Point& point : points) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return {};
    points_.push_back(ToFixed(point.x * scaleX_, point.y * scaleY_, corner_));
  }
  return points_;
}

void QtCanvas::SelectLayer(Layer layer) {
  layer_ = layer == Layer::Page ? &page_ : &overlay_;
}

void QtCanvas::Clear() {
  layer_->Clear(DeskColour());
  Drawn();
}

void QtCanvas::DrawImage(const Image& image, Point corner) {
  const std::span<const FixedPoint> device = ToDevice({&corner, 1});
  if (!device.empty()) layer_->DrawImage(static_cast<const QtImagePainter&>(image).Picture(), device[0]);
  Drawn();
}

void QtCanvas::Invalidate(Layer layer) {
  invalid_[Index(layer)] = QRect(QPoint(0, 0), page_.Size());
  Drawn();
}

void QtCanvas::Invalidate(Layer layer, const Box& area) {
  const Point corners[] = {{area.left, area.top}, {area.right, area.bottom}};
  const std::span<const FixedPoint> device = ToDevice(corners);
  if (device.empty()) {
    Invalidate(layer);
    return;
  }
  const QRect pixels(QPoint(device[0].x / kPixel - 1, device[0].y / kPixel - 1),
                     QPoint(device[1].x / kPixel + 1, device[1].y / kPixel + 1));
  invalid_[Index(layer)] |= pixels & QRect(QPoint(0, 0), page_.Size());
  Drawn();
}

void QtCanvas::PaintInvalid() {
  constexpr int kMostParts = 4;  // beyond that, one painting of all is quicker
  for (const Layer layer : {Layer::Page, Layer::Overlay}) {
    QRegion region = std::exchange(invalid_[Index(layer)], QRegion());
    if (region.isEmpty() || !OnPaint) continue;
    if (region.rectCount() > kMostParts) region = region.boundingRect();
    SelectLayer(layer);
    for (const QRect& rect : region) {
      layer_->SetClip(rect);
      const Box area = {static_cast<float>((corner_.x() + rect.left()) / scaleX_),
                        static_cast<float>((corner_.y() + rect.top()) / scaleY_),
                        static_cast<float>((corner_.x() + rect.right() + 1) / scaleX_),
                        static_cast<float>((corner_.y() + rect.bottom() + 1) / scaleY_)};
      RunHandler([&] {
        const QtLayer::Together together(*layer_);
        layer_->Clear(DeskColour());
        OnPaint(layer, area);
      });
    }
    layer_->SetClip(QRect());
  }
  SelectLayer(Layer::Page);
}

void QtCanvas::FillBox(const Box& box, ColourValue colour) {
  const Point corners[] = {{box.left, box.top}, {box.right, box.bottom}};
  const std::span<const FixedPoint> device = ToDevice(corners);
  if (!device.empty()) layer_->FillBox(device[0], device[1], ToRgb(colour));
  Drawn();
}

void QtCanvas::DrawLine(Point from, Point to, const Pen& pen) {
  const Point ends[] = {from, to};
  const std::span<const FixedPoint> device = ToDevice(ends);
  if (!device.empty())
    layer_->DrawLine(device[0], device[1], ToRgb(pen.colour), pen.width * ratio_, pen.crisp);
  Drawn();
}

void QtCanvas::StrokePath(const Path& path, const Pen& pen) {
  layer_->StrokePath(path, ToDevice(path.points), ToRgb(pen.colour), pen.width * ratio_);
  Drawn();
}

void QtCanvas::FillPath(const Path& path, ColourValue colour) {
  layer_->FillPath(path, ToDevice(path.points), ToRgb(colour));
  Drawn();
}

void QtCanvas::DrawText(const ScreenFace& face, float em, std::string_view codes,
                        std::span<const Point> origins, ColourValue colour) {
  layer_->DrawText(face, em * ratio_, codes, ToDevice(origins), ToRgb(colour));
  Drawn();
}

void QtCanvas::DrawGlyph(const GlyphLines& glyph, Point origin, ColourValue colour) {
  const std::span<const FixedPoint> device = ToDevice({&origin, 1});
  if (!device.empty()) layer_->DrawGlyph(glyph, glyph.em * scaleX_, ratio_, device[0], ToRgb(colour));
  Drawn();
}

void QtCanvas::SetPointerArrow() {
  setCursor(Qt::ArrowCursor);
}

bool QtCanvas::SetPointerIcon(const std::string& path) {
  const QCursor* pointer = PointerFromFile(path);
  setCursor(pointer != nullptr ? *pointer : QCursor(Qt::ArrowCursor));
  return pointer != nullptr;
}

void QtCanvas::SetPointerShape(PointerShape shape) {
  static constexpr Qt::CursorShape kShapes[] = {Qt::ArrowCursor, Qt::SizeAllCursor, Qt::SizeFDiagCursor,
                                                Qt::SizeBDiagCursor, Qt::OpenHandCursor};
  const Qt::CursorShape wanted = kShapes[static_cast<std::size_t>(shape)];
  if (cursor().shape() != wanted) setCursor(wanted);
}

void QtCanvas::Focus() {
  setFocus(Qt::OtherFocusReason);
}

void QtCanvas::SetName(const std::string& name) {
  setAccessibleName(PlainText(name));
}

void QtCanvas::SetToolTip(const std::string& text) {
  setToolTip(PlainText(text).toHtmlEscaped());
  setAccessibleDescription(PlainText(text));
}

void QtCanvas::Drawn() {
  if (showPending_) return;
  showPending_ = true;
  QCoreApplication::postEvent(this, new QEvent(kShowDrawn), Qt::HighEventPriority);
}

void QtCanvas::ShowDrawn() {
  PaintInvalid();
  showPending_ = false;
  const QRect dirty = page_.TakeDirty() | overlay_.TakeDirty();
  if (dirty.isEmpty()) return;
  const int left = static_cast<int>(std::floor(dirty.left() / ratio_));
  const int top = static_cast<int>(std::floor(dirty.top() / ratio_));
  const int right = static_cast<int>(std::ceil((dirty.right() + 1) / ratio_));
  const int bottom = static_cast<int>(std::ceil((dirty.bottom() + 1) / ratio_));
  const QRect area(left, top, right - left, bottom - top);
  if (!ShowAhead(area)) update(area);
}

bool QtCanvas::ShowAhead(const QRect& area) {
  // On Wayland beginning to paint a window that is partly transparent, as one with a frame of Qt's own is,
  // would clear what was just painted, and the system says itself when it takes the next picture.
  static const bool wayland = QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
  if (wayland) return false;
  QWindow* const screen = window()->windowHandle();
  QBackingStore* const picture = backingStore();
  const bool ready = isVisible() && updatesEnabled() && screen != nullptr && screen->isExposed() &&
                     picture != nullptr && picture->size() == screen->size() && devicePixelRatioF() == ratio_;
  if (!ready) return false;
  const QPoint corner = mapTo(window(), QPoint(0, 0));
  const QRegion shown = visibleRegion() & area;
  const QRegion ofWindow = shown.translated(corner);
  if (shown.isEmpty()) return true;
  picture->beginPaint(ofWindow);
  {
    QPainter painter(picture->paintDevice());
    painter.setClipRegion(ofWindow);
    painter.translate(corner);
    PaintLayers(painter, shown);
  }
  picture->endPaint();
  picture->flush(ofWindow, screen);
  // Beginning once more waits for the screen to take it. The display would get no processor while the rest of
  // the window is painted, and the next painting would wait instead.
  picture->beginPaint(ofWindow);
  picture->endPaint();
  return true;
}

bool QtCanvas::event(QEvent* event) {
  if (event->type() == kShowDrawn) {
    ShowDrawn();
    return true;
  }
  return QWidget::event(event);
}

void QtCanvas::paintEvent(QPaintEvent* event) {
  if (devicePixelRatioF() != ratio_) {
    ResizeLayers();
    // The owner draws anew outside of this painting.
    QMetaObject::invokeMethod(
        this, [this] { RunHandler(OnLost); }, Qt::QueuedConnection);
  }
  PaintInvalid();
  QPainter painter(this);
  PaintLayers(painter, event->region());
}

void QtCanvas::PaintLayers(QPainter& painter, const QRegion& region) const {
  const QImage& page = page_.Image();
  const QImage& overlay = overlay_.Image();
  // Device pixels, so that the images go to the screen pixel by pixel.
  painter.scale(1 / ratio_, 1 / ratio_);
  for (const QRect& exposed : region) {
    const QRectF device(exposed.x() * ratio_, exposed.y() * ratio_, exposed.width() * ratio_,
                        exposed.height() * ratio_);
    const QRect area = device.toAlignedRect() & page.rect();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(area.topLeft(), page, area);
    const QRect marked = area & overlay_.Inked();
    if (marked.isEmpty()) continue;
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(marked.topLeft(), overlay, marked);
  }
}

void QtCanvas::resizeEvent(QResizeEvent*) {
  ResizeLayers();
}

// What is out of sight takes no memory if its owner can paint it again.
void QtCanvas::hideEvent(QHideEvent* event) {
  if (event->spontaneous() || !OnPaint) return;
  page_.Resize({});
  overlay_.Resize({});
}

void QtCanvas::showEvent(QShowEvent*) {
  if (!page_.Size().isEmpty()) return;
  ResizeLayers();
  Invalidate(Layer::Overlay);
}

// A widget that is not shown yet gets its resize event late, and what is drawn until then must stay.
void QtCanvas::SetPlace(const Place& place) {
  setGeometry(place.left, place.top, place.width, place.height);
  if (parentWidget() != nullptr) setVisible(place.width > 0 && place.height > 0);
  ResizeLayers();
}

void QtCanvas::SendKey(int code) {
  if (OnKeyPress) RunHandler([this, code] { OnKeyPress(code); });
}

bool QtCanvas::focusNextPrevChild(bool next) {
  if (takesTab) return false;  // it comes as a key
  bool used = false;
  RunHandler([&] { used = OnTab && OnTab(next); });
  return used || QWidget::focusNextPrevChild(next);
}

void QtCanvas::keyPressEvent(QKeyEvent* event) {
  made_.clear();
  const bool control = event->modifiers() & Qt::ControlModifier;
  const int held = (control ? kWithControl : 0) | (event->modifiers() & Qt::ShiftModifier ? kWithShift : 0);
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      SendKey(control ? kKeyCtrlEnter : kKeyEnter | (held & kWithShift));
      return;
    case Qt::Key_Backspace:
      SendKey(control ? kKeyWordBackspace : kKeyBackspace);
      return;
    case Qt::Key_Tab:
      SendKey(kKeyTab);
      return;
    case Qt::Key_Escape:
      SendKey(kKeyEscape);
      return;
    case Qt::Key_Delete:
      SendKey(kKeyDelete);
      return;
    case Qt::Key_Home:
      SendKey(kKeyHome | held);
      return;
    case Qt::Key_End:
      SendKey(kKeyEnd | held);
      return;
    case Qt::Key_Left:
      SendKey(kKeyLeft | held);
      return;
    case Qt::Key_Up:
      SendKey(kKeyUp | held);
      return;
    case Qt::Key_Right:
      SendKey(kKeyRight | held);
      return;
    case Qt::Key_Down:
      SendKey(kKeyDown | held);
      return;
    default:
      break;
  }
  const QString text = event->text();
  const bool command = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  if (text.isEmpty() || command || !IsReadable(text)) {
    QWidget::keyPressEvent(event);
    return;
  }
  SendText(text);
}

void QtCanvas::SendText(const QString& text) {
  const bool plain = std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u' ' && c <= u'~'; });
  if (!plain && OnText) {
    const std::string composed = text.normalized(QString::NormalizationForm_C).toStdString();
    RunHandler([&] { OnText(composed); });
  }
  for (const QChar character : plain ? text : QString()) SendKey(character.unicode());
}

void QtCanvas::inputMethodEvent(QInputMethodEvent* event) {
  const QString making = event->preeditString();
  const QString made = event->commitString();
  // Some input methods that are told to end a composition give its text a second time.
  const bool again = making_.isEmpty() && making.isEmpty() && !made.isEmpty() && made == made_;
  if (!made.isEmpty() || !making.isEmpty()) made_ = made == making_ ? made : QString();
  making_ = making;
  event->accept();
  if (again) return;
  if (OnPreedit) RunHandler([&] { OnPreedit(making.toStdString()); });
  SendText(made);
}

QVariant QtCanvas::inputMethodQuery(Qt::InputMethodQuery query) const {
  if (query == Qt::ImEnabled) return true;
  if (query == Qt::ImCursorRectangle && CaretPlace) {
    const Point caret = CaretPlace();
    return QRectF((caret.x * scaleX_ - corner_.x()) / ratio_, (caret.y * scaleY_ - corner_.y()) / ratio_, 1,
                  1)
        .toRect();
  }
  return QWidget::inputMethodQuery(query);
}

MouseEvent QtCanvas::ToMouseEvent(const QMouseEvent& event, Qt::MouseButton button) {
  const QPointF position = event.position();
  MouseEvent mouse;
  mouse.button = ToButton(button);
  mouse.x = static_cast<float>((corner_.x() + position.x() * ratio_) / scaleX_);
  mouse.y = static_cast<float>((corner_.y() + position.y() * ratio_) / scaleY_);
  mouse.pixelX = static_cast<float>(position.x());
  mouse.pixelY = static_cast<float>(position.y());
  mouse.shift = event.modifiers() & Qt::ShiftModifier;
  mouse.control = event.modifiers() & Qt::ControlModifier;
  mouse.alt = event.modifiers() & Qt::AltModifier;
  if (event.type() == QEvent::MouseButtonDblClick) clicks_ = 2;
  if (event.type() == QEvent::MouseButtonPress) clicks_ = 1;
  mouse.clicks = clicks_;
  return mouse;
}

void QtCanvas::mousePressEvent(QMouseEvent* event) {
  if (!OnMouseDown || !IsOurButton(event->button())) return;
  // What an input method has in the making belongs to where it was typed.
  QGuiApplication::inputMethod()->commit();
  const MouseEvent mouse = ToMouseEvent(*event, event->button());
  RunHandler([this, &mouse] { OnMouseDown(mouse); });
}

void QtCanvas::mouseMoveEvent(QMouseEvent* event) {
  if (!OnMouseMove) return;
  const MouseEvent mouse = ToMouseEvent(*event, HeldButton(event->buttons()));
  RunHandler([this, &mouse] { OnMouseMove(mouse); });
}

void QtCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (!OnMouseUp || !IsOurButton(event->button())) return;
  const MouseEvent mouse = ToMouseEvent(*event, event->button());
  RunHandler([this, &mouse] { OnMouseUp(mouse); });
}

void QtCanvas::leaveEvent(QEvent*) {
  RunHandler(OnMouseLeave);
}

void QtCanvas::wheelEvent(QWheelEvent* event) {
  if (!OnWheel) return;
  WheelEvent wheel;
  wheel.steps = static_cast<float>(event->angleDelta().y()) / kWheelNotch;
  wheel.sideSteps = static_cast<float>(event->angleDelta().x()) / kWheelNotch;
  wheel.shift = event->modifiers() & Qt::ShiftModifier;
  wheel.control = event->modifiers() & Qt::ControlModifier;
  wheel.pixelX = static_cast<float>(event->position().x());
  wheel.pixelY = static_cast<float>(event->position().y());
  RunHandler([this, &wheel] { OnWheel(wheel); });
  event->accept();
}

}  // namespace kelvane
