#include "platform/qt/qt_window.h"

#include <QApplication>
#include <QBackingStore>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QMenuBar>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QStatusBar>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "platform/handlers.h"
#include "platform/memory.h"
#include "platform/qt/qt_browser.h"
#include "platform/qt/qt_endings.h"
#include "platform/qt/qt_lists.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/qt_text_view.h"

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

// The nearest place on a screen.
QPoint OnScreen(const QRect& window, const QScreen& of) {
  const QRect screen = of.availableGeometry();
  const int right = std::max(screen.right() + 1 - window.width(), screen.left());
  const int bottom = std::max(screen.bottom() + 1 - window.height(), screen.top());
  return {std::clamp(window.left(), screen.left(), right), std::clamp(window.top(), screen.top(), bottom)};
}

}  // namespace

class QtWindow::MainFrame final : public QMainWindow {
 public:
  MainFrame(QtWindow& window, Kind kind, QWidget* editor)
      : QMainWindow(kind == Kind::Tool ? editor : nullptr, kind == Kind::Tool ? Qt::Dialog : Qt::Window),
        window_(window),
        kind_(kind),
        editor_(editor) {
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    setWindowFlag(Qt::WindowCloseButtonHint);
    setContextMenuPolicy(Qt::NoContextMenu);
  }

  // From the top-left corner of the frame to that of its inside, as last seen on a plain window.
  QPoint FrameMargin() const { return margin_; }

 protected:
  bool event(QEvent* event) override {
    // Comes before the keys of menu entries are looked at.
    if (event->type() == QEvent::ShortcutOverride) window_.DoWhenShown();
    return QMainWindow::event(event);
  }

  void paintEvent(QPaintEvent* event) override {
    QMainWindow::paintEvent(event);
    if (window_.whenShown_)
      QMetaObject::invokeMethod(
          this, [this] { window_.DoWhenShown(); }, Qt::QueuedConnection);
  }

  void closeEvent(QCloseEvent* event) override {
    if (!window_.MayClose()) {
      event->ignore();
      return;
    }
    QMainWindow::closeEvent(event);
    if (kind_ == Kind::Main) QuitLater();
  }

  // A window beside the editor that goes gives the keys back to the editor, or to the dialog that it waits
  // for: not every desktop sees to that.
  void hideEvent(QHideEvent* event) override {
    QMainWindow::hideEvent(event);
    if (!event->spontaneous()) window_.StorePlace();
    if (editor_ == nullptr || event->spontaneous()) return;
    // Its picture is as large as the window, and made anew when that is shown again. What else was freed goes
    // once its owner has dropped what it showed.
    if (QBackingStore* picture = backingStore(); picture != nullptr) picture->resize(QSize(1, 1));
    QTimer::singleShot(0, GiveBackMemory);
    QWidget* waiting = QApplication::activeModalWidget();
    (waiting != nullptr ? waiting : editor_)->activateWindow();
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
  Kind kind_;
  QWidget* editor_;
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

QtWindow::QtWindow(Kind kind, QtWindow* main) {
  frame_ = std::make_unique<MainFrame>(*this, kind, main == nullptr ? nullptr : main->frame_.get());
  client_ = new ClientArea(*this, frame_.get());
  frame_->setCentralWidget(client_);
}

QtWindow::~QtWindow() {
  if (frame_->isVisible()) StorePlace();
  placeKeptAs_.clear();
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
  if (!Reachable(window)) window.moveTopLeft(OnScreen(window, *QGuiApplication::primaryScreen()));
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

void QtWindow::DoWhenShown() {
  if (whenShown_) RunHandler(std::exchange(whenShown_, nullptr));
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

Menu* QtWindow::AddPopup() {
  return &menus_.emplace_back(new QMenu(frame_.get()));
}

void QtWindow::ShowPopup(Menu* popup, Canvas* canvas, float pixelX, float pixelY) {
  const QPointF at = static_cast<QtCanvas*>(canvas)->mapToGlobal(QPointF(pixelX, pixelY));
  static_cast<QtMenu*>(popup)->Popup(at.toPoint());
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
  const auto holds = fixedPitch ? QtTextBox::Holds::Run : QtTextBox::Holds::Codes;
  return Keep(std::make_unique<QtTextBox>(client_, accessibleName, holds));
}

TextBox* QtWindow::AddPlainTextBox(const std::string& accessibleName) {
  return Keep(std::make_unique<QtTextBox>(client_, accessibleName, QtTextBox::Holds::Words));
}

ScrollBar* QtWindow::AddScrollBar(bool horizontal) {
  ++(horizontal ? horizontalBars_ : verticalBars_);
  return Keep(std::make_unique<QtScrollBar>(client_, horizontal));
}

TextView* QtWindow::AddTextView(const std::string& accessibleName) {
  return Keep(std::make_unique<QtTextView>(client_, accessibleName));
}

Tabs* QtWindow::AddTabs(const std::string& accessibleName) {
  return Keep(std::make_unique<QtTabs>(client_, accessibleName));
}

List* QtWindow::AddList(const std::string& accessibleName) {
  return Keep(std::make_unique<QtList>(client_, accessibleName));
}

TextArea* QtWindow::AddTextArea(const std::string& accessibleName) {
  return Keep(std::make_unique<QtTextArea>(client_, accessibleName));
}

Browser* QtWindow::AddBrowser(const std::string& accessibleName) {
  std::unique_ptr<QtBrowser> browser = QtBrowser::Make(client_, accessibleName);
  return browser == nullptr ? nullptr : Keep(std::move(browser));
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

int QtWindow::RowHeight() const {
  constexpr int kUsual = 26;
  constexpr int kAroundText = 10;
  return std::max(kUsual, QFontMetrics(frame_->font()).height() + kAroundText);
}

void QtWindow::KeepPlaceAs(const std::string& name, const WindowPlace& first) {
  PlaceOnScreen(first);
  placeKeptAs_ = name;
  const QStringList kept = QSettings().value(PlainText(name)).toString().split(u' ');
  float sides[4];
  if (kept.size() != 4) return;
  for (int i = 0; i < 4; ++i) {
    bool isNumber = false;
    sides[i] = kept[i].toFloat(&isNumber);
    if (!isNumber) return;
  }
  PlaceOnScreen({sides[0], sides[1], sides[2], sides[3]});
}

// The screen may be a smaller one than the last time.
void QtWindow::PlaceOnScreen(WindowPlace place) {
  const QScreen* screen = QGuiApplication::screenAt({ToPixels(place.left), ToPixels(place.top)});
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  const QRect whole = screen->availableGeometry();
  place.width = std::min(place.width, ToTwips(whole.width()));
  place.height = std::min(place.height, ToTwips(whole.height()));
  SetWindowPlace(place);
  if (!whole.contains(frame_->frameGeometry())) frame_->move(OnScreen(frame_->frameGeometry(), *screen));
}

void QtWindow::StorePlace() const {
  if (placeKeptAs_.empty()) return;
  const WindowPlace place = GetWindowPlace();
  QSettings().setValue(
      PlainText(placeKeptAs_),
      QStringLiteral("%1 %2 %3 %4").arg(place.left).arg(place.top).arg(place.width).arg(place.height));
}

std::string QtWindow::NameUnderPointer() const {
  const QWidget* widget = frame_->childAt(frame_->mapFromGlobal(QCursor::pos()));
  for (; widget != nullptr; widget = widget->parentWidget()) {
    if (!widget->accessibleName().isEmpty()) return widget->accessibleName().toStdString();
  }
  return {};
}

}  // namespace kelvane
