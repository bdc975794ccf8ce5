#include "window/note_card.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/qt_text.h"

namespace orma {
namespace {

constexpr int kOutside = 8;  // pixels between the card and the page's edges
constexpr int kInside = 10;  // between the card's edge and what stands on it
constexpr int kTick = 20;    // diameter of the disc with the tick
constexpr int kGap = 8;
constexpr int kLeft = kInside + kTick + kGap;

/// Long paths are broken behind a separator.
QString Breakable(QString text) {
    return text.replace(u'/', QStringLiteral("/\u200b"));
}

QFont HeadlineFont() {
    QFont font = QApplication::font();
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont DetailFont() {
    QFont font = QApplication::font();
    font.setPixelSize(12);
    return font;
}

/// Breaks the text into lines of that width and returns their height.
int LayOut(QTextLayout& layout, int width) {
    layout.setTextOption([] {
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        return option;
    }());
    double height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return static_cast<int>(std::ceil(height));
}

/// Not the modifiers with which one leaves for another window, and not a key that is still held.
bool IsStroke(const QEvent& event) {
    const auto& key = static_cast<const QKeyEvent&>(event);
    constexpr int kModifiers[] = {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_AltGr,
                                  Qt::Key_Meta};
    return !key.isAutoRepeat() && std::ranges::count(kModifiers, key.key()) == 0;
}

/// A disc as the lit keys are, with a tick.
void DrawTick(QPainter& painter, const QRectF& disc) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(look::kLit);
    painter.drawEllipse(disc);
    const auto at = [&](double x, double y) {
        return disc.topLeft() + QPointF(x * disc.width(), y * disc.height());
    };
    painter.setPen(QPen(look::kInk, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF{at(0.28, 0.52), at(0.44, 0.68), at(0.73, 0.34)});
}

}  // namespace

void NoteCard::ShowOver(QWidget& page, const Note& note) {
    const QObjectList children = page.children();
    for (QObject* const child : children)
        delete dynamic_cast<NoteCard*>(child);
    auto* const card = new NoteCard(page, note);
    card->show();
    card->raise();
}

NoteCard::NoteCard(QWidget& page, const Note& note)
    : QWidget(&page),
      headline_(ToQt(note.headline), HeadlineFont()),
      detail_(Breakable(ToQt(note.detail)), DetailFont()) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    const int width = page.width() - 2 * kOutside;
    const int room = width - kLeft - kInside;
    detailTop_ = kInside + LayOut(headline_, room) + 2;
    setGeometry(kOutside, kOutside, width, detailTop_ + LayOut(detail_, room) + kInside);
    setAccessibleName(ToQt(note.headline + u". " + note.detail));
    // Behind the keys that were pressed during the job: nobody saw the card then.
    QTimer::singleShot(0, this, [this] { qApp->installEventFilter(this); });
}

NoteCard::~NoteCard() = default;

bool NoteCard::eventFilter(QObject* watched, QEvent* event) {
    const bool acts = event->type() == QEvent::MouseButtonPress ||
                      (event->type() == QEvent::KeyPress && IsStroke(*event));
    if (acts && isVisible()) {
        hide();
        deleteLater();
    }
    return QWidget::eventFilter(watched, event);
}

void NoteCard::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(look::kKeyEdge, 1));
    painter.setBrush(look::kKeyFace);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
    const double middle = kInside + headline_.lineAt(0).height() / 2;
    DrawTick(painter, QRectF(kInside, middle - kTick / 2, kTick, kTick));
    painter.setPen(look::kInk);
    headline_.draw(&painter, QPointF(kLeft, kInside));
    painter.setPen(look::kLegend);
    detail_.draw(&painter, QPointF(kLeft, detailTop_));
}

}  // namespace orma
