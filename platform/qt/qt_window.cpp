#include "platform/qt/qt_window.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <algorithm>
#include <cmath>

#include "platform/handlers.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/qt_toolkit.h"

namespace kelvane {
namespace {

// A window that shows less than this of its top edge on a screen could not be reached with the mouse.
constexpr QSize kLeastVisible(48, 24);
constexpr int kLeastSide = 48;
// The greatest side that a window gets, unless the screens are larger.
constexpr int kMostSide = 8192;

int ToPixels(float twips) {
  const double pixels = std::round(static_cast<double>(twips) / kTwipsPerPixel);
  return static_cast<int>(std::clamp(std::isnan(pixels) ? 0.0 : pixels, -1e6, 1e6));
}

float ToTwips(int pixels) {
  return static_cast<float>(pixels) * kTwipsPerPixel;
}

bool Reachable(const QRect& window) {
  const QRect top(window.topLeft(), QSize(window.width(), kLeastVisible.height()));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry() & top;
    if (seen.width() >= kLeastVisible.width() && seen.height() >= kLeastVisible.height()) return true;
  }
  return false;
}

// The nearest place on the first screen.
QPoint OnScreen(const QRect& window) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  const int right = std::max(screen.right() + 1 - window.width(), screen.left());
  const int bottom = std::max(screen.bottom() + 1 - window.height(), screen.top());
  return {std::clamp(window.left(), screen.left(), right), std::clamp(window.top(), screen.top(), bottom)};
}

}  // namespace

class QtWindow::MainFrame final : public QMainWindow {
 public:
  MainFrame(QtWindow& window, QWidget* parent)
      : QMainWindow(parent, parent == nullptr ? Qt::Window : Qt::Dialog), window_(window) {
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setWindowFlag(Qt::WindowCloseButtonHint);
    setContextMenuPolicy(Qt::NoContextMenu);
  }

  // From the top-left corner of the frame to that of its inside, as last seen on a plain window.
  QPoint FrameMargin() const { return margin_; }

 protected:
  void closeEvent(QCloseEvent* event) override {
    if (!window_.MayClose()) {
      event->ignore();
      return;
    }
    QMainWindow::closeEvent(event);
    if (parentWidget() == nullptr) QtToolkit::QuitLater();
  }

  // A tool window that goes gives the keys back to the editor: not every desktop sees to that.
  void hideEvent(QHideEvent* event) override {
    QMainWindow::hideEvent(event);
    if (parentWidget() != nullptr && !event->spontaneous()) parentWidget()->activateWindow();
  }

  void moveEvent(QMoveEvent* event) override {
    QMainWindow::moveEvent(event);
    if (isVisible() &&
        !(windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen))) {
      margin_ = geometry().topLeft() - pos();
    }
  }

 private:
  QtWindow& window_;
  QPoint margin_;
};

class QtWindow::ClientArea final : public QWidget {
 public:
  ClientArea(QtWindow& window, QWidget* parent) : QWidget(parent), window_(window) {}

 protected:
  void resizeEvent(QResizeEvent*) override { RunHandler(window_.OnResize); }
  // Keys come here that no control took.
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Escape && window_.OnEscape) {
      RunHandler(window_.OnEscape);
    } else {
      QWidget::keyPressEvent(event);
    }
  }

 private:
  QtWindow& window_;
};

QtWindow::QtWindow(QtWindow* parent) {
  frame_ = std::make_unique<MainFrame>(*this, parent == nullptr ? nullptr : parent->frame_.get());
  client_ = new ClientArea(*this, frame_.get());
  frame_->setCentralWidget(client_);
}

QtWindow::~QtWindow() {
  // Resizing and the like while the widgets go must not reach the owner.
  OnResize = nullptr;
  OnCloseRequest = nullptr;
}

QMainWindow& QtWindow::Frame() const {
  return *frame_;
}

void QtWindow::SetTitle(const std::string& title) {
  title_ = title;
  ShowTitle();
}

void QtWindow::SetChanged(bool changed) {
  if (changed == changed_) return;
  changed_ = changed;
  ShowTitle();
}

