#pragma once

#include <QColor>

class QWidget;

namespace orma {

/// The colours of the case, of its keys and of the display, for what dialogs draw themselves.
namespace look {

inline const QColor kBody{236, 231, 219};
inline const QColor kKeyFace{251, 248, 242};
inline const QColor kKeyEdge{122, 113, 97};
inline const QColor kHairline{200, 192, 174};
inline const QColor kInk{33, 31, 27};
inline const QColor kLegend{106, 99, 86};  // secondary texts
inline const QColor kWrong{166, 38, 0};    // what is not right, in words
inline const QColor kRight{34, 102, 32};
inline const QColor kLit{255, 111, 15};
inline const QColor kSelected{255, 178, 112};
inline const QColor kPanel{23, 22, 20};
inline const QColor kPanelLine{70, 66, 58};
inline const QColor kPanelText{255, 244, 220};
inline const QColor kPanelLegend{168, 158, 136};

}  // namespace look

/// Gives everything that this process shows besides the page the page's look: boxes, file dialogs,
/// menus and the program's own dialogs are then of one hand, and windows bear the icon that the
/// program carries. Once, behind the application object.
void InstallDialogLook();

/// Makes a dialog as large as it likes to be, or as the display lets it.
void FitToDisplay(QWidget& dialog);

}  // namespace orma