void QtWindow::ShowTitle() {
  // Qt puts its mark of changes where a title has "[*]"; doubled, it is text.
  QString title = PlainText(title_).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
  if (changed_) title += QStringLiteral("[*]");
  frame_->setWindowTitle(title);
  frame_->setWindowModified(changed_);
}

void QtWindow::SetWindowPlace(const WindowPlace& place) {
  const QRect all = QGuiApplication::primaryScreen()->virtualGeometry();
  const int width = std::clamp(ToPixels(place.width), kLeastSide, std::max(all.width(), kMostSide));
  const int height = std::clamp(ToPixels(place.height), kLeastSide, std::max(all.height(), kMostSide));
  QRect window(ToPixels(place.left), ToPixels(place.top), width, height);
  if (!Reachable(window)) window.moveTopLeft(OnScreen(window));
  frame_->resize(window.size());
  frame_->move(window.topLeft());
}

WindowPlace QtWindow::GetWindowPlace() const {
  const bool plain = !(frame_->windowState() & (Qt::WindowMinimized | Qt::WindowMaximized));
  const QPoint at = plain ? frame_->pos() : frame_->normalGeometry().topLeft() - frame_->FrameMargin();
  const QSize size = plain ? frame_->size() : frame_->normalGeometry().size();
  return {ToTwips(at.x()), ToTwips(at.y()), ToTwips(size.width()), ToTwips(size.height())};
}

void QtWindow::LayOut() const {
  if (!frame_->isVisible()) frame_->layout()->activate();
}

float QtWindow::InnerWidth() const {
  LayOut();
  return ToTwips(client_->width() - verticalBars_ * kScrollBarPixels);
}

float QtWindow::InnerHeight() const {
  LayOut();
  return ToTwips(client_->height() - horizontalBars_ * kScrollBarPixels);
}

void QtWindow::Show() {
  if (frame_->isMinimized()) {
    frame_->showNormal();
  } else if (frame_->isVisible()) {
    frame_->raise();
  } else {
    frame_->show();
  }
  frame_->activateWindow();
}

void QtWindow::Hide() {
  frame_->hide();
}
bool QtWindow::Visible() const {
  return frame_->isVisible();
}

bool QtWindow::MayClose() {
  if (!OnCloseRequest) return true;
  bool mayClose = false;
  RunHandler([this, &mayClose] { mayClose = OnCloseRequest(); });
  return mayClose;
}

Menu* QtWindow::AddMenu(const std::string& caption) {
  return &menus_.emplace_back(frame_->menuBar()->addMenu(PlainText(caption)));
}

Canvas* QtWindow::AddCanvas() {
  auto* canvas = new QtCanvas(client_);
  canvas->OnLost = [this] {
    if (OnResize) OnResize();
  };
  canvas->show();
  return canvas;
}

void QtWindow::SetCanvasPlace(Canvas* canvas, const Place& place) {
  static_cast<QtCanvas*>(canvas)->SetPlace(place);
}

Label* QtWindow::AddLabel(const std::string& text) {
  return Keep(std::make_unique<QtLabel>(client_, text));
}

Button* QtWindow::AddButton(const std::string& caption, const IconDrawing& icon, const std::string& toolTip) {
  return Keep(std::make_unique<QtButton>(client_, caption, icon, toolTip));
}

TextBox* QtWindow::AddTextBox(const std::string& accessibleName, bool fixedPitch) {
  return Keep(std::make_unique<QtTextBox>(client_, accessibleName, fixedPitch));
}

ScrollBar* QtWindow::AddScrollBar(bool horizontal) {
  ++(horizontal ? horizontalBars_ : verticalBars_);
  return Keep(std::make_unique<QtScrollBar>(client_, horizontal));
}

Label* QtWindow::AddStatusText(int width) {
  QStatusBar* bar = frame_->statusBar();
  return Keep(std::make_unique<QtLabel>(bar, width));
}

void QtWindow::AddShortcut(const std::string& key, std::function<void()> handler) {
  auto* shortcut =
      new QShortcut(QKeySequence::fromString(PlainText(key), QKeySequence::PortableText), frame_.get());
  QObject::connect(shortcut, &QShortcut::activated, frame_.get(),
                   [handler = std::move(handler)] { RunHandler(handler); });
}

}  // namespace kelvane
